// A parameter that may be written back.
#pragma once

#include <concepts>
#include <type_traits>
#include <utility>

#include "kpTables/Error.h"

namespace kpTables {

/// Whether a value of type U may stand for a parameter of type T without a change that nobody asked for: numbers only
/// for numbers, fractions never for whole numbers, Booleans only for Booleans, pointers never for Booleans.
template <class U, class T>
concept PassableAs = std::convertible_to<U, T> &&
    (!std::is_arithmetic_v<T> || (std::is_arithmetic_v<std::remove_cvref_t<U>> &&
                                  std::same_as<std::remove_cvref_t<U>, bool> == std::same_as<T, bool> &&
                                  (std::floating_point<T> || !std::floating_point<std::remove_cvref_t<U>>)));

/// A by-reference parameter: bind a variable to receive what the method writes, a value when the caller needs none of
/// it, or nothing. A whole number that T cannot hold is error 6.
template <class T>
class InOut {
public:
    InOut() = default;
    InOut(T& variable) noexcept : target_(&variable) {}
    template <class U>
    requires(PassableAs<U&&, T> && !std::same_as<std::remove_cvref_t<U>, InOut> && !std::same_as<U, T&>)
        InOut(U&& value)
        : own_(Fitted(std::forward<U>(value))) {}

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
    template <class U>
    static T Fitted(U&& value) {
        if constexpr (std::integral<T> && !std::same_as<T, bool>) {
            if (!std::in_range<T>(value)) Raise(ErrorNumber::Overflow);
        }
        return static_cast<T>(std::forward<U>(value));
    }

    T own_{};
    T* target_ = nullptr;
};

}  // namespace kpTables
