// Tokens: what splits where.
#include <gtest/gtest.h>

#include <string>

#include "sql/parse/Lexer.h"

namespace kpTables::sql::parse {
namespace {

/// W:word Q:quoted name O:operator V:variable, literals by their kind; one blank between two tokens.
std::string Spell(const std::string& text) {
    const TokenStream stream = Tokenize(text);
    std::string out;
    for (const Token& token : stream.tokens) {
        if (!out.empty()) out += ' ';
        if (token.kind == TokenKind::Literal) {
            out += std::string(1, "-BIDTS"[static_cast<int>(token.literal)]) + ':' +
                   stream.literals.at(static_cast<std::size_t>(token.ordinal)).text;
        } else {
            out += std::string(1, "WQ-OVE"[static_cast<int>(token.kind)]) + ':' + std::string(token.text);
        }
    }
    return out;
}

struct LexedText {
    const char* text;
    const char* tokens;
};

template <std::size_t N>
void CheckLexed(const LexedText (&rows)[N]) {
    for (const LexedText& row : rows) {
        SCOPED_TRACE(row.text);
        EXPECT_EQ(Spell(row.text), row.tokens);
    }
}

TEST(Lexer, Numbers) {
    const LexedText rows[] = {
        {"12", "I:12 E:"},
        {"12.5", "D:12.5 E:"},
        {".5", "D:.5 E:"},
        {"12.", "I:12 O:. E:"},
        {"1E5", "D:1E5 E:"},
        {"1e+5", "D:1e+5 E:"},
        {"1E-5And", "D:1E-5 W:And E:"},
        {"1E", "I:1 W:E E:"},
        {"1Eqv", "I:1 W:Eqv E:"},
        {"1E+", "I:1 W:E O:+ E:"},
        {"5And", "I:5 W:And E:"},
        {"12Order", "I:12 W:Order E:"},
        {"5姓名", "I:5 W:姓名 E:"},
        {"2147483647", "I:2147483647 E:"},
        {"2147483648", "I:2147483648 E:"},
        {"2147483649", "D:2147483649 E:"},
        {"99999999999", "D:99999999999 E:"},
        {"0000000000000012", "I:0000000000000012 E:"},
        {"-7", "O:- I:7 E:"},
        {"T.5", "W:T O:. I:5 E:"},
        {"T .5", "W:T D:.5 E:"},
        {"1.5.5", "D:1.5 D:.5 E:"},
    };
    CheckLexed(rows);
}

TEST(Lexer, TextsDatesAndNames) {
    const LexedText rows[] = {
        {"'a''b'", "T:a'b E:"},
        {"''", "T: E:"},
        {"'a' 'b'", "T:a T:b E:"},
        {"'周勇'Sum", "T:周勇 W:Sum E:"},
        {"#2004-3-7#", "S:2004-3-7 E:"},
        {"=#2004-3-7 1:02:03#)", "O:= S:2004-3-7 1:02:03 O:) E:"},
        {"[a b].[c]", "Q:a b O:. Q:c E:"},
        {"@@IDENTITY", "V:@@IDENTITY E:"},
        {"a<=b<>c!=d>=e＝f", "W:a O:<= W:b O:<> W:c O:!= W:d O:>= W:e O:＝ W:f E:"},
        {"a\u3000b", "W:a W:b E:"},
        {"单位名称＝'x'", "W:单位名称 O:＝ T:x E:"},
        {"", "E:"},
    };
    CheckLexed(rows);
}

TEST(Lexer, KeywordBeforeAChineseName) {
    const LexedText rows[] = {
        {"From T Where姓名", "W:From W:T W:Where W:姓名 E:"},
        {"a=1 And姓名", "W:a O:= I:1 W:And W:姓名 E:"},
        {"a=1Or姓名", "W:a O:= I:1 W:Or W:姓名 E:"},
        {"Select姓名", "W:Select W:姓名 E:"},
        {"Select Distinct姓名", "W:Select W:Distinct W:姓名 E:"},
        {"Select *From操作员", "W:Select O:* W:From W:操作员 E:"},
        {"Delete From操作员", "W:Delete W:From W:操作员 E:"},
        {"Sum(a) As合计", "W:Sum O:( W:a O:) W:As W:合计 E:"},
        {"Order By姓名", "W:Order W:By W:姓名 E:"},
        {"Where Not姓名", "W:Where W:Not W:姓名 E:"},
        {"Update操作员 Set姓名", "W:Update W:操作员 W:Set W:姓名 E:"},
        {"a Left Join客户", "W:a W:Left W:Join W:客户 E:"},
        {"True And姓名", "W:True W:And W:姓名 E:"},
        {"[Order] Where姓名", "Q:Order W:Where W:姓名 E:"},
        // Names that begin with Latin letters stay whole.
        {"pdID号", "W:pdID号 E:"},
        {"Where And姓名", "W:Where W:And姓名 E:"},
        {"T.Where姓名", "W:T O:. W:Where姓名 E:"},
        {"a In库存", "W:a W:In库存 E:"},
        {"From T Where1姓名", "W:From W:T W:Where1姓名 E:"},
        {"[Order] By姓名", "Q:Order W:By姓名 E:"},
    };
    CheckLexed(rows);
}

TEST(Lexer, OffsetsAndOrdinals) {
    const std::string text = "年=1 And月='a''b' And 日<#2004-3-7#";
    const TokenStream stream = Tokenize(text);
    const std::size_t offsets[] = {0, 3, 4, 6, 9, 12, 13, 20, 24, 27, 28, 38};
    ASSERT_EQ(stream.tokens.size(), std::size(offsets));
    for (std::size_t i = 0; i < std::size(offsets); ++i) EXPECT_EQ(stream.tokens[i].offset, offsets[i]) << i;
    EXPECT_EQ(stream.tokens[2].ordinal, 0);
    EXPECT_EQ(stream.tokens[6].ordinal, 1);
    EXPECT_EQ(stream.tokens[10].ordinal, 2);
    ASSERT_EQ(stream.literals.size(), 3u);
    EXPECT_EQ(stream.literals[1].text, "a'b");
    EXPECT_EQ(stream.literals[2].kind, LiteralKind::Date);
}

}  // namespace
}  // namespace kpTables::sql::parse
