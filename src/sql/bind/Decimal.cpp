#include "sql/bind/Decimal.h"

#include <algorithm>

namespace kpTables::sql::bind {

std::optional<std::string> TenThousandths(std::string_view decimal) {
    constexpr std::size_t kDecimals = 4;
    const bool negative = decimal.starts_with('-');
    if (negative) decimal.remove_prefix(1);
    const auto point = std::min(decimal.find('.'), decimal.size());
    const std::string_view whole = decimal.substr(0, point);
    const std::string_view fraction = point < decimal.size() ? decimal.substr(point + 1) : std::string_view();
    const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
    const bool digits = std::all_of(whole.begin(), whole.end(), isDigit) &&
                        std::all_of(fraction.begin(), fraction.end(), isDigit) && !(whole.empty() && fraction.empty());
    if (!digits || fraction.size() > kDecimals) return std::nullopt;
    std::string scaled = std::string(whole).append(fraction).append(kDecimals - fraction.size(), '0');
    scaled.erase(0, std::min(scaled.find_first_not_of('0'), scaled.size() - 1));
    return negative && scaled != "0" ? "-" + scaled : scaled;
}

}  // namespace kpTables::sql::bind
