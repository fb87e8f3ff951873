#include "sql/parse/Keywords.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>

namespace kpTables::sql::parse {

namespace {

constexpr char Upper(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

constexpr std::array<std::string_view, 38> kReserved = {
    "ALL",   "AND",    "AS",    "BETWEEN", "BY",    "CASE",   "DELETE", "DISTINCT", "DISTINCTROW", "EQV",
    "FALSE", "FROM",   "GROUP", "HAVING",  "IMP",   "IN",     "INNER",  "INSERT",   "INTO",        "IS",
    "JOIN",  "LEFT",   "LIKE",  "MOD",     "NOT",   "NULL",   "ON",     "OR",       "ORDER",       "PIVOT",
    "RIGHT", "SELECT", "SET",   "TRUE",    "UNION", "UPDATE", "WHERE",  "XOR"};
static_assert(std::is_sorted(kReserved.begin(), kReserved.end()));

/// A keyword with the words after which it is split from a name that follows it.
struct Splitting {
    std::string_view keyword;
    bool afterOperand;
    std::string_view after;  ///< words between blanks; "^" is the statement's start
};

// Only words that a name can follow and that are unlikely to begin one where they stand: "In甲" and "Case甲" are
// names.
constexpr std::array<Splitting, 24> kSplitting = {{
    {"AND", true, ""},
    {"AS", true, ""},
    {"BETWEEN", true, ""},
    {"BY", false, " ORDER GROUP "},
    {"DISTINCT", false, " SELECT "},
    {"ELSE", true, ""},
    {"EQV", true, ""},
    {"FROM", true, " * DELETE "},
    {"HAVING", true, ""},
    {"IMP", true, ""},
    {"INTO", false, " INSERT "},
    {"JOIN", false, " INNER LEFT RIGHT OUTER "},
    {"LIKE", true, " NOT "},
    {"MOD", true, ""},
    {"NOT", false, " WHERE AND OR ON HAVING "},
    {"ON", true, ""},
    {"OR", true, ""},
    {"PIVOT", true, ""},
    {"SELECT", false, " ^ ( UNION ALL "},
    {"SET", true, ""},
    {"THEN", true, ""},
    {"WHEN", true, " CASE "},
    {"UPDATE", false, " ^ "},
    {"WHERE", true, ""},
}};

const Splitting* FindSplitting(std::string_view keyword) {
    for (const Splitting& row : kSplitting)
        if (SameWord(row.keyword, keyword)) return &row;
    return nullptr;
}

}  // namespace

bool SameWord(std::string_view a, std::string_view b) {
    return a.size() == b.size() &&
           std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) { return Upper(x) == Upper(y); });
}

bool IsReserved(std::string_view word) {
    std::array<char, 12> upper{};
    if (word.size() > upper.size()) return false;
    std::transform(word.begin(), word.end(), upper.begin(), Upper);
    return std::binary_search(kReserved.begin(), kReserved.end(), std::string_view(upper.data(), word.size()));
}

bool SplitsFromName(std::string_view keyword, std::string_view previous, bool afterOperand) {
    const Splitting* row = FindSplitting(keyword);
    if (!row) return false;
    if (afterOperand && row->afterOperand) return true;
    std::string word = " ";
    for (char c : previous.empty() ? std::string_view("^") : previous) word += Upper(c);
    return row->after.find(word + ' ') != std::string_view::npos;
}

bool MaySplit(std::string_view name) {
    std::size_t letters = 0;
    while (letters < name.size() && Upper(name[letters]) >= 'A' && Upper(name[letters]) <= 'Z') ++letters;
    if (letters == name.size() || static_cast<unsigned char>(name[letters]) < 0x80) return false;
    return FindSplitting(name.substr(0, letters)) != nullptr;
}

}  // namespace kpTables::sql::parse
