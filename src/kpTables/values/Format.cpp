// Format with a pattern.
#include <cmath>
#include <string>

#include "kpTables/Convert.h"
#include "text/Ascii.h"

namespace kpTables {

namespace {

enum class PatternKind { Literal, Text, Number, Date };

PatternKind KindOf(std::string_view pattern) {
    auto kind = PatternKind::Literal;
    for (char c : pattern) {
        switch (text::Lower(c)) {
            case 'y':
            case 'm':
            case 'd':
            case 'h':
            case 's':
                return PatternKind::Date;
            case '0':
            case '#':
                kind = PatternKind::Number;
                break;
            case '&':
                if (kind == PatternKind::Literal) kind = PatternKind::Text;
                break;
            default:
                break;
        }
    }
    return kind;
}

void AppendPadded(std::string& out, int value, std::size_t width) {
    const std::string digits = Text(std::int32_t{value});
    if (digits.size() < width) out.append(width - digits.size(), '0');
    out += digits;
}

std::string FormatDate(Date date, std::string_view pattern) {
    const Date::Parts p = date.ToParts();
    std::string out;
    bool afterHour = false;
    for (std::size_t i = 0; i < pattern.size();) {
        const char letter = text::Lower(pattern[i]);
        std::size_t end = i + 1;
        while (end < pattern.size() && text::Lower(pattern[end]) == letter) ++end;
        const std::size_t width = end - i;
        const std::size_t padding = width > 1 ? 2 : 1;
        switch (letter) {
            case 'y':
                AppendPadded(out, width > 2 ? p.year : p.year % 100, padding);
                break;
            case 'm':
                AppendPadded(out, afterHour ? p.minute : p.month, padding);
                break;
            case 'd':
                AppendPadded(out, p.day, padding);
                break;
            case 'h':
                AppendPadded(out, p.hour, padding);
                break;
            case 's':
                AppendPadded(out, p.second, padding);
                break;
            default:
                out.append(pattern.substr(i, width));
                break;
        }
        // mm stands for minutes only directly after the hour.
        if (letter == 'h') {
            afterHour = true;
        } else if (letter == 'y' || letter == 'm' || letter == 'd' || letter == 's') {
            afterHour = false;
        }
        i = end;
    }
    return out;
}

/// The pattern's digit places filled from the right with a whole number.
std::string FormatNumber(double number, std::string_view pattern) {
    // Format rounds a half away from zero, unlike the conversions.
    const double whole = std::round(number);
    const std::string digits = Text(std::fabs(whole));
    std::size_t places = 0;
    for (char c : pattern) places += c == '0' || c == '#';
    std::string out;
    if (whole < 0) out += '-';
    std::size_t place = 0;
    bool zeros = false;
    for (char c : pattern) {
        if (c != '0' && c != '#') {
            out += c;
            continue;
        }
        if (place == 0 && digits.size() > places) out.append(digits, 0, digits.size() - places);
        const std::size_t left = places - place++;
        zeros = zeros || c == '0';
        if (left > digits.size()) {
            if (zeros) out += '0';
        } else if (zeros || whole != 0) {
            out += digits[digits.size() - left];
        }
    }
    return out;
}

std::string FormatText(std::string_view text, std::string_view pattern) {
    std::string out;
    for (char c : pattern) {
        if (c == '&') {
            out += text;
            text = {};
        } else {
            out += c;
        }
    }
    return out;
}

}  // namespace

std::string Format(const Variant& value, std::string_view pattern) {
    if (value.IsNull()) return {};
    const auto* text = value.If<std::string>();
    switch (KindOf(pattern)) {
        case PatternKind::Date:
            if (text && !IsDate(value) && !IsNumeric(value)) return *text;
            return FormatDate(CDate(value), pattern);
        case PatternKind::Number:
            if (text) {
                const auto number = ParseNumber(*text);
                return number ? FormatNumber(*number, pattern) : *text;
            }
            return FormatNumber(CDbl(value), pattern);
        case PatternKind::Text:
            return FormatText(CStr(value), pattern);
        case PatternKind::Literal:
            break;
    }
    return std::string(pattern);
}

}  // namespace kpTables
