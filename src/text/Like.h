// Texts that match patterns.
#pragma once

#include <string_view>

namespace kpTables::text {

/// As SQL's LIKE of both dialects, without regard to case: % any characters, _ one character, [a-z] one of a class and
/// [!a-z] or [^a-z] one outside it. A bracket that is never closed stands for itself.
bool Like(std::string_view text, std::string_view pattern);

/// As ADO's Find: % and * any characters, ASCII letters without regard to case.
bool LikeInCriteria(std::string_view text, std::string_view pattern);

}  // namespace kpTables::text
