#include "platform/SharedLibrary.h"

#include <dlfcn.h>

#include "kpTables/text/Message.h"

namespace kpTables::platform {

SharedLibrary::SharedLibrary(const std::string& name) : handle_(dlopen(name.c_str(), RTLD_NOW | RTLD_LOCAL)) {
    if (handle_) return;
    const char* const reason = dlerror();
    fault_ = reason ? reason : name;
}

void* SharedLibrary::Symbol(const char* name) {
    void* const found = handle_ ? dlsym(handle_, name) : nullptr;
    if (!found && fault_.empty()) fault_ = Message("it has no function {1}", name);
    return found;
}

}  // namespace kpTables::platform
