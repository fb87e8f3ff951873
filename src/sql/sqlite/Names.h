// Names and texts as SQLite's SQL spells them.
#pragma once

#include <string>
#include <string_view>

namespace kpTables::sql {

/// Names are equal without regard to the case of ASCII letters, as SQLite has it too.
bool SameName(std::string_view a, std::string_view b) noexcept;

/// The name in lower-case ASCII letters, for look-ups in tables that are written so.
std::string FoldedName(std::string_view name);

/// A text between single quotes, quotes inside doubled.
std::string QuoteText(std::string_view text);

}  // namespace kpTables::sql
