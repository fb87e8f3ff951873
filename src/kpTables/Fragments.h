// Clause builders and value functions that the methods share.
#pragma once

#include <cstdint>
#include <exception>
#include <optional>
#include <string>
#include <string_view>

#include "kpTables/Variant.h"

namespace kpTables {

/// A bill's date as an expression on its columns 年份, 月份 and 日子.
std::string BillDate(bool isSQL);
/// Date range on a bill's 年份, 月份 and 日子, both ends included: " And ..." or "". A bound that equals "" (Empty
/// does) or is Null counts as not given; one that is no date raises error 13.
std::string Get_DateSql(const Variant& first, const Variant& last, bool isSQL);
/// Bill number range on the header aliased Lst, both ends included: " And ..." or "". Bounds count as in Get_DateSql.
std::string Get_NoSql(const Variant& first, const Variant& last);

/// The value when it is numeric, otherwise 0.
double vDbl(const Variant& value);
Currency vCur(const Variant& value);
/// The number itself; error 6 when it is too large for a Double.
double Finite(double number);
/// Amount / quantity, unrounded; 0 when either is not numeric or the quantity is not above 0.
double CalcPrice(const Variant& amount, const Variant& quantity);

/// The figures of the balance table over a group of its rows: prices averaged, quantities and amounts summed.
extern const char* const kBalanceFigures;

/// The piece followed by the id, or "" for an id below 1, which means "all".
std::string IdPiece(std::string_view piece, std::int32_t id);
/// The piece followed by the text and a closing quote, or "" for an empty text: TextPiece(" And 类型='", kind).
std::string TextPiece(std::string_view piece, std::string_view text);
/// "(sum>=min And sum<=max)" or the one bound that is not 0; "" when neither is given, or when either is Null.
std::string SumBounds(const std::string& sum, const Variant& min, const Variant& max);
/// Turns joined pieces into a clause: their leading " And" gives way to where (" Where " or "Where "). Pieces that do
/// not begin so, none among them, stay as they are.
std::string WhereClause(const std::string& pieces, std::string_view where);

/// What compose answers, or nothing when it fails: for methods that end quietly when a value cannot be put into a text.
template <class Compose>
std::optional<std::string> Composed(Compose compose) {
    try {
        return compose();
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

}  // namespace kpTables
