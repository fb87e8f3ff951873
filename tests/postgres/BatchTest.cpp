// Rows that are gathered and sent together.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "kpTables/Book.h"
#include "kpTables/Convert.h"
#include "kpTables/Error.h"
#include "kpTables/Transaction.h"
#include "sqlite/TestBook.h"

namespace kpTables {
namespace {

using namespace test;

/// A row of Nulls and rows at the ends of what a column of each type can hold.
std::vector<std::vector<Variant>> RowsOfEveryType() {
    const std::string longText(300'000, 'y');
    return {{true, std::int16_t{-32768}, std::int32_t{-2147483647 - 1}, 0.1, Currency::FromScaled(INT64_MAX),
             Currency::FromScaled(12'345'600), *Date::ParseIso("2004-03-07 13:05:09"), "it's 张三  ", longText},
            {false, std::int16_t{32767}, std::int32_t{2147483647}, -1e300, Currency::FromScaled(INT64_MIN),
             Currency::FromScaled(-100), *Date::ParseIso("1899-12-29 06:00:00"), "", ""},
            {Variant::Null(), Variant::Null(), Variant::Null(), Variant::Null(), Variant::Null(), Variant::Null(),
             Variant::Null(), Variant::Null(), Variant::Null()},
            {true, std::int16_t{0}, std::int32_t{0}, 4.9e-324, Currency::FromScaled(1), Currency::FromScaled(0),
             *Date::ParseIso("9999-12-31"), "{NULL,\"\\", "{}"},
            {true, std::int16_t{1}, std::int32_t{1}, 0.0, Currency::FromScaled(-1),
             Currency::FromScaled(99'999'999'900), *Date::ParseIso("0100-01-01"), "\t\n", "1"}};
}

void ExpectRows(Recordset& read, const std::vector<std::vector<Variant>>& values) {
    for (const auto& row : values) {
        ASSERT_FALSE(read.Eof());
        for (std::size_t i = 0; i < row.size(); ++i)
            EXPECT_TRUE(read.GetValue(static_cast<int>(i)).Is(row[i])) << "column " << i << ": " << Text(row[i]);
        read.MoveNext();
    }
    EXPECT_TRUE(read.Eof());
}

/// A book and another program that has it open.
struct SharedBook {
    SharedBook() {
        book->Execute("CREATE TABLE T (n LONG, x TEXT(20), m MEMO)");
        book->Execute("CREATE TABLE K (k TEXT(10) PRIMARY KEY, n LONG)");
        book->Execute(
            "CREATE TABLE V (b YESNO, s SHORT, l LONG, d DOUBLE, c CURRENCY, e DECIMAL(9,2), t DATETIME, x TEXT(20), m "
            "MEMO)");
        book->Execute("CREATE TABLE C (id COUNTER PRIMARY KEY, k TEXT(10) UNIQUE, n LONG DEFAULT 7)");
    }

    TemporaryDirectory directory;
    std::string path = directory.Book("book");
    BookPtr book = CreateBook(path);
    BookPtr other = OpenBook(path, {.busyTimeout = std::chrono::milliseconds(20)});
};

class Batches : public testing::Test {
protected:
    static void SetUpTestSuite() { shared = std::make_unique<SharedBook>(); }
    static void TearDownTestSuite() { shared.reset(); }

    void SetUp() override {
        for (const char* table : {"T", "K"}) book->Execute(std::string("Delete From ") + table);
        book->Execute("TRUNCATE TABLE C");
    }
    RecordsetPtr Table(std::string_view name = "T") { return book->Open(name, SourceKind::Table); }
    std::string Value(std::string_view select) { return ValueOf(*book, select); }
    /// n: their numbers; T's rows tell the order in which they were added.
    static void Add(Recordset& rows, int from, int count) {
        for (int n = from; n < from + count; ++n) {
            rows.AddNew();
            rows.Fields("n").SetValue(n);
            rows.Update();
        }
    }
    static void AddKey(Recordset& rows, const std::string& key, int n) {
        rows.AddNew();
        rows.Fields("k").SetValue(key);
        rows.Fields("n").SetValue(n);
        rows.Update();
    }
    /// The numbers of T's rows in their order, when they count up from 0; else what is wrong.
    std::string Numbers() {
        const RecordsetPtr rows = book->Execute("Select n From T");
        std::int32_t expected = 0;
        for (; !rows->Eof(); rows->MoveNext()) {
            const Variant number = rows->GetValue(0);
            if (number.IsNull() || CLng(number) != expected) return Text(number) + " instead of " + Text(expected);
            ++expected;
        }
        return std::to_string(expected);
    }

    static inline std::unique_ptr<SharedBook> shared;
    const BookPtr& book = shared->book;
    const BookPtr& other = shared->other;
};

TEST_F(Batches, OfEverySizeAroundTheBoundaries) {
    for (const int count : {1, 2, 999, 1000, 1001, 1002, 2001, 2002}) {
        book->Execute("Delete From T");
        const RecordsetPtr rows = Table();
        Add(*rows, 0, count);
        EXPECT_EQ(rows->RecordCount(), count);
        rows->Close();
        EXPECT_EQ(Numbers(), std::to_string(count));

        const RecordsetPtr all = Table();
        int row = 0;
        for (; !all->Eof(); all->MoveNext()) all->Fields("x").SetValue("x" + std::to_string(row++));
        all->Close();
        EXPECT_EQ(row, count);
        EXPECT_EQ(Value("Select Count(*) From T Where x='x' & n"), std::to_string(count));
    }
}

TEST_F(Batches, KeepEveryTypeAsItIs) {
    book->Execute("Delete From V");
    const auto values = RowsOfEveryType();
    const RecordsetPtr rows = Table("V");
    for (const auto& row : values) {
        rows->AddNew();
        for (std::size_t i = 0; i < row.size(); ++i) rows->SetValue(static_cast<int>(i), row[i]);
        rows->Update();
    }
    rows->Close();
    ExpectRows(*book->Execute("Select * From V"), values);
    // The same values once more, as changes.
    book->Execute("Update V Set b=0, s=5, l=5, d=5, c=5, e=5, t=#2000-1-1#, x='-', m='-'");
    const RecordsetPtr changed = Table("V");
    for (const auto& row : values) {
        for (std::size_t i = 0; i < row.size(); ++i) changed->SetValue(static_cast<int>(i), row[i]);
        changed->MoveNext();
    }
    changed->Close();
    ExpectRows(*book->Execute("Select * From V"), values);
}

TEST_F(Batches, WriteOfEachRowOnlyWhatWasSet) {
    const RecordsetPtr rows = Table();
    Add(*rows, 0, 9);
    rows->Close();
    book->Execute("Update T Set x='old', m='old'");
    const RecordsetPtr all = Table();
    for (int n = 0; !all->Eof(); all->MoveNext(), ++n) {
        if (n % 3 == 0) all->Fields("x").SetValue("new");
        if (n % 2 == 0) all->Fields("m").SetValue("new");
    }
    all->Close();
    EXPECT_EQ(
        RowsOf(*book, "Select n,x,m From T"),
        "0|new|new / 1|old|old / 2|old|new / 3|new|old / 4|old|new / 5|old|old / 6|new|new / 7|old|old / 8|old|new");
}

TEST_F(Batches, AreSentBeforeAnyOtherStatement) {
    const RecordsetPtr rows = Table();
    Add(*rows, 0, 5);
    EXPECT_EQ(Numbers(), "5");
    Add(*rows, 5, 5);
    book->Execute("Update T Set x='seen' Where n>=0");
    EXPECT_EQ(book->RecordsAffected(), 10);
    Add(*rows, 10, 5);
    const RecordsetPtr second = Table();
    Add(*second, 15, 5);
    Add(*rows, 20, 5);
    EXPECT_EQ(Table()->RecordCount(), 25);
    Add(*rows, 25, 5);
    EXPECT_EQ(ValueOf(*other, "Select Count(*) From T"), "25");
    book->BeginTrans();
    EXPECT_EQ(ValueOf(*other, "Select Count(*) From T"), "30");
    Add(*rows, 30, 5);
    book->CommitTrans();
    EXPECT_EQ(ValueOf(*other, "Select Count(*) From T"), "35");
    EXPECT_EQ(Numbers(), "35");
}

TEST_F(Batches, KeepWhatStandsBeforeARowThatIsRefused) {
    book->Execute("Insert Into K (k,n) Values ('c',0)");
    for (const bool inTransaction : {false, true}) {
        if (inTransaction) book->BeginTrans();
        const RecordsetPtr rows = Table("K");
        const std::string prefix = inTransaction ? "t" : "r";
        for (const char* key : {"a", "b"}) AddKey(*rows, prefix + key, 1);
        AddKey(*rows, "C", 1);
        AddKey(*rows, prefix + "d", 1);
        const auto error = Refused([&] { rows->Close(); });
        ASSERT_TRUE(error);
        EXPECT_EQ(error->Number(), Code(DatabaseErrorNumber::ConstraintViolated));
        EXPECT_NE(error->Description().find("1 row that was written behind it"), std::string::npos) << error->what();
        EXPECT_EQ(NumberOf([&] { rows->RecordCount(); }), Code(ErrorNumber::ObjectClosed));
        if (inTransaction) book->CommitTrans();
    }
    EXPECT_EQ(RowsOf(*other, "Select k From K Order by k"), "c / ra / rb / ta / tb");
}

TEST_F(Batches, ThatAreRefusedAreToldByTheThousandthRow) {
    book->Execute("Insert Into K (k,n) Values ('500',0)");
    const RecordsetPtr rows = Table("K");
    int written = 0;
    const auto error = Refused([&] {
        for (; written < 3000; ++written) AddKey(*rows, std::to_string(written), written);
    });
    ASSERT_TRUE(error);
    // The first row goes at once, and a thousand behind it together.
    EXPECT_EQ(written, 1000);
    EXPECT_NE(error->Description().find("500 rows that were written behind it"), std::string::npos) << error->what();
    EXPECT_EQ(Value("Select Count(*) From K"), "501");
}

TEST_F(Batches, OfADroppedRecordsetAreKeptOrTold) {
    RecordsetPtr rows = Table();
    Add(*rows, 0, 3);
    rows.reset();
    EXPECT_EQ(ValueOf(*other, "Select Count(*) From T"), "3");
    rows = Table("K");
    for (const char* key : {"a", "b", "b"}) AddKey(*rows, key, 1);
    rows.reset();
    const auto error = Refused([&] { book->FlushRows(); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->Number(), Code(DatabaseErrorNumber::ConstraintViolated));
    book->FlushRows();
    EXPECT_EQ(RowsOf(*book, "Select k From K"), "a / b");
}

TEST_F(Batches, OfATransactionAreRolledBackWithIt) {
    book->BeginTrans();
    const RecordsetPtr rows = Table();
    Add(*rows, 0, 3);
    book->BeginTrans();
    Add(*rows, 3, 3);
    book->RollbackTrans();
    EXPECT_EQ(Numbers(), "3");
    Add(*rows, 3, 3);
    book->BeginTrans();
    Add(*rows, 6, 2);
    book->CommitTrans();
    EXPECT_EQ(Numbers(), "8");
    Add(*rows, 8, 3);
    book->RollbackTrans();
    EXPECT_EQ(Numbers(), "0");
    Add(*Table(), 0, 2);
    EXPECT_EQ(Numbers(), "2");
}

TEST_F(Batches, ARowCanBeWrittenAgainBeforeItWasSent) {
    const RecordsetPtr rows = Table();
    Add(*rows, 0, 3);
    rows->Fields("x").SetValue("a");
    rows->Update();
    rows->Fields("x").SetValue("b");
    rows->Fields("m").SetValue("b");
    rows->Update();
    Add(*rows, 3, 2);
    rows->MoveFirst();
    for (int i = 0; i < 3; ++i) {
        rows->Fields("x").SetValue("c" + std::to_string(i));
        rows->Update();
    }
    rows->MoveNext();
    rows->Fields("x").SetValue("d");
    rows->MoveFirst();
    rows->Fields("m").SetValue("e");
    rows->Close();
    EXPECT_EQ(RowsOf(*book, "Select * From T"), "0|c2|Null / 1|d|Null / 2|b|b / 3|Null|Null / 4|Null|Null");
}

TEST_F(Batches, UniqueKeysAreChangedInTheOrderOfTheRows) {
    const RecordsetPtr added = Table("C");
    for (const char* key : {"a", "b", "c"}) AddKey(*added, key, 1);
    added->Close();
    const RecordsetPtr rows = Table("C");
    rows->Fields("n").SetValue(2);
    rows->MoveNext();
    rows->Fields("n").SetValue(3);
    rows->MoveNext();
    rows->Fields("k").SetValue("x");
    rows->MoveFirst();
    rows->MoveNext();
    rows->Fields("k").SetValue("a");
    EXPECT_EQ(NumberOf([&] { rows->Update(); }), Code(DatabaseErrorNumber::ConstraintViolated));
    rows->Fields("k").SetValue("c");
    rows->Update();
    rows->Close();
    EXPECT_EQ(RowsOf(*book, "Select k,n From C Order by id"), "a|2 / c|3 / x|1");
}

class OtherChanges : public Batches {
protected:
    void SetUp() override {
        Batches::SetUp();
        Add(*Table(), 0, 1500);
    }
    std::string Complaint(const std::function<void()>& call) {
        const auto error = Refused(call);
        return error ? error->Description() : std::string();
    }
};

TEST_F(OtherChanges, AreNotOverwritten) {
    const RecordsetPtr rows = Table();
    ASSERT_FALSE(rows->Eof());
    other->Execute("Update T Set m='theirs' Where n=0 Or n=700");
    rows->Fields("x").SetValue("mine");
    EXPECT_NE(Complaint([&] { rows->Update(); }).find("read it again"), std::string::npos);
    EXPECT_EQ(RowsOf(*other, "Select x,m From T Where n=0"), "Null|theirs");
    rows->Close();

    const RecordsetPtr all = Table();
    ASSERT_FALSE(all->Eof());
    other->Execute("Update T Set m='again' Where n=700");
    const auto change = [&] {
        for (; !all->Eof(); all->MoveNext()) all->Fields("x").SetValue("mine");
    };
    EXPECT_NE(Complaint(change).find("read it again"), std::string::npos);
    all->Close();
    // What was written before it stays.
    EXPECT_EQ(RowsOf(*book, "Select Count(*),Min(n),Max(n) From T Where x='mine'"), "700|0|699");
    EXPECT_EQ(RowsOf(*book, "Select x,m From T Where n=700"), "Null|again");
}

TEST_F(OtherChanges, ThatWereNotSavedYetWhenTheRowsWereReadAreNotOverwritten) {
    other->BeginTrans();
    other->Execute("Update T Set m='theirs' Where n=0");
    const RecordsetPtr rows = Table();
    ASSERT_FALSE(rows->Eof());
    other->CommitTrans();
    rows->Fields("x").SetValue("mine");
    EXPECT_NE(Complaint([&] { rows->Update(); }).find("read it again"), std::string::npos);
    EXPECT_EQ(RowsOf(*other, "Select x,m From T Where n=0"), "Null|theirs");
}

TEST_F(OtherChanges, OfOtherRowsDoNotMatter) {
    const RecordsetPtr rows = Table();
    ASSERT_FALSE(rows->Eof());
    other->Execute("Update T Set m='theirs' Where n>=100");
    for (int n = 0; n < 100; ++n, rows->MoveNext()) rows->Fields("x").SetValue("mine");
    book->FlushRows();
    // A row that was written here may be written again, whatever others have done since.
    other->Execute("Update T Set m='theirs' Where n=200");
    rows->MoveFirst();
    for (int n = 0; n < 100; ++n, rows->MoveNext()) rows->Fields("x").SetValue("again");
    rows->Close();
    EXPECT_EQ(Value("Select Count(*) From T Where x='again' And n<100"), "100");
    EXPECT_EQ(Value("Select Count(*) From T Where m='theirs'"), "1400");
}

TEST_F(OtherChanges, OfARowThatWasAddedHereAreSeen) {
    const RecordsetPtr rows = Table();
    Add(*rows, 1500, 2);
    book->FlushRows();
    other->Execute("Update T Set m='theirs' Where n=1501");
    rows->Fields("x").SetValue("mine");
    EXPECT_NE(Complaint([&] { rows->Update(); }).find("read it again"), std::string::npos);
    EXPECT_EQ(RowsOf(*book, "Select x,m From T Where n=1501"), "Null|theirs");
}

TEST_F(OtherChanges, AreLookedForBehindAnyOtherQuery) {
    EXPECT_EQ(Value("Select Max(n) From T"), "1499");
    const RecordsetPtr rows = Table();
    EXPECT_EQ(Text(rows->Fields("n").Value()), "0");
    EXPECT_EQ(Value("Select Min(n) From T"), "0");
    EXPECT_EQ(Table()->RecordCount(), 1500);
    const RecordsetPtr some = book->Open("Select * From T Where n<3", SourceKind::Text);
    EXPECT_EQ(some->RecordCount(), 3);
}

TEST_F(OtherChanges, ByTheOwnConnectionAreTakenOver) {
    const RecordsetPtr rows = Table();
    ASSERT_FALSE(rows->Eof());
    book->Execute("Update T Set m='own'");
    for (int n = 0; n < 1200; ++n, rows->MoveNext()) rows->Fields("x").SetValue("mine");
    rows->Close();
    EXPECT_EQ(Value("Select Count(*) From T Where x='mine' And m='own'"), "1200");
}

TEST_F(OtherChanges, ADeletedRowIsToldClearly) {
    const RecordsetPtr rows = Table();
    ASSERT_FALSE(rows->Eof());
    other->Execute("Delete From T Where n=3");
    const auto change = [&] {
        for (int n = 0; n < 10; ++n, rows->MoveNext()) rows->Fields("x").SetValue("mine");
        rows->Close();
    };
    EXPECT_NE(Complaint(change).find("deleted"), std::string::npos);
    EXPECT_EQ(Value("Select Count(*) From T Where x='mine'"), "3");
}

class GatheredRows : public Batches {
protected:
    using Refusals = std::vector<std::pair<std::int64_t, std::int32_t>>;
    std::unique_ptr<RowAppender> Appender(std::string_view table, const std::vector<std::string>& columns) {
        auto rows = book->AppendTo(table, columns);
        rows->Gather(
            [this](std::int64_t row, const DatabaseError& error) { refusals.emplace_back(row, error.Number()); });
        return rows;
    }
    Refusals refusals;
};

TEST_F(GatheredRows, HaveTheirCountersInOrder) {
    book->BeginTrans();
    const auto rows = Appender("C", {"id", "k", "n"});
    for (int i = 1; i <= 2500; ++i) {
        // Some values are given and some left to the server.
        const Variant id = i % 1200 == 0 ? Variant(std::int32_t{i + 10'000}) : Variant::Missing();
        rows->Append({id, std::to_string(i), i % 7 == 0 ? Variant(std::int32_t{i}) : Variant::Missing()});
    }
    rows->Flush();
    book->CommitTrans();
    EXPECT_EQ(Value("Select Count(*) From C"), "2500");
    EXPECT_EQ(
        RowsOf(
            *book,
            "Select id,n From C Where k='1' Or k='7' Or k='1199' Or k='1200' Or k='1201' Or k='2400' Or k='2401' Order by id"),
        "1|7 / 7|7 / 1199|7 / 11200|7 / 11201|7 / 12400|7 / 12401|2401");
    EXPECT_EQ(Value("Select Count(*) From C As a Inner Join C As b On b.id=a.id+1 Where Val(b.k)<>Val(a.k)+1"), "0");
    EXPECT_TRUE(refusals.empty());
}

TEST_F(GatheredRows, AreToldWhenTheyAreRefusedAndTheOthersEntered) {
    book->BeginTrans();
    const auto rows = Appender("K", {"k", "n"});
    const auto number = [](int n) { return Variant(std::int32_t{n}); };
    for (int i = 0; i < 1500; ++i) rows->Append({std::to_string(i % 1400), number(i)});
    EXPECT_TRUE(refusals.empty());
    // Another statement sends them.
    EXPECT_EQ(Value("Select Count(*) From K"), "1400");
    ASSERT_EQ(refusals.size(), 100U);
    for (int i = 0; i < 100; ++i)
        EXPECT_EQ(refusals[static_cast<std::size_t>(i)],
                  std::pair(std::int64_t{1400 + i}, Code(DatabaseErrorNumber::ConstraintViolated)));
    EXPECT_EQ(NumberOf([&] { rows->Append({std::string(11, 'x'), number(0)}); }), Code(DatabaseErrorNumber::Overflow));
    rows->Append({"new", number(1)});
    rows->Append({"new", number(2)});
    rows->Flush();
    EXPECT_EQ(refusals.back().first, 1502);
    book->CommitTrans();
    EXPECT_EQ(ValueOf(*other, "Select Count(*) From K"), "1401");
}

TEST_F(GatheredRows, KeepEveryTypeAsItIs) {
    book->Execute("Delete From V");
    const auto values = RowsOfEveryType();
    book->BeginTrans();
    const auto rows = Appender("V", {"b", "s", "l", "d", "c", "e", "t", "x", "m"});
    for (const auto& row : values) rows->Append(row);
    rows->Flush();
    book->CommitTrans();
    EXPECT_TRUE(refusals.empty());
    ExpectRows(*book->Execute("Select * From V"), values);
}

TEST_F(GatheredRows, AreRefusedOneByOneAtTheEndsOfTheirBatches) {
    // Ten thousand rows go together.
    const std::vector<std::int64_t> bad = {0, 1, 5000, 9999, 10'000, 10'001, 19'999, 20'499};
    for (const std::int64_t row : bad) book->Execute("Insert Into K (k) Values ('" + std::to_string(row) + "')");
    book->BeginTrans();
    const auto rows = Appender("K", {"k", "n"});
    for (std::int32_t i = 0; i < 20'500; ++i)
        rows->Append({std::to_string(i), i % 2 == 0 ? Variant(i) : Variant::Null()});
    rows->Flush();
    book->CommitTrans();
    std::vector<std::int64_t> refused;
    for (const auto& [row, number] : refusals) {
        refused.push_back(row);
        EXPECT_EQ(number, Code(DatabaseErrorNumber::ConstraintViolated));
    }
    EXPECT_EQ(refused, bad);
    // Of the even numbers below 20,500, three were refused.
    EXPECT_EQ(RowsOf(*other, "Select Count(*),Count(n),Sum(n) From K"), "20500|10247|105037250");
}

TEST_F(GatheredRows, OfLongTextsGoInSeveralBatches) {
    book->BeginTrans();
    const auto rows = Appender("T", {"n", "m"});
    for (std::int32_t n = 0; n < 40; ++n) rows->Append({n, std::string(100'000, static_cast<char>('a' + n % 26))});
    rows->Flush();
    book->CommitTrans();
    EXPECT_EQ(Numbers(), "40");
    EXPECT_EQ(Value("Select Count(*) From T Where Len(m)=100000 And Left(m,1)=Chr(97+n Mod 26)"), "40");
}

TEST_F(GatheredRows, AreWrittenAtOnceOutsideATransactionAndDroppedWithTheirAppender) {
    const auto number = [](int n) { return Variant(std::int32_t{n}); };
    auto rows = Appender("T", {"n"});
    rows->Append({number(0)});
    EXPECT_EQ(ValueOf(*other, "Select Count(*) From T"), "1");
    book->BeginTrans();
    rows->Append({number(1)});
    rows->Flush();
    rows->Append({number(2)});
    rows.reset();
    book->CommitTrans();
    EXPECT_EQ(Numbers(), "2");
}

TEST_F(GatheredRows, AndARecordsetsStandInTheirOrder) {
    book->BeginTrans();
    const auto gathered = Appender("T", {"n"});
    const RecordsetPtr rows = Table();
    for (int n = 0; n < 12; n += 4) {
        for (const int each : {n, n + 1}) gathered->Append({Variant(std::int32_t{each})});
        Add(*rows, n + 2, 2);
    }
    rows->Close();
    book->CommitTrans();
    EXPECT_EQ(Numbers(), "12");
}

}  // namespace
}  // namespace kpTables
