// What every function that SQLite calls back is made of: its arguments, its answer and its table of names.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "kpTables/Date.h"

struct sqlite3;
struct sqlite3_context;
struct sqlite3_value;

namespace kpTables::sqlite {

/// The arguments of one call. A reader raises error 13 (Type mismatch) or 6 (Overflow) when the value does not do.
class Arguments {
public:
    explicit Arguments(std::span<sqlite3_value*> values) noexcept : values_(values) {}

    int Count() const noexcept { return static_cast<int>(values_.size()); }
    bool AnyNull() const noexcept;
    bool IsNull(int index) const noexcept;
    bool IsText(int index) const noexcept;
    /// True for a whole number, as SQLite holds it.
    bool IsWhole(int index) const noexcept;

    /// A number in SQLite's text form when it is one. Valid until the call ends.
    std::string_view Text(int index) const noexcept;
    double Number(int index) const;
    /// 32 bits, half to even.
    std::int32_t Whole(int index) const;
    /// As stored, without conversion: for ten-thousandths.
    std::int64_t Stored(int index) const noexcept;
    /// ISO text, another text that reads as a date, or days from dayZero on.
    kpTables::Date Date(int index, double dayZero = 0) const;

private:
    std::span<sqlite3_value*> values_;
};

/// Where a call puts its answer; Null unless it is set.
class Answer {
public:
    explicit Answer(sqlite3_context* context) noexcept : context_(context) {}

    void Whole(std::int64_t value) noexcept;
    /// Error 6 when it is not a finite number.
    void Number(double value);
    void Text(std::string_view text) noexcept;
    void Date(kpTables::Date date);
    /// -1 or 0.
    void Boolean(bool value) noexcept { Whole(value ? -1 : 0); }

private:
    sqlite3_context* context_;
};

/// Raises error 13: "'text' complaint".
[[noreturn]] void RaiseMismatch(std::string_view text, std::string_view complaint);

using ScalarBody = void (*)(const Arguments& arguments, Answer& answer);

/// A function's name and body. Null arguments answer Null without a call unless nullToo.
struct ScalarFunction {
    std::string_view name;
    ScalarBody body;
    bool nullToo = false;
};

// One table a concept.
std::span<const ScalarFunction> TextFunctions() noexcept;
std::span<const ScalarFunction> SearchFunctions() noexcept;
std::span<const ScalarFunction> DateFunctions() noexcept;
std::span<const ScalarFunction> DateIntervalFunctions() noexcept;
std::span<const ScalarFunction> NumberFunctions() noexcept;
std::span<const ScalarFunction> ConversionFunctions() noexcept;

/// Registers every function of the translator's list with a connection.
void RegisterFunctions(sqlite3* database);

/// Registers kp_first and kp_last.
void RegisterFirstAndLast(sqlite3* database);

/// Registers kp_stdev, kp_stdevp, kp_var and kp_varp.
void RegisterSpread(sqlite3* database);

}  // namespace kpTables::sqlite
