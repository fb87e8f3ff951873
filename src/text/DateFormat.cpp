#include "text/DateFormat.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "text/Ascii.h"
#include "text/Calendar.h"
#include "text/DateText.h"
#include "text/FormatPattern.h"
#include "text/NumberText.h"

namespace kpTables::text {

namespace {

constexpr int kNoon = 12;

constexpr std::string_view kWeekdays[] = {"Sunday", "Monday", "Tuesday", "Wednesday", "Thursday", "Friday", "Saturday"};
constexpr std::size_t kShortName = 3;

std::string Padded(int value, std::size_t width) {
    std::string digits = WholeText(value);
    if (digits.size() < width) digits.insert(0, width - digits.size(), '0');
    return digits;
}

class DateWriter {
public:
    DateWriter(double serial, std::string_view pattern) : serial_(serial), parts_(PartsOf(serial)), pattern_(pattern) {
        for (std::size_t at = 0; at < pattern.size();) {
            if (TakeLiteral(pattern, at)) continue;
            twelveHours_ = twelveHours_ || !ClockMarkAt(pattern, at).empty();
            ++at;
        }
    }

    std::string Write() {
        for (std::size_t at = 0; at < pattern_.size();) {
            if (const auto literal = TakeLiteral(pattern_, at)) {
                out_ += *literal;
            } else if (const auto mark = ClockMarkAt(pattern_, at); !mark.empty()) {
                WriteMark(mark);
                at += mark.size();
            } else {
                const char letter = Lower(pattern_[at]);
                std::size_t end = at + 1;
                while (end < pattern_.size() && Lower(pattern_[end]) == letter) ++end;
                if (!WriteCalendar(letter, end - at) && !WriteClock(letter, end - at)) {
                    out_ += pattern_.substr(at, end - at);
                }
                at = end;
            }
        }
        return out_;
    }

private:
    // Half of "AM/PM" is "AM"; of "AMPM" too.
    void WriteMark(std::string_view mark) {
        const std::size_t half = mark.size() / 2;
        out_ += parts_.hour < kNoon ? mark.substr(0, half) : mark.substr(mark.size() - half);
    }

    void WriteNamed(std::string_view name, std::size_t width) {
        out_ += width == kShortName ? name.substr(0, kShortName) : name;
    }

    bool WriteCalendar(char letter, std::size_t width) {
        const bool minutes = letter == 'm' && afterHour_ && width <= 2;
        if (std::string_view("ymdwqc").find(letter) == std::string_view::npos || minutes) return false;
        afterHour_ = false;
        const std::int64_t january = DayNumber(*SerialOf({parts_.year, 1, 1, 0, 0, 0}));
        const auto dayOfYear = static_cast<int>(DayNumber(serial_) - january) + 1;
        switch (letter) {
            case 'y':
                out_ += width == 1   ? Padded(dayOfYear, 1)
                        : width == 2 ? Padded(parts_.year % 100, 2)
                                     : Padded(parts_.year, 4);
                break;
            case 'm':
                if (width <= 2)
                    out_ += Padded(parts_.month, width);
                else
                    WriteNamed(kMonthNames[static_cast<std::size_t>(parts_.month - 1)], width);
                break;
            case 'd':
                WriteDay(width);
                break;
            case 'w':
                out_ += Padded(width == 1 ? WeekdayOf(DayNumber(serial_))
                                          : (dayOfYear + WeekdayOf(january) - 2) / kDaysPerWeek + 1,
                               1);
                break;
            case 'q':
                out_ += Padded((parts_.month - 1) / kMonthsPerQuarter + 1, 1);
                break;
            default:
                out_ += DateText(serial_);
                break;
        }
        return true;
    }

    void WriteDay(std::size_t width) {
        constexpr std::size_t kDayName = 4;
        constexpr std::size_t kShortDate = 5;
        if (width <= 2)
            out_ += Padded(parts_.day, width);
        else if (width <= kDayName)
            WriteNamed(kWeekdays[static_cast<std::size_t>(WeekdayOf(DayNumber(serial_)) - 1)], width);
        else if (width == kShortDate)
            out_ += Padded(parts_.year, 4) + '-' + Padded(parts_.month, 1) + '-' + Padded(parts_.day, 1);
        else
            out_ += Padded(parts_.year, 4) + "年" + Padded(parts_.month, 1) + "月" + Padded(parts_.day, 1) + "日";
    }

    bool WriteClock(char letter, std::size_t width) {
        const std::size_t padding = std::min<std::size_t>(width, 2);
        const int hour = twelveHours_ ? (parts_.hour + kNoon - 1) % kNoon + 1 : parts_.hour;
        const bool time = letter == 't' && width == 5;
        if (letter == 'h') out_ += Padded(hour, padding);
        if (letter == 'n' || letter == 'm') out_ += Padded(parts_.minute, padding);
        if (letter == 's') out_ += Padded(parts_.second, padding);
        if (time) out_ += Padded(hour, 1) + ':' + Padded(parts_.minute, 2) + ':' + Padded(parts_.second, 2);
        const bool written = time || std::string_view("hnms").find(letter) != std::string_view::npos;
        if (written) afterHour_ = letter == 'h';
        return written;
    }

    double serial_;
    DateParts parts_;
    std::string_view pattern_;
    std::string out_;
    bool twelveHours_ = false;
    bool afterHour_ = false;
};

}  // namespace

std::string DateByPattern(double serial, std::string_view pattern) { return DateWriter(serial, pattern).Write(); }

}  // namespace kpTables::text
