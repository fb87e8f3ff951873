// Printed expressions, and the precedence of their outermost operators.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kpTables::sql::print {

/// From the loosest to the tightest.
enum class Precedence {
    Or,
    And,
    Not,
    Equality,
    Relational,
    Additive,
    Multiplicative,
    Concatenation,
    Collation,
    Unary,
    Primary,
};

struct Piece {
    std::string text;
    Precedence precedence = Precedence::Primary;
};

/// The text, in parentheses when its precedence is lower.
std::string Enclosed(Piece piece, Precedence atLeast);
/// "left op right", left-associative.
Piece Operation(Piece left, std::string_view op, Piece right, Precedence precedence);
/// A comparison or another test of two values.
Piece Test(Piece left, std::string_view op, Piece right, Precedence precedence);
/// "name(argument, ...)".
Piece Function(std::string_view name, const std::vector<Piece>& arguments);

}  // namespace kpTables::sql::print
