#include "functions/Function.h"

#include <cmath>
#include <limits>
#include <utility>

#include "functions/Fault.h"
#include "functions/ServerDate.h"
#include "kpTables/text/Message.h"
#include "text/Calendar.h"
#include "text/DateText.h"
#include "text/Decimal.h"

namespace kpTables::functions {

std::string_view Arguments::Text(int index) const noexcept {
    const Value& value = At(index);
    char* const buffer = numberTexts_[static_cast<std::size_t>(index)].data();
    switch (value.Type()) {
        case Value::Kind::Whole:
            return {buffer, text::WriteWhole(buffer, value.Whole())};
        case Value::Kind::Real:
            return {buffer, text::WriteNumber(buffer, value.Real())};
        case Value::Kind::Text:
            return value.Text();
        case Value::Kind::Null:
            break;
    }
    return {};
}

double Arguments::NumberOf(std::string_view text) {
    const auto number = text::ParseNumber(text);
    if (!number) RaiseMismatch(text, Message("is no number"));
    return *number;
}

std::int64_t Arguments::AmountWithin(double number) noexcept {
    constexpr double kLimit = 9223372036854775808.0;
    if (number >= kLimit) return std::numeric_limits<std::int64_t>::max();
    return number >= -kLimit ? static_cast<std::int64_t>(number) : std::numeric_limits<std::int64_t>::min();
}

std::int32_t Arguments::Whole(int index) const {
    using Limits = std::numeric_limits<std::int32_t>;
    if (IsWhole(index) && std::in_range<std::int32_t>(At(index).Whole())) {
        return static_cast<std::int32_t>(At(index).Whole());
    }
    const double number = std::nearbyint(Number(index));
    if (!(number >= Limits::min() && number <= Limits::max())) Raise(FaultNumber::Overflow);
    return static_cast<std::int32_t>(number);
}

double Arguments::Date(int index, double dayZero) const {
    if (!IsText(index)) return CheckedDate(Number(index) + dayZero);
    const std::string_view text = At(index).Text();
    if (const auto date = text::ParseIsoDate(text)) return *date;
    if (const auto date = text::ParseDate(text)) return *date;
    const auto days = text::ParseNumber(text);
    if (days && text::IsSerial(*days + dayZero)) return *days + dayZero;
    if (const auto date = ReadServerDate(text)) return *date;
    if (!days) RaiseMismatch(text, Message("is no date"));
    return CheckedDate(*days + dayZero);
}

void Answer::Number(double value) {
    if (!std::isfinite(value)) Raise(FaultNumber::Overflow);
    value_ = Value(value);
}

void Answer::Text(std::string text) noexcept {
    text_ = std::move(text);
    value_ = Value(std::string_view(text_));
}

void Answer::Date(double serial) {
    const char* end = text::WriteIsoDate(date_.data(), CheckedDate(serial));
    value_ = Value(std::string_view(date_.data(), end));
}

double CheckedDate(double serial) {
    if (!text::IsSerial(serial)) Raise(FaultNumber::Overflow);
    return serial;
}

}  // namespace kpTables::functions
