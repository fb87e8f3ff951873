// A statement's shape: the same for all statements that differ in their constants alone.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "ReadableTexts.h"
#include "sql/Shape.h"
#include "sql/SqlError.h"
#include "sql/parse/Lexer.h"

namespace kpTables::sql::parse {
namespace {

struct ShapedText {
    const char* text;
    const char* shape;
    std::vector<std::string> values;
};

TEST(Shape, TakesLiteralsOut) {
    const ShapedText rows[] = {
        {"Select * From T Where a=5", "Select * From T Where a=?i", {"5"}},
        {"  Select\t*\n\nFrom  T ", "Select * From T", {}},
        {"select Top 2  * From T", "select Top ?i * From T", {"2"}},
        {"Where a=-5And b='it''s'", "Where a=-?iAnd b=?t", {"5", "it's"}},
        {"a=12.5 Or a=3000000000 Or a=1E5", "a=?d Or a=?d Or a=?d", {"12.5", "3000000000", "1E5"}},
        {"d>=#2004-3-7#)", "d>=?#)", {"2004-3-7"}},
        {"[a 5 'b'] & True & Null", "[a 5 'b'] & True & Null", {}},
        {"CAST(a AS char(4))", "CAST(a AS char(?i))", {"4"}},
        {"Where姓名＝'王芳'", "Where姓名＝?t", {"王芳"}},
        {"a1.5", "a1.?i", {"5"}},
        {"", "", {}},
    };
    for (const ShapedText& row : rows) {
        SCOPED_TRACE(row.text);
        std::vector<LiteralValue> values;
        EXPECT_EQ(Shape(row.text, values), row.shape);
        ASSERT_EQ(values.size(), row.values.size());
        for (std::size_t i = 0; i < values.size(); ++i) EXPECT_EQ(values[i].text, row.values[i]);
    }
}

TEST(Shape, AppendsToTheValues) {
    std::vector<LiteralValue> values = {{LiteralKind::Text, "before"}};
    Shape("a=1", values);
    ASSERT_EQ(values.size(), 2u);
    EXPECT_EQ(values[0].text, "before");
    EXPECT_EQ(values[1].text, "1");
}

TEST(Shape, RaisesWhatTokenizeRaises) {
    for (const char* text : {"Select 'a", "Select ##", "Select a|b", "Select \xFF", "Select [", "Select 1--2"}) {
        SCOPED_TRACE(text);
        std::string message;
        try {
            Tokenize(text);
            ADD_FAILURE() << "tokens were read";
        } catch (const SqlError& error) {
            message = error.what();
        }
        std::vector<LiteralValue> values;
        try {
            Shape(text, values);
            ADD_FAILURE() << "a shape was read";
        } catch (const SqlError& error) {
            EXPECT_EQ(error.what(), message);
        }
    }
}

/// The text with every constant replaced by another one of its kind and with more blanks where there are some.
std::string Disguised(const std::string& text) {
    const TokenStream stream = Tokenize(text);
    std::string out;
    std::size_t done = 0;
    for (const Token& token : stream.tokens) {
        for (; done < token.offset; ++done) out += text[done] == ' ' ? std::string(" \n ") : std::string(1, text[done]);
        if (token.kind != TokenKind::Literal) continue;
        constexpr const char* kOther[] = {"", "", "77", "0.25", "'o''ther'", "#1999-12-31#"};
        out += kOther[static_cast<int>(token.literal)];
        done += token.text.size();
    }
    return out + text.substr(done);
}

TEST(Shape, EqualForTextsThatDifferInTheirLiteralsAlone) {
    for (const std::string& text : ReadableTexts()) {
        SCOPED_TRACE(text);
        const std::string other = Disguised(text);
        std::vector<LiteralValue> values;
        std::vector<LiteralValue> otherValues;
        EXPECT_EQ(Shape(text, values), Shape(other, otherValues));
        const TokenStream stream = Tokenize(text);
        const TokenStream otherStream = Tokenize(other);
        ASSERT_EQ(values.size(), stream.literals.size());
        ASSERT_EQ(otherValues.size(), values.size());
        for (std::size_t i = 0; i < values.size(); ++i) {
            EXPECT_EQ(values[i].kind, stream.literals[i].kind);
            EXPECT_EQ(values[i].text, stream.literals[i].text);
            EXPECT_EQ(otherValues[i].kind, values[i].kind);
        }
        ASSERT_EQ(otherStream.tokens.size(), stream.tokens.size());
        for (std::size_t i = 0; i < stream.tokens.size(); ++i)
            EXPECT_EQ(otherStream.tokens[i].kind, stream.tokens[i].kind);
    }
}

TEST(Shape, TellsKindsApart) {
    std::vector<LiteralValue> values;
    const char* texts[] = {"a=1", "a=1.5", "a='1'", "a=#1#", "a=-1", "a=b", "a=Null", "a=True", "a =1", "A=1"};
    for (std::size_t i = 0; i < std::size(texts); ++i)
        for (std::size_t k = i + 1; k < std::size(texts); ++k)
            EXPECT_NE(Shape(texts[i], values), Shape(texts[k], values)) << texts[i] << " and " << texts[k];
}

}  // namespace
}  // namespace kpTables::sql::parse
