// The parts that need no driver: texts, connection strings, names.
#include <gtest/gtest.h>

#include "engines/odbc/ConnectionText.h"
#include "engines/odbc/EditableSource.h"
#include "engines/odbc/NamedMarkers.h"
#include "engines/odbc/ServerTraits.h"
#include "engines/odbc/StatementWord.h"
#include "engines/odbc/WideText.h"
#include "kpTables/Book.h"
#include "sqlite/TestBook.h"

namespace kpTables::engines::odbc {
namespace {

using test::Refused;

TEST(OdbcWideText, HasSurrogatesBeyondTheBasicPlane) {
    EXPECT_EQ(Wide("a水𠮷"), u"a\u6c34\xd842\xdfb7");
    EXPECT_EQ(Narrow(u"a\u6c34\xd842\xdfb7"), "a水𠮷");
    EXPECT_EQ(Wide(""), u"");
    EXPECT_EQ(Wide("\xff"), u"\ufffd");
    EXPECT_EQ(Narrow(std::u16string{0xd842, u'x'}), "\xef\xbf\xbdx");
    EXPECT_EQ(Narrow(std::u16string{0xdfb7}), "\xef\xbf\xbd");
}

TEST(OdbcConnectionText, IsPassedOn) {
    EXPECT_EQ(ConnectionText("DSN=shop;UID=kp"), "DSN=shop;UID=kp");
    EXPECT_EQ(ConnectionText("Driver={a;b}}c};Server=x;"), "Driver={a;b}}c};Server=x");
    EXPECT_NE(Refused([] { ConnectionText(""); })->Description().find("data source"), std::string::npos);
}

TEST(OdbcConnectionText, APasswordIsRefusedAndNotShown) {
    for (const char* url : {"odbc:DSN=shop;PWD=secret1", "odbc:DSN=shop; pwd = {secret1}", "odbc:Password=secret1"}) {
        const std::string message = Refused([&] { OpenBook(url); })->Description();
        EXPECT_NE(message.find("asked for"), std::string::npos) << message;
        EXPECT_EQ(message.find("secret1"), std::string::npos) << message;
    }
    // In a value in braces it is a part of the value.
    EXPECT_EQ(ConnectionText("Driver={x;PWD=y}"), "Driver={x;PWD=y}");
}

TEST(OdbcConnectionText, APasswordMayHaveAnyCharacters) {
    EXPECT_EQ(WithPassword("DSN=shop", "a;b}c 密"), "DSN=shop;PWD={a;b}}c 密}");
}

TEST(OdbcNamedMarkers, StandWhereAValueIsNamed) {
    const NamedValues values = {{"a", 1}, {"名", "x"}};
    Parameters parameters;
    EXPECT_EQ(WithMarkers("Select @a,:名,@A From T", values, parameters), "Select ?,?,? From T");
    for (const char* text : {"'@a' \"@a\" [@a] `:a`", "-- @a\n", "/* @a */", "@@a x::a", "@b", "it''s @", "'@a"})
        EXPECT_EQ(WithMarkers(text, values, parameters), text);
    EXPECT_EQ(WithMarkers("'x'@a", values, parameters), "'x'?");
}

TEST(OdbcStatementUse, IsToldByTheFirstWord) {
    EXPECT_EQ(UseOf(" (Select 1)"), StatementUse::Read);
    EXPECT_EQ(UseOf("transform Sum(a) Select"), StatementUse::Read);
    EXPECT_EQ(UseOf("\n delete From T"), StatementUse::Change);
    EXPECT_EQ(UseOf("Create Table T"), StatementUse::Other);
    EXPECT_EQ(UseOf("Selection"), StatementUse::Other);
    EXPECT_EQ(UseOf(""), StatementUse::Other);
}

TEST(OdbcEditableSource, IsOneTablesRows) {
    const auto source = [](const char* text) {
        const auto found = SourceOfText(text, SqlDialect::Jet);
        return found ? found->table + (found->wholeTable ? " whole" : "") : std::string("none");
    };
    EXPECT_EQ(source("Select * From 仓库余额表"), "仓库余额表 whole");
    EXPECT_EQ(source("Select a,b As B From [x y] Where c=1 Order by a"), "x y");
    EXPECT_EQ(source("Select TOP 1 * From T"), "T");
    for (const char* text :
         {"Select a As b From T", "Select a+1 From T", "Select Distinct a From T", "Select * From T,U",
          "Select a From T Group by a", "Select a From T Union Select a From U", "Delete From T", "no SQL"})
        EXPECT_EQ(source(text), "none") << text;
}

TEST(OdbcServerTraits, AreThoseOfTheServersName) {
    EXPECT_STREQ(TraitsOf("Microsoft SQL Server").lastCounter, "SELECT SCOPE_IDENTITY()");
    EXPECT_STREQ(TraitsOf("Access").lastCounter, "SELECT @@IDENTITY");
    EXPECT_STREQ(TraitsOf("Another").lastCounter, "");
    EXPECT_STREQ(TraitsOf("Another").beginLevel, "SAVEPOINT kp{1}");
}

TEST(OdbcBook, IsNotMadeAndNotUpgraded) {
    EXPECT_NE(Refused([] { CreateBook("odbc:DSN=shop"); })->Description().find("not made"), std::string::npos);
    EXPECT_NE(Refused([] { UpgradeBook("odbc:DSN=shop"); })->Description().find("not upgraded"), std::string::npos);
}

}  // namespace
}  // namespace kpTables::engines::odbc
