#include "text/Format.h"

#include "text/Calendar.h"
#include "text/DateFormat.h"
#include "text/DateText.h"
#include "text/Decimal.h"
#include "text/FormatPattern.h"
#include "text/NumberFormat.h"
#include "text/NumberText.h"
#include "text/TextFormat.h"

namespace kpTables::text {

namespace {

std::optional<std::string> DaysByPattern(double number, std::string_view pattern) {
    if (!IsSerial(number)) return std::nullopt;
    return DateByPattern(number, pattern);
}

}  // namespace

std::optional<std::string> FormatDate(double serial, std::string_view pattern) {
    if (pattern.empty()) return DateText(serial);
    const Pattern known = PatternOf(pattern);
    if (known.kind == PatternKind::Date) return DateByPattern(serial, known.text);
    if (known.kind == PatternKind::Text) return TextByPattern(DateText(serial), known.text);
    return NumberByPattern(serial, known.text);
}

std::optional<std::string> FormatNumber(double number, std::string_view pattern) {
    const Pattern known = PatternOf(pattern);
    if (known.kind == PatternKind::Date) return DaysByPattern(number, known.text);
    if (known.kind == PatternKind::Text) return TextByPattern(NumberText(number), known.text);
    return NumberByPattern(number, known.text);
}

std::optional<std::string> FormatText(std::string_view text, std::string_view pattern) {
    if (pattern.empty()) return std::string(text);
    const Pattern known = PatternOf(pattern);
    if (known.kind == PatternKind::Text) return TextByPattern(text, known.text);
    const auto number = ParseNumber(text);
    if (known.kind == PatternKind::Date) {
        if (const auto date = ParseDate(text)) return DateByPattern(*date, known.text);
        return number ? DaysByPattern(*number, known.text) : std::string(text);
    }
    if (number) return NumberByPattern(*number, known.text);
    return known.kind == PatternKind::Literal ? TextByPattern(text, known.text) : std::string(text);
}

}  // namespace kpTables::text
