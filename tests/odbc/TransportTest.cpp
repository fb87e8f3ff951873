// What the engine promises of any server: the same tests on each database that has a driver here.
#include <gtest/gtest.h>

#include <chrono>
#include <cmath>

#include "Backend.h"
#include "kpTables/CTables.h"
#include "kpTables/Convert.h"
#include "kpTables/Error.h"
#include "kpTables/Transaction.h"

namespace kpTables {
namespace {

using test::Code;
using test::NumberOf;
using test::Refused;
using test::RowsOf;
using test::ValueOf;

class Odbc : public testing::TestWithParam<test::Backend> {
protected:
    Odbc() : database(GetParam()), book(database.Open()) { database.MakeTables(*book); }

    /// Adds a row through a recordset and answers its counter.
    static std::int32_t Add(Book& to, const std::string& name, Currency amount, double price) {
        const auto rows = to.Open("T", SourceKind::Table);
        rows->AddNew();
        rows->Fields("名称").SetValue(name);
        rows->Fields("金额").SetValue(amount);
        rows->Fields("单价").SetValue(price);
        rows->Update();
        const auto id = CLng(rows->Fields("id").Value());
        rows->Close();
        return id;
    }

    test::OdbcDatabase database;
    BookPtr book;
};

INSTANTIATE_TEST_SUITE_P(, Odbc, testing::ValuesIn(test::Backends()), [](const auto& each) { return each.param.name; });

const std::string kRare = "𠮷野家 𝄞 é €";

std::string LongText() {
    std::string text;
    for (int i = 0; i < 30000; ++i) text += i % 3 == 0 ? "水泥" : i % 3 == 1 ? "𠮷" : "x";
    return text;
}

TEST_P(Odbc, ValuesComeBack) {
    const Date moment = *Date::ParseIso("2004-03-07 13:05:09");
    const std::string memo = LongText();
    const auto rows = book->Open("T", SourceKind::Table);
    rows->AddNew();
    rows->Fields("名称").SetValue(kRare);
    rows->Fields("金额").SetValue(Currency::FromDecimalText("12345.6789"));
    rows->Fields("单价").SetValue(0.1);
    rows->Fields("数").SetValue(-2147483647);
    rows->Fields("日期").SetValue(moment);
    rows->Fields("标志").SetValue(true);
    rows->Fields("说明").SetValue(memo);
    rows->Update();
    rows->AddNew();
    rows->Fields("名称").SetValue("");
    rows->Fields("数").SetValue(Variant::Null());
    rows->Update();
    rows->Close();

    const auto read = book->Execute("SELECT * FROM T ORDER BY id");
    ASSERT_EQ(read->RecordCount(), 2);
    EXPECT_EQ(Text(read->Fields("名称").Value()), kRare);
    EXPECT_EQ(read->Fields("金额").Type(), GetParam().amountType);
    EXPECT_EQ(Text(read->Fields("金额").Value()), "12345.6789");
    EXPECT_EQ(CDbl(read->Fields("单价").Value()), 0.1);
    EXPECT_EQ(CLng(read->Fields("数").Value()), -2147483647);
    EXPECT_EQ(read->Fields("日期").Type(), VarType::Date);
    EXPECT_EQ(CDate(read->Fields("日期").Value()).ToIso(), "2004-03-07 13:05:09");
    EXPECT_EQ(read->Fields("标志").Type(), GetParam().flagType);
    EXPECT_EQ(CLng(read->Fields("标志").Value()), -1);
    EXPECT_EQ(Text(read->Fields("说明").Value()), memo);
    read->MoveNext();
    EXPECT_EQ(Text(read->Fields("名称").Value()), "");
    for (const char* name : {"金额", "单价", "数", "日期", "说明"})
        EXPECT_TRUE(read->Fields(name).Value().IsNull()) << name;
}

TEST_P(Odbc, AmountsPassThroughNoDouble) {
    if (GetParam().amountType != VarType::Currency) GTEST_SKIP() << "its driver describes amounts as doubles";
    // 2^53 ten-thousandths and more, which a double would round.
    const char* const amounts[] = {"922337203685477.5807", "-922337203685477.5808", "900719925474.0993", "-0.0001"};
    for (const char* amount : amounts) Add(*book, "a", Currency::FromDecimalText(amount), 0);
    const auto read = book->Execute("SELECT 金额 FROM T ORDER BY id");
    for (const char* amount : amounts) {
        EXPECT_EQ(Text(read->GetValue(0)), amount);
        read->MoveNext();
    }
}

TEST_P(Odbc, DoublesComeBackToTheLastBit) {
    const double values[] = {1.0 / 3, 2.0 / 3, 1e-300, 123456789.123456789, std::nextafter(1.0, 2.0)};
    for (const double value : values) Add(*book, "d", {}, value);
    const auto read = book->Execute("SELECT 单价 FROM T ORDER BY id");
    for (const double value : values) {
        if (GetParam().exactDoubles)
            EXPECT_EQ(CDbl(read->GetValue(0)), value);
        else
            EXPECT_NEAR(CDbl(read->GetValue(0)), value, std::abs(value) * 1e-14);
        read->MoveNext();
    }
}

TEST_P(Odbc, CountersAreReadBack) {
    EXPECT_EQ(Add(*book, "甲", {}, 1), 1);
    EXPECT_EQ(Add(*book, "乙", {}, 2), 2);
    EXPECT_EQ(ValueOf(*book, "SELECT COUNT(*) FROM T"), "2");
}

TEST_P(Odbc, ADefaultShowsInANewRow) {
    const auto rows = book->Open("T", SourceKind::Table);
    rows->AddNew();
    EXPECT_EQ(CLng(rows->Fields("数").Value()), 7);
    rows->Fields("名称").SetValue("甲");
    rows->Update();
    rows->Close();
    EXPECT_EQ(ValueOf(*book, "SELECT 数 FROM T"), "7");
}

TEST_P(Odbc, RowsAreFoundSortedAndChanged) {
    for (const char* name : {"水泥", "钢材", "木材"}) Add(*book, name, Currency::FromLong(1), 1.0 / 3);
    const auto rows = book->Open("Select * From T Where id>0", SourceKind::Text);
    EXPECT_EQ(rows->RecordCount(), 3);
    rows->Find("名称='木材'");
    EXPECT_EQ(rows->AbsolutePosition(), 3);
    rows->Fields("单价").SetValue(2.0 / 3);
    rows->Update();
    rows->Fields("名称").SetValue("红木");
    rows->Fields("金额").SetValue(Variant::Null());
    rows->Update();
    rows->Sort("名称");
    EXPECT_EQ(Text(rows->Fields("名称").Value()), "钢材");
    rows->Sort("id DESC");
    EXPECT_EQ(Text(rows->Fields("名称").Value()), "红木");
    rows->Close();
    EXPECT_EQ(RowsOf(*book, "SELECT 名称,金额,单价 FROM T ORDER BY id"),
              "水泥|1|0.333333333333333 / 钢材|1|0.333333333333333 / 红木|Null|0.666666666666667");
}

TEST_P(Odbc, RowsAddedBeforeTheFetchStandBehindTheOthers) {
    Add(*book, "甲", {}, 1);
    const auto rows = book->Open("T", SourceKind::Table);
    for (const char* name : {"乙", "丙"}) {
        rows->AddNew();
        rows->Fields("名称").SetValue(name);
        rows->Update();
    }
    EXPECT_EQ(rows->RecordCount(), 3);
    EXPECT_EQ(rows->AbsolutePosition(), 3);
    rows->Fields("名称").SetValue("丁");
    rows->MoveFirst();
    std::string names;
    for (; !rows->Eof(); rows->MoveNext()) names += Text(rows->Fields("名称").Value());
    EXPECT_EQ(names, "甲乙丁");
    rows->Close();
    EXPECT_EQ(RowsOf(*book, "SELECT 名称 FROM T ORDER BY id"), "甲 / 乙 / 丁");
}

TEST_P(Odbc, ARowThatSomebodyElseChangedIsNotOverwritten) {
    Add(*book, "甲", Currency::FromLong(1), 1.0 / 3);
    Add(*book, "乙", Currency::FromLong(2), 2);
    const auto rows = book->Open("T", SourceKind::Table);
    rows->MoveFirst();
    const BookPtr other = database.Open();
    other->Execute("UPDATE T SET 单价=5 WHERE id=1");
    rows->Fields("金额").SetValue(Currency::FromLong(9));
    const auto error = Refused([&] { rows->Update(); });
    EXPECT_NE(error->Description().find("has been changed"), std::string::npos) << error->Description();
    rows->Close();
    EXPECT_EQ(RowsOf(*book, "SELECT 金额,单价 FROM T ORDER BY id"), "1|5 / 2|2");

    const auto again = book->Open("Select * From T Where id=2", SourceKind::Text);
    again->MoveFirst();
    other->Execute("DELETE FROM T WHERE id=2");
    again->Fields("名称").SetValue("丙");
    EXPECT_NE(Refused([&] { again->Update(); })->Description().find("deleted"), std::string::npos);
    again->Close();
    EXPECT_EQ(ValueOf(*book, "SELECT COUNT(*) FROM T"), "1");
}

TEST_P(Odbc, WithoutAKeyAllValuesTellARow) {
    book->Execute("INSERT INTO K (编号,数,单价) VALUES (1,1,0.1)");
    book->Execute("INSERT INTO K (编号,数,单价) VALUES (2,2,0.2)");
    book->Execute("INSERT INTO K (编号,数,单价) VALUES (2,2,0.2)");
    book->Execute("INSERT INTO K (编号) VALUES (3)");
    const auto rows = book->Open("Select * From K", SourceKind::Text);
    rows->Find("编号=1");
    rows->Fields("单价").SetValue(1.0 / 3);
    rows->Update();
    rows->Fields("数").SetValue(11);
    rows->Update();
    rows->Find("编号=3");
    rows->Fields("数").SetValue(33);
    rows->Update();
    rows->MoveFirst();
    rows->Find("编号=2");
    rows->Fields("数").SetValue(22);
    EXPECT_NE(Refused([&] { rows->Update(); })->Description().find("no key"), std::string::npos);
    rows->Close();
    EXPECT_EQ(RowsOf(*book, "SELECT 编号,数 FROM K ORDER BY 编号"), "1|11 / 2|2 / 2|2 / 3|33");
}

TEST_P(Odbc, TransactionsAreKeptOrUndone) {
    {
        Transaction transaction(*book);
        Add(*book, "甲", {}, 1);
    }
    EXPECT_EQ(ValueOf(*book, "SELECT COUNT(*) FROM T"), "0");
    {
        Transaction transaction(*book);
        Add(*book, "乙", {}, 1);
        book->Execute("UPDATE T SET 数=8");
        EXPECT_EQ(book->RecordsAffected(), 1);
        transaction.Commit();
    }
    EXPECT_EQ(RowsOf(*database.Open(), "SELECT 名称,数 FROM T"), "乙|8");
    EXPECT_THROW(book->CommitTrans(), DatabaseError);
    EXPECT_THROW(book->RollbackTrans(), DatabaseError);
}

TEST_P(Odbc, ATransactionInsideATransactionIsALevel) {
    EXPECT_EQ(book->BeginTrans(), 1);
    if (GetParam().dbms == "ACCESS") {
        // Without savepoints, a level that is undone undoes all.
        book->Execute("INSERT INTO K (编号) VALUES (1)");
        EXPECT_EQ(book->BeginTrans(), 2);
        book->Execute("INSERT INTO K (编号) VALUES (2)");
        book->CommitTrans();
        book->CommitTrans();
        EXPECT_EQ(RowsOf(*database.Open(), "SELECT 编号 FROM K ORDER BY 编号"), "1 / 2");
        book->BeginTrans();
        book->Execute("DELETE FROM K");
        book->BeginTrans();
        book->RollbackTrans();
        EXPECT_NE(Refused([&] { book->Execute("DELETE FROM K"); })->Description().find("roll it back"),
                  std::string::npos);
        EXPECT_THROW(book->CommitTrans(), DatabaseError);
        book->RollbackTrans();
        EXPECT_EQ(ValueOf(*database.Open(), "SELECT COUNT(*) FROM K"), "2");
        return;
    }
    book->Execute("INSERT INTO K (编号) VALUES (1)");
    EXPECT_EQ(book->BeginTrans(), 2);
    book->Execute("INSERT INTO K (编号) VALUES (2)");
    book->RollbackTrans();
    EXPECT_EQ(book->BeginTrans(), 2);
    book->Execute("INSERT INTO K (编号) VALUES (3)");
    EXPECT_EQ(book->BeginTrans(), 3);
    book->Execute("INSERT INTO K (编号) VALUES (4)");
    book->CommitTrans();
    book->CommitTrans();
    book->CommitTrans();
    EXPECT_EQ(RowsOf(*database.Open(), "SELECT 编号 FROM K ORDER BY 编号"), "1 / 3 / 4");
}

TEST_P(Odbc, AFailedStatementLeavesTheTransaction) {
    Transaction transaction(*book);
    book->Execute("INSERT INTO K (编号) VALUES (1)");
    EXPECT_THROW(book->Execute("INSERT INTO Nowhere (编号) VALUES (1)"), DatabaseError);
    book->Execute("INSERT INTO K (编号) VALUES (2)");
    transaction.Commit();
    EXPECT_EQ(RowsOf(*database.Open(), "SELECT 编号 FROM K ORDER BY 编号"), "1 / 2");
}

TEST_P(Odbc, AServerThatRollsBackByItselfIsNoticed) {
    if (GetParam().dbms != "Microsoft SQL Server") GTEST_SKIP() << "others are not asked whether they have";
    const BookPtr fragile = OpenBook(database.Url() + ";Fragile=1");
    fragile->BeginTrans();
    fragile->Execute("INSERT INTO K (编号) VALUES (1)");
    EXPECT_THROW(fragile->Execute("INSERT INTO Nowhere (编号) VALUES (1)"), DatabaseError);
    // Without the question, this would be in a new transaction, and saved without the first row.
    EXPECT_NE(Refused([&] { fragile->Execute("INSERT INTO K (编号) VALUES (2)"); })->Description().find("roll it back"),
              std::string::npos);
    EXPECT_THROW(fragile->CommitTrans(), DatabaseError);
    fragile->RollbackTrans();
    fragile->Execute("INSERT INTO K (编号) VALUES (3)");
    EXPECT_EQ(RowsOf(*book, "SELECT 编号 FROM K"), "3");
}

TEST_P(Odbc, RecordsetsWriteUntilAnotherChangeOrClose) {
    const auto rows = book->Open("K", SourceKind::Table);
    rows->AddNew();
    rows->Fields("编号").SetValue(1);
    rows->Update();
    book->Execute("INSERT INTO K (编号) VALUES (2)");
    EXPECT_EQ(ValueOf(*database.Open(), "SELECT COUNT(*) FROM K"), "2");
    rows->AddNew();
    rows->Fields("编号").SetValue(3);
    rows->Update();
    book->FlushRows();
    EXPECT_EQ(ValueOf(*database.Open(), "SELECT COUNT(*) FROM K"), "3");
    EXPECT_EQ(rows->RecordCount(), 3);
    rows->Close();
}

TEST_P(Odbc, NamedValuesAreBound) {
    const NamedValues values = {{"number", 1},
                                {"name", kRare},
                                {"amount", Currency::FromDecimalText("0.0001")},
                                {"day", *Date::ParseIso("2004-03-07")},
                                {"nothing", Variant::Null()}};
    book->Execute("INSERT INTO T (数,名称,金额,日期,说明) VALUES (@number,@name,@amount,@day,@nothing)", values);
    EXPECT_EQ(book->RecordsAffected(), 1);
    const auto read = book->Execute("SELECT 名称,'@name' AS a FROM T WHERE 名称=:name", values);
    ASSERT_EQ(read->RecordCount(), 1);
    EXPECT_EQ(Text(read->GetValue(0)), kRare);
    EXPECT_EQ(Text(read->GetValue(1)), "@name");
}

TEST_P(Odbc, TablesAreDescribed) {
    for (const TableInfo& table : book->Tables()) {
        if (table.name != "T" && table.name != "t") continue;
        ASSERT_EQ(table.columns.size(), 8u);
        // SQLite's driver tells counters of results only.
        EXPECT_EQ(table.columns[0].counter, GetParam().driver != "sqlite");
        EXPECT_TRUE(table.columns[0].key);
        EXPECT_EQ(table.columns[1].name, "名称");
        EXPECT_EQ(table.columns[1].type, VarType::String);
        EXPECT_EQ(table.columns[4].type, VarType::Long);
        EXPECT_TRUE(table.columns[4].defaultValue.Is(7));
        return;
    }
    ADD_FAILURE() << "no table T";
}

TEST_P(Odbc, RowsAreAppended) {
    const auto appender = book->AppendTo("T", {"名称", "数"});
    appender->Append({"甲", 1});
    appender->Append({Variant::Null(), Variant::Missing()});
    EXPECT_EQ(RowsOf(*book, "SELECT 名称,数 FROM T ORDER BY id"), "甲|1 / Null|7");
    EXPECT_EQ(NumberOf([&] { appender->Append({"乙", "1"}); }), Code(ErrorNumber::TypeMismatch));
    EXPECT_EQ(NumberOf([&] { book->AppendTo("T", {"没有"}); }), Code(ErrorNumber::ItemNotFound));
    EXPECT_EQ(NumberOf([&] { book->AppendTo("Nowhere", {"x"}); }), Code(DatabaseErrorNumber::UnknownTable));
}

TEST_P(Odbc, AResultBeyondTheLimitsIsRefused) {
    for (int i = 0; i < 4; ++i) book->Execute("INSERT INTO K (编号) VALUES (1)");
    BookOptions options;
    options.maxRows = 3;
    EXPECT_EQ(NumberOf([&] { database.Open(options)->Execute("SELECT * FROM K"); }),
              Code(DatabaseErrorNumber::ResultTooLarge));
    EXPECT_EQ(database.Open()->Execute("SELECT * FROM K")->RecordCount(), 4);
}

TEST_P(Odbc, AReadOnlyBookIsNotChanged) {
    BookOptions options;
    options.readOnly = true;
    const BookPtr reader = database.Open(options);
    EXPECT_EQ(ValueOf(*reader, "SELECT COUNT(*) FROM K"), "0");
    EXPECT_EQ(NumberOf([&] { reader->Execute("INSERT INTO K (编号) VALUES (1)"); }),
              Code(DatabaseErrorNumber::NotPermitted));
    const auto rows = reader->Open("K", SourceKind::Table);
    rows->AddNew();
    EXPECT_EQ(NumberOf([&] { rows->Update(); }), Code(DatabaseErrorNumber::NotPermitted));
}

TEST_P(Odbc, ErrorsTellTheDriversWordsAndState) {
    const auto error = Refused([&] { book->Execute("SELECT * FROM Nowhere"); });
    EXPECT_NE(error->Description().find("SQLSTATE"), std::string::npos);
    EXPECT_NE(error->Description().find("owhere"), std::string::npos) << error->Description();
    EXPECT_EQ(error->Statement(), "SELECT * FROM Nowhere");
    // The driver of SQLite gives one state to all errors.
    if (GetParam().driver != "sqlite") {
        EXPECT_EQ(error->Number(), Code(DatabaseErrorNumber::UnknownTable));
    }
    EXPECT_EQ(NumberOf([&] { book->Open("Nowhere", SourceKind::Table); }), Code(DatabaseErrorNumber::UnknownTable));
}

TEST_P(Odbc, JoinsAndGroupsAreReadOnly) {
    Add(*book, "甲", {}, 1);
    const auto rows = book->Open("Select COUNT(*) As n From T", SourceKind::Text);
    EXPECT_EQ(CLng(rows->Fields("n").Value()), 1);
    EXPECT_EQ(NumberOf([&] { rows->Fields("n").SetValue(2); }), Code(ErrorNumber::NotUpdatable));
}

/// What some methods answer and leave, of those whose texts every database here can read.
std::string AnswersOf(const BookPtr& book, bool isSQL) {
    for (const char* values :
         {"2003,2,1,2,5,50.5", "2003,3,1,2,6,60.0001", "2003,3,5,2,7,0.07", "2003,4,1,3,8,8", "2004,1,1,2,0,0"})
        book->Execute("INSERT INTO 仓库余额表 (年份,月份,pdID,dpID,上期库存数量,上期库存金额) VALUES (" +
                      std::string(values) + ")");
    CTables tables;
    tables.Cnn(book);
    tables.isSQL(isSQL);
    std::string answers = RowsOf(*tables.rs月份列表(true)) + "; " + RowsOf(*tables.rs月份列表(false)) + "; ";
    const auto balance = tables.rs仓库余额表(2, 3);
    answers += std::to_string(balance->RecordCount()) + "; ";
    balance->Find("pdID=5");
    balance->Fields("上期库存金额").SetValue(Currency::FromDecimalText("123.4567"));
    balance->Update();
    balance->AddNew();
    balance->Fields("pdID").SetValue(9);
    balance->Fields("dpID").SetValue(2);
    balance->Fields("月份").SetValue(3);
    balance->Fields("年份").SetValue(2003);
    balance->Update();
    balance->Close();
    tables.Del仓库余额表(3, 4);
    return answers +
           RowsOf(*book,
                  "SELECT 年份,月份,pdID,dpID,上期库存数量,上期库存金额 FROM 仓库余额表 ORDER BY 年份,月份,pdID");
}

TEST_P(Odbc, MethodsAnswerAsOnAFile) {
    if (GetParam().driver.empty()) GTEST_SKIP() << "a real server's book has a test of its own";
    if (GetParam().driver != "kptest") {
        const std::string& whole = GetParam().whole;
        book->Execute("CREATE TABLE 仓库余额表 (年份 " + whole + ", 月份 " + whole + ", pdID " + whole + ", dpID " +
                      whole + ", 上期库存数量 " + GetParam().real + " DEFAULT 0, 上期库存金额 " + GetParam().amount +
                      " DEFAULT 0)");
    }
    const std::string onFile = AnswersOf(CreateBook("memory:"), false);
    EXPECT_EQ(AnswersOf(book, GetParam().dbms == "Microsoft SQL Server"), onFile);
    EXPECT_NE(onFile.find("123.4567"), std::string::npos);
}

TEST_P(Odbc, ARunningStatementIsInterrupted) {
    const std::string endless =
        GetParam().driver == "postgres"
            ? "SELECT pg_sleep(60)"
            : "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n) SELECT COUNT(*) FROM n";
    if (GetParam().driver == "kptest" || GetParam().driver.empty())
        GTEST_SKIP() << "the test's driver cannot cancel, and what a real server takes long for is not known";
    const auto begin = std::chrono::steady_clock::now();
    BookOptions options;
    options.interrupted = [&] { return std::chrono::steady_clock::now() - begin > std::chrono::milliseconds(200); };
    const BookPtr impatient = database.Open(options);
    EXPECT_THROW(impatient->Execute(endless), DatabaseError);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(20));
}

}  // namespace
}  // namespace kpTables
