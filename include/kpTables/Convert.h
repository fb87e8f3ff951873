// Visual Basic 6's conversions, comparisons and text forms. They decide every statement text.
#pragma once

#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "kpTables/Variant.h"

namespace kpTables {

// Conversions. Null raises error 94, a value not convertible error 13, an overflow error 6.
// Rounding to whole numbers and to Currency is half to even. Empty counts as 0, "", False or the zero date.

bool CBool(const Variant& value);  ///< number <> 0; the texts "True" and "False" in any case, numeric text
std::int16_t CInt(const Variant& value);
std::int32_t CLng(const Variant& value);
double CDbl(const Variant& value);
Currency CCur(const Variant& value);
Date CDate(const Variant& value);        ///< a text by Date::Parse, else as a number text; a number is a serial
std::string CStr(const Variant& value);  ///< as written in a statement text: see the Text functions below

/// Conversion by the & operator: as CStr, but Null is "".
std::string Text(const Variant& value);
std::string Text(std::int32_t value);
/// At most 15 significant digits, shortest form, no leading zero lost: "0.5", "66.6666666666667". Plain while neither
/// side of the point needs more than 15 places, else with an exponent: "0.00001", "1E+15", "3.33333333333333E-04".
std::string Text(double value);
/// "True" or "False".
std::string Text(bool value);

/// True for a number, a Boolean, Empty, or a text that reads as a number (blanks around, sign, thousands separators, a
/// currency sign, exponent, &H and &O). Null, dates and objects are not numeric.
bool IsNumeric(const Variant& value);
/// True for a Date or a text that Date::Parse reads.
bool IsDate(const Variant& value);
/// Reads a text that IsNumeric accepts; nothing when it is no number.
std::optional<double> ParseNumber(std::string_view text);

/// Visual Basic's comparison of two Variants (Option Compare Binary): numbers, dates and Booleans as numbers, two texts
/// by code point, Empty as 0 or "" by the other side, a Variant text against a number as numbers (error 13 when it does
/// not read as one). Nothing when either side is Null. Objects and arrays raise error 13.
std::optional<std::partial_ordering> Compare(const Variant& left, const Variant& right);
/// As Compare with a typed text on the right ("x = """): numbers are compared by their text form. Nothing for Null.
std::optional<bool> EqualsText(const Variant& left, std::string_view right);
/// As Compare with a typed number on the right ("x = 0"). A text that is no number raises error 13. Nothing for Null.
std::optional<bool> EqualsNumber(const Variant& left, double right);

/// Removes blanks (U+0020 only) at both ends, as Trim does.
std::string_view Trim(std::string_view text) noexcept;

/// Visual Basic's Format(value, pattern): "yyyy-M-d", "00月", "##### 张", "#,##0.00", "Short Date". A pattern of dates
/// is built of y, m, d, h, n, s (m after an hour is minutes), one of numbers of 0 and # with a point, commas, % or an
/// exponent, one of texts of @ and &, with < or > for the case; parts after semicolons are for negative numbers, zero
/// and empty texts; \x and "x" stand for themselves, as does every other character. A date pattern on a text that is no
/// date, and a digit pattern on a text that is no number, give the text unchanged; Null gives "".
std::string Format(const Variant& value, std::string_view pattern);

/// True when the character is a double-byte one in code page 936 (its ANSI code, as a signed 16-bit value, is
/// negative).
bool IsDoubleByte936(char32_t character) noexcept;

}  // namespace kpTables
