// Net, tax and gross of a bill's line, exact to the ten-thousandth.
#pragma once

#include <optional>

#include "kpTables/Currency.h"

namespace kpTables::bookkeeping {

/// What is known of a line beside its quantity.
struct GivenAmounts {
    std::optional<Currency> netPrice = {};    ///< 除税单价
    std::optional<Currency> grossPrice = {};  ///< 单价, tax included
    std::optional<Currency> net = {};         ///< 除税金额
    std::optional<Currency> tax = {};         ///< 税额
    std::optional<Currency> gross = {};       ///< 金额, tax included
};

struct LineAmounts {
    Currency netPrice;
    Currency grossPrice;
    Currency net;
    Currency tax;
    Currency gross;
};

/// All figures of a line, from any two of net, tax and gross, or from one of net and gross and the tax rate (percent:
/// 13 is 13 %). An amount that is not given is price x quantity. One amount is rounded, half to even, and the other
/// follows from it, so that net + tax = gross always: from a net amount the tax is rounded, from a gross amount the net
/// amount. docs/book.md states the rule. quantity: not 0, its fifteen digits. Error 5 says what is missing or does not
/// fit together, error 6 that a figure is too large.
LineAmounts WorkOutAmounts(const GivenAmounts& given, double quantity, double taxRate);

/// price x quantity, and amount / quantity (error 5 when that is 0), rounded half to even.
Currency AmountOf(Currency price, double quantity);
Currency PriceOf(Currency amount, double quantity);

}  // namespace kpTables::bookkeeping
