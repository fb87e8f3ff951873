#include "sql/parse/Lexer.h"

#include "sql/parse/Keywords.h"
#include "sql/parse/Scanner.h"

namespace kpTables::sql::parse {

namespace {

/// Whether an expression can end with this token, so that a name cannot follow it.
bool EndsOperand(const Token& token) {
    switch (token.kind) {
        case TokenKind::Word:
            return !IsReserved(token.text) || SameWord(token.text, "NULL") || SameWord(token.text, "TRUE") ||
                   SameWord(token.text, "FALSE");
        case TokenKind::Operator:
            return token.text == ")";
        default:
            return true;
    }
}

/// How many bytes of the word are a keyword that touches the name after it: 5 of "Where甲", 0 of "Whereas甲".
std::size_t KeywordBeforeName(std::string_view word, const std::vector<Token>& before) {
    std::size_t letters = 0;
    while (letters < word.size() && static_cast<unsigned char>(word[letters]) < 0x80) {
        if (word[letters] < 'A') return 0;
        ++letters;
    }
    if (letters == 0 || letters == word.size()) return 0;
    const std::string_view keyword = word.substr(0, letters);
    if (before.empty()) return SplitsFromName(keyword, "", false) ? letters : 0;
    const Token& last = before.back();
    const bool speaks = last.kind == TokenKind::Word || last.kind == TokenKind::Operator;
    return SplitsFromName(keyword, speaks ? last.text : "'", EndsOperand(last)) ? letters : 0;
}

}  // namespace

TokenStream Tokenize(std::string_view text, std::span<const NamedLiteral> named, Dialect dialect) {
    TokenStream stream;
    Scanner scanner(text, named, dialect);
    for (Lexeme piece = scanner.Next();; piece = scanner.Next()) {
        Token token{piece.kind, scanner.TextOf(piece), piece.begin, piece.literal, -1};
        if (piece.kind == TokenKind::Literal) {
            token.ordinal = static_cast<int>(stream.literals.size());
            stream.literals.push_back({piece.literal, scanner.ValueOf(piece)});
        } else if (piece.kind == TokenKind::QuotedName) {
            token.text = token.text.substr(1, token.text.size() - 2);
        } else if (piece.kind == TokenKind::Word) {
            if (const std::size_t length = KeywordBeforeName(token.text, stream.tokens)) {
                stream.tokens.push_back({TokenKind::Word, token.text.substr(0, length), piece.begin});
                token.text.remove_prefix(length);
                token.offset += length;
            }
        }
        stream.tokens.push_back(token);
        if (piece.kind == TokenKind::End) return stream;
    }
}

}  // namespace kpTables::sql::parse
