// The dialect that decides where a text means two things.
#pragma once

#include <cstdint>

namespace kpTables::sql {

/// The front end reads both dialects at once. This one decides only where a text means something else in each of them;
/// docs/dialects.md lists these places.
enum class Dialect : std::uint8_t { Jet, SqlServer };

}  // namespace kpTables::sql
