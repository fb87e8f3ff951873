// Errors of functions.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

namespace kpTables::functions {

/// Visual Basic's run-time error numbers that functions raise.
enum class FaultNumber : std::int32_t { InvalidCall = 5, Overflow = 6, DivisionByZero = 11, TypeMismatch = 13 };

/// The error that a failing call raises. An engine's adapter raises number and text as the engine's own error.
class Fault : public std::runtime_error {
public:
    Fault(FaultNumber number, const std::string& text) : std::runtime_error(text), number_(number) {}

    FaultNumber Number() const noexcept { return number_; }

private:
    FaultNumber number_;
};

/// Raises the number with Visual Basic's text for it; detail, when given, follows after a colon.
[[noreturn]] void Raise(FaultNumber number, const std::string& detail = {});

/// Raises error 13: "'text' complaint".
[[noreturn]] void RaiseMismatch(std::string_view text, std::string_view complaint);

}  // namespace kpTables::functions
