// The value that a literal has as a parameter of each kind. Every function raises error 13 or 6 if there is none.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "kpTables/Currency.h"
#include "kpTables/Date.h"
#include "kpTables/Error.h"
#include "sql/Translation.h"
#include "sql/Tree.h"

namespace kpTables::engines {

/// The whole number as written; nothing for any other literal.
std::optional<std::int64_t> WrittenWhole(const sql::LiteralValue& literal) noexcept;
/// Rounded half to even.
std::int64_t WholeOf(const sql::LiteralValue& literal, double lowest, double highest);
double NumberOf(const sql::LiteralValue& literal);
bool BooleanOf(const sql::LiteralValue& literal);
Currency CurrencyOf(const sql::LiteralValue& literal);
/// The amount when written with four decimals or fewer; nothing for any other, and out of Currency's range.
std::optional<Currency> ExactCurrencyOf(const sql::LiteralValue& literal);
Date DateOf(const sql::LiteralValue& literal);
/// As DateOf, a number counting days from 1900-01-01.
Date ServerDateOf(const sql::LiteralValue& literal);
std::string TextOf(const sql::LiteralValue& literal);

/// Of a parameter that is one of two bounds: the lower or the higher of their literals as its binding compares them. Of
/// any other its own literal.
const sql::LiteralValue& ChosenLiteral(const sql::Parameter& parameter, const std::vector<sql::LiteralValue>& literals);

/// The literal with a minus before it.
sql::LiteralValue Negated(const sql::LiteralValue& literal);

/// Raises the SqlError (TypeMismatch, Overflow) for a literal of text that did not convert.
[[noreturn]] void RaiseNotConverted(const Error& error, const sql::Parameter& parameter,
                                    const sql::LiteralValue& literal, std::string_view text);

}  // namespace kpTables::engines
