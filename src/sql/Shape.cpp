#include "sql/Lexer.h"
#include "sql/Scanner.h"

namespace kpTables::sql {

namespace {

/// What stands for a literal: no statement holds a question mark outside quotes and brackets.
std::string_view Placeholder(LiteralKind kind) {
    switch (kind) {
        case LiteralKind::Integer:
            return "?i";
        case LiteralKind::Decimal:
            return "?d";
        case LiteralKind::Date:
            return "?#";
        default:
            return "?t";
    }
}

}  // namespace

std::string Shape(std::string_view text, std::vector<LiteralValue>& values) {
    std::string shape;
    shape.reserve(text.size());
    Scanner scanner(text);
    for (Lexeme piece = scanner.Next(); piece.kind != TokenKind::End; piece = scanner.Next()) {
        if (piece.blankBefore && !shape.empty()) shape += ' ';
        if (piece.kind == TokenKind::Literal) {
            shape += Placeholder(piece.literal);
            values.push_back({piece.literal, scanner.ValueOf(piece)});
        } else {
            shape += scanner.TextOf(piece);
        }
    }
    return shape;
}

}  // namespace kpTables::sql
