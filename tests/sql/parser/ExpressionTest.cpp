// Operators and how tightly they bind, functions, names and constants.
#include <gtest/gtest.h>

#include <string>

#include "TreeDump.h"
#include "sql/parse/Parser.h"
#include "sql/parse/TextPrinter.h"

namespace kpTables::sql::parse {
namespace {

struct ExpressionText {
    const char* text;
    const char* canonical;
};

/// The one item of "Select <text>".
const Expression& ItemOf(const Statement& statement) {
    return *static_cast<const SelectStatement&>(statement).query->members.at(0).core->items.at(0).expression;
}

template <std::size_t N>
void CheckExpressions(const ExpressionText (&rows)[N]) {
    for (const ExpressionText& row : rows) {
        SCOPED_TRACE(row.text);
        const StatementPtr tree = Parse(std::string("Select ") + row.text);
        EXPECT_EQ(Print(ItemOf(*tree)), row.canonical);
        EXPECT_EQ(Dump(*Parse(std::string("Select ") + row.canonical)), Dump(*tree));
    }
}

TEST(Expression, MinimalParentheses) {
    const ExpressionText rows[] = {
        {"((a))", "a"},
        {"a+(b*c)", "a + b * c"},
        {"(a+b)*c", "(a + b) * c"},
        {"a-(b-c)", "a - (b - c)"},
        {"(a-b)-c", "a - b - c"},
        {"a/b/c", "a / b / c"},
        {"a/(b/c)", "a / (b / c)"},
        {"a\\b*c", "a \\ b * c"},
        {"(a\\b)*c", "(a \\ b) * c"},
        {"a Mod b\\c", "a MOD b \\ c"},
        {"(a mod b)\\c", "(a MOD b) \\ c"},
        {"a+b Mod c", "a + b MOD c"},
        {"(a+b) Mod c", "(a + b) MOD c"},
        {"a & b + c", "a & b + c"},
        {"(a & b) + c", "(a & b) + c"},
        {"a & b = c", "a & b = c"},
        {"a & (b = c)", "a & (b = c)"},
        {"-a^b", "-a ^ b"},
        {"(-a)^b", "(-a) ^ b"},
        {"a^-b", "a ^ (-b)"},
        {"a^b^c", "a ^ b ^ c"},
        {"a^(b^c)", "a ^ (b ^ c)"},
        {"-a*b", "-a * b"},
        {"-(a*b)", "-(a * b)"},
        {"a*-b", "a * -b"},
        {"a- -b", "a - -b"},
        {"-(-a)", "- -a"},
        {"- -a", "- -a"},
        {"+a", "+a"},
        {"Not a=b", "NOT a = b"},
        {"(Not a)=b", "(NOT a) = b"},
        {"Not Not a", "NOT NOT a"},
        {"Not (a And b)", "NOT (a AND b)"},
        {"Not a And b", "NOT a AND b"},
        {"a Or b And c", "a OR b AND c"},
        {"(a Or b) And c", "(a OR b) AND c"},
        {"a Xor b Or c", "a XOR b OR c"},
        {"(a Xor b) Or c", "(a XOR b) OR c"},
        {"a Eqv b Xor c", "a EQV b XOR c"},
        {"a Imp b Eqv c", "a IMP b EQV c"},
        {"a And (b And c)", "a AND (b AND c)"},
        {"a=b=c", "a = b = c"},
        {"a=(b=c)", "a = (b = c)"},
        {"a<>b Or a!=b Or a<=b Or a>=b Or a<b Or a>b", "a <> b OR a <> b OR a <= b OR a >= b OR a < b OR a > b"},
        {"a＝b And a>＝b And a<＝b", "a = b AND a >= b AND a <= b"},
    };
    CheckExpressions(rows);
}

TEST(Expression, Predicates) {
    const ExpressionText rows[] = {
        {"a Like 'x%'", "a LIKE 'x%'"},
        {"a Not Like b & '%'", "a NOT LIKE b & '%'"},
        {"a Between 1 And 2 And b", "a BETWEEN 1 AND 2 AND b"},
        {"a Not Between b+1 And c-1 Or d", "a NOT BETWEEN b + 1 AND c - 1 OR d"},
        {"a Between (b And c) And d", "a BETWEEN (b AND c) AND d"},
        {"a In (1,2,'x')", "a IN (1, 2, 'x')"},
        {"a Not In(1)", "a NOT IN (1)"},
        {"a In (Select b From T)", "a IN (SELECT b FROM T)"},
        {"a not in ((Select b From T))", "a NOT IN (SELECT b FROM T)"},
        {"a In ((Select b From T),2)", "a IN ((SELECT b FROM T), 2)"},
        {"a Is Null And b Is Not Null", "a IS NULL AND b IS NOT NULL"},
        {"(a=b) Is Null", "a = b IS NULL"},
        {"a=(b Is Null)", "a = (b IS NULL)"},
        {"Not a In (1)", "NOT a IN (1)"},
        {"(Not a) In (1)", "(NOT a) IN (1)"},
        {"Exists (Select 1)", "EXISTS (SELECT 1)"},
        {"Not Exists(Select * From T Where a=1)", "NOT EXISTS (SELECT * FROM T WHERE a = 1)"},
        {"(Select Max(a) From T)+1", "(SELECT Max(a) FROM T) + 1"},
        {"((Select Max(a) From T)+1)*2", "((SELECT Max(a) FROM T) + 1) * 2"},
    };
    CheckExpressions(rows);
}

TEST(Expression, Calls) {
    const ExpressionText rows[] = {
        {"Count(*)", "Count(*)"},
        {"Count(Distinct a)", "Count(DISTINCT a)"},
        {"Sum(All a)", "Sum(a)"},
        {"Date()", "Date()"},
        {"Left(a,2) & Right (b,3)", "Left(a, 2) & Right(b, 3)"},
        {"IIf(a>1,'x','y')", "IIf(a > 1, 'x', 'y')"},
        {"Convert(datetime,a)", "Convert(datetime, a)"},
        {"CAST(年份 AS char(4))+'-'", "CAST(年份 AS CHAR(4)) + '-'"},
        {"Cast('2004-3-7' As DateTime)", "CAST('2004-3-7' AS DATETIME)"},
        {"CAST(2004-3-7 AS DATETIME)", "CAST(2004 - 3 - 7 AS DATETIME)"},
        {"Cast(a As varchar)", "CAST(a AS TEXT)"},
        {"Cast(a As int)", "CAST(a AS LONG)"},
        {"Cast(a As money)", "CAST(a AS CURRENCY)"},
        {"Cast(a As float)", "CAST(a AS DOUBLE)"},
        {"case a when 1 then b else 0 end", "CASE a WHEN 1 THEN b ELSE 0 END"},
        {"Case When a>1 Then 'x' When a Is Null Then 'y' End", "CASE WHEN a > 1 THEN 'x' WHEN a IS NULL THEN 'y' END"},
        {"Case [When] When 1 Then 2 End", "CASE [When] WHEN 1 THEN 2 END"},
    };
    CheckExpressions(rows);
}

TEST(Expression, NamesAndConstants) {
    const ExpressionText rows[] = {
        {"Table", "Table"},
        {"Index", "Index"},
        {"Lst.Index", "Lst.Index"},
        {"Lst.[Order]", "Lst.[Order]"},
        {"[Order]", "[Order]"},
        {"[Rec].[pdID]", "Rec.pdID"},
        {"[a b].[c-d]", "[a b].[c-d]"},
        {"[单价(元)]", "[单价(元)]"},
        {"[5a]", "[5a]"},
        {"[And姓名]", "[And姓名]"},
        {"pdID号", "pdID号"},
        {"In库存", "In库存"},
        {"Date", "Date"},
        {"_x1", "_x1"},
        {"@@identity", "@@identity"},
        {"true", "True"},
        {"FALSE", "False"},
        {"null", "NULL"},
        {"12", "12"},
        {"2147483648", "2147483648"},
        {".5", ".5"},
        {"1E5", "1E5"},
        {"1.5e-3", "1.5e-3"},
        {"'it''s'", "'it''s'"},
        {"''", "''"},
        {"''''", "''''"},
        {"'#[a]--'", "'#[a]--'"},
        {"#2004-3-7 12:30:00#", "#2004-3-7 12:30:00#"},
    };
    CheckExpressions(rows);
}

TEST(Expression, TreesByHand) {
    const ExpressionText rows[] = {
        {"1+2*3", "(plus (integer <1>) (times (integer <2>) (integer <3>)))"},
        {"-2^2", "(minus (power (integer <2>) (integer <2>)))"},
        {"a Or b And Not c", "(or (column <> <a>) (and (column <> <b>) (not (column <> <c>))))"},
        {"a-b-c", "(minus (minus (column <> <a>) (column <> <b>)) (column <> <c>))"},
        {"Lst.月份<=2147483648", "(le (column <Lst> <月份>) (integer <2147483648>))"},
        {"2147483649", "(decimal <2147483649>)"},
        {"0002147483648", "(integer <0002147483648>)"},
        {"1E5", "(decimal <1E5>)"},
        {"a Not Like '%''%'", "(notlike (column <> <a>) (text <%'%>))"},
        {"#2004-3-7#", "(date <2004-3-7>)"},
        {"年份 & '-'", "(concat (column <> <年份>) (text <->))"},
        {"CAST(a AS char(4))", "(cast (column <> <a>) type:8:4:fixed)"},
    };
    for (const ExpressionText& row : rows) {
        SCOPED_TRACE(row.text);
        EXPECT_EQ(Dump(ItemOf(*Parse(std::string("Select ") + row.text))), row.canonical);
    }
}

}  // namespace
}  // namespace kpTables::sql::parse
