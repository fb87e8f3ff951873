#include "sql/bind/Interval.h"

#include "sql/Names.h"

namespace kpTables::sql::bind {

namespace {

struct IntervalWord {
    std::string_view word;
    std::string_view interval;
};

constexpr IntervalWord kWords[] = {
    {"year", "yyyy"}, {"yyyy", "yyyy"}, {"yy", "yyyy"},  {"quarter", "q"},   {"qq", "q"}, {"q", "q"},
    {"month", "m"},   {"mm", "m"},      {"m", "m"},      {"dayofyear", "y"}, {"dy", "y"}, {"y", "y"},
    {"day", "d"},     {"dd", "d"},      {"d", "d"},      {"weekday", "w"},   {"dw", "w"}, {"w", "w"},
    {"week", "ww"},   {"wk", "ww"},     {"ww", "ww"},    {"hour", "h"},      {"hh", "h"}, {"minute", "n"},
    {"mi", "n"},      {"n", "n"},       {"second", "s"}, {"ss", "s"},        {"s", "s"},
};

}  // namespace

std::string_view IntervalOfWord(std::string_view word) {
    for (const auto& [known, interval] : kWords)
        if (SameName(known, word)) return interval;
    return {};
}

}  // namespace kpTables::sql::bind
