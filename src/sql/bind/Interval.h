// The units of DATEADD, DATEDIFF and DATEPART.
#pragma once

#include <string_view>

namespace kpTables::sql::bind {

/// Jet's abbreviation of a word that the server writes unquoted: "month", "mm" and "m" are "m". Empty for any other
/// word.
std::string_view IntervalOfWord(std::string_view word);

}  // namespace kpTables::sql::bind
