// The names in a host's statement, as the markers of its parameters.
#pragma once

#include <string>
#include <string_view>

#include "engines/odbc/Parameters.h"
#include "kpTables/Connection.h"

namespace kpTables::engines::odbc {

/// The text with a marker for every @name and :name that has a value, which becomes a parameter. Names in quotes,
/// brackets and comments, variables (@@x) and names without a value stay.
std::string WithMarkers(std::string_view text, const NamedValues& values, Parameters& parameters);

}  // namespace kpTables::engines::odbc
