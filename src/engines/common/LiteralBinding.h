// The literals of a statement's text as the values of its parameters.
#pragma once

#include <cstdint>
#include <limits>
#include <string_view>
#include <vector>

#include "engines/common/LiteralConversion.h"
#include "engines/common/ValueSink.h"
#include "kpTables/Error.h"
#include "sql/Translation.h"
#include "sql/Tree.h"

namespace kpTables::engines {

template <class Whole, ValueSink Sink>
void BindWhole(Sink& sink, int parameter, const sql::LiteralValue& literal) {
    using Limits = std::numeric_limits<Whole>;
    sink.BindInteger(parameter, WholeOf(literal, Limits::min(), Limits::max()));
}

template <ValueSink Sink>
void BindNumber(Sink& sink, int parameter, const sql::LiteralValue& literal) {
    if (const auto whole = WrittenWhole(literal)) return sink.BindInteger(parameter, *whole);
    sink.BindReal(parameter, NumberOf(literal));
}

/// A bound with more decimals lies between two amounts, or out of an amount's range.
template <ValueSink Sink>
void BindCurrencyBound(Sink& sink, int parameter, const sql::LiteralValue& literal) {
    if (const auto exact = ExactCurrencyOf(literal)) return sink.BindCurrency(parameter, *exact);
    sink.BindCurrencyBound(parameter, NumberOf(literal) * Currency::kScale);
}

template <ValueSink Sink>
void BindDay(Sink& sink, int parameter, Date date) {
    const double time = date.TimeOfDay();
    if (time > 0) return sink.BindReal(parameter, date.Day() + time);
    sink.BindInteger(parameter, date.Day());
}

template <ValueSink Sink>
void BindLiteral(Sink& sink, int parameter, sql::Binding binding, const sql::LiteralValue& literal) {
    switch (binding) {
        case sql::Binding::Short:
            return BindWhole<std::int16_t>(sink, parameter, literal);
        case sql::Binding::Long:
            return BindWhole<std::int32_t>(sink, parameter, literal);
        case sql::Binding::Number:
            return BindNumber(sink, parameter, literal);
        case sql::Binding::Currency:
            return sink.BindCurrency(parameter, CurrencyOf(literal));
        case sql::Binding::CurrencyBound:
            return BindCurrencyBound(sink, parameter, literal);
        case sql::Binding::Boolean:
            return sink.BindBoolean(parameter, BooleanOf(literal));
        case sql::Binding::Date:
            return sink.BindDate(parameter, DateOf(literal));
        case sql::Binding::ServerDate:
            return sink.BindDate(parameter, ServerDateOf(literal));
        case sql::Binding::DateYear:
            return sink.BindInteger(parameter, DateOf(literal).Year());
        case sql::Binding::DateMonth:
            return sink.BindInteger(parameter, DateOf(literal).Month());
        case sql::Binding::DateDay:
            return BindDay(sink, parameter, DateOf(literal));
        case sql::Binding::Text:
            return literal.kind == sql::LiteralKind::Text ? sink.BindText(parameter, literal.text)
                                                          : sink.BindTextCopy(parameter, TextOf(literal));
    }
}

/// Binds every parameter from the literals of text. The literals must live until the statement has run. Raises SqlError
/// (TypeMismatch, Overflow) naming the literal that does not convert.
template <ValueSink Sink>
void BindLiterals(Sink& sink, const std::vector<sql::Parameter>& parameters,
                  const std::vector<sql::LiteralValue>& literals, std::string_view text) {
    int number = 0;
    for (const sql::Parameter& parameter : parameters) {
        const sql::LiteralValue& literal = literals.at(static_cast<std::size_t>(parameter.literal));
        ++number;
        try {
            if (parameter.negative) {
                BindLiteral(sink, number, parameter.binding, Negated(literal));
            } else if (parameter.pair.other >= 0) {
                BindLiteral(sink, number, parameter.binding, ChosenLiteral(parameter, literals));
            } else {
                BindLiteral(sink, number, parameter.binding, literal);
            }
        } catch (const DatabaseError&) {
            throw;
        } catch (const Error& error) {
            RaiseNotConverted(error, parameter, literal, text);
        }
    }
}

}  // namespace kpTables::engines
