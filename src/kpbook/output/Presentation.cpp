#include "kpbook/output/Presentation.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <string_view>

#include "kpTables/Convert.h"
#include "kpbook/output/CellText.h"

namespace kpTables::kpbook::output {

namespace {

constexpr int kMoneyDecimals = 2;
constexpr int kPriceDecimals = 4;

/// An amount rounded to whole units of so many decimals, half away from zero: exactly, where a Double would not hold
/// it.
std::string RoundedText(Currency amount, int decimals) {
    std::int64_t unit = Currency::kScale;
    for (int i = 0; i < decimals; ++i) unit /= 10;
    const std::int64_t rest = amount.Scaled() % unit;
    std::int64_t whole = amount.Scaled() / unit;
    if (std::abs(rest) * 2 >= unit) whole += rest < 0 ? -1 : 1;
    std::string digits = std::to_string(whole < 0 ? -whole : whole);
    const auto least = static_cast<std::size_t>(decimals) + 1;
    if (digits.size() < least) digits.insert(0, least - digits.size(), '0');
    digits.insert(digits.size() - static_cast<std::size_t>(decimals), ".");
    return (whole < 0 ? "-" : "") + digits;
}

/// Rounded half away from zero; a Double by the decimals of its shortest text.
std::string FixedText(const Variant& value, int decimals) {
    if (const auto* amount = value.If<Currency>()) return RoundedText(*amount, decimals);
    std::string text = Format(value, "0." + std::string(static_cast<std::size_t>(decimals), '0'));
    const bool isZero = text.find_first_not_of("-0.") == text.npos;
    if (isZero && text.starts_with('-')) text.erase(0, 1);
    return text;
}

std::string PriceText(const Variant& value) {
    std::string text = FixedText(value, kPriceDecimals);
    const auto shortest = text.size() - (kPriceDecimals - kMoneyDecimals);
    while (text.size() > shortest && text.ends_with('0')) text.pop_back();
    return text;
}

bool IsFigure(const Variant& value) {
    if (!IsNumber(value.Type())) return false;
    const auto* number = value.If<double>();
    // Beyond, all digits are more than a Double has.
    constexpr double kMostShown = 1e15;
    return !number || std::fabs(*number) < kMostShown;
}

}  // namespace

std::string WithSeparators(std::string number) {
    constexpr std::size_t kGroup = 3;
    const std::size_t begin = number.starts_with('-') ? 1 : 0;
    const auto end = std::min(number.find('.'), number.size());
    if (end == begin || number.find_first_not_of("0123456789.", begin) != number.npos) return number;
    for (std::size_t place = end; place > begin + kGroup;) {
        place -= kGroup;
        number.insert(place, ",");
    }
    return number;
}

std::string ShownText(const Variant& value, Look look) {
    if (look == Look::Plain || !IsFigure(value)) return ShownText(value);
    switch (look) {
        case Look::Money:
            return WithSeparators(FixedText(value, kMoneyDecimals));
        case Look::Price:
            return WithSeparators(PriceText(value));
        default:
            return WithSeparators(ShownText(value));
    }
}

}  // namespace kpTables::kpbook::output
