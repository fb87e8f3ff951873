#include "Hooks.h"

#include <cstdint>
#include <cstring>

namespace kpTables::test {
namespace {

ScriptedSystem* scriptedSystem = nullptr;

int WINAPI AnswerBox(HWND, const wchar_t* text, const wchar_t* title, UINT style) {
    return scriptedSystem->Answer({text, title, style});
}

/// Noon of 2006-08-19, UTC, so that it is that day in most time zones.
std::int64_t __cdecl ScriptedTime(std::int64_t* time) {
    constexpr std::int64_t kNoon = 1155988800;
    if (time) *time = kNoon;
    return kNoon;
}

template <class T>
T* At(HMODULE module, DWORD offset) {
    return reinterpret_cast<T*>(reinterpret_cast<char*>(module) + offset);
}

}  // namespace

void* ReplaceImport(HMODULE module, const char* name, void* function) {
    const auto* headers = At<IMAGE_NT_HEADERS>(module, static_cast<DWORD>(At<IMAGE_DOS_HEADER>(module, 0)->e_lfanew));
    const auto& directory = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    for (auto* library = At<IMAGE_IMPORT_DESCRIPTOR>(module, directory.VirtualAddress); library->Name; ++library) {
        const auto* names = At<IMAGE_THUNK_DATA>(module, library->OriginalFirstThunk);
        auto* addresses = At<IMAGE_THUNK_DATA>(module, library->FirstThunk);
        for (; names->u1.AddressOfData; ++names, ++addresses) {
            if (IMAGE_SNAP_BY_ORDINAL(names->u1.Ordinal)) continue;
            const auto* import = At<IMAGE_IMPORT_BY_NAME>(module, static_cast<DWORD>(names->u1.AddressOfData));
            if (std::strcmp(reinterpret_cast<const char*>(import->Name), name) != 0) continue;
            auto** const slot = reinterpret_cast<void**>(&addresses->u1.Function);
            DWORD protection = 0;
            VirtualProtect(slot, sizeof *slot, PAGE_READWRITE, &protection);
            void* const before = *slot;
            *slot = function;
            VirtualProtect(slot, sizeof *slot, protection, &protection);
            return before;
        }
    }
    return nullptr;
}

ScriptedSystem::ScriptedSystem(HMODULE server, std::deque<int> answers)
    : server_(server),
      answers_(std::move(answers)),
      messageBox_(ReplaceImport(server, "MessageBoxW", reinterpret_cast<void*>(&AnswerBox))),
      time_(ReplaceImport(server, "_time64", reinterpret_cast<void*>(&ScriptedTime))) {
    scriptedSystem = this;
}

ScriptedSystem::~ScriptedSystem() {
    ReplaceImport(server_, "MessageBoxW", messageBox_);
    ReplaceImport(server_, "_time64", time_);
    scriptedSystem = nullptr;
}

int ScriptedSystem::Answer(const Box& box) {
    boxes_.push_back(box);
    if (answers_.empty()) return 0;
    const int answer = answers_.front();
    answers_.pop_front();
    return answer;
}

}  // namespace kpTables::test
