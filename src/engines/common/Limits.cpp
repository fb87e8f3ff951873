#include "engines/common/Limits.h"

#include <algorithm>
#include <fstream>
#include <limits>
#include <string>

namespace kpTables::engines {

namespace {

constexpr std::size_t kBytesOfKibibyte = 1024;
/// A result of this size is never refused by default.
constexpr std::size_t kLeastBytes = std::size_t{64} << 20;

/// Half of what the system says it could give to programs; any size where it does not say.
std::size_t HalfOfFreeMemory() {
    std::ifstream system("/proc/meminfo");
    std::string name;
    std::size_t kibibytes = 0;
    for (std::string line; system >> name >> kibibytes; std::getline(system, line)) {
        if (name == "MemAvailable:") return std::max(kibibytes * kBytesOfKibibyte / 2, kLeastBytes);
    }
    return std::numeric_limits<std::size_t>::max();
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
