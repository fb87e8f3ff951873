// Methods that trap errors.
#pragma once

#include <exception>
#include <optional>
#include <string>

namespace kpTables {

/// Keeps the error that is being handled for TakeTrappedError.
void KeepTrappedError() noexcept;

/// What f answers, or when it fails the fallback, which is read then: a variable counts with its current value.
template <class T, class Function>
T Trapped(const T& fallback, Function f) {
    try {
        return f();
    } catch (const std::exception&) {
        KeepTrappedError();
        return fallback;
    }
}

/// True when f is done, false when it fails.
template <class Function>
bool Done(Function f) {
    return Trapped(false, [&f] {
        f();
        return true;
    });
}

/// What compose answers, or nothing when it fails: for methods that end quietly when a value cannot be put into a text.
template <class Compose>
std::optional<std::string> Composed(Compose compose) {
    return Trapped(std::optional<std::string>(), compose);
}

}  // namespace kpTables
