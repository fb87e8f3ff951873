// How a run of the program ends.
#pragma once

#include <functional>

#include "kpbook/Incidents.h"

namespace kpTables::kpbook {

/// Runs a command and tells on standard error what failed in it. Returns the program's exit code, which is never that
/// of success when anything failed, whatever the command answered.
int RunToEnd(const std::function<int()>& command, IncidentLog& incidents);

}  // namespace kpTables::kpbook
