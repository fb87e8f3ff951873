// Texts that match patterns.
#pragma once

#include <string_view>

namespace kpTables::text {

/// How a pattern is read.
struct LikeRules {
    std::string_view outside = "!^";  ///< the signs that make a class the characters outside it
    std::string_view escape = {};     ///< the character that takes its meaning from the next one; "" for none
};

/// As SQL's LIKE, without regard to case: % any characters, _ one character, [a-z] one of a class and [!a-z] or [^a-z]
/// one outside it. A bracket that is never closed stands for itself.
bool Like(std::string_view text, std::string_view pattern, const LikeRules& rules = {});

/// As ADO's Find: % and * any characters, ASCII letters without regard to case.
bool LikeInCriteria(std::string_view text, std::string_view pattern);

}  // namespace kpTables::text
