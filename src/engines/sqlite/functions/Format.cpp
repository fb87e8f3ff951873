#include "Format.h"

#include "DateFormat.h"
#include "FormatPattern.h"
#include "NumberFormat.h"
#include "TextFormat.h"
#include "kpTables/Convert.h"

namespace kpTables::sqlite {

std::string FormatDate(Date date, std::string_view pattern) {
    if (pattern.empty()) return date.ToText();
    const Pattern known = PatternOf(pattern);
    if (known.kind == PatternKind::Date) return DateByPattern(date, known.text);
    if (known.kind == PatternKind::Text) return TextByPattern(date.ToText(), known.text);
    return NumberByPattern(date.Serial(), known.text);
}

std::string FormatNumber(double number, std::string_view pattern) {
    const Pattern known = PatternOf(pattern);
    if (known.kind == PatternKind::Date) return DateByPattern(Date::FromSerial(number), known.text);
    if (known.kind == PatternKind::Text) return TextByPattern(Text(number), known.text);
    return NumberByPattern(number, known.text);
}

std::string FormatText(std::string_view text, std::string_view pattern) {
    if (pattern.empty()) return std::string(text);
    const Pattern known = PatternOf(pattern);
    if (known.kind == PatternKind::Text) return TextByPattern(text, known.text);
    const auto number = ParseNumber(text);
    if (known.kind == PatternKind::Date) {
        if (const auto date = Date::Parse(text)) return DateByPattern(*date, known.text);
        return number ? DateByPattern(Date::FromSerial(*number), known.text) : std::string(text);
    }
    if (number) return NumberByPattern(*number, known.text);
    return known.kind == PatternKind::Literal ? TextByPattern(text, known.text) : std::string(text);
}

}  // namespace kpTables::sqlite
