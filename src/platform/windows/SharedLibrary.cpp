#include "platform/SharedLibrary.h"

#include <system_error>

#include "kpTables/text/Message.h"
#include "platform/windows/Wide.h"

namespace kpTables::platform {

SharedLibrary::SharedLibrary(const std::string& name) : handle_(LoadLibraryW(Wide(name).c_str())) {
    if (!handle_) fault_ = name + ": " + std::system_category().message(static_cast<int>(GetLastError()));
}

void* SharedLibrary::Symbol(const char* name) {
    void* const found =
        handle_ ? reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(handle_), name)) : nullptr;
    if (!found && fault_.empty()) fault_ = Message("it has no function {1}", name);
    return found;
}

}  // namespace kpTables::platform
