#include "text/CodePage936.h"

#include "text/CodePage936Table.h"

namespace kpTables::text {

bool IsDoubleByte936(char32_t character) noexcept {
    constexpr unsigned kBits = 64;
    if (character > 0xFFFF) return false;
    return (kDoubleByte936[character / kBits] >> (character % kBits)) & 1;
}

}  // namespace kpTables::text
