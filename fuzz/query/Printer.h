// The two texts of a query: as a host writes it, and as SQLite is asked without any detour.
#pragma once

#include <string>

#include "query/Tree.h"

namespace kpTables::fuzz::query {

/// In the dialect of Jet.
std::string HostText(const Select& select);
/// For SQLite, knowing how a book stores its values, and nothing else: each node by itself, in the order of the text.
std::string NaiveText(const Select& select);

}  // namespace kpTables::fuzz::query
