#include "kpTables/bookkeeping/LineAmounts.h"

#include <cstdint>
#include <string>

#include "bookkeeping/Product.h"
#include "bookkeeping/Refusal.h"
#include "kpTables/Convert.h"
#include "kpTables/Error.h"
#include "kpTables/text/Message.h"

namespace kpTables::bookkeeping {

namespace {

/// A number of at most fifteen digits: digits / power.
struct DecimalFraction {
    std::int64_t digits = 0;
    std::int64_t power = 1;
};

DecimalFraction FractionOf(double number) {
    DecimalFraction fraction;
    bool negative = false;
    bool afterPoint = false;
    for (const char c : Text(number)) {
        if (c == '-') {
            negative = true;
        } else if (c == '.') {
            afterPoint = true;
        } else if (c >= '0' && c <= '9') {
            fraction.digits = fraction.digits * 10 + (c - '0');
            if (afterPoint) fraction.power *= 10;
        } else {
            RefuseWith(Message("the number {1} has too many digits", Text(number)));
        }
    }
    if (negative) fraction.digits = -fraction.digits;
    return fraction;
}

std::uint64_t Magnitude(std::int64_t value) noexcept {
    return value < 0 ? 0 - static_cast<std::uint64_t>(value) : static_cast<std::uint64_t>(value);
}

/// amount x factor / divisor, half to even.
Currency TimesRatio(Currency amount, std::int64_t factor, std::int64_t divisor) {
    if (divisor == 0) RefuseWith(Message("the quantity is 0"));
    const bool negative = (amount.Scaled() < 0) != ((factor < 0) != (divisor < 0));
    const auto quotient = Product(Magnitude(amount.Scaled()), Magnitude(factor)).RoundedQuotient(Magnitude(divisor));
    constexpr std::uint64_t kLimit = std::uint64_t{1} << 63;
    if (!quotient || *quotient > (negative ? kLimit : kLimit - 1)) Raise(ErrorNumber::Overflow);
    return Currency::FromScaled(static_cast<std::int64_t>(negative ? 0 - *quotient : *quotient));
}

/// The tax on a net amount.
Currency TaxOn(Currency net, const DecimalFraction& rate) { return TimesRatio(net, rate.digits, 100 * rate.power); }

/// A net amount or price with the tax on it.
Currency WithTax(Currency net, const DecimalFraction& rate) {
    return TimesRatio(net, 100 * rate.power + rate.digits, 100 * rate.power);
}

/// A gross amount or price without the tax in it.
Currency WithoutTax(Currency gross, const DecimalFraction& rate) {
    return TimesRatio(gross, 100 * rate.power, 100 * rate.power + rate.digits);
}

/// An amount that is given beside a price must be that price's but for the rounding of the price to a hundredth.
void CheckPrice(Currency amount, Currency price, double quantity, const char* names) {
    constexpr std::uint64_t kHalf = Currency::kScale / 200;
    const std::int64_t given = amount.Scaled(), workedOut = AmountOf(price, quantity).Scaled();
    const auto difference = given < workedOut
                                ? static_cast<std::uint64_t>(workedOut) - static_cast<std::uint64_t>(given)
                                : static_cast<std::uint64_t>(given) - static_cast<std::uint64_t>(workedOut);
    const DecimalFraction size = FractionOf(quantity);
    const auto power = static_cast<std::uint64_t>(size.power);
    if (Product(difference, power) > Product(kHalf, Magnitude(size.digits) + power)) {
        RefuseWith(Message("{1} do not fit together: {2} x {3} is not {4}", Translated(names), price.ToText(),
                           Text(quantity), amount.ToText()));
    }
}

/// A figure of the line: given, or price x quantity; nothing without both.
std::optional<Currency> AmountGiven(std::optional<Currency> amount, std::optional<Currency> price, double quantity,
                                    const char* names) {
    if (amount && price) CheckPrice(*amount, *price, quantity, names);
    if (!amount && price) return AmountOf(*price, quantity);
    return amount;
}

void CheckSign(Currency amount, double quantity, const char* name) {
    if (amount.Scaled() != 0 && (amount.Scaled() < 0) != (quantity < 0)) {
        RefuseWith(Message("{1} {2} and the quantity {3} differ in sign", name, amount.ToText(), Text(quantity)));
    }
}

}  // namespace

Currency AmountOf(Currency price, double quantity) {
    const auto fraction = FractionOf(quantity);
    return TimesRatio(price, fraction.digits, fraction.power);
}

Currency PriceOf(Currency amount, double quantity) {
    const auto fraction = FractionOf(quantity);
    return TimesRatio(amount, fraction.power, fraction.digits);
}

LineAmounts WorkOutAmounts(const GivenAmounts& given, double quantity, double taxRate) {
    const auto rate = FractionOf(taxRate);
    const auto net = AmountGiven(given.net, given.netPrice, quantity, Translatable("除税单价 and 除税金额"));
    const auto gross = AmountGiven(given.gross, given.grossPrice, quantity, Translatable("单价 and 金额"));
    LineAmounts line;
    bool byRate = false;
    if (net && gross) {
        line.net = *net;
        line.gross = *gross;
        line.tax = *gross - *net;
    } else if (net) {
        byRate = !given.tax;
        line.net = *net;
        line.tax = given.tax ? *given.tax : TaxOn(*net, rate);
        line.gross = line.net + line.tax;
    } else if (gross) {
        byRate = !given.tax;
        line.gross = *gross;
        line.net = given.tax ? *gross - *given.tax : WithoutTax(*gross, rate);
        line.tax = line.gross - line.net;
    } else {
        RefuseWith(Message("neither a price nor an amount is given"));
    }
    if (given.tax && *given.tax != line.tax) {
        RefuseWith(Message("除税金额 {1} and 税额 {2} do not add up to 金额 {3}", line.net.ToText(),
                           given.tax->ToText(), line.gross.ToText()));
    }
    CheckSign(line.net, quantity, "除税金额");
    CheckSign(line.tax, quantity, "税额");
    CheckSign(line.gross, quantity, "金额");
    line.netPrice = given.netPrice               ? *given.netPrice
                    : byRate && given.grossPrice ? WithoutTax(*given.grossPrice, rate)
                                                 : PriceOf(line.net, quantity);
    line.grossPrice = given.grossPrice           ? *given.grossPrice
                      : byRate && given.netPrice ? WithTax(*given.netPrice, rate)
                                                 : PriceOf(line.gross, quantity);
    return line;
}

}  // namespace kpTables::bookkeeping
