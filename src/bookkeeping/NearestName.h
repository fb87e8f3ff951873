// The name that a mistyped one is nearest to.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kpTables::bookkeeping {

/// The name with the fewest changed bytes; one that contains the other counts as near. "" when none is near: at most
/// half of the longer name may differ.
std::string NearestName(std::string_view given, const std::vector<std::string>& names);

}  // namespace kpTables::bookkeeping
