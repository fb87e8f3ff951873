// A new book's settings and payment methods, and the clearing of bills.
#include <gtest/gtest.h>

#include "BookScript.h"
#include "HandsOut.h"
#include "support/Failure.h"

namespace kpTables::test {
namespace {

TEST(NewBook, ThreeSettingsInOrder) {
    for (const bool isSQL : {false, true}) {
        BookScript book;
        book.tables.isSQL(isSQL);
        for (int i = 0; i < 3; ++i) book.AnswerRecorded(OptionRows({}));
        EXPECT_TRUE(book.tables.Create_NewBook());
        const Journal expected = {
            "open table 系统选项", "AddNew", "Set Item=帐簿名称 ", "Set Discription=新帐簿 ",         "Update", "Close",
            "open table 系统选项", "AddNew", "Set Item=单位名称 ", "Set Discription=(新单位) ",       "Update", "Close",
            "open table 系统选项", "AddNew", "Set Item=建帐日期 ", "Set Discription=2006年08月19日 ", "Update", "Close",
        };
        EXPECT_EQ(*book.cnn->Log(), expected);
    }
}

TEST(NewBook, ASettingThatFailsIsShown) {
    BookScript book({MessageAnswer::Ok});
    book.cnn->FailAt(2, "refused").Answer(OptionRows({})).Answer(OptionRows({}));
    EXPECT_TRUE(book.tables.Create_NewBook()) << "only the message tells";
    EXPECT_EQ(book.cnn->Statements().size(), 3u);
    EXPECT_EQ(book.Messages(), std::vector<std::string>{"修改系统选项: refused"});

    BookScript nobody;
    nobody.cnn->FailAt(1);
    EXPECT_EQ(FailureOf([&] { nobody.tables.Create_NewBook(); }), 5);
    EXPECT_EQ(nobody.cnn->Statements().size(), 1u);
}

TEST(CancelledBook, BlanksTheCurrentDateAndAnswersFalse) {
    for (const bool isSQL : {false, true}) {
        BookScript book;
        book.tables.isSQL(isSQL);
        book.AnswerRecorded(OptionRows({{"建帐日期 ", "2004年03月07日 "}, {"当前日期 ", "2004-3-7 "}}));
        EXPECT_FALSE(book.tables.CancCreateBook());
        const Journal expected = {"open table 系统选项", "Set Item=当前日期 ", "Set Discription= ", "Update", "Close"};
        EXPECT_EQ(*book.cnn->Log(), expected);
    }
    BookScript nobody;
    nobody.cnn->FailAt(1);
    EXPECT_EQ(FailureOf([&] { nobody.tables.CancCreateBook(); }), 5);
}

TEST(DefaultPaymentMethods, OnlyIntoAnEmptyTable) {
    const std::vector<FieldInfo> columns = {{"收付款方式", VarType::String}};
    for (const bool isSQL : {false, true}) {
        BookScript empty;
        empty.tables.isSQL(isSQL);
        empty.cnn->Answer(MakeRows(columns, {})).Answer(nullptr).Answer(nullptr);
        EXPECT_TRUE(empty.tables.SetDefaultSFK());
        EXPECT_EQ(empty.cnn->Statements(), corpus::Expected("SetDefaultSFK()", "an empty table"));

        BookScript filled;
        filled.tables.isSQL(isSQL);
        filled.cnn->Answer(MakeRows(columns, {{"支票"}}));
        EXPECT_TRUE(filled.tables.SetDefaultSFK());
        EXPECT_EQ(filled.cnn->Statements(), corpus::Expected("SetDefaultSFK()", "a table with rows"));
    }
    BookScript countUnknown;
    const auto rows = MakeRows(columns, {{"支票"}});
    rows->ReportCount(-1);
    countUnknown.cnn->Answer(rows);
    EXPECT_TRUE(countUnknown.tables.SetDefaultSFK());
    EXPECT_EQ(countUnknown.cnn->Statements(), corpus::Expected("SetDefaultSFK()", "a table with rows"))
        << "a row is a row";
}

TEST(DefaultPaymentMethods, FalseAfterAnyError) {
    for (const int failing : {1, 2, 3}) {
        BookScript book;
        book.cnn->FailAt(failing);
        EXPECT_FALSE(book.tables.SetDefaultSFK());
        EXPECT_EQ(book.cnn->Statements().size(), static_cast<std::size_t>(failing));
        EXPECT_TRUE(book.Messages().empty());
    }
    CTables unconnected;
    EXPECT_FALSE(unconnected.SetDefaultSFK());
}

TEST(Clearing, OnlyCostBillsTrapErrors) {
    for (const int failing : {1, 2}) {
        const auto statements = static_cast<std::size_t>(failing);
        BookScript inbound, outbound, cost;
        for (BookScript* each : {&inbound, &outbound, &cost}) each->cnn->FailAt(failing);
        EXPECT_EQ(FailureOf([&] { inbound.tables.ClearInputRecs(); }), kRefused);
        EXPECT_EQ(inbound.cnn->Statements().size(), statements);
        EXPECT_EQ(FailureOf([&] { outbound.tables.ClearOutputRecs(); }), kRefused);
        EXPECT_EQ(outbound.cnn->Statements().size(), statements);
        EXPECT_FALSE(cost.tables.ClearCostRecs());
        EXPECT_EQ(cost.cnn->Statements().size(), statements);
    }
    CTables unconnected;
    EXPECT_EQ(FailureOf([&] { unconnected.ClearInputRecs(); }), 91);
    EXPECT_EQ(FailureOf([&] { unconnected.ClearOutputRecs(); }), 91);
    EXPECT_FALSE(unconnected.ClearCostRecs());
}

TEST(BalanceMonth, PassesErrorsOnAndLeavesItsArgumentAlone) {
    BookScript book;
    book.cnn->FailAt(1);
    std::int16_t month = 3;
    EXPECT_EQ(FailureOf([&] { book.tables.SetBnCurrentDate(2005, month); }), kRefused);
    EXPECT_TRUE(book.tables.SetBnCurrentDate(2005, month));
    EXPECT_EQ(month, 3);
}

}  // namespace
}  // namespace kpTables::test
