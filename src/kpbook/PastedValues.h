// What the parameters' marks demand: quotes in values that are pasted into statements, and secrets.
#pragma once

#include <span>
#include <string>

#include "kpTables/LateBound.h"
#include "kpbook/Incidents.h"

namespace kpTables::kpbook {

/// Why an argument must not be passed on as it is: it is pasted and has a quote that is not doubled. Empty when all
/// may be.
std::string QuoteFault(const _CTables::Member& member, std::span<const Variant> arguments);

/// Keeps the values of passwords out of messages.
void HideSecrets(const _CTables::Member& member, std::span<const Variant> arguments, IncidentLog& log);

}  // namespace kpTables::kpbook
