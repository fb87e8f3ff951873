#include "text/DateText.h"

#include <charconv>

#include "text/Ascii.h"
#include "text/Calendar.h"

namespace kpTables::text {

namespace {

/// Scans a text once.
class DateReader {
public:
    explicit DateReader(std::string_view text) : rest_(text) {}

    std::optional<double> Read() {
        while (!rest_.empty() && rest_.back() == ' ') rest_.remove_suffix(1);
        SkipBlanks();
        const std::string_view start = rest_;
        if (ReadCalendarDay()) {
            const bool blank = SkipBlanks();
            if (rest_.empty()) return SerialOf(parts_);
            // Only 日 may be followed by the time directly.
            if (!blank && !chinese_) return std::nullopt;
        } else {
            rest_ = start;
            parts_ = {1899, 12, 30, 0, 0, 0};
        }
        if (!ReadTime() || !rest_.empty()) return std::nullopt;
        return SerialOf(parts_);
    }

private:
    struct Number {
        int value = 0;
        int digits = 0;
    };

    bool SkipBlanks() {
        const auto size = rest_.size();
        while (!rest_.empty() && rest_[0] == ' ') rest_.remove_prefix(1);
        return rest_.size() != size;
    }
    bool Take(std::string_view piece) {
        if (!rest_.starts_with(piece)) return false;
        rest_.remove_prefix(piece.size());
        return true;
    }
    /// Up to four digits; no digits is no number.
    Number ReadNumber() {
        Number n;
        for (; !rest_.empty() && IsDigit(rest_[0]) && n.digits < 5; ++n.digits, rest_.remove_prefix(1)) {
            n.value = n.value * 10 + (rest_[0] - '0');
        }
        return n;
    }

    bool ReadCalendarDay() {
        const Number first = ReadNumber();
        if (first.digits == 0 || rest_.empty()) return false;
        std::string_view separator;
        for (std::string_view s : {"-", "/", ".", "年"}) {
            if (Take(s)) separator = s;
            if (!separator.empty()) break;
        }
        if (separator.empty()) return false;
        chinese_ = separator == "年";
        const Number second = ReadNumber();
        if (!Take(chinese_ ? "月" : separator)) return false;
        const Number third = ReadNumber();
        if (chinese_ && !Take("日")) return false;
        if (!chinese_ && third.digits == 4 && first.digits <= 2) return SetDay(third, first, second);
        return SetDay(first, second, third);
    }

    bool SetDay(Number year, Number month, Number day) {
        const auto oneOrTwo = [](Number n) { return n.digits == 1 || n.digits == 2; };
        if (year.digits > 4 || !oneOrTwo(month) || !oneOrTwo(day)) return false;
        parts_.year = year.digits <= 2 ? FullYear(year.value) : year.value;
        parts_.month = month.value;
        parts_.day = day.value;
        return true;
    }

    bool ReadTime() {
        const Number hour = ReadNumber();
        if (hour.digits < 1 || hour.digits > 2 || !Take(":")) return false;
        const Number minute = ReadNumber();
        if (minute.digits < 1 || minute.digits > 2) return false;
        Number second;
        if (Take(":")) {
            second = ReadNumber();
            if (second.digits < 1 || second.digits > 2) return false;
        }
        parts_.hour = hour.value;
        parts_.minute = minute.value;
        parts_.second = second.value;
        SkipBlanks();
        return rest_.empty() || ReadHalfOfDay();
    }

    bool ReadHalfOfDay() {
        if (rest_.size() != 2 || (rest_[1] | 0x20) != 'm') return false;
        const char half = static_cast<char>(rest_[0] | 0x20);
        if ((half != 'a' && half != 'p') || parts_.hour > 12) return false;
        if (half == 'a' && parts_.hour == 12) parts_.hour = 0;
        if (half == 'p' && parts_.hour < 12) parts_.hour += 12;
        rest_ = {};
        return true;
    }

    std::string_view rest_;
    DateParts parts_{};
    bool chinese_ = false;
};

/// Reads count digits at an offset; -1 when one is none.
int FixedDigits(std::string_view text, std::size_t at, int count) {
    int value = 0;
    for (int i = 0; i < count; ++i) {
        const char c = text[at + static_cast<std::size_t>(i)];
        if (!IsDigit(c)) return -1;
        value = value * 10 + (c - '0');
    }
    return value;
}

char* PutPadded(char* at, int value, int width) noexcept {
    for (int i = width - 1; i >= 0; --i, value /= 10) at[i] = static_cast<char>('0' + value % 10);
    return at + width;
}

char* PutNumber(char* at, int value) noexcept { return std::to_chars(at, at + 8, value).ptr; }

char* PutTime(char* at, const DateParts& p) noexcept {
    *at++ = ':';
    at = PutPadded(at, p.minute, 2);
    *at++ = ':';
    return PutPadded(at, p.second, 2);
}

}  // namespace

std::optional<double> ParseDate(std::string_view text) noexcept { return DateReader(text).Read(); }

std::optional<double> ParseIsoDate(std::string_view text) noexcept {
    const auto size = text.size();
    if ((size != 10 && size != 16 && size != 19) || text[4] != '-' || text[7] != '-') return std::nullopt;
    DateParts p{FixedDigits(text, 0, 4), FixedDigits(text, 5, 2), FixedDigits(text, 8, 2), 0, 0, 0};
    if (size > 10) {
        if ((text[10] != ' ' && text[10] != 'T') || text[13] != ':' || (size == 19 && text[16] != ':')) {
            return std::nullopt;
        }
        p.hour = FixedDigits(text, 11, 2);
        p.minute = FixedDigits(text, 14, 2);
        if (size == 19) p.second = FixedDigits(text, 17, 2);
    }
    return SerialOf(p);
}

std::string DateText(double serial) {
    const DateParts p = PartsOf(serial);
    const bool zeroDay = p.year == 1899 && p.month == 12 && p.day == 30;
    char text[32];
    char* at = text;
    if (!zeroDay) {
        at = PutNumber(at, p.year);
        *at++ = '-';
        at = PutNumber(at, p.month);
        *at++ = '-';
        at = PutNumber(at, p.day);
    }
    if (zeroDay || p.hour != 0 || p.minute != 0 || p.second != 0) {
        if (!zeroDay) *at++ = ' ';
        at = PutTime(PutNumber(at, p.hour), p);
    }
    return {text, at};
}

char* WriteIsoDate(char* buffer, double serial, char separator) noexcept {
    const DateParts p = PartsOf(serial);
    char* at = PutPadded(buffer, p.year, 4);
    *at++ = '-';
    at = PutPadded(at, p.month, 2);
    *at++ = '-';
    at = PutPadded(at, p.day, 2);
    if (p.hour != 0 || p.minute != 0 || p.second != 0) {
        *at++ = separator;
        at = PutTime(PutPadded(at, p.hour, 2), p);
    }
    return at;
}

std::string IsoDateText(double serial, char separator) {
    char text[kLongestIsoDate];
    return {text, WriteIsoDate(text, serial, separator)};
}

}  // namespace kpTables::text
