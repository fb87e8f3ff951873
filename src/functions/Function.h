// The parts of a function that an engine calls back: its arguments, its result and its row in the table.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "functions/Value.h"
#include "text/DateText.h"
#include "text/NumberText.h"

namespace kpTables::functions {

inline constexpr int kMostArguments = 5;

/// The arguments of one call. A reader raises error 13 (Type mismatch) or 6 (Overflow) for an unsuitable value.
class Arguments {
public:
    /// At most kMostArguments values; they must outlive the object.
    explicit Arguments(std::span<const Value> values) noexcept : values_(values) {}

    int Count() const noexcept { return static_cast<int>(values_.size()); }
    bool AnyNull() const noexcept {
        for (int i = 0; i < Count(); ++i) {
            if (IsNull(i)) return true;
        }
        return false;
    }
    bool IsNull(int index) const noexcept { return At(index).IsNull(); }
    bool IsText(int index) const noexcept { return At(index).Type() == Value::Kind::Text; }
    bool IsWhole(int index) const noexcept { return At(index).Type() == Value::Kind::Whole; }

    /// A number in its text form; empty for Null. Valid as long as this object.
    std::string_view Text(int index) const noexcept;
    /// 0 for Null.
    double Number(int index) const {
        const Value& value = At(index);
        switch (value.Type()) {
            case Value::Kind::Whole:
                return static_cast<double>(value.Whole());
            case Value::Kind::Real:
                return value.Real();
            case Value::Kind::Text:
                return NumberOf(value.Text());
            case Value::Kind::Null:
                break;
        }
        return 0;
    }
    /// 32 bits, half to even.
    std::int32_t Whole(int index) const;
    /// As stored, in ten-thousandths; a double, the result of an overflowed sum, if in range.
    std::int64_t Amount(int index) const { return IsWhole(index) ? At(index).Whole() : AmountWithin(Number(index)); }
    /// The serial number of a date: ISO text, another text that reads as a date, or days from dayZero on.
    double Date(int index, double dayZero = 0) const;

private:
    static double NumberOf(std::string_view text);
    static std::int64_t AmountWithin(double number) noexcept;

    const Value& At(int index) const noexcept { return values_[static_cast<std::size_t>(index)]; }

    std::span<const Value> values_;
    mutable std::array<std::array<char, text::kLongestNumberText>, kMostArguments> numberTexts_;
};

/// Receives a call's result; Null unless it is set.
class Answer {
public:
    void Whole(std::int64_t value) noexcept { value_ = Value(value); }
    /// Error 6 when it is not a finite number.
    void Number(double value);
    void Text(std::string text) noexcept;
    /// A part of an argument's text, which is not copied.
    void Part(std::string_view text) noexcept { value_ = Value(text); }
    /// A date's serial number; error 6 when it is none.
    void Date(double serial);
    /// -1 or 0.
    void Boolean(bool value) noexcept { Whole(value ? -1 : 0); }
    /// 1 or 0.
    void Test(bool value) noexcept { Whole(value ? 1 : 0); }

    /// Valid as long as this object and the arguments.
    const Value& Get() const noexcept { return value_; }

private:
    Value value_;
    std::string text_;
    std::array<char, text::kLongestIsoDate> date_;
};

/// Raises error 6 when it is no date's serial number.
double CheckedDate(double serial);

using Body = void (*)(const Arguments& arguments, Answer& answer);

struct Function {
    std::string_view name;
    int minimumArguments;
    int maximumArguments;
    bool deterministic;
    /// False: a Null argument yields Null without a call.
    bool takesNull;
    Body body;
};

/// Calls the function with the right number of arguments; they must outlive the use of the result. Raises Fault.
inline void Call(const Function& function, const Arguments& arguments, Answer& answer) {
    if (function.takesNull || !arguments.AnyNull()) function.body(arguments, answer);
}

}  // namespace kpTables::functions
