#include "kpbook/batch/BatchRequest.h"

#include <gtest/gtest.h>

#include "kpTables/Error.h"

namespace kpTables::kpbook::batch {
namespace {

TEST(BatchRequest, ReadsARequest) {
    BatchRequest request;
    ReadRequest(R"({"args":[1,"a"],"method":"x","isSQL":true,"today":"2026-11-21","answer":"no"})", request);
    EXPECT_EQ(request.method, "x");
    EXPECT_FALSE(request.execute);
    ASSERT_EQ(request.arguments.size(), 2U);
    EXPECT_TRUE(request.arguments[0].Is(std::int32_t{1}));
    EXPECT_EQ(request.isSQL, true);
    EXPECT_EQ(request.today, *Date::FromParts({2026, 11, 21, 0, 0, 0}));
    EXPECT_EQ(request.answer, MessageAnswer::No);
}

TEST(BatchRequest, ReadsAStatement) {
    BatchRequest request;
    ReadRequest(R"({"execute":"Select 1"})", request);
    EXPECT_EQ(request.execute, "Select 1");
    EXPECT_FALSE(request.method);
    EXPECT_FALSE(request.isSQL);
    EXPECT_FALSE(request.today);
    EXPECT_FALSE(request.answer);
}

TEST(BatchRequest, ANullMemberCountsAsLeftOut) {
    BatchRequest request;
    ReadRequest(R"({"method":"x","execute":null,"args":null,"isSQL":null,"today":null,"answer":null})", request);
    EXPECT_EQ(request.method, "x");
    EXPECT_FALSE(request.execute);
    EXPECT_TRUE(request.arguments.empty());
    EXPECT_FALSE(request.isSQL);
    EXPECT_FALSE(request.today);
    EXPECT_FALSE(request.answer);
    BatchRequest statement;
    ReadRequest(R"({"execute":"Select 1","method":null,"args":null})", statement);
    EXPECT_EQ(statement.execute, "Select 1");
}

struct Refused {
    std::string json;
    std::string part;  ///< of the error's description
};

TEST(BatchRequest, RefusesOtherRequests) {
    const Refused cases[] = {
        {"5", "a line takes an object"},
        {"[]", "a line takes an object"},
        {"{}", "\"commit\" or \"rollback\""},
        {R"({"method":5})", "\"method\" takes a text"},
        {R"({"execute":null})", "\"commit\" or \"rollback\""},
        {R"({"execute":5})", "\"execute\" takes a text"},
        {R"({"method":"a","arguments":null})", "unknown key \"arguments\""},
        {R"({"method":"a","execute":"b"})", "not several"},
        {R"({"begin":false})", "\"begin\" takes true"},
        {R"({"begin":true,"args":[]})", "\"method\" only"},
        {R"({"method":"a","arguments":[]})", "unknown key \"arguments\""},
        {R"({"method":"a","args":5})", "\"args\" takes a list"},
        {R"({"method":"a","isSQL":1})", "\"isSQL\" takes true or false"},
        {R"({"method":"a","today":"today"})", "is no date"},
        {R"({"method":"a","answer":"maybe"})", "\"answer\" takes \"yes\" or \"no\""},
        {R"({"execute":"a","args":[]})", "\"method\" only"},
        {R"({"method":"a",})", "not JSON at column 15"},
    };
    for (const auto& each : cases) {
        try {
            BatchRequest request;
            ReadRequest(each.json, request);
            ADD_FAILURE() << each.json << " was read";
        } catch (const Error& error) {
            EXPECT_EQ(error.Number(), 5) << each.json;
            EXPECT_NE(error.Description().find(each.part), std::string::npos)
                << each.json << ": " << error.Description();
        }
    }
}

TEST(BatchRequest, RefusedRequestStillNamesItsMethod) {
    BatchRequest request;
    EXPECT_THROW(ReadRequest(R"({"args":5,"method":"x"})", request), Error);
    EXPECT_EQ(request.method, "x");
}

}  // namespace
}  // namespace kpTables::kpbook::batch
