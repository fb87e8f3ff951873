#include "text/DateText.h"

#include <charconv>

#include "text/Ascii.h"
#include "text/Calendar.h"

namespace kpTables::text {

namespace {

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
        at = PutPadded(at, p.year, 4);
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
