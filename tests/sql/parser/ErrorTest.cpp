// What cannot be read, with line, column, token and complaint.
#include <gtest/gtest.h>

#include <string>

#include "corpus/Corpus.h"
#include "sql/SqlError.h"
#include "sql/parse/Parser.h"

namespace kpTables::sql::parse {
namespace {

struct RefusedText {
    const char* text;
    std::size_t offset;
    const char* message;
};

/// The message of the SqlError that the text raises, "" when it is read.
std::string MessageOf(const std::string& text, ErrorKind kind, std::size_t* offset = nullptr) {
    try {
        Parse(text);
    } catch (const SqlError& error) {
        EXPECT_EQ(error.Kind(), kind);
        if (offset) *offset = error.Offset();
        return error.what();
    }
    return "";
}

template <std::size_t N>
void CheckRefused(const RefusedText (&rows)[N], ErrorKind kind = ErrorKind::Syntax) {
    for (const RefusedText& row : rows) {
        SCOPED_TRACE(row.text);
        std::size_t offset = std::string::npos;
        EXPECT_EQ(MessageOf(row.text, kind, &offset), row.message);
        EXPECT_EQ(offset, row.offset);
    }
}

TEST(Errors, StatementsThatTheComponentSends) {
    int refused = 0;
    for (const auto& [source, statement] : corpus::Texts()) {
        SCOPED_TRACE(source->Name());
        EXPECT_EQ(MessageOf(statement->text, ErrorKind::Syntax), statement->refusal);
        if (!statement->refusal.empty()) ++refused;
    }
    EXPECT_GT(refused, 50);
}

TEST(Errors, Statements) {
    const RefusedText rows[] = {
        {"", 0,
         "Syntax error at line 1, column 1 at the end: expected SELECT, TRANSFORM, INSERT, UPDATE, DELETE, "
         "CREATE, DROP, ALTER, TRUNCATE or WITH"},
        {"Selec * From T", 0,
         "Syntax error at line 1, column 1 near \"Selec\": expected SELECT, TRANSFORM, INSERT, "
         "UPDATE, DELETE, CREATE, DROP, ALTER, TRUNCATE or WITH"},
        {"Select * Fro T", 9, "Syntax error at line 1, column 10 near \"Fro\": expected the statement's end"},
        {"Select 1;Select 2", 9, "Syntax error at line 1, column 10 near \"Select\": one statement only"},
        {"Select 1;;", 9, "Syntax error at line 1, column 10 near \";\": one statement only"},
        {"Select 1 Delete From T", 9,
         "Syntax error at line 1, column 10 near \"Delete\": expected the statement's end"},
        {"Select *\nFrom 操作员\nWher 姓名='x'", 29,
         "Syntax error at line 3, column 6 near \"姓名\": expected the statement's end"},
        {"Select", 6, "Syntax error at line 1, column 7 at the end: expected an expression"},
        {"Select From T", 7, "Syntax error at line 1, column 8 near \"From\": expected an expression"},
        {"Select a,From T", 9, "Syntax error at line 1, column 10 near \"From\": expected an expression"},
        {"Select a As From T", 12, "Syntax error at line 1, column 13 near \"From\": expected a name after AS"},
        {"Select * From", 13, "Syntax error at line 1, column 14 at the end: expected a table's name"},
        {"Select * From T Where", 21, "Syntax error at line 1, column 22 at the end: expected an expression"},
        {"Select * From T Group By", 24, "Syntax error at line 1, column 25 at the end: expected an expression"},
        {"Select * From T Group a", 22, "Syntax error at line 1, column 23 near \"a\": expected BY"},
        {"Select * From T Order By a,", 27, "Syntax error at line 1, column 28 at the end: expected an expression"},
        {"Select * From T Having", 22, "Syntax error at line 1, column 23 at the end: expected an expression"},
        {"Select * From A Inner B On 1=1", 22, "Syntax error at line 1, column 23 near \"B\": expected JOIN"},
        {"Select * From A Inner Join B Where a", 29, "Syntax error at line 1, column 30 near \"Where\": expected ON"},
        {"Select * From (A Inner Join B On 1=1", 36, "Syntax error at line 1, column 37 at the end: expected ')'"},
        {"Select Top 1.5 a From T", 11,
         "Syntax error at line 1, column 12 near \"1.5\": expected a whole number after TOP"},
        {"Select Top '5' a From T", 11,
         "Syntax error at line 1, column 12 near \"'5'\": expected a whole number after TOP"},
        {"Select Top 2147483649 a From T", 11,
         "Syntax error at line 1, column 12 near \"2147483649\": expected a whole number after TOP"},
        {"Select a From A Union", 21, "Syntax error at line 1, column 22 at the end: expected SELECT"},
        {"(Select a From A", 16, "Syntax error at line 1, column 17 at the end: expected ')'"},
        {"Transform Sum(a) Select b From T", 32, "Syntax error at line 1, column 33 at the end: expected PIVOT"},
        {"Transform Sum(a) b", 18, "Syntax error at line 1, column 19 at the end: expected SELECT"},
    };
    CheckRefused(rows);
}

TEST(Errors, Changes) {
    const RefusedText rows[] = {
        {"Insert From T (a) Values (1)", 7, "Syntax error at line 1, column 8 near \"From\": expected a table's name"},
        {"Insert Into T", 13, "Syntax error at line 1, column 14 at the end: expected VALUES or SELECT"},
        {"Insert Into T () Values (1)", 15, "Syntax error at line 1, column 16 near \")\": expected a column's name"},
        {"Insert Into T (a) Values ()", 26, "Syntax error at line 1, column 27 near \")\": expected an expression"},
        {"Insert Into T (a) Values (1),2", 29, "Syntax error at line 1, column 30 near \"2\": expected '('"},
        {"Update T a=1", 10, "Syntax error at line 1, column 11 near \"=\": expected SET"},
        {"Update T Set", 12, "Syntax error at line 1, column 13 at the end: expected a column's name"},
        {"Update T Set a<1", 14, "Syntax error at line 1, column 15 near \"<\": expected '='"},
        {"Update T Set a= Where b=1", 16, "Syntax error at line 1, column 17 near \"Where\": expected an expression"},
        {"Update A Inner Join B On A.x=B.x Where a=1", 33,
         "Syntax error at line 1, column 34 near \"Where\": expected SET"},
        {"Delete T.*", 10, "Syntax error at line 1, column 11 at the end: expected FROM"},
        {"Delete From A Inner Join B On A.x=B.x", 12,
         "Syntax error at line 1, column 13 near \"A\": name the table whose rows are deleted before FROM"},
        {"Delete From [Order", 12,
         "Syntax error at line 1, column 13 near \"[Order\": the name has no closing bracket"},
        {"Create Schema s", 7, "Syntax error at line 1, column 8 near \"Schema\": expected TABLE or INDEX"},
        {"Create Table T ()", 16, "Syntax error at line 1, column 17 near \")\": expected a column's name"},
        {"Create Table T (a)", 17, "Syntax error at line 1, column 18 near \")\": expected a type"},
        {"Create Table T (a GUID)", 18, "Syntax error at line 1, column 19 near \"GUID\": expected a type"},
        {"Create Table T (a TEXT(0))", 23,
         "Syntax error at line 1, column 24 near \"0\": expected a length from 1 to 8000"},
        {"Create Table T (a COUNTER(1,2))", 28, "Syntax error at line 1, column 29 near \"2\": expected 1, the step"},
        {"Create Table T (a LONG, PRIMARY KEY (a), PRIMARY KEY (a))", 41,
         "Syntax error at line 1, column 42 near \"PRIMARY\": a table has one primary key"},
        {"Create Table T (PRIMARY KEY (a))", 31, "Syntax error at line 1, column 32 near \")\": expected a column"},
        {"Create Table T (a LONG CONSTRAINT c KEY)", 36,
         "Syntax error at line 1, column 37 near \"KEY\": expected PRIMARY KEY, UNIQUE or DEFAULT"},
        {"Create Table T (a LONG AS (b+1))", 28, "Syntax error at line 1, column 29 near \"+\": expected ')'"},
        {"Create Table T (a LONG AS 5)", 26, "Syntax error at line 1, column 27 near \"5\": expected '('"},
        {"Create Table T (a LONG AS (b) DEFAULT 5)", 30,
         "Syntax error at line 1, column 31 near \"DEFAULT\": expected ')'"},
        {"Create Table T (a COUNTER AS (b))", 26, "Syntax error at line 1, column 27 near \"AS\": expected ')'"},
        {"Create Unique Table T (a LONG)", 14, "Syntax error at line 1, column 15 near \"Table\": expected INDEX"},
        {"Create Index i On T ()", 21, "Syntax error at line 1, column 22 near \")\": expected a column's name"},
        {"Drop Index i", 12, "Syntax error at line 1, column 13 at the end: expected ON"},
        {"Drop View v", 5, "Syntax error at line 1, column 6 near \"View\": expected TABLE or INDEX"},
        {"Alter Table T Rename Column a", 14,
         "Syntax error at line 1, column 15 near \"Rename\": expected ADD, ALTER or DROP"},
    };
    CheckRefused(rows);
}

TEST(Errors, Expressions) {
    const RefusedText rows[] = {
        {"Select (1", 9, "Syntax error at line 1, column 10 at the end: expected ')'"},
        {"Select 1)", 8, "Syntax error at line 1, column 9 near \")\": expected the statement's end"},
        {"Select 1 2", 9, "Syntax error at line 1, column 10 near \"2\": expected the statement's end"},
        {"Select a Like", 13, "Syntax error at line 1, column 14 at the end: expected an expression"},
        {"Select a Between 1", 18, "Syntax error at line 1, column 19 at the end: expected AND"},
        {"Select a In 1", 12, "Syntax error at line 1, column 13 near \"1\": expected '(' after IN"},
        {"Select a In (1,)", 15, "Syntax error at line 1, column 16 near \")\": expected an expression"},
        {"Select a Is 1", 12, "Syntax error at line 1, column 13 near \"1\": expected NULL"},
        {"Select a = Not b", 11, "Syntax error at line 1, column 12 near \"Not\": expected an expression"},
        {"Select T. From T", 10,
         "Syntax error at line 1, column 11 near \"From\": expected a column's name after the point"},
        {"Select T.5 From T", 9,
         "Syntax error at line 1, column 10 near \"5\": expected a column's name after the point"},
        {"Select a.b.c", 10, "Syntax error at line 1, column 11 near \".\": expected the statement's end"},
        {"Select Where(1)", 7, "Syntax error at line 1, column 8 near \"Where\": expected an expression"},
        {"Select Exists (1)", 14,
         "Syntax error at line 1, column 15 near \"(\": expected a query in the parentheses of EXISTS"},
        {"Select Cast(a As COUNTER)", 17, "Syntax error at line 1, column 18 near \"COUNTER\": expected a type"},
        {"Select Case a End", 14, "Syntax error at line 1, column 15 near \"End\": expected WHEN"},
        {"Select Case When 1 Then 2", 25, "Syntax error at line 1, column 26 at the end: expected WHEN, ELSE or END"},
        {"Select Count(,)", 13, "Syntax error at line 1, column 14 near \",\": expected an expression"},
        {"Select Rec.pdID (Sum(a))", 16, "Syntax error at line 1, column 17 near \"(\": expected the statement's end"},
    };
    CheckRefused(rows);
}

TEST(Errors, Characters) {
    const RefusedText rows[] = {
        {"Select 'abc", 7, "Syntax error at line 1, column 8 near \"'abc\": the text has no closing quote"},
        {"Select #2004-3-7", 7, "Syntax error at line 1, column 8 near \"#2004-3-7\": the date has no closing #"},
        {"Select # #", 7, "Syntax error at line 1, column 8 near \"# #\": expected a date between the # signs"},
        {"Select []", 7, "Syntax error at line 1, column 8 near \"[]\": expected a name in the brackets"},
        {"Select @x", 7, "Syntax error at line 1, column 8 near \"@x\": no value is given for this parameter"},
        {"Select @ x", 7, "Syntax error at line 1, column 8 near \"@\": expected a parameter's name after the sign"},
        {"Select @@", 7, "Syntax error at line 1, column 8 near \"@\": expected a name such as @@IDENTITY"},
        {"Select a || b", 9,
         "Syntax error at line 1, column 10 near \"|\": a character that has no meaning in a statement"},
        {"Select \"abc", 7, "Syntax error at line 1, column 8 near \"\"abc\": the text has no closing quote"},
        {"Select `abc", 7, "Syntax error at line 1, column 8 near \"`abc\": the name has no closing quote"},
        {"Select ``", 7, "Syntax error at line 1, column 8 near \"``\": expected a name in the quotes"},
        {"Select 1--2", 8,
         "Syntax error at line 1, column 9 near \"--\": a comment does not begin with a digit; put a blank between "
         "two signs"},
        {"Select 1 /* x", 9, "Syntax error at line 1, column 10 near \"/*\": the comment has no end"},
        {"Parameters a Long; Select a", 11,
         "Syntax error at line 1, column 12 near \"a\": no value is given for this parameter"},
        {"Select \x01", 7, "Syntax error at line 1, column 8: a character that has no meaning in a statement"},
        {"Select \xC3(", 7, "Syntax error at line 1, column 8: the text is not valid UTF-8"},
        {"Select 年\xE5\xB9", 10, "Syntax error at line 1, column 9: the text is not valid UTF-8"},
        {"Select [\xFF]", 8, "Syntax error at line 1, column 9: the text is not valid UTF-8"},
        {"Select \xED\xA0\x80", 7, "Syntax error at line 1, column 8: the text is not valid UTF-8"},
        {"Select \xC0\xAF", 7, "Syntax error at line 1, column 8: the text is not valid UTF-8"},
        {"Select 'aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa", 7,
         "Syntax error at line 1, column 8 near \"'aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa...\": the text has no "
         "closing "
         "quote"},
    };
    CheckRefused(rows);
}

TEST(Errors, InvalidUtf8InsideQuotesIsAText) { EXPECT_EQ(MessageOf("Select '\xFF'", ErrorKind::Syntax), ""); }

TEST(Errors, Unsupported) {
    const RefusedText rows[] = {
        {"Select Distinct Top 5 With Ties * From T Order By a", 22,
         "WITH TIES beside DISTINCT or PERCENT is not supported (line 1, column 23)"},
        {"Select * From A Cross Apply (Select 1 As x) B", 16,
         "Cross APPLY: use a sub-query in the select list; it is not supported (line 1, column 17)"},
        {"Select a From T Group By a With Rollup", 27,
         "GROUP BY WITH Rollup: use a query for each level; it is not supported (line 1, column 28)"},
        {"Create View V As Select 1", 7,
         "CREATE VIEW: keep the statement in the program; it is not supported (line 1, column 8)"},
        {"Create Index I On T (a) With Disallow Null", 29,
         "DISALLOW NULL of an index: make the column NOT NULL; it is not supported (line 1, column 30)"},
        {"Select a Collate Latin1_General_BIN From T", 17,
         "COLLATE Latin1_General_BIN: a book has one order of texts, _CI_AS; it is not supported (line 1, column 18)"},
        {"Select * From A With (UpdLock)", 22, "a table hint other than NOLOCK is not supported (line 1, column 23)"},
        {"Select a From A Except All Select b From B", 23, "EXCEPT ALL is not supported (line 1, column 24)"},
        {"Delete Top (5) T From T Inner Join U On T.a=U.a", 7,
         "TOP in a change of joined tables is not supported (line 1, column 8)"},
        {"Insert Top (5) Into T Select * From U", 7,
         "TOP before INTO: put it behind SELECT; it is not supported (line 1, column 8)"},
        {"Create Table T (a Long References U (a))", 23,
         "the constraint REFERENCES is not supported (line 1, column 24)"},
        {"Set Ansi_Nulls Off", 4,
         "SET Ansi_Nulls Off: a book has no such setting; it is not supported (line 1, column 5)"},
        {"If 1=1 Select 2", 0, "IF where one statement stands alone is not supported (line 1, column 1)"},
        {"Select a From T Pivot (Sum(b) For c In (1)) p", 16,
         "PIVOT behind a table: use TRANSFORM; it is not supported (line 1, column 17)"},
        {"Select * From T In 'other.mdb'", 16, "IN of another database is not supported (line 1, column 17)"},
        {"Exec sp_help", 0, "EXEC of a stored procedure is not supported (line 1, column 1)"},
        {"Merge T Using U On a=b", 0, "MERGE: use UPDATE and INSERT; it is not supported (line 1, column 1)"},
        {"Transform Sum(a) Select b From T Union Select c From U Pivot d", 17,
         "TRANSFORM of a UNION is not supported (line 1, column 18)"},
    };
    CheckRefused(rows, ErrorKind::Unsupported);
}

}  // namespace
}  // namespace kpTables::sql::parse
