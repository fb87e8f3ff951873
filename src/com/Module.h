// The server as a loaded module: its file, and what keeps it loaded.
#pragma once

#include <windows.h>

#include <string>

namespace kpTables::com {

void SetModule(HINSTANCE module) noexcept;
HINSTANCE Module() noexcept;
/// The path of the server's file.
std::wstring ModulePath();

// Objects, class factories and locks keep the module loaded.
void AddUse() noexcept;
void EndUse() noexcept;
bool InUse() noexcept;

/// Keeps the module loaded while it lives: a member of every object.
class ModuleUse {
public:
    ModuleUse() noexcept { AddUse(); }
    ~ModuleUse() { EndUse(); }
    ModuleUse(const ModuleUse&) = delete;
    ModuleUse& operator=(const ModuleUse&) = delete;
};

}  // namespace kpTables::com
