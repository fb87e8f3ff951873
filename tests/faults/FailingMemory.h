// Allocations that fail as planned: the engine's own, and operator new of the whole program, which FailingMemory.cpp
// replaces.
#pragma once

namespace kpTables::faults {

/// Before the engine is used for the first time.
void InstallFailingMemory();

}  // namespace kpTables::faults
