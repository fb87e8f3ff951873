// Conversions that a statement asks for.
#pragma once

#include "sql/Tree.h"
#include "sql/bind/Context.h"
#include "sql/bind/Term.h"

namespace kpTables::sql::bind {

/// CAST(operand AS type) as the server does it: a number becomes a date counting from 1900-01-01, a double is
/// truncated, char(n) is padded. style: of a date's or an amount's text, as CONVERT takes it, or null; SqlError
/// Unsupported for any other type.
TermPtr BindCast(Context& context, TermPtr operand, const TypeName& type, TermPtr style = nullptr);

/// CDATE(operand): a literal stays one, so that a comparison can bind it as it needs it.
TermPtr BindDate(Context& context, TermPtr operand);

/// TRY_CAST and TRY_CONVERT: Null where the value cannot be converted.
TermPtr BindTriedCast(Context& context, TermPtr operand, const TypeName& type, const Expression* style);

}  // namespace kpTables::sql::bind
