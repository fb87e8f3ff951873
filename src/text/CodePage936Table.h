// The double-byte characters of code page 936.
#pragma once

#include <cstdint>

namespace kpTables::text {

/// Bit c % 64 of word c / 64 stands for the character U+c of the basic plane.
extern const std::uint64_t kDoubleByte936[1024];

}  // namespace kpTables::text
