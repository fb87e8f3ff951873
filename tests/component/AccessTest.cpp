// What the methods need of the host's connection.
#include "kpTables/db/Access.h"

#include <gtest/gtest.h>

#include "support/Failure.h"
#include "support/ScriptedConnection.h"

namespace kpTables::test {
namespace {

TEST(Access, SendsTextsAsTheyStand) {
    const auto cnn = std::make_shared<ScriptedConnection>();
    EXPECT_NE(db::Execute(cnn, " a  b "), nullptr);
    EXPECT_EQ(db::Query(cnn, "q")->CacheSize(), 200);
    EXPECT_EQ(db::OpenText(cnn, "Select 1")->CacheSize(), 200);
    EXPECT_EQ(db::OpenTable(cnn, "表")->CacheSize(), 200);
    const std::vector<Sent> expected = {Executed(" a  b "), Executed("q"), Opened("Select 1"),
                                        Opened("表", SourceKind::Table)};
    EXPECT_EQ(cnn->Statements(), expected);
}

TEST(Access, AStatementMayAnswerNothing) {
    const auto cnn = std::make_shared<ScriptedConnection>();
    cnn->Answer(nullptr).Answer(nullptr);
    EXPECT_EQ(db::Execute(cnn, "Delete"), nullptr);
    EXPECT_EQ(FailureOf([&] { db::Query(cnn, "Delete"); }), 91);
}

TEST(Access, NeedsAConnection) {
    EXPECT_EQ(FailureOf([] { db::Execute(nullptr, "x"); }), 91);
    EXPECT_EQ(FailureOf([] { db::Query(nullptr, "x"); }), 91);
    EXPECT_EQ(FailureOf([] { db::OpenText(nullptr, "x"); }), 91);
    EXPECT_EQ(FailureOf([] { db::OpenTable(nullptr, "x"); }), 91);
}

TEST(Access, ReadsAFieldAsTrimmedText) {
    struct Case {
        Variant value;
        const char* text;
    };
    const Case cases[] = {{" 张 三  ", "张 三"}, {Variant::Null(), ""}, {"", ""}, {"\t x ", "\t x"}};
    for (const Case& each : cases) {
        const auto row = MakeRows({{"姓名", VarType::String}}, {{each.value}});
        EXPECT_EQ(db::TextField(*row, "姓名"), each.text);
    }
    const auto number = MakeRows({{"ID", VarType::Long}}, {{-7}});
    EXPECT_EQ(db::TextField(*number, "id"), "-7");
    EXPECT_EQ(FailureOf([&] { db::TextField(*number, "姓名"); }), 3265);
    EXPECT_EQ(FailureOf([&] { db::TextField(*MakeRows({{"ID", VarType::Long}}, {}), "ID"); }), 3021);
}

}  // namespace
}  // namespace kpTables::test
