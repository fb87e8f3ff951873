// Texts of several statements, which a host runs with ExecuteScript.
#include <gtest/gtest.h>

#include "TestBook.h"
#include "kpTables/Script.h"
#include "kpTables/Transaction.h"

namespace kpTables {
namespace {

using namespace test;

class SeveralStatements : public testing::Test {
protected:
    SeveralStatements() {
        book->Execute("Create Table T (a LONG, b TEXT(20))");
        book->Execute("Insert Into T Values (1, 'x')");
    }

    std::string Rows(std::string_view text, const NamedValues& values = {}) {
        const auto rows = ExecuteScript(*book, text, values);
        return rows ? RowsOf(*rows) : "done";
    }
    std::string All() { return RowsOf(*book->Execute("Select * From T")); }

    /// The error's text; a test expects one.
    std::string ErrorOf(std::string_view text) {
        try {
            ExecuteScript(*book, text);
        } catch (const DatabaseError& error) {
            EXPECT_EQ(error.Statement(), text);
            return error.Description();
        }
        return "no error";
    }

    BookPtr book = NewBook();
};

TEST_F(SeveralStatements, ExecuteTakesOneOnly) {
    for (const char* const text :
         {"Insert Into T Values (2, 'y'); Delete From T", "Select b From T Where b = 'x'; Delete From T --'",
          "Select 1; Begin Tran", "Begin Tran; Delete From T", "Set NoCount On; Delete From T",
          "Commit; Delete From T"}) {
        EXPECT_EQ(NumberOf([&] { book->Execute(text); }), Code(DatabaseErrorNumber::Syntax)) << text;
        EXPECT_EQ(NumberOf([&] { book->Open(text, SourceKind::Text); }), Code(DatabaseErrorNumber::Syntax)) << text;
    }
    EXPECT_EQ(All(), "1|x");
    EXPECT_EQ(RowsOf(*book->Execute("Select @@TRANCOUNT")), "0");
}

TEST_F(SeveralStatements, AllOrNothing) {
    EXPECT_EQ(ErrorOf("Insert Into T Values (2, 'y');\nUpdate T Set c = 1"), "unknown column 'c' (line 2, column 14)");
    EXPECT_EQ(All(), "1|x");
    EXPECT_EQ(ErrorOf("Insert Into T Values (3, 'y'); Insert Into T Values (4, '123456789012345678901')"),
              ErrorOf("Insert Into T Values (3, 'y'); Insert Into T Values (4, '123456789012345678901')"));
    EXPECT_EQ(All(), "1|x");
    {
        // Inside the host's transaction only the text is undone.
        Transaction transaction(*book);
        book->Execute("Insert Into T Values (5, 'z')");
        EXPECT_NE(ErrorOf("Delete From T; Select nothing From T"), "no error");
        transaction.Commit();
    }
    EXPECT_EQ(All(), "1|x / 5|z");
}

TEST_F(SeveralStatements, PlacesAreOfTheWholeText) {
    EXPECT_EQ(ErrorOf("Select 1; Select a Frm T Order"),
              "Syntax error at line 1, column 24 near \"T\": expected the statement's end");
    EXPECT_EQ(ErrorOf("Declare @n Int = 1;\n Set @n = nothing"), "unknown column 'nothing' (line 2, column 11)");
    EXPECT_EQ(ErrorOf("Declare @n Int, @m Foo = 3"), "Syntax error at line 1, column 20 near \"Foo\": expected a type");
    EXPECT_EQ(ErrorOf("If (Select b From T) > c Select 1"), "unknown column 'c' (line 1, column 24)");
    EXPECT_EQ(ErrorOf("Declare @n Int; Select @n = c From T"), "unknown column 'c' (line 1, column 29)");
    EXPECT_EQ(ErrorOf("Select 1; Commit"), "line 1: There is no transaction to commit");
    EXPECT_EQ(ErrorOf("Select 1; While 1 = 1 Select 2"),
              "WHILE: repeat the statements in the program; it is not supported (line 1, column 11)");
}

TEST_F(SeveralStatements, WhatIsNoScript) {
    const std::pair<const char*, const char*> cases[] = {
        {"Set @n = 1; Select 1", "line 1: the variable @n is not declared"},
        {"Declare @n Int; Declare @n Int",
         "Syntax error at line 1, column 25 near \"@n\": the variable @n is declared twice"},
        {"Declare @t Table (a Int)", "Syntax error at line 1, column 12 near \"Table\": a variable holds one value"},
        {"Declare @n", "Syntax error at line 1, column 11 at the end: expected a type"},
        {"If a = 1", "Syntax error at line 1, column 9 at the end: expected a statement"},
        {"Begin Select 1;", "Syntax error at line 1, column 16 at the end: expected END"},
        {"Select 1; Select 'x", "Syntax error at line 1, column 18 near \"'x\": the text has no closing quote"},
    };
    for (const auto& [text, error] : cases) EXPECT_EQ(ErrorOf(text), error) << text;
    std::string deep;
    for (int i = 0; i < 100; ++i) deep += "If 1 = 1 ";
    EXPECT_NE(ErrorOf(deep + "Select 1").find("nested too deeply"), std::string::npos);
}

TEST_F(SeveralStatements, ValuesOfTheHostAreNoVariables) {
    const NamedValues values = {{"v", std::int32_t{7}}};
    EXPECT_EQ(Rows("Insert Into T Values (@v, 'n'); Select Max(a) From T", values), "7");
    // Compared, not set.
    EXPECT_EQ(Rows("Select 1; Select @v = 7", values), "1");
    EXPECT_EQ(Rows("Declare @n Int = :v; Select @n = @n + @v; Select @n", values), "14");
    EXPECT_THROW(ExecuteScript(*book, "Declare @V Int; Select 1", values), DatabaseError);
    EXPECT_THROW(ExecuteScript(*book, "Set @v = 1; Select 1", values), DatabaseError);
}

TEST_F(SeveralStatements, ItsOwnTransactionStaysOpen) {
    EXPECT_EQ(Rows("Begin Tran; Delete From T"), "done");
    EXPECT_EQ(RowsOf(*book->Execute("Select @@TRANCOUNT")), "1");
    book->Execute("Rollback");
    EXPECT_EQ(All(), "1|x");
    book->Execute("Begin Transaction sales");
    book->Execute("Delete From T");
    book->Execute("Commit Transaction sales");
    EXPECT_EQ(All(), "");
}

TEST_F(SeveralStatements, SemicolonsThatEndNothing) {
    EXPECT_EQ(Rows("Select ';' As [a;b] /* ; */ -- ;"), ";");
    EXPECT_EQ(Rows(" ; Select 2 ; ; "), "2");
    EXPECT_EQ(Rows("PARAMETERS p Long; Select p + 1", {{"p", std::int32_t{1}}}), "2");
    EXPECT_EQ(Rows("Select Case When 1 = 1 Then 2 Else 3 End As [End]; Select 4"), "2");
}

}  // namespace
}  // namespace kpTables
