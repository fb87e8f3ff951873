// The closing as a few set-based statements.
#pragma once

#include <string>

namespace kpTables::bench {

/// Closes a warehouse's month in the book at path; answers the seconds from the first statement to the commit.
double CloseByHand(const std::string& path, int depot, int month, const std::string& note);

}  // namespace kpTables::bench
