#include "kpTables/Convert.h"

#include <cmath>

#include "kpTables/Error.h"
#include "text/Ascii.h"
#include "text/CodePage936.h"
#include "text/Decimal.h"
#include "text/NumberText.h"

namespace kpTables {

namespace {

[[noreturn]] void Mismatch() { Raise(ErrorNumber::TypeMismatch); }

double ReadNumber(std::string_view text) {
    const auto number = text::Decimal::Read(text);
    if (!number) Mismatch();
    const double value = number->ToDouble();
    if (std::isinf(value)) Raise(ErrorNumber::Overflow);
    return value;
}

std::optional<bool> ReadBoolean(std::string_view text) {
    if (text::EqualsIgnoringCase(text, "true")) return true;
    if (text::EqualsIgnoringCase(text, "false")) return false;
    return std::nullopt;
}

/// Any type as a Double. Texts read as numbers, so a date text is none.
double NumberOf(const Variant& value) {
    switch (value.Type()) {
        case VarType::Empty:
            return 0;
        case VarType::Null:
            Raise(ErrorNumber::InvalidUseOfNull);
        case VarType::Boolean:
            return *value.If<bool>() ? -1 : 0;
        case VarType::Integer:
            return *value.If<std::int16_t>();
        case VarType::Long:
            return *value.If<std::int32_t>();
        case VarType::Double:
            return *value.If<double>();
        case VarType::Currency:
            return value.If<Currency>()->ToDouble();
        case VarType::Date:
            return value.If<Date>()->Serial();
        case VarType::String:
            return ReadNumber(*value.If<std::string>());
        case VarType::Object:
        case VarType::Missing:
        case VarType::Array:
            break;
    }
    Mismatch();
}

/// Half to even, within [low, high].
double RoundedWithin(const Variant& value, double low, double high) {
    const double number = NumberOf(value);
    const double floor = std::floor(number);
    const double above = number - floor;
    const double rounded = above > 0.5 || (above == 0.5 && std::fmod(floor, 2) != 0) ? floor + 1 : floor;
    if (!(rounded >= low && rounded <= high)) Raise(ErrorNumber::Overflow);
    return rounded;
}

}  // namespace

bool CBool(const Variant& value) {
    if (const auto* text = value.If<std::string>()) {
        if (const auto boolean = ReadBoolean(*text)) return *boolean;
    }
    return NumberOf(value) != 0;
}

std::int16_t CInt(const Variant& value) { return static_cast<std::int16_t>(RoundedWithin(value, -32768, 32767)); }

std::int32_t CLng(const Variant& value) {
    return static_cast<std::int32_t>(RoundedWithin(value, -2147483648.0, 2147483647.0));
}

double CDbl(const Variant& value) { return NumberOf(value); }

Currency CCur(const Variant& value) {
    if (const auto* currency = value.If<Currency>()) return *currency;
    if (const auto* text = value.If<std::string>()) {
        const auto number = text::Decimal::Read(*text);
        if (!number) Mismatch();
        const auto amount = number->ToAmount();
        if (!amount) Raise(ErrorNumber::Overflow);
        return Currency::FromScaled(*amount);
    }
    return Currency::FromDouble(NumberOf(value));
}

Date CDate(const Variant& value) {
    if (const auto* date = value.If<Date>()) return *date;
    if (const auto* text = value.If<std::string>()) {
        if (const auto date = Date::Parse(*text)) return *date;
    }
    return Date::FromSerial(NumberOf(value));
}

std::string CStr(const Variant& value) {
    switch (value.Type()) {
        case VarType::Empty:
            return {};
        case VarType::Null:
            Raise(ErrorNumber::InvalidUseOfNull);
        case VarType::Boolean:
            return Text(*value.If<bool>());
        case VarType::Integer:
            return Text(std::int32_t{*value.If<std::int16_t>()});
        case VarType::Long:
            return Text(*value.If<std::int32_t>());
        case VarType::Double:
            return Text(*value.If<double>());
        case VarType::Currency:
            return value.If<Currency>()->ToText();
        case VarType::Date:
            return value.If<Date>()->ToText();
        case VarType::String:
            return *value.If<std::string>();
        case VarType::Object:
        case VarType::Missing:
        case VarType::Array:
            break;
    }
    Mismatch();
}

std::string Text(const Variant& value) { return value.IsNull() ? std::string() : CStr(value); }

std::string Text(std::int32_t value) { return text::WholeText(value); }
std::string Text(double value) { return text::NumberText(value); }
std::string Text(bool value) { return text::BooleanText(value); }

std::optional<double> ParseNumber(std::string_view text) { return text::ParseNumber(text); }

bool IsNumeric(const Variant& value) {
    switch (value.Type()) {
        case VarType::Empty:
        case VarType::Boolean:
        case VarType::Integer:
        case VarType::Long:
        case VarType::Double:
        case VarType::Currency:
            return true;
        case VarType::String:
            return ParseNumber(*value.If<std::string>()).has_value();
        default:
            return false;
    }
}

bool IsDate(const Variant& value) {
    if (const auto* text = value.If<std::string>()) return Date::Parse(*text).has_value();
    return value.Type() == VarType::Date;
}

std::string_view Trim(std::string_view text) noexcept {
    while (!text.empty() && text.front() == ' ') text.remove_prefix(1);
    while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
    return text;
}

bool IsDoubleByte936(char32_t character) noexcept { return text::IsDoubleByte936(character); }

}  // namespace kpTables
