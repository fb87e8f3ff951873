// The operator log: listing and pruning.
#include <gtest/gtest.h>

#include <limits>

#include "BookScript.h"
#include "HandsOut.h"
#include "support/Failure.h"

namespace kpTables::test {
namespace {

std::shared_ptr<ScriptedRecordset> Entries(const Rows& rows) { return MakeRows({{"logID", VarType::Long}}, rows); }

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

TEST(DeleteLog, DeletesWhatIsBeforeTheNewestOfTwoThirds) {
    for (const std::int32_t most : {300, 3, 0, -3, 100, 1, 5, 1000, -100, 1073741823, -1073741824}) {
        BookScript book;
        book.cnn->Answer(Entries({{12}, {99}, {3}}));
        EXPECT_TRUE(book.tables.Delete_LogRecs(most));
        EXPECT_EQ(book.cnn->Statements(), corpus::Expected("Delete_LogRecs(" + std::to_string(most) + ")"));
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
