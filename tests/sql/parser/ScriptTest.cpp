// A script's statements and their places.
#include <gtest/gtest.h>

#include <string>

#include "sql/parse/Script.h"

namespace kpTables::sql::parse {
namespace {

/// "line:column text;" of every part; without the semicolon where the part has none.
std::string Parts(std::string_view script) {
    std::string text;
    for (const ScriptPart& part : SplitScript(script)) {
        text += std::to_string(part.begin.line) + ":" + std::to_string(part.begin.column) + " " + part.text +
                (part.ended ? ";" : "") + "|";
    }
    return text;
}

TEST(Script, SemicolonsEndStatements) {
    EXPECT_EQ(Parts("Select 1;Select 2"), "1:1 Select 1;|1:10 Select 2|");
    EXPECT_EQ(Parts("Select 1 ;\n\n  Select\n 2;\n"), "1:1 Select 1;|3:3 Select\n 2;|");
    EXPECT_EQ(Parts(" ;; \n ; "), "");
    EXPECT_EQ(Parts(""), "");
}

TEST(Script, QuotesBracketsAndDatesKeepTheirs) {
    EXPECT_EQ(Parts("Select 'a;b' ; x"), "1:1 Select 'a;b';|1:16 x|");
    EXPECT_EQ(Parts("Select 'it''s;';y"), "1:1 Select 'it''s;';|1:17 y|");
    EXPECT_EQ(Parts("Select [a;b];y"), "1:1 Select [a;b];|1:14 y|");
    EXPECT_EQ(Parts("Select #2004;3#;y"), "1:1 Select #2004;3#;|1:17 y|");
    EXPECT_EQ(Parts("PARAMETERS a Long; Select a; Select 2"), "1:1 PARAMETERS a Long; Select a;|1:30 Select 2|");
    EXPECT_EQ(Parts("Select \"a;b\", `c;d`; x"), "1:1 Select \"a;b\", `c;d`;|1:22 x|");
    EXPECT_EQ(Parts("Select '--a', '/*';y"), "1:1 Select '--a', '/*';|1:20 y|");
    EXPECT_EQ(Parts("Select 'a\n;b';y"), "1:1 Select 'a\n;b';|2:5 y|");
}

TEST(Script, UnclosedOnesEndAsTheLexerHasIt) {
    // A name in brackets and a date end with the line; a text does not.
    EXPECT_EQ(Parts("Select [a;\nb"), "1:1 Select [a;|2:1 b|");
    EXPECT_EQ(Parts("Select #1;\nb"), "1:1 Select #1;|2:1 b|");
    EXPECT_EQ(Parts("Select 'a;\nb"), "1:1 Select 'a;\nb|");
}

TEST(Script, CommentsAreBlanks) {
    EXPECT_EQ(Parts("-- first; line\nSelect 1; -- end\n"), "2:1 Select 1;|");
    EXPECT_EQ(Parts("Select /* 列; */ 1;"), "1:1 Select          1;|");
    EXPECT_EQ(Parts("Select 1 -- it's\n, 2;"), "1:1 Select 1        \n, 2;|");
    EXPECT_EQ(Parts("/* a\nb */ Select 1"), "2:6 Select 1|");
    EXPECT_EQ(Parts("/* a; "), "1:1 |");
    EXPECT_EQ(Parts("Select 1 /* a; "), "1:1 Select 1|");
}

TEST(Script, ColumnsCountCharacters) {
    EXPECT_EQ(Parts("Select '中文';Select 2"), "1:1 Select '中文';|1:13 Select 2|");
}

}  // namespace
}  // namespace kpTables::sql::parse
