// Queries over the tables of the small book, made from a fuzzer's bytes.
#pragma once

#include "Input.h"
#include "query/Tree.h"

namespace kpTables::fuzz::query {

/// Valid, and small enough to run at once.
Select RandomQuery(Input& input);

}  // namespace kpTables::fuzz::query
