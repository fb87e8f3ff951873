#include <gtest/gtest.h>

#include <string>

#include "TranslationText.h"
#include "sql/SqlError.h"

namespace kpTables::sql::test {

namespace {

struct ErrorCase {
    const char* statement;
    ErrorKind kind;
    const char* part;     ///< of the message
    const char* at = "";  ///< what stands at the error's offset
};

void CheckErrors(std::initializer_list<ErrorCase> cases) {
    for (const auto& [statement, kind, part, at] : cases) {
        SCOPED_TRACE(statement);
        try {
            const auto translation = Translated(statement);
            ADD_FAILURE() << "no error: " << translation.text;
        } catch (const SqlError& error) {
            EXPECT_EQ(static_cast<int>(error.Kind()), static_cast<int>(kind)) << error.what();
            EXPECT_NE(std::string(error.what()).find(part), std::string::npos) << error.what();
            EXPECT_EQ(std::string(statement).substr(error.Offset()).substr(0, std::string(at).size()), at);
        }
    }
}

}  // namespace

TEST(Errors, UnknownNames) {
    CheckErrors({
        {"Select * From 无此表", ErrorKind::UnknownTable, "'无此表'", "无此表"},
        {"Select X.* From T", ErrorKind::UnknownTable, "'X'", "X.*"},
        {"Select 无此列 From T", ErrorKind::UnknownColumn, "'无此列'", "无此列"},
        {"Select T.无 From T", ErrorKind::UnknownColumn, "'T.无'", "T.无"},
        {"Select T.l From T As X", ErrorKind::UnknownColumn, "'T.l'", "T.l"},
        {"Select l From T Where x=1", ErrorKind::UnknownColumn, "'x'", "x=1"},
        {"Select l From T Order By x", ErrorKind::UnknownColumn, "'x'", "x"},
        {"Insert Into T (x) Values (1)", ErrorKind::UnknownColumn, "'x'", "x)"},
        {"Insert Into T (l) Values (x)", ErrorKind::UnknownColumn, "'x'", "x)"},
        {"Update T Set x=1", ErrorKind::UnknownColumn, "'x'", "x=1"},
        {"Update T Set X.l=1", ErrorKind::UnknownColumn, "'X.l'"},
        {"Delete From 无此表", ErrorKind::UnknownTable, "'无此表'", "无此表"},
        {"Create Index i On T (x)", ErrorKind::UnknownColumn, "'x'"},
        {"Drop Table 无此表", ErrorKind::UnknownTable, "'无此表'"},
        {"Select @@ROWCOUNT", ErrorKind::Unsupported, "ROWCOUNT"},
        {"Select Nonsense(l) From T", ErrorKind::Unsupported, "undefined function 'Nonsense'", "Nonsense"},
    });
}

TEST(Errors, NamesThatCouldBeTwo) {
    CheckErrors({
        {"Select BillID From 入库目录, 出库目录", ErrorKind::Syntax, "'BillID' could refer to more than one table",
         "BillID"},
        {"Select 1 From T, T", ErrorKind::Syntax, "'T' stands twice"},
        {"Select 1 From T As a, Header As A", ErrorKind::Syntax, "'A' stands twice"},
    });
}

TEST(Errors, Types) {
    CheckErrors({
        {"Select 1 From T Where t=5", ErrorKind::TypeMismatch, "type mismatch"},
        {"Select 1 From T Where t=l", ErrorKind::TypeMismatch, "type mismatch"},
        {"Select 1 From T Where t In (1,2)", ErrorKind::TypeMismatch, "type mismatch"},
        {"Select 1 From T Where l In (Select t From T)", ErrorKind::TypeMismatch, "type mismatch"},
        {"Select 1 From T Where at In (Select t From T)", ErrorKind::TypeMismatch, "type mismatch"},
        {"Select 1 From T Where t", ErrorKind::TypeMismatch, "type mismatch"},
        {"Select 1 From T Where Not l", ErrorKind::TypeMismatch, "a condition is expected"},
        {"Select 1 From T Where l And b", ErrorKind::TypeMismatch, "a condition is expected"},
        {"Select at*2 From T", ErrorKind::TypeMismatch, "type mismatch"},
        {"Select at+at2 From T", ErrorKind::TypeMismatch, "type mismatch"},
        {"Select 1-at From T", ErrorKind::TypeMismatch, "type mismatch"},
        {"Select Sum(t) From T", ErrorKind::TypeMismatch, "a number is expected"},
    });
}

TEST(Errors, Aggregates) {
    CheckErrors({
        {"Select l From T Where Sum(d)>1", ErrorKind::Syntax, "aggregate function in the WHERE clause", "Sum"},
        {"Select l From T Group By Sum(d)", ErrorKind::Syntax, "aggregate function in the GROUP BY clause", "Sum"},
        {"Select Sum(Max(d)) From T", ErrorKind::Syntax, "within another", "Max"},
        {"Select Sum(d) As x, Sum(x) From T", ErrorKind::UnknownColumn, "'x'", "x) From"},
        {"Select l, Sum(d) From T", ErrorKind::Syntax, "'l' is neither grouped by", "l,"},
        {"Select l+1 From T Group By l+2", ErrorKind::Syntax, "'l' is neither grouped by", "l+1"},
        {"Select l From T Having l>1", ErrorKind::Syntax, "'l' is neither grouped by", "l From"},
        {"Select 1 As x From T Having d>1", ErrorKind::Syntax, "'d' is neither grouped by", "d>1"},
        {"Select l From T Group By l Having d>1", ErrorKind::Syntax, "'d' is neither grouped by", "d>1"},
        {"Select l From T Group By l Order By d", ErrorKind::Syntax, "'d' is neither grouped by"},
        {"Select l From T Order By Sum(d)", ErrorKind::Syntax, "ORDER BY", "Sum"},
        {"Select * From T Group By l", ErrorKind::Syntax, "'*'"},
        {"Select StDev(t) From T", ErrorKind::TypeMismatch, "a number is expected in the aggregate", "t) From"},
        {"Update T Set l=Max(l)", ErrorKind::Syntax, "aggregate function", "Max"},
        {"Delete From T Where Count(*)>1", ErrorKind::Syntax, "aggregate function", "Count"},
        {"TRANSFORM Sum(d) SELECT l FROM T GROUP BY l PIVOT Sum(s)", ErrorKind::Syntax, "PIVOT", "Sum(s)"},
    });
}

TEST(Errors, Shapes) {
    CheckErrors({
        {"Insert Into T (l,s) Values (1)", ErrorKind::Syntax, "1 values for 2 columns"},
        {"Insert Into T (l) Select l,s From T", ErrorKind::Syntax, "2 values for 1 columns"},
        {"Insert Into T (l,L) Values (1,2)", ErrorKind::Syntax, "'l' is given twice", "L)"},
        {"Select l From T Union Select l,s From T", ErrorKind::Syntax, "different numbers of columns"},
        {"Select l From T Union Select s From T Order By d", ErrorKind::Syntax, "ordered by its columns", "d"},
        {"Select 1 From T Where l In (Select l,s From T)", ErrorKind::Syntax, "one column"},
        {"Select Distinct l From T Order By s", ErrorKind::Syntax, "DISTINCT", "s"},
        {"Select l From T Order By 2", ErrorKind::Syntax, "no column 2"},
        {"Select l From T Group By 3", ErrorKind::Syntax, "no select item 3"},
        {"Select Left(t) From T", ErrorKind::Syntax, "number of arguments in 'Left'", "Left"},
        {"Select IIf(b,1) From T", ErrorKind::Syntax, "number of arguments in 'IIf'", "IIf"},
        {"Select Len(Distinct t) From T", ErrorKind::Syntax, "DISTINCT"},
        {"Select *", ErrorKind::Syntax, "FROM"},
    });
}

TEST(Errors, Definitions) {
    CheckErrors({
        {"Create Table t (a LONG)", ErrorKind::Syntax, "already exists"},
        {"Create Table N (a LONG, A TEXT(5))", ErrorKind::Syntax, "defined twice"},
        {"Create Table N (a LONG, Primary Key (b))", ErrorKind::UnknownColumn, "'b'"},
        {"Create Table N (a LONG Primary Key, b LONG Primary Key)", ErrorKind::Syntax, "two primary keys"},
        {"Create Table N (a COUNTER, b COUNTER)", ErrorKind::Unsupported, "one COUNTER"},
        {"Create Table N (a LONG Default 'x')", ErrorKind::TypeMismatch, "default"},
        {"Create Table N (a CURRENCY Default 0.00001)", ErrorKind::TypeMismatch, "default"},
        {"Create Table N (a SHORT Default 32768)", ErrorKind::TypeMismatch, "default"},
        {"Create Table N (a SHORT Default -32769)", ErrorKind::TypeMismatch, "default"},
        {"Create Table N (a LONG Default 2147483648)", ErrorKind::TypeMismatch, "default"},
        {"Create Table N (a LONG Default '99999999999999999999')", ErrorKind::TypeMismatch, "default"},
        {"Alter Table T Add Column l LONG", ErrorKind::Syntax, "exists already"},
        {"Alter Table T Add Column k COUNTER", ErrorKind::Unsupported, "COUNTER"},
        {"Create Table N (a LONG, b LONG As (c))", ErrorKind::UnknownColumn, "'c'"},
        {"Create Table N (a LONG, b TEXT(5) As (a))", ErrorKind::TypeMismatch, "'b' is not of the type"},
        {"Create Table N (a LONG, b LONG As (a), c LONG As (b))", ErrorKind::Unsupported, "'b' is computed itself"},
        {"Create Table N (a LONG, b LONG As (a), Primary Key (b))", ErrorKind::Unsupported, "'b' cannot be a key"},
        {"Create Table N (a LONG, b LONG As (a), Unique (a,b))", ErrorKind::Unsupported, "'b' cannot be a key"},
        {"Alter Table T Add Column k LONG As (c)", ErrorKind::TypeMismatch, "'k' is not of the type"},
        {"Alter Table P Add Column k LONG As (pj2)", ErrorKind::Unsupported, "'pj2' is computed itself"},
    });
}

TEST(Errors, EverydayStatements) {
    CheckErrors({
        {"Select l From T Where Row_Number() Over (Order By l) = 1", ErrorKind::Syntax,
         "in the select list or in ORDER BY"},
        {"Select Row_Number() Over () From T", ErrorKind::Syntax, "needs an ORDER BY"},
        {"Select Count(Distinct l) Over () From T", ErrorKind::Unsupported, "over a window is not supported"},
        {"Select First(l) Over (Order By l) From T", ErrorKind::Unsupported, "over a window is not supported"},
        {"Select Percent_Rank() Over (Order By l) From T", ErrorKind::Unsupported, "undefined window function"},
        {"Select Sum(l) Over (Order By l Rows Between Current Row And 1 Preceding) From T", ErrorKind::Syntax,
         "ends before it begins"},
        {"Select Sum(l) Over (Rows Unbounded Preceding) From T", ErrorKind::Syntax, "a frame needs an ORDER BY"},
        {"Select Sum(l) Over (Order By l Range 1 Preceding) From T", ErrorKind::Unsupported, "RANGE with a number"},
        {"Select Top 2 l From T Order By l Offset 1 Rows", ErrorKind::Syntax, "TOP or OFFSET, not both"},
        {"Select Top 101 Percent l From T", ErrorKind::Syntax, "from 0 to 100"},
        {"With x As (Select * From x) Select * From x", ErrorKind::Unsupported, "refers to itself"},
        {"With x As (Select 1 As a), X As (Select 2 As a) Select * From x", ErrorKind::Syntax, "stands twice in WITH"},
        {"With x (a, b) As (Select 1) Select * From x", ErrorKind::Syntax, "names 2 columns, its query has 1"},
        {"With x As (Select 1 As a) Update x Set a = 2 From x", ErrorKind::Syntax, "only those of a table"},
        {"Update T Inner Join P On T.l = P.pj Set T.c = 1, P.name = 'x'", ErrorKind::Unsupported, "changes one table"},
        {"Update T Set T.c = 1 From T a, T b", ErrorKind::Syntax, "stands twice in FROM"},
        {"Update a Set b.c = 1 From T a, T b", ErrorKind::Syntax, "changes 'a', not 'b'"},
        {"Select DistinctRow q.z From T, (Select 1 As z) q", ErrorKind::Unsupported, "DISTINCTROW of a query"},
        {"Alter Table T Alter Column id TEXT(5)", ErrorKind::Unsupported, "keeps its type"},
        {"Alter Table T Drop Column none", ErrorKind::UnknownColumn, "'none'"},
    });
}

TEST(Errors, ComputedColumns) {
    CheckErrors({
        {"Insert Into R (id,MORE) Values (1,2)", ErrorKind::Unsupported, "'more' is computed", "MORE"},
        {"Insert Into P Values (1,2,'a',3)", ErrorKind::Syntax, "4 values for 3 columns"},
        {"Insert Into P (pj2,id,PJ2) Values (1,2,3)", ErrorKind::Syntax, "'pj2' is given twice", "PJ2"},
        {"Insert Into P (pj,pj2) Values (1)", ErrorKind::Syntax, "1 values for 2 columns"},
        {"Insert Into P (pj,pj2) Select 1,2,3", ErrorKind::Syntax, "3 values for 2 columns"},
        {"Update R Set more=1", ErrorKind::Unsupported, "'more' is computed", "more"},
        {"Update R As a Set a.more=1", ErrorKind::Unsupported, "'more' is computed", "a.more"},
        {"Select pj2 From P, P As a", ErrorKind::Syntax, "more than one table", "pj2"},
    });
}

}  // namespace kpTables::sql::test
