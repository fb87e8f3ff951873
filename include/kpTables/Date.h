// Visual Basic's date type.
#pragma once

#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kpTables {

/// An OLE date: days since 1899-12-30, the time of day as the fraction. Years 100 to 9999.
/// Before day 0 the fraction still counts away from midnight (-1.25 is 1899-12-29 06:00), as in OLE.
class Date {
public:
    struct Parts {
        int year, month, day, hour, minute, second;
    };

    constexpr Date() noexcept = default;
    /// Error 6 when outside the years 100 to 9999.
    static Date FromSerial(double serial);
    /// A calendar date and time; nothing when there is no such day or time.
    static std::optional<Date> FromParts(const Parts& parts);
    /// As DateSerial: month and day may overflow (month 13 is January of the next year). Error 5 or 6 out of range.
    static Date FromYearMonthDay(int year, int month, int day);
    /// Reads y-m-d, y/m/d, y.m.d, yyyy年M月d日; m/d/y with four digits in the year, or d/m/y where no month has that
    /// number; Mar 7, 2004 and 10-Mar-04; yyyy-M, M/yyyy, yyyy年M月 and Mar 2004 for a month's first day. With or
    /// without H:mm[:ss] and AM, PM, 上午 or 下午, or a time alone, blanks around allowed. Two-digit years: 0 to 29 are
    /// 20xx, 30 to 99 are 19xx. Nothing when it is no date.
    static std::optional<Date> Parse(std::string_view text);
    /// Reads YYYY-MM-DD[{T| }HH:MM[:SS]] only, as stored and as JSON carries it.
    static std::optional<Date> ParseIso(std::string_view text);

    constexpr double Serial() const noexcept { return serial_; }
    /// Broken down to the nearest second.
    Parts ToParts() const;
    int Year() const { return ToParts().year; }
    int Month() const { return ToParts().month; }
    int Day() const { return ToParts().day; }
    bool HasTime() const;
    /// The time of day as a fraction of the day, to the nearest second; 0 at midnight.
    double TimeOfDay() const;

    /// The default text form: "2004-3-7", with " 12:30:00" (hour without a leading zero) when there is a time;
    /// a time alone (day 0) is just "12:30:00", and the zero date is "0:00:00".
    std::string ToText() const;
    /// "2004-03-07", with separator and "12:30:00" after it when there is a time. Sorts as text in order of time.
    std::string ToIso(char separator = ' ') const;

    friend constexpr auto operator<=>(Date, Date) noexcept = default;

private:
    double serial_ = 0;
};

}  // namespace kpTables
