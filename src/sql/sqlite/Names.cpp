#include "sql/sqlite/Names.h"

#include <algorithm>

#include "sql/sqlite/SqliteTranslator.h"
#include "text/Ascii.h"

namespace kpTables::sql {

namespace {

std::string Quoted(std::string_view text, char quote) {
    std::string quoted(1, quote);
    for (const char c : text) {
        quoted += c;
        if (c == quote) quoted += c;
    }
    quoted += quote;
    return quoted;
}

}  // namespace

bool SameName(std::string_view a, std::string_view b) noexcept { return text::EqualsIgnoringCase(a, b); }

std::string FoldedName(std::string_view name) {
    std::string folded(name);
    std::transform(folded.begin(), folded.end(), folded.begin(), text::Lower);
    return folded;
}

std::string QuoteText(std::string_view text) { return Quoted(text, '\''); }

std::string QuoteForSqlite(std::string_view name) { return Quoted(name, '"'); }

}  // namespace kpTables::sql
