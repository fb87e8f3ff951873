// The binary operators: their spelling and precedence. Parser and printer read one table.
#pragma once

#include <string_view>

#include "sql/Tree.h"
#include "sql/parse/Lexer.h"

namespace kpTables::sql::parse {

/// From the loosest to the tightest. Operators of one level associate to the left.
enum class Precedence {
    Implication,
    Equivalence,
    ExclusiveOr,
    Or,
    And,
    Not,
    Comparison,
    Concatenation,
    Addition,
    Modulo,
    IntegerDivision,
    Multiplication,
    Sign,
    Power,
    Primary,
};

/// The next tighter level.
constexpr Precedence Tighter(Precedence level) { return static_cast<Precedence>(static_cast<int>(level) + 1); }

struct OperatorInfo {
    BinaryOperator op;
    std::string_view spelling;
    Precedence precedence;
};

const OperatorInfo& InfoOf(BinaryOperator op);

/// The binary operator that the token is, or nullptr.
const OperatorInfo* FindOperator(const Token& token);

}  // namespace kpTables::sql::parse
