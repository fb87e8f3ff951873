#include "engines/odbc/Parameters.h"

#include <algorithm>

#include "engines/odbc/WideText.h"
#include "kpTables/Error.h"

namespace kpTables::engines::odbc {

namespace {

constexpr SQLULEN kLongestShortText = 4000;
constexpr ParameterType kMoment = {SQL_TYPE_TIMESTAMP, 23, 3};
constexpr ParameterType kAmount = {SQL_DECIMAL, 19, 4};

bool IsKnown(const ParameterType& type) noexcept { return type.type != SQL_UNKNOWN_TYPE; }

SQL_TIMESTAMP_STRUCT MomentOf(Date date) {
    const Date::Parts parts = date.ToParts();
    SQL_TIMESTAMP_STRUCT moment{};
    moment.year = static_cast<SQLSMALLINT>(parts.year);
    moment.month = static_cast<SQLUSMALLINT>(parts.month);
    moment.day = static_cast<SQLUSMALLINT>(parts.day);
    moment.hour = static_cast<SQLUSMALLINT>(parts.hour);
    moment.minute = static_cast<SQLUSMALLINT>(parts.minute);
    moment.second = static_cast<SQLUSMALLINT>(parts.second);
    return moment;
}

}  // namespace

void Parameters::Add(const Variant& value, const ParameterType& column) {
    // Where it lies it stays, so that data can point into it.
    Bound& bound = bound_.emplace_back();
    bound.type = column;
    try {
        Set(bound, value);
    } catch (...) {
        bound_.pop_back();
        throw;
    }
}

void Parameters::Set(Bound& bound, const Variant& value) {
    if (value.IsNull()) {
        if (!IsKnown(bound.type)) bound.type = {SQL_VARCHAR, 1, 0};
        bound.length = SQL_NULL_DATA;
    } else if (const auto* text = value.If<std::string>()) {
        bound.text = Wide(*text);
        bound.valueType = SQL_C_WCHAR;
        const SQLULEN units = std::max<SQLULEN>(bound.text.size(), 1);
        bound.type = {static_cast<SQLSMALLINT>(units > kLongestShortText ? SQL_WLONGVARCHAR : SQL_WVARCHAR), units, 0};
        bound.data = Units(bound.text);
        bound.length = bound.room = static_cast<SQLLEN>(bound.text.size() * sizeof(SQLWCHAR));
    } else if (const auto* amount = value.If<Currency>()) {
        bound.decimals = amount->ToText();
        bound.type = kAmount;
        bound.data = bound.decimals.data();
        bound.length = bound.room = static_cast<SQLLEN>(bound.decimals.size());
    } else if (const auto* number = value.If<double>()) {
        bound.real = *number;
        bound.valueType = SQL_C_DOUBLE;
        bound.type = {SQL_DOUBLE, 15, 0};
        bound.data = &bound.real;
    } else if (const auto* date = value.If<Date>()) {
        bound.moment = MomentOf(*date);
        bound.valueType = SQL_C_TYPE_TIMESTAMP;
        bound.type = kMoment;
        bound.data = &bound.moment;
        bound.length = bound.room = sizeof bound.moment;
    } else if (const auto* flag = value.If<bool>()) {
        bound.flag = *flag ? 1 : 0;
        bound.valueType = SQL_C_BIT;
        bound.type = {SQL_BIT, 1, 0};
        bound.data = &bound.flag;
    } else if (value.If<std::int32_t>() || value.If<std::int16_t>()) {
        const auto* whole = value.If<std::int32_t>();
        bound.whole = whole ? *whole : *value.If<std::int16_t>();
        bound.valueType = SQL_C_SLONG;
        bound.type = {SQL_INTEGER, 10, 0};
        bound.data = &bound.whole;
    } else {
        Raise(ErrorNumber::TypeMismatch);
    }
}

}  // namespace kpTables::engines::odbc
