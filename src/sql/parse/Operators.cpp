#include "sql/parse/Operators.h"

#include <array>
#include <cstddef>

#include "sql/parse/Keywords.h"

namespace kpTables::sql::parse {

namespace {

using enum BinaryOperator;

// In the order of BinaryOperator.
constexpr std::array<OperatorInfo, 19> kOperators = {{
    {Power, "^", Precedence::Power},
    {Multiply, "*", Precedence::Multiplication},
    {Divide, "/", Precedence::Multiplication},
    {IntegerDivide, "\\", Precedence::IntegerDivision},
    {Modulo, "MOD", Precedence::Modulo},
    {Add, "+", Precedence::Addition},
    {Subtract, "-", Precedence::Addition},
    {Concatenate, "&", Precedence::Concatenation},
    {Equal, "=", Precedence::Comparison},
    {NotEqual, "<>", Precedence::Comparison},
    {Less, "<", Precedence::Comparison},
    {LessEqual, "<=", Precedence::Comparison},
    {Greater, ">", Precedence::Comparison},
    {GreaterEqual, ">=", Precedence::Comparison},
    {And, "AND", Precedence::And},
    {Or, "OR", Precedence::Or},
    {Xor, "XOR", Precedence::ExclusiveOr},
    {Eqv, "EQV", Precedence::Equivalence},
    {Imp, "IMP", Precedence::Implication},
}};

constexpr bool InOrder() {
    for (std::size_t i = 0; i < kOperators.size(); ++i)
        if (kOperators[i].op != static_cast<BinaryOperator>(i)) return false;
    return true;
}
static_assert(InOrder());

/// "%" binds as in SQL Server, tighter than MOD.
constexpr std::array<OperatorInfo, 7> kOtherSpellings = {{{NotEqual, "!=", Precedence::Comparison},
                                                          {GreaterEqual, "!<", Precedence::Comparison},
                                                          {LessEqual, "!>", Precedence::Comparison},
                                                          {Modulo, "%", Precedence::Multiplication},
                                                          {Equal, "\uFF1D", Precedence::Comparison},
                                                          {LessEqual, "<\uFF1D", Precedence::Comparison},
                                                          {GreaterEqual, ">\uFF1D", Precedence::Comparison}}};

}  // namespace

const OperatorInfo& InfoOf(BinaryOperator op) { return kOperators[static_cast<std::size_t>(op)]; }

const OperatorInfo* FindOperator(const Token& token) {
    if (token.kind != TokenKind::Word && token.kind != TokenKind::Operator) return nullptr;
    for (const OperatorInfo& row : kOperators)
        if (SameWord(row.spelling, token.text)) return &row;
    for (const OperatorInfo& row : kOtherSpellings)
        if (row.spelling == token.text) return &row;
    return nullptr;
}

}  // namespace kpTables::sql::parse
