// Terms brought to a type, as Jet converts a value.
#pragma once

#include <string>

#include "sql/bind/Context.h"
#include "sql/bind/Term.h"

namespace kpTables::sql::bind {

/// SqlError TypeMismatch at the term.
[[noreturn]] void RaiseMismatch(const Term& term, const std::string& detail = {});

/// A literal bound as given, with its minus when it has one.
TermPtr Bound(Context& context, const LiteralTerm& literal, Binding binding);
/// A literal bound as what it is; any other term as it stands.
TermPtr Settled(Context& context, TermPtr term);
/// Settled, a predicate's truth turned into -1 or 0.
TermPtr AsValue(Context& context, TermPtr term);
/// A condition, to stand after WHERE or beside AND. SqlError TypeMismatch for what is neither Boolean nor a number.
TermPtr AsCondition(Context& context, TermPtr term);
/// A number for arithmetic in doubles: Currency in units, a whole number as it is.
TermPtr AsNumber(Context& context, TermPtr term);
/// The default text form; Null stays Null.
TermPtr AsText(Context& context, TermPtr term);
/// The value as another type holds it. SqlError TypeMismatch when no value converts.
TermPtr Converted(Context& context, TermPtr term, Type type);
/// As Converted, for a column: what a computed whole number may have outgrown is checked.
TermPtr AsStored(Context& context, TermPtr term, Type type);
/// With the collation of texts, unless it has it already, as a table's column does. Other types are returned as they
/// are.
TermPtr Collated(TermPtr term);
/// The same value called another type, for a Null and for what has no type.
TermPtr Retyped(TermPtr term, Type type);

/// The type that values of all these types have when they meet in one column or one function's result.
Type CommonType(const Terms& terms);
Type CommonType(Type a, Type b);

}  // namespace kpTables::sql::bind
