// Exact decimals of the server: rounding half away from zero, and the limits of DECIMAL(p,s).
#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <string>

#include "functions/Bodies.h"
#include "functions/DecimalFit.h"
#include "functions/Fault.h"
#include "kpTables/text/Message.h"
#include "text/Amount.h"

namespace kpTables::functions {

namespace {

constexpr int kDecimals = 4;  ///< of an amount

std::int64_t PowerOfTen(int exponent) {
    std::int64_t power = 1;
    for (int i = 0; i < exponent; ++i) power *= 10;
    return power;
}

/// The number as it is written, plainly: a double's shortest digits are the decimal that was meant.
std::string Digits(double number) {
    std::array<char, 400> digits{};
    return {digits.data(),
            std::to_chars(digits.data(), digits.data() + digits.size(), number, std::chars_format::fixed).ptr};
}

/// One more than the plain digits say, in their last place.
void Increase(std::string& digits) {
    for (std::size_t at = digits.size(); at-- > 0;) {
        if (digits[at] == '.' || digits[at] == '-') continue;
        if (digits[at] != '9') {
            ++digits[at];
            return;
        }
        digits[at] = '0';
    }
    digits.insert(digits.front() == '-' ? 1 : 0, 1, '1');
}

/// The plain digits with that many decimals; a negative count clears places before the point.
std::string Cut(std::string digits, int decimals, bool rounds) {
    if (digits.find('.') == std::string::npos) digits += '.';
    const auto point = static_cast<std::int64_t>(digits.find('.'));
    const std::int64_t end = decimals >= 0 ? point + 1 + decimals : point + decimals;
    const std::int64_t first = digits.front() == '-' ? 1 : 0;
    if (end >= static_cast<std::int64_t>(digits.size())) return digits;
    if (end < first) return "0";
    const auto at = static_cast<std::size_t>(end);
    const char next = digits[at];
    std::string kept = digits.substr(0, at);
    if (rounds && next >= '5') {
        if (kept.size() == static_cast<std::size_t>(first)) kept += '0';
        Increase(kept);
    }
    if (decimals < 0) kept.append(static_cast<std::size_t>(-decimals), '0');
    return kept;
}

double NumberOf(const std::string& digits) {
    double number = 0;
    std::from_chars(digits.data(), digits.data() + digits.size(), number);
    return number;
}

int DecimalsOf(const Arguments& a) { return std::clamp(a.Whole(1), -310, 310); }
bool Truncates(const Arguments& a) { return a.Count() > 2 && a.Whole(2) != 0; }

/// The amount with that many decimals, half away from zero.
std::int64_t AmountWith(std::int64_t amount, int decimals, bool rounds) {
    if (decimals >= kDecimals) return amount;
    if (decimals < -15) return 0;
    const std::int64_t unit = PowerOfTen(kDecimals - decimals);
    std::int64_t units = amount / unit;
    const std::int64_t rest = amount % unit;
    if (rounds && (rest >= unit - rest || -rest >= unit + rest)) units += amount < 0 ? -1 : 1;
    if (units > std::numeric_limits<std::int64_t>::max() / unit ||
        units < std::numeric_limits<std::int64_t>::min() / unit)
        Raise(FaultNumber::Overflow);
    return units * unit;
}

}  // namespace

std::string DecimalComplaint(std::int64_t amount, int precision, int scale) {
    const int whole = precision - scale;
    constexpr int kMostWhole = 15;
    if (whole >= kMostWhole || std::abs(amount / text::kAmountScale) < PowerOfTen(whole)) return {};
    return Message("{1} has more than the {2} digits before the point that DECIMAL({3},{4}) keeps",
                   text::AmountText(amount), whole, precision, scale);
}

std::int64_t DecimalAmount(std::int64_t amount, int scale) { return AmountWith(amount, scale, true); }

void RoundOnServer(const Arguments& a, Answer& answer) {
    answer.Number(NumberOf(Cut(Digits(a.Number(0)), DecimalsOf(a), !Truncates(a))));
}

void CurrencyRoundOnServer(const Arguments& a, Answer& answer) {
    answer.Whole(AmountWith(a.Amount(0), DecimalsOf(a), !Truncates(a)));
}

/// (amount, precision, scale)
void DecimalFit(const Arguments& a, Answer& answer) {
    const std::int64_t amount = DecimalAmount(a.Amount(0), a.Whole(2));
    if (const auto complaint = DecimalComplaint(amount, a.Whole(1), a.Whole(2)); !complaint.empty())
        Raise(FaultNumber::Overflow, complaint);
    answer.Whole(amount);
}

/// The same of a number or a text, whose decimals are rounded only once.
void ToDecimal(const Arguments& a, Answer& answer) {
    const std::string digits = Cut(Digits(a.Number(0)), a.Whole(2), true);
    const auto amount = text::AmountOf(NumberOf(digits));
    if (!amount) Raise(FaultNumber::Overflow);
    if (const auto complaint = DecimalComplaint(*amount, a.Whole(1), a.Whole(2)); !complaint.empty())
        Raise(FaultNumber::Overflow, complaint);
    answer.Whole(*amount);
}

/// Str(number, length, decimals): filled with blanks from the left, stars where the number is longer.
void StrOnServer(const Arguments& a, Answer& answer) {
    const std::int32_t length = a.Whole(1);
    const std::int32_t wanted = a.Whole(2);
    constexpr std::int32_t kLongest = 8000;
    constexpr std::int32_t kMostDecimals = 16;
    if (length < 1 || length > kLongest || wanted < 0) Raise(FaultNumber::InvalidCall);
    const std::string whole = Cut(Digits(a.Number(0)), 0, true);
    const auto point = static_cast<std::int32_t>(whole.find('.') == whole.npos ? whole.size() : whole.find('.'));
    if (point > length) return answer.Text(std::string(static_cast<std::size_t>(length), '*'));
    const std::int32_t decimals = std::min({wanted, kMostDecimals, std::max(0, length - point - 1)});
    std::string text = Cut(Digits(a.Number(0)), decimals, true);
    if (decimals == 0) {
        text = text.substr(0, text.find('.'));
    } else {
        if (text.find('.') == text.npos) text += '.';
        const std::size_t size = text.find('.') + 1 + static_cast<std::size_t>(decimals);
        if (text.size() < size) text.append(size - text.size(), '0');
    }
    if (text.size() < static_cast<std::size_t>(length))
        text.insert(0, static_cast<std::size_t>(length) - text.size(), ' ');
    answer.Text(std::move(text));
}

}  // namespace kpTables::functions
