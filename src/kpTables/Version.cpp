#include "kpTables/Version.h"

namespace kpTables {

std::string VersionText(int major, int minor, int /*build*/, int revision) {
    return std::to_string(major) + std::to_string(minor) + std::to_string(revision);
}

}  // namespace kpTables
