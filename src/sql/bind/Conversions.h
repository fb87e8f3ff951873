// Terms converted to a type, as Jet converts a value.
#pragma once

#include <string>

#include "sql/bind/Context.h"
#include "sql/bind/Term.h"

namespace kpTables::sql::bind {

/// SqlError TypeMismatch at the term.
[[noreturn]] void RaiseMismatch(const Term& term, const std::string& detail = {});

/// A literal bound as given, with its minus when it has one.
TermPtr Bound(Context& context, const LiteralTerm& literal, Binding binding);
/// A literal bound by its own type; any other term unchanged.
TermPtr Settled(Context& context, const TermPtr& term);
/// As Settled, and a predicate converted to -1 or 0.
TermPtr AsValue(Context& context, TermPtr term);
/// A condition, for WHERE or an operand of AND. SqlError TypeMismatch for what is neither Boolean nor a number.
TermPtr AsCondition(Context& context, TermPtr term);
/// A number for arithmetic in doubles: Currency in units, a whole number as it is.
TermPtr AsNumber(Context& context, TermPtr term);
/// The default text form; Null stays Null.
TermPtr AsText(Context& context, TermPtr term);
/// The value converted to the type. SqlError TypeMismatch when no value converts.
TermPtr Converted(Context& context, TermPtr term, Type type);
/// As Converted, for a column: a computed whole number is checked against its range.
TermPtr AsStored(Context& context, TermPtr term, Type type);
/// With the collation of texts, unless it already has it, as a table's column does. Other types are returned unchanged.
TermPtr Collated(TermPtr term);
/// The same value with another type, for a Null and an untyped term.
TermPtr Retyped(TermPtr term, Type type);

/// The common type of values of these types in one column or one function's result.
Type CommonType(const Terms& terms);
Type CommonType(Type a, Type b);

}  // namespace kpTables::sql::bind
