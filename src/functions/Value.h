// A function's argument or result.
#pragma once

#include <cstdint>
#include <string_view>

namespace kpTables::functions {

/// Null, a whole number, a double or a text, which the value does not own. Dates are ISO texts, amounts whole
/// ten-thousandths, Booleans -1 and 0, as they are stored.
class Value {
public:
    enum class Kind : std::uint8_t { Null, Whole, Real, Text };

    Value() noexcept : kind_(Kind::Null) {}
    explicit Value(std::int64_t whole) noexcept : whole_(whole), kind_(Kind::Whole) {}
    explicit Value(double real) noexcept : real_(real), kind_(Kind::Real) {}
    explicit Value(std::string_view text) noexcept : text_(text), kind_(Kind::Text) {}

    Kind Type() const noexcept { return kind_; }
    bool IsNull() const noexcept { return kind_ == Kind::Null; }

    // Each only for a value of its kind.
    std::int64_t Whole() const noexcept { return whole_; }
    double Real() const noexcept { return real_; }
    std::string_view Text() const noexcept { return text_; }

private:
    union {
        std::int64_t whole_;
        double real_;
        std::string_view text_;
    };
    Kind kind_;
};

}  // namespace kpTables::functions
