// Names as a book compares them.
#pragma once

#include <string_view>

#include "text/Ascii.h"

namespace kpTables::kpbook {

/// The same name, ASCII letters without regard to case.
inline bool SameName(std::string_view a, std::string_view b) noexcept { return text::EqualsIgnoringCase(a, b); }

}  // namespace kpTables::kpbook
