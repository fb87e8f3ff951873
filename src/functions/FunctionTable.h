// All functions that an engine calls back: an engine's adapter registers this table.
#pragma once

#include <span>
#include <string_view>

#include "functions/Function.h"

namespace kpTables::functions {

/// In alphabetical order of the names.
std::span<const Function> AllFunctions() noexcept;

/// The function of that name, or nullptr.
const Function* FindFunction(std::string_view name) noexcept;

}  // namespace kpTables::functions
