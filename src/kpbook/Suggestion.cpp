#include "kpbook/Suggestion.h"

#include <algorithm>
#include <cstddef>
#include <vector>

#include "kpTables/LateBound.h"
#include "text/Ascii.h"

namespace kpTables::kpbook {

namespace {

constexpr std::size_t kMostNamed = 3;

/// The characters of a text, in lower case.
std::vector<std::string> CharactersOf(std::string_view text) {
    std::vector<std::string> characters;
    for (const char byte : text) {
        const bool continues = (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
        if (continues && !characters.empty()) {
            characters.back() += byte;
        } else {
            characters.emplace_back(1, text::Lower(byte));
        }
    }
    return characters;
}

/// How many characters must be added, left out, replaced or exchanged with their neighbours.
std::size_t Distance(const std::vector<std::string>& a, const std::vector<std::string>& b) {
    std::vector<std::size_t> before(b.size() + 1);
    std::vector<std::size_t> row(b.size() + 1);
    std::vector<std::size_t> next(b.size() + 1);
    for (std::size_t j = 0; j <= b.size(); ++j) row[j] = j;
    for (std::size_t i = 1; i <= a.size(); ++i) {
        next[0] = i;
        for (std::size_t j = 1; j <= b.size(); ++j) {
            next[j] = std::min({row[j] + 1, next[j - 1] + 1, row[j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1)});
            const bool exchanged = i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1];
            if (exchanged) next[j] = std::min(next[j], before[j - 2] + 1);
        }
        before = row;
        row = next;
    }
    return row.back();
}

/// The last part of the name that begins there, without brackets: of B.[数量] that is 数量.
std::string_view NameAt(std::string_view text, std::size_t at) {
    constexpr std::string_view kEnds = " \t\r\n,;()<>=+-*/&'#";
    std::string_view name = text.substr(at, text.find_first_of(kEnds, at) - at);
    if (const auto point = name.rfind('.'); point != name.npos) name.remove_prefix(point + 1);
    if (name.starts_with('[')) name.remove_prefix(1);
    if (name.ends_with(']')) name.remove_suffix(1);
    return name;
}

}  // namespace

std::string DidYouMean(std::string_view given, std::span<const std::string_view> names) {
    const auto characters = CharactersOf(given);
    std::size_t least = characters.size() < 2 ? 0 : std::max<std::size_t>(1, characters.size() / 3);
    std::vector<std::string_view> nearest;
    for (const std::string_view name : names) {
        const std::size_t distance = Distance(characters, CharactersOf(name));
        if (distance > least || std::ranges::find(nearest, name) != nearest.end()) continue;
        if (distance < least) nearest.clear();
        least = distance;
        nearest.push_back(name);
    }
    if (nearest.empty() || nearest.size() > kMostNamed) return {};
    std::string text = "; did you mean ";
    for (std::size_t i = 0; i < nearest.size(); ++i) {
        text += i == 0 ? "" : i + 1 == nearest.size() ? " or " : ", ";
        text += nearest[i];
    }
    return text + "?";
}

std::string MethodMeant(std::string_view given) {
    std::vector<std::string_view> names;
    for (const auto& member : _CTables::Members()) names.push_back(member.name);
    return DidYouMean(given, names);
}

DatabaseError WithSuggestion(const DatabaseError& error, Book& book) {
    const auto is = [&](DatabaseErrorNumber number) { return error.Number() == static_cast<std::int32_t>(number); };
    const bool isTable = is(DatabaseErrorNumber::UnknownTable);
    if (!error.Position() || (!isTable && !is(DatabaseErrorNumber::UnknownColumn))) return error;
    const auto tables = book.Tables();
    std::vector<std::string_view> names;
    for (const TableInfo& table : tables) {
        if (isTable) names.push_back(table.name);
        if (isTable || error.Statement().find(table.name) == std::string::npos) continue;
        for (const auto& column : table.columns) names.push_back(column.name);
    }
    const std::string hint = DidYouMean(NameAt(error.Statement(), *error.Position()), names);
    return DatabaseError(error.Number(), error.Description() + hint, error.Statement(), error.Position());
}

}  // namespace kpTables::kpbook
