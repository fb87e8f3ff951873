// The time of the clock on the wall.
#pragma once

#include <ctime>

namespace kpTables::text {

/// Now, in the system's time zone.
std::tm LocalTime();

}  // namespace kpTables::text
