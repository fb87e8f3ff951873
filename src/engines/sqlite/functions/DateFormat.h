// Dates by a pattern of Format.
#pragma once

#include <string>
#include <string_view>

#include "kpTables/Date.h"

namespace kpTables::sqlite {

/// c, d to dddddd, m to mmmm (minutes directly after the hour), y, yy, yyyy, w, ww, q, h, hh, n, nn, s, ss, ttttt,
/// AM/PM and A/P; weekdays and months have English names.
std::string DateByPattern(Date date, std::string_view pattern);

}  // namespace kpTables::sqlite
