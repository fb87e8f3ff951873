#include "kpTables/Convert.h"
#include "kpTables/values/CodePage936Table.h"

namespace kpTables {

bool IsDoubleByte936(char32_t character) noexcept {
    if (character > 0xFFFF) return false;
    return (values::kDoubleByte936[character / 64] >> (character % 64)) & 1;
}

}  // namespace kpTables
