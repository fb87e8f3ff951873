// The working days of the sample year.
#pragma once

#include <array>
#include <compare>
#include <string>
#include <vector>

namespace kpTables::sample {

constexpr int kYear = 2003;

struct Day {
    int month = 1;
    int day = 1;
    friend constexpr auto operator<=>(const Day&, const Day&) noexcept = default;
};

/// "2003-03-07".
std::string IsoText(Day day);

/// Monday to Friday without the public holidays.
class Calendar {
public:
    Calendar();
    /// The working days of a month, 1 to 12, in order.
    const std::vector<Day>& WorkingDays(int month) const { return months_[static_cast<std::size_t>(month - 1)]; }
    /// The working day that is count working days later; false when that is after the end of the year.
    bool Later(Day day, int count, Day& result) const;

private:
    std::array<std::vector<Day>, 12> months_;
    std::vector<Day> all_;
};

}  // namespace kpTables::sample
