// Recordsets that are edited.
#include <gtest/gtest.h>

#include "TestBook.h"
#include "kpTables/Convert.h"

namespace kpTables {
namespace {

using namespace test;

class Editable : public testing::Test {
protected:
    void SetUp() override {
        for (const char* name : {"甲", "乙", "丙"}) {
            book->Execute(std::string("Insert Into 仓库设置 (仓库名称) Values ('").append(name).append("')"));
        }
    }
    RecordsetPtr Table() { return book->Open("仓库设置", SourceKind::Table); }
    RecordsetPtr Select(std::string_view text) { return book->Open(text, SourceKind::Text); }
    std::string Names() { return RowsOf(*book, "Select dpID, 仓库名称 From 仓库设置 Order By dpID"); }

    BookPtr book = NewBook();
};

TEST_F(Editable, ReadsTablesAndSelects) {
    const RecordsetPtr table = Table();
    EXPECT_EQ(table->FieldCount(), 4);
    EXPECT_EQ(table->FieldAt(0).name, "dpID");
    EXPECT_EQ(table->FieldIndex("DPid"), 0);
    EXPECT_EQ(NumberOf([&] { table->FieldIndex("rowid"); }), Code(ErrorNumber::ItemNotFound));
    EXPECT_EQ(NumberOf([&] { table->FieldIndex(""); }), Code(ErrorNumber::ItemNotFound));
    EXPECT_EQ(NumberOf([&] { table->FieldAt(4); }), Code(ErrorNumber::ItemNotFound));
    EXPECT_EQ(RowsOf(*table), "1|甲|Null|False / 2|乙|Null|False / 3|丙|Null|False");
    EXPECT_EQ(table->RecordCount(), 3);
    EXPECT_TRUE(table->Eof());
    EXPECT_EQ(table->AbsolutePosition(), -3);
    table->MoveFirst();
    EXPECT_EQ(table->AbsolutePosition(), 1);

    const RecordsetPtr some = Select("Select 仓库名称, dpID From 仓库设置 Where dpID>=2 Order By dpID Desc");
    EXPECT_EQ(some->RecordCount(), 2);
    EXPECT_EQ(RowsOf(*some), "丙|3 / 乙|2");
    EXPECT_EQ(RowsOf(*Select("Select * From 仓库设置 Where dpID=7")), "");
    EXPECT_EQ(Select("Select * From 仓库设置 Where dpID=7")->RecordCount(), 0);
    EXPECT_EQ(RowsOf(*Select("Select Lst.仓库名称 From 仓库设置 As Lst Where Lst.dpID=1")), "甲");
    EXPECT_EQ(RowsOf(*Select("Select Top 1 * From 仓库设置 Order By dpID Desc")), "3|丙|Null|False");
}

TEST_F(Editable, RefusesSourcesThatAreWrong) {
    EXPECT_EQ(NumberOf([&] { book->Open("没有", SourceKind::Table); }), Code(DatabaseErrorNumber::UnknownTable));
    EXPECT_EQ(NumberOf([&] { Select("Select * From 没有"); }), Code(DatabaseErrorNumber::UnknownTable));
    EXPECT_EQ(NumberOf([&] { Select("Select 没有 From 仓库设置"); }), Code(DatabaseErrorNumber::UnknownColumn));
    EXPECT_EQ(NumberOf([&] { Select("Select * Form 仓库设置"); }), Code(DatabaseErrorNumber::Syntax));
}

TEST_F(Editable, WritesOnlyTheFieldsThatWereSet) {
    const RecordsetPtr rows = Select("Select * From 仓库设置 Where dpID=2");
    ASSERT_EQ(rows->RecordCount(), 1);
    book->Execute("Update 仓库设置 Set 仓库名称='改过' Where dpID=2");
    rows->Fields("结帐标志").SetValue(true);
    EXPECT_EQ(Text(rows->Fields("结帐标志").Value()), "True");
    EXPECT_EQ(ValueOf(*book, "Select 结帐标志 From 仓库设置 Where dpID=2"), "False");  // not before Update
    rows->Update();
    EXPECT_EQ(RowsOf(*book, "Select * From 仓库设置 Where dpID=2"), "2|改过|Null|True");
    EXPECT_EQ(Text(rows->Fields("结帐标志").Value()), "True");
    rows->Update();  // nothing is pending
    rows->Close();
    EXPECT_EQ(RowsOf(*book, "Select * From 仓库设置 Where dpID=2"), "2|改过|Null|True");
}

TEST_F(Editable, ValuesTakeTheColumnsType) {
    const RecordsetPtr rows = Table();
    rows->Fields("结帐日期").SetValue("2004-3-7");
    EXPECT_EQ(rows->Fields("结帐日期").Value().Type(), VarType::Date);
    rows->Fields("仓库名称").SetValue(std::int32_t{12});
    rows->Fields("结帐标志").SetValue(std::int32_t{1});
    rows->Update();
    EXPECT_EQ(RowsOf(*book, "Select * From 仓库设置 Where dpID=1"), "1|12|2004-3-7|True");
    EXPECT_EQ(NumberOf([&] { rows->Fields("结帐日期").SetValue("没有"); }), Code(ErrorNumber::TypeMismatch));
    EXPECT_EQ(NumberOf([&] { rows->Fields("dpID").SetValue(2147483648.0); }), Code(ErrorNumber::Overflow));
    EXPECT_EQ(NumberOf([&] { rows->SetValue(4, "x"); }), Code(ErrorNumber::ItemNotFound));
    rows->Fields("结帐日期").SetValue(Variant::Null());
    rows->Update();
    EXPECT_EQ(ValueOf(*book, "Select 结帐日期 From 仓库设置 Where dpID=1"), "Null");
}

TEST_F(Editable, EveryTypeSurvivesTheWayToTheTable) {
    book->Execute(
        "CREATE TABLE T (k COUNTER PRIMARY KEY, b YESNO, s SHORT, l LONG, d DOUBLE, c CURRENCY, t DATETIME, x "
        "TEXT(20))");
    const RecordsetPtr rows = book->Open("T", SourceKind::Table);
    rows->AddNew();
    rows->Fields("b").SetValue(true);
    rows->Fields("s").SetValue(std::int16_t{-32768});
    rows->Fields("l").SetValue(std::int32_t{-2147483647 - 1});
    rows->Fields("d").SetValue(0.1);
    rows->Fields("c").SetValue(Currency::FromScaled(INT64_MAX));
    rows->Fields("t").SetValue(*Date::ParseIso("2004-03-07 13:05:09"));
    rows->Fields("x").SetValue("it's 张三");
    rows->Update();
    rows->Close();
    EXPECT_EQ(RowsOf(*book, "Select * From T"),
              "1|True|-32768|-2147483648|0.1|922337203685477.5807|2004-3-7 13:05:09|it's 张三");
    EXPECT_EQ(RowsOf(*book->Open("T", SourceKind::Table)),
              "1|True|-32768|-2147483648|0.1|922337203685477.5807|2004-3-7 13:05:09|it's 张三");
}

TEST_F(Editable, AddsRowsAndTellsTheirCounter) {
    const RecordsetPtr rows = Table();
    rows->AddNew();
    EXPECT_EQ(rows->RecordCount(), 4);                           // the row being added counts
    EXPECT_EQ(Text(rows->Fields("结帐标志").Value()), "False");  // its default
    EXPECT_TRUE(rows->Fields("dpID").Value().IsNull());
    rows->Fields("仓库名称").SetValue("丁");
    EXPECT_EQ(Text(rows->Fields("仓库名称").Value()), "丁");
    EXPECT_EQ(ValueOf(*book, "Select Count(*) From 仓库设置"), "3");
    rows->Update();
    EXPECT_EQ(Text(rows->Fields("dpID").Value()), "4");
    EXPECT_EQ(rows->RecordCount(), 4);
    EXPECT_EQ(rows->AbsolutePosition(), 4);
    EXPECT_FALSE(rows->Eof());
    rows->Fields("仓库名称").SetValue("戊");  // the row added stays the current one
    rows->Update();
    rows->AddNew();
    rows->Update();
    EXPECT_EQ(rows->RecordCount(), 5);
    rows->Close();
    EXPECT_EQ(Names(), "1|甲 / 2|乙 / 3|丙 / 4|戊 / 5|Null");
}

TEST_F(Editable, RowsAddedBeforeAnyWasReadComeLast) {
    const RecordsetPtr rows = Select("Select * From 仓库设置 Where dpID<>2 Order By dpID");
    rows->AddNew();
    rows->Fields("仓库名称").SetValue("丁");
    EXPECT_EQ(rows->RecordCount(), 3);
    rows->Update();
    rows->AddNew();
    rows->Fields("dpID").SetValue(std::int32_t{-5});
    rows->Update();
    EXPECT_EQ(rows->RecordCount(), 4);
    EXPECT_EQ(rows->AbsolutePosition(), 4);
    EXPECT_EQ(Text(rows->Fields("dpID").Value()), "-5");
    rows->Find("dpID=-5");  // reads the table; the current row stays the one added
    EXPECT_EQ(rows->AbsolutePosition(), 4);
    rows->MoveFirst();
    EXPECT_EQ(RowsOf(*rows), "1|甲|Null|False / 3|丙|Null|False / 4|丁|Null|False / -5|Null|Null|False");
    EXPECT_EQ(rows->RecordCount(), 4);
}

TEST_F(Editable, MovingWritesWhatIsPending) {
    const RecordsetPtr rows = Table();
    rows->Fields("仓库名称").SetValue("A");
    rows->MoveNext();
    rows->Fields("仓库名称").SetValue("B");
    rows->MoveFirst();
    rows->Find("dpID=3");
    rows->Fields("仓库名称").SetValue("C");
    rows->AddNew();
    rows->Fields("仓库名称").SetValue("D");
    rows->Sort("仓库名称 DESC");
    EXPECT_EQ(Names(), "1|A / 2|B / 3|C / 4|D");
    EXPECT_EQ(RowsOf(*rows), "4|D|Null|False / 3|C|Null|False / 2|B|Null|False / 1|A|Null|False");
}

TEST_F(Editable, SortsTextsAsTheBookDoes) {
    const RecordsetPtr rows = Table();
    // 丙 bing, 甲 jia, 乙 yi: by pinyin, not by code point.
    rows->Sort("仓库名称");
    EXPECT_EQ(RowsOf(*rows), "3|丙|Null|False / 1|甲|Null|False / 2|乙|Null|False");
    rows->Sort("仓库名称 DESC");
    EXPECT_EQ(Text(rows->Fields("仓库名称").Value()), "乙");
}

TEST_F(Editable, CloseDropsWhatWasNotUpdated) {
    const RecordsetPtr rows = Table();
    rows->Fields("仓库名称").SetValue("A");
    rows->Close();
    EXPECT_EQ(Names(), "1|甲 / 2|乙 / 3|丙");
    EXPECT_EQ(NumberOf([&] { rows->GetValue(0); }), Code(ErrorNumber::ObjectClosed));
    EXPECT_EQ(NumberOf([&] { rows->RecordCount(); }), Code(ErrorNumber::ObjectClosed));
    EXPECT_EQ(NumberOf([&] { rows->Update(); }), Code(ErrorNumber::ObjectClosed));
    EXPECT_EQ(NumberOf([&] { rows->Close(); }), Code(ErrorNumber::ObjectClosed));
}

TEST_F(Editable, SortAndFindAndWriteGoTogether) {
    const RecordsetPtr rows = Table();
    rows->Sort("dpID DESC");
    EXPECT_EQ(Text(rows->Fields("dpID").Value()), "3");
    rows->Find("仓库名称='甲'");
    rows->Fields("仓库名称").SetValue("A");
    rows->Update();
    EXPECT_EQ(Names(), "1|A / 2|乙 / 3|丙");
    rows->MoveFirst();
    rows->Find("仓库名称='甲'");
    EXPECT_TRUE(rows->Eof());
    EXPECT_EQ(NumberOf([&] { rows->Fields("仓库名称").SetValue("x"); }), Code(ErrorNumber::NoCurrentRecord));
    EXPECT_EQ(NumberOf([&] { rows->MoveNext(); }), Code(ErrorNumber::NoCurrentRecord));
}

TEST_F(Editable, FindComparesTextsAsTheBookDoes) {
    struct Case {
        const char* stored;
        const char* sought;
        bool found;
    };
    const Case cases[] = {
        {"甲库（新）", "甲库(新)", true},
        {"ＡＢＣ", "abc", true},
        {"Éa", "éA ", true},
        {"①", "1", true},
        {"１２", "12", true},
        {"é", "e", false},
        {"甲", "乙", false},
        {"ab", "a", false},
    };
    for (const Case& c : cases) {
        book->Execute("Delete From 仓库设置");
        for (const char* name : {"一", c.stored, "二"}) {
            book->Execute(std::string("Insert Into 仓库设置 (仓库名称) Values ('").append(name).append("')"));
        }
        const std::string criteria = std::string("仓库名称='").append(c.sought).append("'");
        EXPECT_EQ(!RowsOf(*book, "Select 仓库名称 From 仓库设置 Where " + criteria).empty(), c.found) << criteria;
        for (const RecordsetPtr& rows : {Table(), Select("Select * From 仓库设置 Order By dpID"),
                                         book->Execute("Select * From 仓库设置 Order By dpID")}) {
            for (int i = 0; i < 20; ++i) {  // enough for an index
                rows->MoveFirst();
                rows->Find(criteria);
                ASSERT_EQ(rows->AbsolutePosition(), c.found ? 2 : -3) << criteria << ", search " << i;
            }
        }
    }
}

TEST_F(Editable, AKeyMayBeChanged) {
    const RecordsetPtr rows = Table();
    rows->Fields("dpID").SetValue(std::int32_t{77});
    rows->Update();
    rows->Fields("仓库名称").SetValue("A");
    rows->Update();
    EXPECT_EQ(Names(), "2|乙 / 3|丙 / 77|A");
}

TEST_F(Editable, ARefusedRowStaysPendingAndCanBeMended) {
    const RecordsetPtr rows = Table();
    rows->AddNew();
    rows->Fields("dpID").SetValue(std::int32_t{2});
    EXPECT_EQ(NumberOf([&] { rows->Update(); }), Code(DatabaseErrorNumber::ConstraintViolated));
    EXPECT_EQ(NumberOf([&] { rows->MoveFirst(); }), Code(DatabaseErrorNumber::ConstraintViolated));
    rows->Fields("dpID").SetValue(std::int32_t{9});
    rows->Update();
    rows->Close();
    EXPECT_EQ(Names(), "1|甲 / 2|乙 / 3|丙 / 9|Null");
}

TEST_F(Editable, ARowThatIsGoneIsToldClearly) {
    const RecordsetPtr rows = Table();
    EXPECT_EQ(rows->Eof(), false);
    book->Execute("Delete From 仓库设置 Where dpID=1");
    rows->Fields("仓库名称").SetValue("A");
    const auto error = Refused([&] { rows->Update(); });
    ASSERT_TRUE(error);
    EXPECT_NE(error->Description().find("deleted"), std::string::npos) << error->what();
}

TEST_F(Editable, ACounterThatIsUsedUpAddsNothing) {
    book->Execute("Insert Into 仓库设置 (dpID) Values (2147483647)");
    const RecordsetPtr rows = Table();
    rows->AddNew();
    EXPECT_EQ(NumberOf([&] { rows->Update(); }), Code(DatabaseErrorNumber::Overflow));
    rows->Close();
    EXPECT_EQ(ValueOf(*book, "Select Count(*) From 仓库设置"), "4");
}

TEST_F(Editable, SeesAnotherProgramsNewColumn) {
    const TemporaryDirectory directory;
    const auto mine = CreateBook(directory.Book("book"));
    mine->Execute("CREATE TABLE T (a LONG)");
    EXPECT_EQ(mine->Open("T", SourceKind::Table)->FieldCount(), 1);
    OpenBook(directory.Book("book"))->Execute("ALTER TABLE T ADD COLUMN b TEXT(10)");
    EXPECT_EQ(mine->Open("T", SourceKind::Table)->FieldCount(), 2);
    EXPECT_EQ(mine->Open("Select * From T", SourceKind::Text)->FieldCount(), 2);
}

TEST_F(Editable, ASelectThatIsOpenedAgainSeesAnotherProgramsColumns) {
    const TemporaryDirectory directory;
    const auto mine = CreateBook(directory.Book("book"));
    mine->Execute("CREATE TABLE T (a LONG, b TEXT(10))");
    mine->Execute("Insert Into T Values (1, 'x')");
    const auto open = [&] { return mine->Open("Select * From T", SourceKind::Text); };
    EXPECT_EQ(RowsOf(*open()), "1|x");
    const auto other = OpenBook(directory.Book("book"));
    other->Execute("ALTER TABLE T ADD COLUMN c CURRENCY");
    other->Execute("Update T Set c=1.5");

    const RecordsetPtr rows = open();
    EXPECT_EQ(Text(rows->Fields("b").Value()), "x");
    EXPECT_EQ(rows->FieldCount(), 3);
    rows->Fields("c").SetValue(Currency::FromScaled(25000));
    rows->Update();
    rows->Close();
    EXPECT_EQ(RowsOf(*mine, "Select * From T"), "1|x|2.5");
}

TEST_F(Editable, ASelectIsRefusedWhenAnotherProgramHasTurnedItsColumnsRound) {
    const TemporaryDirectory directory;
    const auto mine = CreateBook(directory.Book("book"));
    mine->Execute("CREATE TABLE T (a LONG, b TEXT(10))");
    const auto open = [&] { return mine->Open("Select * From T", SourceKind::Text); };
    EXPECT_TRUE(open()->Eof());
    const auto other = OpenBook(directory.Book("book"));
    other->Execute("DROP TABLE T");
    other->Execute("CREATE TABLE T (b TEXT(10), a LONG)");
    EXPECT_EQ(NumberOf([&] { open()->Eof(); }), Code(DatabaseErrorNumber::Failure));
    EXPECT_EQ(open()->FieldAt(0).name, "b") << "the next time it is read as it is";
}

TEST_F(Editable, OtherSourcesAreReadOnly) {
    for (const char* text :
         {"Select Distinct 仓库名称 From 仓库设置", "Select dpID+1 As n From 仓库设置",
          "Select dpID, Count(*) As n From 仓库设置 Group By dpID", "Select a.dpID From 仓库设置 a, 仓库设置 b",
          "Select dpID As n From 仓库设置", "Select dpID, dpID From 仓库设置",
          "Select dpID From 仓库设置 Union Select dpID From 入库目录", "Select * From (Select * From 仓库设置) As d"}) {
        const RecordsetPtr rows = Select(text);
        EXPECT_GE(rows->RecordCount(), 1) << text;
        EXPECT_EQ(NumberOf([&] { rows->SetValue(0, std::int32_t{1}); }), Code(ErrorNumber::NotUpdatable)) << text;
        EXPECT_EQ(NumberOf([&] { rows->AddNew(); }), Code(ErrorNumber::NotUpdatable)) << text;
    }
}

TEST_F(Editable, OutlivesTheConnection) {
    const TemporaryDirectory directory;
    RecordsetPtr rows;
    {
        const auto file = CreateBook(directory.Book("book"));
        rows = file->Open("仓库设置", SourceKind::Table);
    }
    rows->AddNew();
    rows->Fields("仓库名称").SetValue("甲");
    rows->Update();
    rows.reset();
    EXPECT_EQ(ValueOf(*OpenBook(directory.Book("book")), "Select 仓库名称 From 仓库设置"), "甲");
}

TEST_F(Editable, OpensOfOneShapeWithOtherLiteralsAreIndependent) {
    const RecordsetPtr first = Select("Select * From 仓库设置 Where dpID=1");
    const RecordsetPtr second = Select("Select * From 仓库设置 Where dpID=2");
    second->Fields("仓库名称").SetValue("B");
    first->Fields("仓库名称").SetValue("A");
    first->Update();
    second->Update();
    EXPECT_EQ(Names(), "1|A / 2|B / 3|丙");
}

TEST_F(Editable, ADefaultIsKnownByItsType) {
    const RecordsetPtr rows = book->Open("仓库余额表", SourceKind::Table);
    rows->AddNew();
    EXPECT_EQ(rows->Fields("本期库存金额").Value().Type(), VarType::Currency);
    EXPECT_EQ(Text(rows->Fields("本期库存金额").Value()), "0");
    EXPECT_EQ(rows->Fields("本期库存数量").Value().Type(), VarType::Double);
}

}  // namespace
}  // namespace kpTables
