// Optional clauses of statements. Each is "" when it is not asked for.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "kpTables/Fill.h"
#include "kpTables/Variant.h"

namespace kpTables {

/// A bill's date as an expression on its columns 年份, 月份 and 日子.
std::string_view BillDate(bool isSQL);
/// Date range on a bill's 年份, 月份 and 日子, both ends included: " And ..." or "". A bound that equals "" (Empty
/// does) or is Null counts as not given; one that is no date raises error 13.
std::string Get_DateSql(const Variant& first, const Variant& last, bool isSQL);
/// Bill number range on the header aliased Lst, both ends included: " And ..." or "". Bounds count as in Get_DateSql.
std::string Get_NoSql(const Variant& first, const Variant& last);

/// The figures of the balance table over a group of its rows: prices averaged, quantities and amounts summed.
extern const std::string_view kBalanceFigures;

/// The clause with the id, or "" for an id below 1, which means "all": IdClause(" And dpID={id}", id).
std::string IdClause(const Template<"id">& clause, std::int32_t id);
/// The clause with the text, or "" for an empty text: TextClause(" And 类型='{text}'", kind).
std::string TextClause(const Template<"text">& clause, std::string_view text);
/// As TextClause; a text of blanks counts as empty.
std::string TrimmedTextClause(const Template<"text">& clause, std::string_view text);
/// "(sum>=min And sum<=max)" or the one bound that is not 0; "" when neither is given, or when either is Null.
std::string SumBounds(std::string_view sum, const Variant& min, const Variant& max);
/// The clause with the joined conditions, whose leading " And" is left out: WhereClause(" Where {conditions}", " And
/// a=1"). Conditions that do not begin so, none among them, are answered as they are.
std::string WhereClause(const Template<"conditions">& clause, const std::string& conditions);

}  // namespace kpTables
