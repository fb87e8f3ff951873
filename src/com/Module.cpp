#include "com/Module.h"

#include <atomic>

namespace kpTables::com {
namespace {

HINSTANCE loadedModule = nullptr;
std::atomic<long> moduleUses = 0;

}  // namespace

void SetModule(HINSTANCE module) noexcept { loadedModule = module; }

HINSTANCE Module() noexcept { return loadedModule; }

std::wstring ModulePath() {
    std::wstring path(MAX_PATH, L'\0');
    for (;;) {
        const DWORD length = GetModuleFileNameW(loadedModule, path.data(), static_cast<DWORD>(path.size()));
        if (length < path.size()) {
            path.resize(length);
            return path;
        }
        path.resize(path.size() * 2);
    }
}

void AddUse() noexcept { ++moduleUses; }

void EndUse() noexcept { --moduleUses; }

bool InUse() noexcept { return moduleUses != 0; }

}  // namespace kpTables::com
