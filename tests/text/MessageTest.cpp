#include "kpTables/text/Message.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>

namespace kpTables {
namespace {

const char* Turned(const char* one, const char* many, std::uint64_t count) {
    if (std::strcmp(one, "{1} of {2}") == 0) return "{2}: {1}";
    if (std::strcmp(one, "{1} row of {2}") == 0)
        return many && count == 1 ? "eine Zeile von {2}" : "{1} Zeilen von {2}";
    if (std::strcmp(one, "Permission denied") == 0) return "keine Berechtigung";
    return one;
}

class MessageTest : public testing::Test {
protected:
    ~MessageTest() override { SetTranslator(nullptr); }
};

TEST_F(MessageTest, IsEnglishAtFirst) {
    EXPECT_EQ(Message("{1} of {2}", 3, "a table"), "3 of a table");
    EXPECT_EQ(Message("nothing"), "nothing");
    EXPECT_EQ(CountedMessage(1, "{1} row of {2}", "{1} rows of {2}", "a"), "1 row of a");
    EXPECT_EQ(CountedMessage(0, "{1} row of {2}", "{1} rows of {2}", "a"), "0 rows of a");
    EXPECT_EQ(CountedMessage(-1, "{1} row of {2}", "{1} rows of {2}", "a"), "-1 row of a");
}

TEST_F(MessageTest, FillsTheGapsOfTheTranslation) {
    SetTranslator(Turned);
    EXPECT_EQ(Message("{1} of {2}", 3, std::string("T")), "T: 3");
    EXPECT_EQ(CountedMessage(1, "{1} row of {2}", "{1} rows of {2}", "T"), "eine Zeile von T");
    EXPECT_EQ(CountedMessage(2, "{1} row of {2}", "{1} rows of {2}", "T"), "2 Zeilen von T");
    EXPECT_STREQ(Translated("something else"), "something else");
}

TEST_F(MessageTest, FillsEachGapOnceAndNothingElse) {
    const GapValue values[] = {"{2}", "x"};
    EXPECT_EQ(FillGaps("{1}{2}{3}{a} {", values), "{2}x{3}{a} {");
    EXPECT_EQ(Message("has {{1}}", "a"), "has {a}");
    EXPECT_EQ(Message("{1}, {1}", "a"), "a, a");
}

TEST_F(MessageTest, TranslatesWhatTheSystemSays) {
    EXPECT_EQ(SystemMessage(EACCES), "Permission denied");
    SetTranslator(Turned);
    EXPECT_EQ(SystemMessage(EACCES), "keine Berechtigung");
    EXPECT_EQ(SystemMessage(std::make_error_code(std::errc::permission_denied)), "keine Berechtigung");
}

}  // namespace
}  // namespace kpTables
