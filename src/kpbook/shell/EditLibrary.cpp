#include "kpbook/shell/EditLibrary.h"

#include <optional>

#include "platform/SharedLibrary.h"

namespace kpTables::kpbook::shell {

namespace {

constexpr const char* kFileName = "libedit.so.2";

std::optional<EditLibrary> LoadFunctions() {
    platform::SharedLibrary file(kFileName);
    EditLibrary functions{};
    file.Find(functions.begin, "el_init");
    file.Find(functions.end, "el_end");
    file.Find(functions.set, "el_wset");
    file.Find(functions.readLine, "el_wgets");
    file.Find(functions.line, "el_wline");
    file.Find(functions.insert, "el_winsertstr");
    file.Find(functions.erase, "el_deletestr");
    file.Find(functions.resize, "el_resize");
    file.Find(functions.beginHistory, "history_winit");
    file.Find(functions.endHistory, "history_wend");
    file.Find(functions.history, "history_w");
    return file.Fault().empty() ? std::optional(functions) : std::nullopt;
}

}  // namespace

const EditLibrary* LoadEditLibrary() {
    static const std::optional<EditLibrary> library = LoadFunctions();
    return library ? &*library : nullptr;
}

}  // namespace kpTables::kpbook::shell
