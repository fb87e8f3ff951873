#include "kpbook/shell/EditLibrary.h"

#include <dlfcn.h>

#include <optional>

namespace kpTables::kpbook::shell {

namespace {

constexpr const char* kFileName = "libedit.so.2";

template <class Function>
bool FindFunction(void* library, const char* name, Function& function) {
    function = reinterpret_cast<Function>(dlsym(library, name));
    return function != nullptr;
}

std::optional<EditLibrary> LoadFunctions() {
    void* const library = dlopen(kFileName, RTLD_NOW | RTLD_LOCAL);
    if (!library) return std::nullopt;
    EditLibrary functions{};
    const bool complete =
        FindFunction(library, "el_init", functions.begin) && FindFunction(library, "el_end", functions.end) &&
        FindFunction(library, "el_wset", functions.set) && FindFunction(library, "el_wgets", functions.readLine) &&
        FindFunction(library, "el_wline", functions.line) && FindFunction(library, "el_winsertstr", functions.insert) &&
        FindFunction(library, "el_deletestr", functions.erase) &&
        FindFunction(library, "el_resize", functions.resize) &&
        FindFunction(library, "history_winit", functions.beginHistory) &&
        FindFunction(library, "history_wend", functions.endHistory) &&
        FindFunction(library, "history_w", functions.history);
    return complete ? std::optional(functions) : std::nullopt;
}

}  // namespace

const EditLibrary* LoadEditLibrary() {
    static const std::optional<EditLibrary> library = LoadFunctions();
    return library ? &*library : nullptr;
}

}  // namespace kpTables::kpbook::shell
