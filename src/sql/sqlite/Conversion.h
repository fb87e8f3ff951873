// Terms brought to a type, as Jet converts a value.
#pragma once

#include <string>
#include <vector>

#include "sql/sqlite/Session.h"
#include "sql/sqlite/Term.h"

namespace kpTables::sql {

bool IsWhole(Type type) noexcept;    ///< Boolean, Short or Long
bool IsNumeric(Type type) noexcept;  ///< IsWhole, Double or Currency

/// SqlError TypeMismatch at the term.
[[noreturn]] void RaiseMismatch(const Term& term, const std::string& detail = {});

/// A literal bound as given, with its minus when it has one.
Term BoundTerm(Session& session, const Term& literal, Binding binding);
/// A literal bound as what it is; any other term as it stands.
Term SettledTerm(Session& session, Term term);
/// Settled, a predicate's 1 turned into -1.
Term ValueTerm(Session& session, Term term);
/// A condition, to stand after WHERE or beside AND. SqlError TypeMismatch for what is neither Boolean nor a number.
Term PredicateTerm(Session& session, Term term);
/// A number for arithmetic in doubles: Currency in units, a whole number as it is.
Term RealTerm(Session& session, Term term);
/// The default text form; Null stays Null.
Term TextTerm(Session& session, Term term);
/// The value as another type holds it. SqlError TypeMismatch when no value converts.
Term ConvertedTerm(Session& session, Term term, Type type);
/// As ConvertedTerm, for a column: what a computed whole number may have outgrown is checked.
Term StoredTerm(Session& session, Term term, Type type);

/// The type that values of all these types have when they meet in one column or one function's result.
Type CommonType(const std::vector<Term>& terms);
Type CommonType(Type a, Type b);

}  // namespace kpTables::sql
