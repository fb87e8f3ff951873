#include "Calendar.h"

#include <algorithm>

#include "Figures.h"

namespace kpTables::sample {

namespace {

constexpr std::array<int, 12> kDaysOfMonth = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
/// 1 January 2003 was a Wednesday; Monday is 0.
constexpr int kWeekdayOfFirst = 2;

bool IsHoliday(Day day) {
    const auto within = [day](int month, int first, int last) {
        return day.month == month && day.day >= first && day.day <= last;
    };
    return within(1, 1, 1) || within(2, 1, 7) || within(5, 1, 7) || within(10, 1, 7);
}

}  // namespace

std::string IsoText(Day day) { return Digits(kYear, 4) + "-" + Digits(day.month, 2) + "-" + Digits(day.day, 2); }

Calendar::Calendar() {
    int weekday = kWeekdayOfFirst;
    for (int month = 1; month <= 12; ++month) {
        for (int day = 1; day <= kDaysOfMonth[static_cast<std::size_t>(month - 1)]; ++day) {
            const Day date{month, day};
            if (weekday < 5 && !IsHoliday(date)) {
                months_[static_cast<std::size_t>(month - 1)].push_back(date);
                all_.push_back(date);
            }
            weekday = (weekday + 1) % 7;
        }
    }
}

bool Calendar::Later(Day day, int count, Day& result) const {
    auto at = std::lower_bound(all_.begin(), all_.end(), day);
    if (all_.end() - at <= count) {
        return false;
    }
    result = at[count];
    return true;
}

}  // namespace kpTables::sample
