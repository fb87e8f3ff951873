#include "engines/odbc/StatementWord.h"

#include <algorithm>
#include <iterator>

#include "sql/Names.h"

namespace kpTables::engines::odbc {

namespace {

bool IsBlank(char c) noexcept { return c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '('; }
bool IsLetter(char c) noexcept { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

constexpr std::string_view kReads[] = {"SELECT", "TRANSFORM", "WITH", "VALUES"};
constexpr std::string_view kChanges[] = {"INSERT", "UPDATE", "DELETE", "MERGE"};

}  // namespace

StatementUse UseOf(std::string_view text) noexcept {
    const auto* const begin = std::ranges::find_if_not(text, IsBlank);
    const std::string_view word(begin, std::find_if_not(begin, text.end(), IsLetter));
    const auto isWord = [&](std::string_view each) { return sql::SameName(word, each); };
    if (std::ranges::any_of(kReads, isWord)) return StatementUse::Read;
    return std::ranges::any_of(kChanges, isWord) ? StatementUse::Change : StatementUse::Other;
}

}  // namespace kpTables::engines::odbc
