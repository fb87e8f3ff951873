#include "Figures.h"

namespace kpTables::sample {

std::string DecimalText(std::int64_t value, int decimals) {
    const bool negative = value < 0;
    std::string digits = std::to_string(negative ? -value : value);
    const auto places = static_cast<std::size_t>(decimals);
    if (digits.size() <= places) {
        digits.insert(0, places + 1 - digits.size(), '0');
    }
    std::string fraction = digits.substr(digits.size() - places);
    digits.resize(digits.size() - places);
    fraction.resize(fraction.find_last_not_of('0') + 1);
    if (!fraction.empty()) {
        digits += '.' + fraction;
    }
    return negative ? '-' + digits : digits;
}

std::string Digits(int value, int width) {
    std::string digits = std::to_string(value);
    const auto wanted = static_cast<std::size_t>(width);
    return digits.size() < wanted ? std::string(wanted - digits.size(), '0') + digits : digits;
}

}  // namespace kpTables::sample
