#include "kpbook/input/FieldReader.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <optional>

#include "kpTables/Convert.h"
#include "kpTables/text/Message.h"
#include "kpbook/Names.h"
#include "kpbook/Utf8.h"

namespace kpTables::kpbook::input {

namespace {

FieldValue Problem(std::string_view text, const std::string& reason) {
    constexpr std::size_t kLongestShown = 40;
    std::size_t length = text.size();
    if (length > kLongestShown) {
        length = kLongestShown;
        while (length > 0 && (static_cast<unsigned char>(text[length]) & 0xC0) == 0x80) --length;
    }
    return {{}, "'" + Printable(text.substr(0, length)) + (length < text.size() ? "...' " : "' ") + reason};
}

bool IsDigit(char character) noexcept { return character >= '0' && character <= '9'; }

/// The text without a plus sign; nothing when no number can follow.
std::optional<std::string_view> WithoutPlus(std::string_view text) {
    if (text.starts_with('+')) {
        text.remove_prefix(1);
        if (text.starts_with('-')) return std::nullopt;
    }
    if (text.empty()) return std::nullopt;
    return text;
}

/// A sign, digits and at most one point with digits on at least one side.
bool IsPlainDecimal(std::string_view text) noexcept {
    if (text.starts_with('-') || text.starts_with('+')) text.remove_prefix(1);
    std::size_t digits = 0;
    std::size_t points = 0;
    for (const char character : text) {
        digits += IsDigit(character);
        points += character == '.';
    }
    return digits > 0 && points <= 1 && digits + points == text.size();
}

/// Reads the whole text as a number, or returns the error.
template <class Number>
std::errc ReadNumber(std::string_view text, Number& value) noexcept {
    const auto* end = text.data() + text.size();
    const auto read = std::from_chars(text.data(), end, value);
    return read.ptr == end ? read.ec : std::errc::invalid_argument;
}

template <class Whole>
FieldValue ReadWhole(std::string_view text) {
    using Limits = std::numeric_limits<Whole>;
    Whole value = 0;
    if (ReadNumber(WithoutPlus(text).value_or(text), value) == std::errc()) return {value, {}};
    if (!IsPlainDecimal(text)) return Problem(text, Message("is no whole number"));
    if (text.find('.') != text.npos) return Problem(text, Message("has decimals; the column takes whole numbers"));
    return Problem(text, Message("is out of range ({1} to {2})", Limits::min(), Limits::max()));
}

FieldValue ReadDouble(std::string_view text) {
    double value = 0;
    const auto problem = ReadNumber(WithoutPlus(text).value_or(text), value);
    // The library reads "inf" and "nan" as numbers.
    if (problem == std::errc() && std::isfinite(value)) return {value, {}};
    return Problem(text,
                   problem == std::errc::result_out_of_range ? Message("is out of range") : Message("is no number"));
}

FieldValue ReadCurrency(std::string_view text) {
    constexpr std::size_t kDecimals = 4;
    if (!IsPlainDecimal(text)) return Problem(text, Message("is no plain decimal number"));
    // With four decimals and no point the text is the whole number of ten-thousandths.
    std::string scaled(WithoutPlus(text).value_or(text));
    std::size_t decimals = 0;
    if (const auto point = scaled.find('.'); point != scaled.npos) {
        scaled.erase(point, 1);
        decimals = scaled.size() - point;
    }
    if (decimals > kDecimals) return Problem(text, Message("has more than four decimals"));
    scaled.append(kDecimals - decimals, '0');
    std::int64_t value = 0;
    if (ReadNumber<std::int64_t>(scaled, value) == std::errc()) return {Currency::FromScaled(value), {}};
    return Problem(text, Message("is out of range (-922337203685477.5808 to 922337203685477.5807)"));
}

FieldValue ReadDate(std::string_view text) {
    auto date = Date::ParseIso(text);
    if (!date) date = Date::Parse(text);
    return date ? FieldValue{*date, {}} : Problem(text, Message("is no date"));
}

FieldValue ReadFlag(std::string_view text) {
    const auto isOneOf = [text](std::initializer_list<std::string_view> names) {
        return std::ranges::any_of(names, [text](std::string_view name) { return SameName(text, name); });
    };
    if (isOneOf({"True", "yes", "-1", "1"})) return {true, {}};
    if (isOneOf({"False", "no", "0"})) return {false, {}};
    return Problem(text, Message("is no flag (True, False, yes, no, -1, 1 or 0)"));
}

FieldValue ReadText(std::string_view text, std::string_view encoding) {
    if (!IsValidUtf8(text)) return Problem(text, Message("is not valid {1}", encoding));
    if (text.find('\0') != text.npos) return Problem(text, Message("holds a NUL character"));
    return {text, {}};
}

}  // namespace

FieldValue ReadField(std::string_view text, VarType type, std::string_view encoding) {
    switch (type) {
        case VarType::Boolean:
            return ReadFlag(Trim(text));
        case VarType::Integer:
            return ReadWhole<std::int16_t>(Trim(text));
        case VarType::Long:
            return ReadWhole<std::int32_t>(Trim(text));
        case VarType::Double:
            return ReadDouble(Trim(text));
        case VarType::Currency:
            return ReadCurrency(Trim(text));
        case VarType::Date:
            return ReadDate(Trim(text));
        default:
            return ReadText(text, encoding);
    }
}

}  // namespace kpTables::kpbook::input
