// The cells of a sheet as values. Each raises error 5 with the reason when a text is none.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>

#include "kpTables/bookkeeping/Masters.h"

namespace kpTables::bookkeeping {

/// A day, in any form that Date::Parse reads.
Date DayOfCell(const std::string& text);
/// A plain decimal with at most six decimals and fifteen digits.
double QuantityOfCell(const std::string& text);
/// A plain decimal with at most four decimals; nothing for an empty text.
std::optional<Currency> MoneyOfCell(const std::string& text);
/// "13" or "13%"; nothing for an empty text.
std::optional<double> RateOfCell(const std::string& text);

/// Looks up each name once.
class MasterCells {
public:
    explicit MasterCells(ConnectionPtr book) : book_(std::move(book)) {}

    /// As MasterId.
    std::int32_t Id(MasterKind kind, const std::string& text);

private:
    ConnectionPtr book_;
    std::map<std::pair<MasterKind, std::string>, std::int32_t> ids_;
};

}  // namespace kpTables::bookkeeping
