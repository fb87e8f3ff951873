// Every call of the corpus, a test each: the statements that it sends in both dialects, to the byte.
#include <gtest/gtest.h>

#include <cctype>
#include <map>
#include <string>
#include <utility>

#include "corpus/Call.h"
#include "support/Failure.h"

namespace kpTables::test {
namespace {

class StatementTest : public testing::Test {
public:
    explicit StatementTest(const corpus::Case& each) : case_(each) {}

    void TestBody() override {
        for (const bool isSQL : {false, true}) {
            SCOPED_TRACE(case_.Name() + (isSQL ? " (SQL Server)" : " (Jet)"));
            corpus::Outcome outcome;
            ASSERT_EQ(FailureOf([&] { outcome = corpus::Run(case_, isSQL); }), 0);
            EXPECT_EQ(outcome.sent, corpus::Expected(case_, isSQL));
            EXPECT_EQ(outcome.boxesLeft, 0u);
            if (!case_.result.empty()) {
                EXPECT_TRUE(outcome.result.Is(corpus::ParseValue(case_.result))) << Shown(outcome.result);
            }
        }
    }

private:
    const corpus::Case& case_;
};

/// The case's call and title, of which only letters, digits and Chinese stay.
std::string TestName(const corpus::Case& each) {
    std::string words = each.call;
    if (!each.title.empty()) words.erase(words.find('(')).append(" ").append(each.title);
    std::string name;
    for (const char c : words) {
        const bool stays = std::isalnum(static_cast<unsigned char>(c)) || static_cast<unsigned char>(c) >= 0x80;
        if (stays || (!name.empty() && name.back() != '_')) name += stays ? c : '_';
    }
    return name;
}

bool RegisterCases() {
    std::map<std::pair<std::string, std::string>, int> names;
    for (const corpus::Case& each : corpus::Cases()) {
        const std::string suite = each.file + "Statements";
        std::string name = TestName(each);
        if (const int same = ++names[{suite, name}]; same > 1) name.append("_").append(std::to_string(same));
        testing::RegisterTest(suite.c_str(), name.c_str(), nullptr, nullptr, __FILE__, __LINE__,
                              [&each]() -> testing::Test* { return new StatementTest(each); });
    }
    return true;
}

[[maybe_unused]] const bool kRegistered = RegisterCases();

}  // namespace
}  // namespace kpTables::test
