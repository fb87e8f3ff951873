// Values that a host binds to the names in its statements, and scripts.
#include <gtest/gtest.h>

#include <limits>

#include "TestBook.h"
#include "kpTables/Convert.h"
#include "kpTables/Script.h"

namespace kpTables {
namespace {

using namespace test;

class BoundValue : public testing::Test {
protected:
    std::string Value(std::string_view text, const NamedValues& values) {
        return Text(book->Execute(text, values)->GetValue(0));
    }
    std::string Rows(std::string_view text, const NamedValues& values) { return RowsOf(*book->Execute(text, values)); }

    BookPtr book = NewBook();
};

TEST_F(BoundValue, EveryTypeIsStoredAsItIs) {
    book->Execute("Create Table T (b YESNO, l LONG, d DOUBLE, c CURRENCY, t DATETIME, x TEXT(40))");
    EXPECT_FALSE(book->Execute("Insert Into T (b,l,d,c,t,x) Values (@b,:l,@d,:c,@t,@名称)",
                               {{"b", true},
                                {"L", std::int32_t{-7}},
                                {"d", -0.1},
                                {"c", Currency::FromDecimalText("-922337203685477.5808")},
                                {"t", Date::FromSerial(38053.75)},
                                {"名称", "it's '); Delete From T; -- @b"}}));
    EXPECT_EQ(Rows("Select * From T", {}),
              "True|-7|-0.1|-922337203685477.5808|2004-3-7 18:00:00|it's '); Delete From T; -- @b");
    book->Execute("Update T Set l=:n, d=:n, c=:n, t=:n, x=:n", {{"n", Variant::Null()}});
    EXPECT_EQ(Value("Select Count(*) From T Where l Is Null And c Is Null And t Is Null And x Is Null", {}), "1");
}

TEST_F(BoundValue, ParametersOfJet) {
    book->Execute("Create Table T (l LONG, t DATETIME, x TEXT(40))");
    book->Execute("Insert Into T Values (3, #2004-3-7#, '水泥'), (4, #2004-4-1#, '3')");
    const char* const byDay =
        "PARAMETERS [First Day] DateTime, n Long; Select l From T Where t >= [First Day] And l = n";
    EXPECT_EQ(Rows(byDay, {{"first day", Date::FromSerial(38053)}, {"N", std::int32_t{3}}}), "3");
    EXPECT_EQ(Rows(byDay, {{"first day", "2004-4-1"}, {"n", "4"}}), "4");
    EXPECT_EQ(Rows(byDay, {{"first day", "2004-4-1"}, {"n", "3"}}), "");
    EXPECT_EQ(Rows("Parameters x Text(40); Select l From T Where T.x = x;", {{"x", std::int32_t{3}}}), "4");
    EXPECT_EQ(Rows("PARAMETERS p Currency; Select [p] * 2, @p", {{"p", 1.5}}), "3|1.5");
    for (const auto& [text, complaint] : std::vector<std::pair<const char*, const char*>>{
             {"PARAMETERS a Long; Select a", "near \"a\": no value is given for this parameter"},
             {"PARAMETERS n Long; Select n", "near \"n\": the parameter's value is not of its type"},
             {"PARAMETERS n Text", "expected ';' behind the parameters"}}) {
        try {
            book->Execute(text, {{"n", "x"}});
            ADD_FAILURE() << text;
        } catch (const Error& error) {
            EXPECT_NE(error.Description().find(complaint), std::string::npos) << error.Description();
        }
    }
}

TEST_F(BoundValue, ComparedWithColumns) {
    book->Execute("Create Table T (l LONG, c CURRENCY, t DATETIME, x TEXT(40))");
    book->Execute("Insert Into T Values (3, 2.5, #2004-3-7#, '水泥')");
    for (const auto& [condition, value] :
         std::vector<std::pair<const char*, Variant>>{{"l=@v", std::int32_t{3}},
                                                      {"l=@v", "3"},
                                                      {"l>-@v", std::int32_t{-2}},
                                                      {"c=@v", Currency::FromDecimalText("2.5")},
                                                      {"c>-@v", Currency::FromDecimalText("-2.4")},
                                                      {"c=@v", 2.5},
                                                      {"c=@v", "2.5"},
                                                      {"t=@v", Date::FromSerial(38053)},
                                                      {"t=@v", "2004-03-07"},
                                                      {"x=@v", "水泥"},
                                                      {"x Like @v", "水%"},
                                                      {"x In ('a',@v)", "水泥"},
                                                      {"l Between @v And @v", std::int32_t{3}}}) {
        EXPECT_EQ(Value(std::string("Select Count(*) From T Where ") + condition, {{"v", value}}), "1") << condition;
    }
    EXPECT_EQ(Value("Select Count(*) From T Where l=@v", {{"v", Variant::Null()}}), "0");
}

TEST_F(BoundValue, OtherPlaces) {
    EXPECT_EQ(Value("Select @v & 'b'", {{"v", "a"}}), "ab");
    EXPECT_EQ(Value("Select 10-@v", {{"v", std::int32_t{-5}}}), "15");
    EXPECT_EQ(Value("Select IIf(@v,'yes','no')", {{"v", false}}), "no");
    EXPECT_EQ(Value("Select CAST(@v AS char(10))", {{"v", std::int32_t{-12}}}), "-12       ");
    book->Execute("Create Table T (l LONG)");
    for (std::int32_t i = 1; i <= 3; ++i) book->Execute("Insert Into T Values (@i)", {{"i", i}});
    EXPECT_EQ(Rows("Select Top @n l From T Order by l Desc", {{"n", std::int32_t{2}}}), "3 / 2");
    EXPECT_EQ(Rows("Select Top @n l From T Order by l Desc", {{"n", std::int32_t{1}}}), "3");
    EXPECT_EQ(NumberOf([&] {
                  book->Execute("Select Top @n l From T", {{"n", std::int32_t{-1}}});
              }),
              Code(DatabaseErrorNumber::Syntax));
}

TEST_F(BoundValue, TextsWithTheirLiteralsInThemShareATranslation) {
    // The same shape as the text with a literal: what one has found must not answer the other.
    book->Execute("Create Table T (l LONG)");
    book->Execute("Insert Into T Values (1)");
    EXPECT_EQ(Value("Select Count(*) From T Where l=@v", {{"v", std::int32_t{1}}}), "1");
    EXPECT_EQ(Value("Select Count(*) From T Where l=2", {}), "0");
    EXPECT_EQ(Value("Select Count(*) From T Where l=@v", {{"v", Variant::Null()}}), "0");
    EXPECT_EQ(Value("Select Count(*) From T Where l=:w", {{"w", std::int32_t{1}}}), "1");
}

TEST_F(BoundValue, Refusals) {
    const auto unknown = Refused([&] { book->Execute("Select 1,\n @v", {{"w", 1.5}}); });
    EXPECT_EQ(unknown->Description(),
              "Syntax error at line 2, column 2 near \"@v\": no value is given for this parameter");
    book->Execute("Create Table T (l LONG)");
    const auto text = Refused([&] { book->Execute("Select * From T\nWhere l=@v", {{"v", "many"}}); });
    EXPECT_EQ(text->Description(), "Type mismatch at line 2, column 9: 'many' is not a number");
    EXPECT_EQ(NumberOf([&] { book->Execute("Select @v", {{"v", Variant()}}); }), Code(ErrorNumber::TypeMismatch));
    EXPECT_EQ(NumberOf([&] { book->Execute("Select @v", {{"v", 1.5}, {"V", 2.5}}); }), Code(ErrorNumber::InvalidCall));
    EXPECT_EQ(NumberOf([&] {
                  book->Execute("Select @v", {{"v", std::numeric_limits<double>::infinity()}});
              }),
              Code(ErrorNumber::Overflow));
    EXPECT_EQ(NumberOf([&] { book->Execute("Select * From @v", {{"v", "T"}}); }), Code(DatabaseErrorNumber::Syntax));
}

TEST_F(BoundValue, ErrorsOfAScriptHaveItsLines) {
    const auto statements = SplitScript("Select 1;\n  Select 2,\n  From m;\nSelect 3; Select x");
    ASSERT_EQ(statements.size(), 4u);
    const auto second = Refused([&] { book->Execute(statements[1].text); });
    EXPECT_EQ(InScript(statements[1], *second).Description().find("Syntax error at line 3, column 3"), 0u)
        << InScript(statements[1], *second).Description();
    const auto last = Refused([&] { book->Execute(statements[3].text); });
    EXPECT_NE(InScript(statements[3], *last).Description().find("line 4, column 18"), std::string::npos)
        << InScript(statements[3], *last).Description();
    const DatabaseError unplaced(Code(DatabaseErrorNumber::ConstraintViolated), "a duplicate key", "Select 3");
    EXPECT_EQ(InScript(statements[2], unplaced).Description(), "line 4: a duplicate key");
}

}  // namespace
}  // namespace kpTables
