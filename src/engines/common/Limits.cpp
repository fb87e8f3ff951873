#include "engines/common/Limits.h"

#include <algorithm>
#include <limits>

#include "platform/Process.h"

namespace kpTables::engines {

namespace {

/// A result of this size is never refused by default.
constexpr std::size_t kLeastBytes = std::size_t{64} << 20;

/// Half of what the system says it could give to programs; any size where it does not say.
std::size_t HalfOfFreeMemory() {
    const auto available = platform::AvailableMemory();
    return available ? std::max(*available / 2, kLeastBytes) : std::numeric_limits<std::size_t>::max();
}

}  // namespace

void Limits::ApplyTo(recordset::RowStore& rows) const {
    if (bytes > 0) return rows.Limit(static_cast<std::size_t>(bytes));
    rows.Limit(kLeastBytes, [] {
        static const std::size_t kDefault = HalfOfFreeMemory();
        return kDefault;
    });
}

}  // namespace kpTables::engines
