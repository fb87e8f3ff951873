// A parameter that may be written back.
#pragma once

#include <concepts>
#include <utility>

namespace kpTables {

/// A by-reference parameter: bind a variable to receive what the method writes, a value when the caller needs none of
/// it, or nothing.
template <class T>
class InOut {
public:
    InOut() = default;
    InOut(T& variable) noexcept : target_(&variable) {}
    template <class U>
    requires(std::convertible_to<U&&, T> && !std::same_as<std::remove_cvref_t<U>, InOut> && !std::same_as<U, T&>)
        InOut(U&& value)
        : own_(static_cast<T>(std::forward<U>(value))) {}

    InOut(const InOut&) = delete;
    InOut& operator=(const InOut&) = delete;

    InOut& operator=(T value) {
        get() = std::move(value);
        return *this;
    }
    T& get() noexcept { return target_ ? *target_ : own_; }
    const T& get() const noexcept { return target_ ? *target_ : own_; }
    operator const T&() const noexcept { return get(); }

private:
    T own_{};
    T* target_ = nullptr;
};

}  // namespace kpTables
