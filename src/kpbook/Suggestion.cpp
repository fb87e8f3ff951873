#include "kpbook/Suggestion.h"

#include <vector>

#include "kpTables/LateBound.h"

namespace kpTables::kpbook {

namespace {

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
