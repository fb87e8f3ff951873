// What a host's own statements change is changed wholly or not at all; expressions as deep as hosts write them.
#include <gtest/gtest.h>

#include "TestBook.h"
#include "kpTables/Convert.h"
#include "kpTables/Error.h"

namespace kpTables {
namespace {

using namespace test;

class EverydayChange : public testing::Test {
protected:
    std::string Value(std::string_view text) { return ValueOf(*book, text); }
    std::string Rows(std::string_view text) { return RowsOf(*book, text); }
    void Run(std::string_view text) { EXPECT_FALSE(book->Execute(text)) << text; }
    TableInfo Table(std::string_view name) {
        for (TableInfo& table : book->Tables())
            if (table.name == name) return table;
        return {};
    }
    void Fails(std::string_view text) { EXPECT_THROW(book->Execute(text), Error) << text; }

    BookPtr book = CreateBook("memory:");
};

TEST_F(EverydayChange, SelectIntoMakesTypesAndCountsItsRows) {
    Run("Create Table T (ID COUNTER, a TEXT(5), b CURRENCY, c DATETIME, d YESNO, e SHORT)");
    Run("Insert Into T (a, b, c, d, e) Values ('x', 0.0001, #2004-3-7#, True, 2), ('y', Null, Null, False, 3)");
    Run("Select ID, a, b, c, d, e, b * 2 As f, a & 'z' As g Into U From T Where e > 1");
    EXPECT_EQ(book->RecordsAffected(), 2);
    EXPECT_EQ(Rows("Select * From U"), "1|x|0.0001|2004-3-7|True|2|0.0002|xz / 2|y|Null|Null|False|3|Null|yz");
    const TableInfo info = Table("U");
    const VarType types[] = {VarType::Long,    VarType::String,  VarType::Currency, VarType::Date,
                             VarType::Boolean, VarType::Integer, VarType::Currency, VarType::String};
    ASSERT_EQ(info.columns.size(), std::size(types));
    for (std::size_t i = 0; i < std::size(types); ++i) EXPECT_EQ(info.columns[i].type, types[i]) << i;
    EXPECT_TRUE(info.columns[0].counter);
    Fails("Update U Set a = '123456'");  // the length comes along
    Run("Select a.ID, b.ID As other Into V From T a, T b");
    EXPECT_FALSE(Table("V").columns[0].counter);
}

TEST_F(EverydayChange, AFailedSelectIntoMakesNothing) {
    Run("Create Table T (a TEXT(5))");
    Run("Insert Into T Values ('1'), ('x')");
    Fails("Select CLng(a) As n Into U From T");
    Fails("Select n From U");
    Run("Select a Into U From T");
    Fails("Select a Into U From T");
    book->BeginTrans();
    Run("Select a Into V From T");
    book->RollbackTrans();
    Fails("Select a From V");
    EXPECT_EQ(Value("Select Count(*) From U"), "2");
}

TEST_F(EverydayChange, AColumnChangesItsTypeWithItsRows) {
    Run("Create Table T (ID COUNTER, a TEXT(5) DEFAULT '7', b LONG)");
    Run("Create Index i On T (a, b)");
    Run("Insert Into T (a, b) Values ('12', 1), (Null, 2)");
    Run("Delete From T Where b = 2");
    Run("Alter Table T Alter Column a CURRENCY");
    Run("Insert Into T (b) Values (3)");
    EXPECT_EQ(Rows("Select ID, a / 8, b From T Order By ID"), "1|1.5|1 / 3|0.875|3");
    Fails("Create Index i On T (b)");  // it is still there
    Fails("Alter Table T Alter Column a DATETIME NOT NULL UNIQUE");
    Run("Update T Set a = 100000 Where ID = 3");
    Fails("Alter Table T Alter Column a SHORT");
    EXPECT_EQ(Rows("Select a From T Order By ID"), "12 / 100000");
    Run("Alter Table T Alter Column a TEXT(6) NOT NULL");
    EXPECT_EQ(Rows("Select a & '.' From T Order By ID"), "12. / 100000.");
    Fails("Alter Table T Alter Column a TEXT(5)");
    Fails("Update T Set a = Null");
}

TEST_F(EverydayChange, SeveralColumnsAreAddedOrNone) {
    Run("Create Table T (a LONG)");
    Run("Insert Into T Values (1)");
    Run("Create Index i On T (a)");
    Fails("Alter Table T Add b LONG, c LONG NOT NULL");  // the rows of a table need a default
    Fails("Select b From T");
    Run("Alter Table T Add b LONG, c LONG");
    Fails("Alter Table T Drop Column b, a");  // the index needs it
    EXPECT_EQ(book->Execute("Select * From T")->FieldCount(), 3);
}

TEST_F(EverydayChange, AJoinedUpdateCountsEachRowOnce) {
    Run("Create Table T (ID COUNTER, a LONG)");
    Run("Create Table U (t LONG, n LONG)");
    Run("Insert Into T (a) Values (0), (0), (0)");
    Run("Insert Into U Values (1, 5), (1, 5), (2, 6)");
    Run("Update T Set a = U.n From U Where U.t = T.ID");
    EXPECT_EQ(book->RecordsAffected(), 2);
    EXPECT_EQ(Rows("Select a From T Order By ID"), "5 / 6 / 0");
    Run("Delete T From T Inner Join U On U.t = T.ID");
    EXPECT_EQ(book->RecordsAffected(), 2);
}

TEST_F(EverydayChange, FieldsAreFoundByTheirTable) {
    Run("Create Table T (ID LONG, a LONG)");
    Run("Insert Into T Values (1, 2)");
    const RecordsetPtr rows =
        book->Execute("Select Lst.ID, Rec.*, Rec.a As b From T Lst Inner Join T Rec On Lst.ID = Rec.ID");
    EXPECT_EQ(rows->FieldIndex("ID"), 0);
    EXPECT_EQ(rows->FieldIndex("lst.id"), 0);
    EXPECT_EQ(rows->FieldIndex("Rec.ID"), 1);
    EXPECT_EQ(rows->FieldIndex("Rec.a"), 2);
    EXPECT_EQ(rows->FieldAt(1).name, "ID");
    EXPECT_EQ(Text(rows->Fields("Rec.a").Value()), "2");
    EXPECT_THROW(rows->FieldIndex("Lst.a"), Error);
    EXPECT_THROW(rows->FieldIndex("Rec.b"), Error);
}

std::string Repeated(const std::string& piece, const std::string& between, int times) {
    std::string text = piece;
    for (int i = 1; i < times; ++i) text += between + piece;
    return text;
}

TEST_F(EverydayChange, LongChainsOfTexts) {
    Run("Create Table T (a TEXT(9), n LONG, z TEXT(9))");
    Run("Insert Into T Values ('ab', 3, Null)");
    EXPECT_EQ(Value("Select Len(" + Repeated("a", " & ", 1000) + ") From T"), "2000");
    EXPECT_EQ(Value("Select Len(" + Repeated("a & n & z", " & ", 400) + ") From T"), "1200");
    EXPECT_EQ(Value("Select Len(" + Repeated("a", " + ", 1000) + ") From T"), "2000");
    EXPECT_EQ(Value("Select " + Repeated("z", " & ", 1000) + " From T"), "Null");
    EXPECT_EQ(Value("Select " + Repeated("z", " & ", 1000) + " & '' Is Null From T"), "False");
    EXPECT_EQ(Value("Select " + Repeated("a", " + ", 500) + " + z From T"), "Null");
    const std::string order = Value("Select '(' & " + Repeated("a & n", " & ", 20) + " & ')' From T");
    EXPECT_EQ(order, "(" + Repeated("ab3", "", 20) + ")");
}

TEST_F(EverydayChange, DeepChoices) {
    Run("Create Table T (n LONG)");
    Run("Insert Into T Values (0), (7), (23), (24), (Null)");
    std::string last = "'none'";
    std::string first = "'none'";
    for (int i = 23; i >= 0; --i) {
        const std::string number = std::to_string(i);
        last = "IIf(n=" + number + ",'is " + number + "'," + last + ")";
        first = "IIf(n<>" + number + "," + first + ",'is " + number + "')";
    }
    EXPECT_EQ(Rows("Select " + last + " From T"), "is 0 / is 7 / is 23 / none / none");
    // The first condition of a Null row is unknown, which counts as not met.
    EXPECT_EQ(Rows("Select " + first + " From T"), "is 0 / is 7 / is 23 / none / is 0");
}

}  // namespace
}  // namespace kpTables
