// How a result's columns are shown to people.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "kpTables/Recordset.h"

namespace kpTables::kpbook::output {

/// How a column's values are written.
enum class Look : std::uint8_t {
    Plain,     ///< as they are
    Money,     ///< two decimals and thousands separators
    Price,     ///< two to four decimals and thousands separators
    Quantity,  ///< their decimals, at most fifteen digits, and thousands separators
};

struct Presentation {
    // NOLINTNEXTLINE(google-explicit-constructor): totals alone are the usual presentation
    Presentation(std::vector<int> totalledColumns = {}, std::vector<Look> columnLooks = {})
        : totalled(std::move(totalledColumns)), looks(std::move(columnLooks)) {}

    /// Plain for columns that no look is given for.
    Look LookOf(int column) const noexcept {
        const auto place = static_cast<std::size_t>(column);
        return place < looks.size() ? looks[place] : Look::Plain;
    }

    std::vector<int> totalled;  ///< columns whose sums are shown below
    std::vector<Look> looks;    ///< one a column, or none
};

/// A value as a column of that look shows it; what is no number is shown as it is.
std::string ShownText(const Variant& value, Look look);
/// "-1234567.5" as "-1,234,567.5"; what is no plain decimal number is as it was.
std::string WithSeparators(std::string number);

}  // namespace kpTables::kpbook::output
