// The dialect that decides where a text means two things.
#pragma once

#include <cstdint>

namespace kpTables::sql {

/// Both are read at once: the dialect decides only where a text means two things. docs/dialects.md lists them.
enum class Dialect : std::uint8_t { Jet, SqlServer };

}  // namespace kpTables::sql
