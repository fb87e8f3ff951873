// The receiver of a statement's parameter values.
#pragma once

#include <concepts>
#include <cstdint>
#include <string>
#include <string_view>

#include "kpTables/Currency.h"
#include "kpTables/Date.h"
#include "kpTables/Variant.h"

namespace kpTables::engines {

/// A statement that takes values for its parameters, numbered from 1. The engine decides how each kind is stored.
template <class T>
concept ValueSink = requires(T& sink, int parameter, std::int64_t whole, double number, bool flag, Currency amount,
                             Date date, std::string_view text) {
    sink.BindNull(parameter);
    sink.BindInteger(parameter, whole);
    sink.BindReal(parameter, number);
    sink.BindBoolean(parameter, flag);
    sink.BindCurrency(parameter, amount);
    /// A count of ten-thousandths to compare amounts with: not rounded, perhaps out of Currency's range.
    sink.BindCurrencyBound(parameter, number);
    sink.BindDate(parameter, date);
    /// The text lives until the statement has run.
    sink.BindText(parameter, text);
    sink.BindTextCopy(parameter, text);
};

/// Binds a field's value. The value must live until the statement has run.
template <ValueSink Sink>
void BindValue(Sink& sink, int parameter, const Variant& value) {
    if (const auto* text = value.If<std::string>()) return sink.BindText(parameter, *text);
    if (const auto* number = value.If<double>()) return sink.BindReal(parameter, *number);
    if (const auto* amount = value.If<Currency>()) return sink.BindCurrency(parameter, *amount);
    if (const auto* whole = value.If<std::int32_t>()) return sink.BindInteger(parameter, *whole);
    if (const auto* whole = value.If<std::int16_t>()) return sink.BindInteger(parameter, *whole);
    if (const auto* flag = value.If<bool>()) return sink.BindBoolean(parameter, *flag);
    if (const auto* date = value.If<Date>()) return sink.BindDate(parameter, *date);
    sink.BindNull(parameter);
}

}  // namespace kpTables::engines
