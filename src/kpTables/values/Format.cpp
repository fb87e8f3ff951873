// Format with a pattern.
#include "text/Format.h"

#include "kpTables/Convert.h"
#include "kpTables/Error.h"
#include "text/FormatPattern.h"

namespace kpTables {

namespace {

std::optional<std::string> Formatted(const Variant& value, std::string_view pattern) {
    const auto* text = value.If<std::string>();
    const auto* date = value.If<Date>();
    if (text) return text::FormatText(*text, pattern);
    if (date) return text::FormatDate(date->Serial(), pattern);
    // A pattern of texts shows every type's own text form, not a number's.
    const bool asText = pattern.empty() || text::PatternOf(pattern).kind == text::PatternKind::Text;
    return asText ? text::FormatText(CStr(value), pattern) : text::FormatNumber(CDbl(value), pattern);
}

}  // namespace

std::string Format(const Variant& value, std::string_view pattern) {
    if (value.IsNull()) return {};
    auto formatted = Formatted(value, pattern);
    if (!formatted) Raise(ErrorNumber::Overflow);
    return *std::move(formatted);
}

}  // namespace kpTables
