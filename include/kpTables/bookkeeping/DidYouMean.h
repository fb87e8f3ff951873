// What may have been meant by a name that there is not.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace kpTables::bookkeeping {

/// "; did you mean B?" or "; did you mean B, C or D?": the names that differ least from the given one, without regard
/// to the case of ASCII letters, by no more than a third of its characters (one in a name of two or three); where there
/// are none, the names of which one contains the other. "" when none is near, or more than three are.
std::string DidYouMean(std::string_view given, std::span<const std::string> names);
std::string DidYouMean(std::string_view given, std::span<const std::string_view> names);

}  // namespace kpTables::bookkeeping
