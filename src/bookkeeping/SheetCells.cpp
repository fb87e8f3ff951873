#include "bookkeeping/SheetCells.h"

#include <algorithm>

#include "bookkeeping/Refusal.h"
#include "kpTables/Convert.h"
#include "kpTables/text/Message.h"

namespace kpTables::bookkeeping {

namespace {

/// Refuses what is no plain decimal, or has more digits.
void CheckPlainNumber(const std::string& text, std::size_t decimals) {
    constexpr std::size_t kMostDigits = 15;
    const std::string digits = text.starts_with('-') || text.starts_with('+') ? text.substr(1) : text;
    const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
    const auto count = static_cast<std::size_t>(std::ranges::count_if(digits, isDigit));
    const auto points = static_cast<std::size_t>(std::ranges::count(digits, '.'));
    if (count == 0 || points > 1 || count + points != digits.size()) RefuseWith(Message("'{1}' is no number", text));
    if (count > kMostDigits) RefuseWith(Message("{1} has more than fifteen digits", text));
    const auto point = digits.find('.');
    const std::size_t last = digits.find_last_not_of('0');
    if (point != std::string::npos && last != std::string::npos && last > point + decimals) {
        RefuseWith(decimals == 4 ? Message("{1} has more than four decimals", text)
                                 : Message("{1} has more than six decimals", text));
    }
}

}  // namespace

Date DayOfCell(const std::string& text) {
    const auto iso = Date::ParseIso(text);
    const auto date = iso ? iso : Date::Parse(text);
    if (!date || date->HasTime()) RefuseWith(Message("'{1}' is no date", text));
    return *date;
}

double QuantityOfCell(const std::string& text) {
    if (text.empty()) RefuseWith(Message("no quantity is given"));
    CheckPlainNumber(text, 6);
    return ParseNumber(text).value_or(0);
}

std::optional<Currency> MoneyOfCell(const std::string& text) {
    if (text.empty()) return std::nullopt;
    CheckPlainNumber(text, 4);
    return Currency::FromDecimalText(text);
}

std::optional<double> RateOfCell(const std::string& text) {
    if (text.empty()) return std::nullopt;
    const std::string number = text.ends_with('%') ? text.substr(0, text.size() - 1) : text;
    CheckPlainNumber(number, 4);
    return ParseNumber(number);
}

std::int32_t MasterCells::Id(MasterKind kind, const std::string& text) {
    const auto [found, isNew] = ids_.try_emplace({kind, text}, 0);
    if (!isNew && found->second != 0) return found->second;
    return found->second = MasterId(book_, kind, text);
}

}  // namespace kpTables::bookkeeping
