// The closing as a few set-based statements.
#pragma once

#include <string>

#include "RawDatabase.h"

namespace kpTables::bench {

/// Closes a warehouse's month.
void CloseByHand(const RawDatabase& database, int depot, int month, const std::string& note);

}  // namespace kpTables::bench
