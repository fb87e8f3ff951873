#include "kpbook/Host.h"

#include <gtest/gtest.h>

#include "kpTables/Error.h"

namespace kpTables::kpbook {
namespace {

TEST(BatchHost, OkBoxNeedsNoAnswer) {
    BatchHost host;
    EXPECT_EQ(host.MsgBox("failed", MessageButtons::OkOnly, "title"), MessageAnswer::Ok);
    ASSERT_EQ(host.messages.size(), 1U);
    EXPECT_EQ(host.messages[0].text, "failed");
    EXPECT_EQ(host.messages[0].title, "title");
    EXPECT_EQ(host.messages[0].buttons, MessageButtons::OkOnly);
    EXPECT_EQ(host.messages[0].answer, MessageAnswer::Ok);
}

TEST(BatchHost, QuestionTakesTheGivenAnswer) {
    for (const auto answer : {MessageAnswer::Yes, MessageAnswer::No}) {
        BatchHost host;
        host.answer = answer;
        EXPECT_EQ(host.MsgBox("sure?", MessageButtons::YesNo, "title"), answer);
        EXPECT_EQ(host.messages.at(0).answer, answer);
    }
}

TEST(BatchHost, QuestionWithoutAnAnswerIsListedAndRaised) {
    BatchHost host;
    try {
        host.MsgBox("sure?", MessageButtons::YesNo, "title");
        FAIL() << "somebody answered";
    } catch (const Error& error) {
        EXPECT_EQ(error.Number(), 5);
    }
    ASSERT_EQ(host.messages.size(), 1U);
    EXPECT_FALSE(host.messages[0].answer);
}

TEST(Hosts, TodayIsWhatWasSaid) {
    const auto day = *Date::FromParts({2004, 3, 7, 0, 0, 0});
    BatchHost batch;
    EXPECT_FALSE(batch.Today().HasTime());
    EXPECT_GT(batch.Today(), *Date::FromParts({2020, 1, 1, 0, 0, 0}));
    batch.today = day;
    EXPECT_EQ(batch.Today(), day);
    EXPECT_EQ(ConsoleHost(day, std::nullopt).Today(), day);
    const auto noon = *Date::FromParts({2004, 3, 7, 12, 0, 0});
    batch.today = noon;
    EXPECT_EQ(batch.Today(), day);
    EXPECT_EQ(ConsoleHost(noon, std::nullopt).Today(), day);
}

TEST(ConsoleHost, GivenAnswerIsTaken) {
    ConsoleHost host(std::nullopt, MessageAnswer::No);
    EXPECT_EQ(host.MsgBox("sure?", MessageButtons::YesNo, "title"), MessageAnswer::No);
    EXPECT_EQ(host.MsgBox("done", MessageButtons::OkOnly, "title"), MessageAnswer::Ok);
}

}  // namespace
}  // namespace kpTables::kpbook
