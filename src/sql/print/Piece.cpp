#include "sql/print/Piece.h"

#include <utility>

namespace kpTables::sql::print {

namespace {

Precedence Tighter(Precedence precedence) {
    return precedence == Precedence::Primary ? precedence : static_cast<Precedence>(static_cast<int>(precedence) + 1);
}

// A test that is an operand of another test gets parentheses.
Piece TestOperand(Piece piece) {
    if (piece.precedence > Precedence::Relational) return piece;
    return {"(" + piece.text + ")", Precedence::Primary};
}

}  // namespace

std::string Enclosed(Piece piece, Precedence atLeast) {
    return piece.precedence < atLeast ? "(" + piece.text + ")" : std::move(piece.text);
}

Piece Operation(Piece left, std::string_view op, Piece right, Precedence precedence) {
    // Appended in place: a chain of a thousand operands is not copied a thousand times.
    Piece piece{Enclosed(std::move(left), precedence), precedence};
    piece.text.append(" ").append(op).append(" ").append(Enclosed(std::move(right), Tighter(precedence)));
    return piece;
}

Piece Test(Piece left, std::string_view op, Piece right, Precedence precedence) {
    return Operation(TestOperand(std::move(left)), op, TestOperand(std::move(right)), precedence);
}

Piece Function(std::string_view name, const std::vector<Piece>& arguments) {
    Piece piece{std::string(name)};
    piece.text.append("(");
    for (std::size_t i = 0; i < arguments.size(); ++i) piece.text.append(i ? ", " : "").append(arguments[i].text);
    piece.text.append(")");
    return piece;
}

}  // namespace kpTables::sql::print
