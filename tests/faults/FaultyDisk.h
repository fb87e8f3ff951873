// A file system between the engine and the disk that fails as planned.
#pragma once

namespace kpTables::faults {

/// Makes it the engine's default. The real one keeps its name, "unix".
void InstallFaultyDisk();

}  // namespace kpTables::faults
