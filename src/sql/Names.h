// Names of tables, columns and functions.
#pragma once

#include <string>
#include <string_view>

namespace kpTables::sql {

/// Names are equal without regard to the case of ASCII letters.
bool SameName(std::string_view a, std::string_view b) noexcept;

/// The name in lower-case ASCII letters, for look-ups in tables of such names.
std::string FoldedName(std::string_view name);

}  // namespace kpTables::sql
