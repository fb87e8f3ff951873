// Bill dates, and the lists and sums by a free-text column.
#include <gtest/gtest.h>

#include "HandsOut.h"
#include "support/Failure.h"

namespace kpTables::test {
namespace {

/// A connection that answers rows in turn.
std::shared_ptr<ScriptedConnection> Answering(const std::vector<RecordsetPtr>& answers) {
    const auto cnn = std::make_shared<ScriptedConnection>();
    for (const auto& each : answers) cnn->Answer(each);
    return cnn;
}

/// Bill dates, given in ISO form.
std::shared_ptr<ScriptedRecordset> Days(const std::vector<const char*>& days) {
    Rows rows;
    for (const char* day : days) rows.push_back({*Date::ParseIso(day)});
    return MakeRows({{"日期", VarType::Date}}, rows);
}

std::vector<std::string> TextsOf(Recordset& rows) {
    std::vector<std::string> texts;
    for (; !rows.Eof(); rows.MoveNext()) texts.push_back(Shown(rows.GetValue(0)));
    return texts;
}

TEST(BillDates, JetSortsThemItself) {
    const auto days = Days({"2004-03-07", "2004-03-01"});
    const auto cnn = Answering({days});
    CTables tables;
    tables.Cnn(cnn);
    const auto answer = tables.rs单据日期列表();
    EXPECT_EQ(cnn->Statements(), corpus::Expected("rs单据日期列表()"));
    EXPECT_EQ(answer, days);
    EXPECT_EQ(answer->CacheSize(), 200);
    EXPECT_EQ(TextsOf(*answer), (std::vector<std::string>{"2004-3-7", "2004-3-1"}));
}

TEST(BillDates, SqlServerIsAskedTwiceAndTheSecondAnswerSorted) {
    const auto unread = Days({"2004-01-01"});
    const auto days = Days({"2004-03-10", "2004-03-09", "2003-12-31"});
    const auto cnn = Answering({unread, days});
    CTables tables;
    tables.Cnn(cnn);
    tables.isSQL(true);
    const auto answer = tables.rs单据日期列表();
    EXPECT_EQ(cnn->Statements(), corpus::Expected("rs单据日期列表()", "", true));
    EXPECT_EQ(answer, days);
    EXPECT_EQ(answer->CacheSize(), 200);
    EXPECT_EQ(TextsOf(*answer), (std::vector<std::string>{"2003-12-31", "2004-3-9", "2004-3-10"}));
}

TEST(BillDates, EveryErrorReachesTheCaller) {
    struct Case {
        bool isSQL;
        int failing;
    };
    for (const Case& each : {Case{false, 1}, Case{true, 1}, Case{true, 2}}) {
        SCOPED_TRACE(each.failing);
        const auto cnn = std::make_shared<ScriptedConnection>();
        cnn->FailAt(each.failing);
        CTables tables;
        tables.isSQL(each.isSQL);
        EXPECT_EQ(FailureOf([&] { tables.rs单据日期列表(); }), 91);
        tables.Cnn(cnn);
        EXPECT_EQ(FailureOf([&] { tables.rs单据日期列表(); }), kRefused);
        EXPECT_EQ(cnn->Statements().size(), static_cast<std::size_t>(each.failing));
    }
}

struct NamedList {
    const char* name;
    RecordsetPtr (CTables::*method)(InOut<std::string>, InOut<std::int16_t>, InOut<std::int32_t>);
};
const NamedList kLists[] = {
    {"rs入库扩展列表", &CTables::rs入库扩展列表},
    {"rs出库扩展列表", &CTables::rs出库扩展列表},
    {"rs出库扩展合计", &CTables::rs出库扩展合计},
};

TEST(FreeTextColumns, AnUnknownColumnHasNoRowsAndSendsNothing) {
    for (const auto& each : kLists) {
        for (const char* column : {"", "数量", "经手", "手人", "人", "、", "经手人、交接人", "货位 ", " 货位"}) {
            SCOPED_TRACE(std::string(each.name) + " <" + column + ">");
            const auto cnn = std::make_shared<ScriptedConnection>();
            CTables tables;
            tables.Cnn(cnn);
            std::string who = column;
            EXPECT_EQ((tables.*each.method)(who, 3, 1), nullptr);
            EXPECT_EQ(who, column);
            EXPECT_TRUE(cnn->Statements().empty());
        }
    }
}

TEST(FreeTextColumns, HandOutTheConnectionsRowsOrItsErrors) {
    for (const auto& each : kLists) {
        const auto run = [&](CTables& t) { return (t.*each.method)("经手人", 3, 1); };
        ExpectHandsOut(each.name, run);
        SCOPED_TRACE(each.name);
        CTables tables;
        EXPECT_EQ(FailureOf([&] { run(tables); }), 91);
        const auto cnn = std::make_shared<ScriptedConnection>();
        cnn->FailAt(1);
        tables.Cnn(cnn);
        EXPECT_EQ(FailureOf([&] { run(tables); }), kRefused);
    }
}

}  // namespace
}  // namespace kpTables::test
