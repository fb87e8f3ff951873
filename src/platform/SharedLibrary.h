// A library that is loaded when it is first needed, so that programs start, and install, without it.
#pragma once

#include <string>

namespace kpTables::platform {

/// Stays loaded as long as the program runs.
class SharedLibrary {
public:
    /// name: as the system looks for libraries: "libpq.so.5".
    explicit SharedLibrary(const std::string& name);

    /// Sets a pointer to the function of that name; to null when there is none.
    template <class Function>
    void Find(Function& function, const char* name) {
        function = reinterpret_cast<Function>(Symbol(name));
    }
    /// What was first missing, the library or one of its functions; "" when all is there.
    const std::string& Fault() const noexcept { return fault_; }

private:
    void* Symbol(const char* name);

    void* handle_ = nullptr;
    std::string fault_;
};

}  // namespace kpTables::platform
