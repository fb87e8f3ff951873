// The dialect that decides where a text means two things.
#pragma once

#include <cstdint>

namespace kpTables::sql {

/// Both are read at once. The dialect decides only about: the class [!a] of a pattern, the quotes "...", the quotient
/// and the average of whole numbers, & between them, and bounds of BETWEEN that stand in the wrong order.
enum class Dialect : std::uint8_t { Jet, SqlServer };

}  // namespace kpTables::sql
