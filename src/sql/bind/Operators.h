// The operators: their operand types, comparison types and result types.
#pragma once

#include <vector>

#include "sql/bind/Context.h"
#include "sql/bind/Term.h"

namespace kpTables::sql::bind {

/// left op right for + - * / \ Mod ^ and &, with Jet's result types: Currency stays exact with Currency and with whole
/// numbers, and becomes a Double with a Double.
TermPtr BindArithmetic(Context& context, BinaryOperator op, TermPtr left, TermPtr right);
TermPtr BindNegation(Context& context, TermPtr operand);

/// left op right for = <> < <= > >=. Both sides are converted to a common type: Currency against any other number in
/// ten-thousandths, a date against a text as a date. SqlError TypeMismatch for a text against a number.
TermPtr BindComparison(Context& context, BinaryOperator op, TermPtr left, TermPtr right);
/// In Jet's dialect the bounds may stand in any order.
TermPtr BindBetween(Context& context, TermPtr operand, TermPtr low, TermPtr high, bool negated);
TermPtr BindInList(Context& context, TermPtr operand, Terms items, bool negated);
/// CASE operand WHEN value ...: converts the operand and the values to a common type, in place.
void MakeComparable(Context& context, TermPtr& operand, std::vector<TermPtr*> values);
/// The operand of IN (query), converted for a query column of that type.
TermPtr MembershipOperand(Context& context, TermPtr operand, Type column);

/// Conditions joined by one And or Or. True under And and False under Or are dropped.
TermPtr JoinConditions(Context& context, BinaryOperator op, Terms conditions);
/// left op right for Xor, Eqv and Imp.
TermPtr BindLogic(Context& context, BinaryOperator op, TermPtr left, TermPtr right);
TermPtr BindNot(Context& context, TermPtr operand);
TermPtr BindIsNull(Context& context, TermPtr operand, bool negated);

}  // namespace kpTables::sql::bind
