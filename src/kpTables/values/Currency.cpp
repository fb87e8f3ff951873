#include "kpTables/Currency.h"

#include <limits>

#include "kpTables/Error.h"
#include "text/Amount.h"
#include "text/Decimal.h"

namespace kpTables {

namespace {

static_assert(Currency::kScale == text::kAmountScale);

constexpr std::int64_t kMin = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t kMax = std::numeric_limits<std::int64_t>::max();

Currency Checked(std::optional<std::int64_t> amount) {
    if (!amount) Raise(ErrorNumber::Overflow);
    return Currency::FromScaled(*amount);
}

}  // namespace

Currency Currency::FromDouble(double value) { return Checked(text::AmountOf(value)); }

Currency Currency::FromLong(std::int64_t value) { return Checked(text::AmountOfWhole(value)); }

Currency Currency::FromDecimalText(std::string_view text) {
    const auto number = text::Decimal::ReadPlain(text);
    if (!number) Raise(ErrorNumber::TypeMismatch);
    return Checked(number->ToAmount());
}

double Currency::ToDouble() const noexcept { return static_cast<double>(scaled_) / static_cast<double>(kScale); }

std::string Currency::ToText() const { return text::AmountText(scaled_); }

Currency Currency::operator-() const {
    if (scaled_ == kMin) Raise(ErrorNumber::Overflow);
    return FromScaled(-scaled_);
}

Currency operator+(Currency a, Currency b) {
    if (b.scaled_ > 0 ? a.scaled_ > kMax - b.scaled_ : a.scaled_ < kMin - b.scaled_) Raise(ErrorNumber::Overflow);
    return Currency::FromScaled(a.scaled_ + b.scaled_);
}

Currency operator-(Currency a, Currency b) {
    if (b.scaled_ > 0 ? a.scaled_ < kMin + b.scaled_ : a.scaled_ > kMax + b.scaled_) Raise(ErrorNumber::Overflow);
    return Currency::FromScaled(a.scaled_ - b.scaled_);
}

Currency operator*(Currency a, Currency b) { return Checked(text::AmountProduct(a.scaled_, b.scaled_)); }

}  // namespace kpTables
