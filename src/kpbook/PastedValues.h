// Quotes in values that a method pastes into its statements.
#pragma once

#include <span>
#include <string>

#include "kpTables/LateBound.h"

namespace kpTables::kpbook {

/// Why an argument must not be passed on as it is: it is pasted and has a quote that is not doubled. Empty when all
/// may be.
std::string QuoteFault(const _CTables::Member& member, std::span<const Variant> arguments);

}  // namespace kpTables::kpbook
