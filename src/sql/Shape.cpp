#include "sql/Shape.h"

#include "sql/parse/Scanner.h"

namespace kpTables::sql {

namespace {

/// A literal's placeholder: no statement has a question mark outside quotes and brackets.
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

/// Behind the shape of a text in SQL Server's dialect: no statement contains it.
constexpr char kServerMark = '\3';

}  // namespace

std::string Shape(std::string_view text, std::vector<LiteralValue>& values, std::span<const NamedLiteral> named,
                  Dialect dialect) {
    std::string shape;
    shape.reserve(text.size() + 1);
    parse::Scanner scanner(text, named, dialect);
    // Pieces that are already spaced as in the shape, by one blank or none, are copied together.
    std::size_t begin = 0;
    std::size_t end = 0;
    for (parse::Lexeme piece = scanner.Next(); piece.kind != parse::TokenKind::End; piece = scanner.Next()) {
        const bool replaced = piece.kind == parse::TokenKind::Literal || piece.given;
        const bool together = piece.begin == end || (end > 0 && piece.begin == end + 1 && text[end] == ' ');
        if (replaced || !together) {
            shape.append(text, begin, end - begin);
            if (piece.blankBefore && !shape.empty()) shape += ' ';
            begin = piece.begin;
        }
        end = piece.end;
        if (!replaced) continue;
        if (piece.kind == parse::TokenKind::Literal) {
            shape += Placeholder(piece.literal);
            values.push_back({piece.literal, scanner.ValueOf(piece), piece.begin});
        } else {
            shape += scanner.TextOf(piece);
        }
        begin = end;
    }
    shape.append(text, begin, end - begin);
    if (dialect == Dialect::SqlServer) shape += kServerMark;
    return shape;
}

}  // namespace kpTables::sql
