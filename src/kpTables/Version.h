// The component's version number as text.
#pragma once

#include <string>

namespace kpTables {

/// Major, minor and revision joined with nothing between; the build number is not part of it.
std::string VersionText(int major, int minor, int build, int revision);

}  // namespace kpTables
