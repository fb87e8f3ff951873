// The operator log: listing and pruning.
#include <gtest/gtest.h>

#include <limits>

#include "BookScript.h"
#include "StatementCase.h"
#include "support/Failure.h"

namespace kpTables::test {
namespace {

std::shared_ptr<ScriptedRecordset> Entries(const Rows& rows) { return MakeRows({{"logID", VarType::Long}}, rows); }

TEST(LogStatements, BothDialects) {
    const StatementCase cases[] = {
        {"list", [](CTables& t) { t.rsLog(); }, {Executed("Select * From Log Order by logDate DESC")}},
    };
    ExpectStatements(cases);
}

TEST(LogList, HandsOutItsRowsUnread) {
    BookScript book;
    const auto rows = Entries({{2}, {1}});
    book.cnn->Answer(rows);
    EXPECT_EQ(book.tables.rsLog(), rows);
    EXPECT_EQ(rows->AbsolutePosition(), 1);
}

TEST(LogList, TrapsNothing) {
    BookScript book;
    book.cnn->FailAt(1);
    EXPECT_EQ(FailureOf([&] { book.tables.rsLog(); }), kRefused);
    CTables unconnected;
    EXPECT_EQ(FailureOf([&] { unconnected.rsLog(); }), 91);
}

TEST(DeleteLog, TopTakesTwoThirdsOfTheNumber) {
    const std::pair<std::int32_t, const char*> cases[] = {
        {300, "200"},
        {3, "2"},
        {0, "0"},
        {-3, "-2"},
        {100, "66.6666666666667"},
        {1, "0.666666666666667"},
        {5, "3.33333333333333"},
        {1000, "666.666666666667"},
        {-100, "-66.6666666666667"},
        {1073741823, "715827882"},
        {-1073741824, "-715827882.666667"},
    };
    for (const auto& [most, top] : cases) {
        BookScript book;
        book.cnn->Answer(Entries({{12}, {99}, {3}}));
        EXPECT_TRUE(book.tables.Delete_LogRecs(most));
        const std::vector<Sent> expected = {
            Executed(std::string("Select Top ") + top + " * From Log Order by logDate DESC"),
            Executed("Delete From Log Where logID<12")};
        EXPECT_EQ(book.cnn->Statements(), expected);
    }
}

TEST(DeleteLog, ANumberWhoseDoubleDoesNotFitSendsNothing) {
    using Limits = std::numeric_limits<std::int32_t>;
    for (const std::int32_t most : {1073741824, -1073741825, Limits::max(), Limits::min()}) {
        BookScript book;
        book.cnn->Answer(Entries({{12}}));
        EXPECT_FALSE(book.tables.Delete_LogRecs(most)) << most;
        EXPECT_TRUE(book.cnn->Statements().empty()) << most;
    }
}

TEST(DeleteLog, WithoutANewestEntryDeletesNothing) {
    BookScript empty;
    empty.cnn->Answer(Entries({}));
    EXPECT_FALSE(empty.tables.Delete_LogRecs(300));
    EXPECT_EQ(empty.cnn->Statements().size(), 1u);

    BookScript otherColumns;
    otherColumns.cnn->Answer(MakeRows({{"ID", VarType::Long}}, {{12}}));
    EXPECT_FALSE(otherColumns.tables.Delete_LogRecs(300));
    EXPECT_EQ(otherColumns.cnn->Statements().size(), 1u);
}

TEST(DeleteLog, TrapsEveryError) {
    for (const int failing : {1, 2}) {
        BookScript book;
        book.cnn->Answer(Entries({{12}})).FailAt(failing);
        EXPECT_FALSE(book.tables.Delete_LogRecs(300));
        EXPECT_EQ(book.cnn->Statements().size(), static_cast<std::size_t>(failing));
        EXPECT_TRUE(book.Messages().empty());
    }
    CTables unconnected;
    EXPECT_FALSE(unconnected.Delete_LogRecs(300));
}

}  // namespace
}  // namespace kpTables::test
