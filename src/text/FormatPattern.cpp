#include "text/FormatPattern.h"

#include <algorithm>

#include "text/Ascii.h"

namespace kpTables::text {

namespace {

struct NamedPattern {
    std::string_view name;
    Pattern pattern;
};

constexpr NamedPattern kNamed[] = {
    {"General Number", {PatternKind::Number, ""}},
    {"Currency", {PatternKind::Number, "￥#,##0.00;￥-#,##0.00"}},
    {"Fixed", {PatternKind::Number, "0.00"}},
    {"Standard", {PatternKind::Number, "#,##0.00"}},
    {"Percent", {PatternKind::Number, "0.00%"}},
    {"Scientific", {PatternKind::Number, "0.00E+00"}},
    {"Yes/No", {PatternKind::Number, R"("Yes";"Yes";"No")"}},
    {"True/False", {PatternKind::Number, R"("True";"True";"False")"}},
    {"On/Off", {PatternKind::Number, R"("On";"On";"Off")"}},
    {"General Date", {PatternKind::Date, "c"}},
    {"Long Date", {PatternKind::Date, "dddddd"}},
    {"Medium Date", {PatternKind::Date, "yy-mm-dd"}},
    {"Short Date", {PatternKind::Date, "ddddd"}},
    {"Long Time", {PatternKind::Date, "ttttt"}},
    {"Medium Time", {PatternKind::Date, "hh:nn AM/PM"}},
    {"Short Time", {PatternKind::Date, "hh:nn"}},
};

constexpr std::string_view kClockMarks[] = {"AM/PM", "AMPM", "A/P"};

PatternKind KindOf(std::string_view pattern) {
    for (std::size_t at = 0; at < pattern.size();) {
        if (TakeLiteral(pattern, at)) continue;
        const char sign = Lower(pattern[at]);
        if (std::string_view("0#.%").find(sign) != std::string_view::npos) return PatternKind::Number;
        if (std::string_view("ymdhnswqc").find(sign) != std::string_view::npos) return PatternKind::Date;
        if (EqualsIgnoringCase(pattern.substr(at, 5), "ttttt")) return PatternKind::Date;
        if (!ClockMarkAt(pattern, at).empty()) return PatternKind::Date;
        if (std::string_view("@&<>!").find(sign) != std::string_view::npos) return PatternKind::Text;
        ++at;
    }
    return PatternKind::Literal;
}

}  // namespace

Pattern PatternOf(std::string_view text) {
    for (const NamedPattern& named : kNamed) {
        if (EqualsIgnoringCase(named.name, text)) return named.pattern;
    }
    return {KindOf(text), text};
}

std::vector<std::string_view> PartsOf(std::string_view pattern) {
    std::vector<std::string_view> parts;
    std::size_t start = 0;
    for (std::size_t at = 0; at < pattern.size();) {
        if (TakeLiteral(pattern, at)) continue;
        if (pattern[at++] != ';') continue;
        parts.push_back(pattern.substr(start, at - 1 - start));
        start = at;
    }
    parts.push_back(pattern.substr(start));
    return parts;
}

std::optional<std::string_view> TakeLiteral(std::string_view pattern, std::size_t& at) {
    if (pattern[at] == '\\' && at + 1 < pattern.size()) {
        at += 2;
        return pattern.substr(at - 1, 1);
    }
    if (pattern[at] != '"') return std::nullopt;
    const auto start = at + 1;
    const auto end = std::min(pattern.find('"', start), pattern.size());
    at = std::min(end + 1, pattern.size());
    return pattern.substr(start, end - start);
}

std::string_view ClockMarkAt(std::string_view pattern, std::size_t at) {
    for (const std::string_view mark : kClockMarks) {
        const std::string_view there = pattern.substr(at, mark.size());
        if (EqualsIgnoringCase(there, mark)) return there;
    }
    return {};
}

}  // namespace kpTables::text
