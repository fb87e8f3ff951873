// Dates by a pattern of Format.
#pragma once

#include <string>
#include <string_view>

namespace kpTables::text {

/// c, d to dddddd, m to mmmm (minutes directly after the hour), y, yy, yyyy, w, ww, q, h, hh, n, nn, s, ss, ttttt,
/// AM/PM and A/P; weekdays and months have English names.
std::string DateByPattern(double serial, std::string_view pattern);

}  // namespace kpTables::text
