// Texts as the driver manager takes them: UTF-16, Chinese beyond the basic plane as surrogates.
#pragma once

#include <string>
#include <string_view>

#include "engines/odbc/Manager.h"

namespace kpTables::engines::odbc {

static_assert(sizeof(SQLWCHAR) == sizeof(char16_t));

/// UTF-8 as UTF-16. A byte that belongs to no character becomes U+FFFD.
std::u16string Wide(std::string_view text);
/// UTF-16 as UTF-8. A surrogate without its other half becomes U+FFFD.
std::string Narrow(std::u16string_view text);
/// The same, added to a text.
void AppendNarrow(std::string& to, std::u16string_view text);

/// The text that a zero ends in a driver's answer; the lengths that drivers tell beside it count units, bytes or, where
/// the manager converts, those of another encoding.
std::string NarrowUntilZero(const SQLWCHAR* text);

/// As an argument of the driver manager, which takes texts that it does not change as if it did.
inline SQLWCHAR* Units(std::u16string& text) noexcept { return reinterpret_cast<SQLWCHAR*>(text.data()); }

}  // namespace kpTables::engines::odbc
