// What lies between the server, whose errors jump over frames, and the bodies of the functions, which raise
// exceptions: plain data, which neither crosses.
#pragma once

#include <cstddef>
#include <cstdint>

namespace kpTables::engines::postgres::extension {

inline constexpr int kMostCells = 5;

/// An argument or a result.
struct Cell {
    enum class Kind : std::uint8_t { Null, Whole, Real, Text, Date };
    Kind kind = Kind::Null;
    std::int64_t whole = 0;
    double real = 0;  ///< of a date, its serial number
    const char* text = nullptr;
    std::size_t size = 0;
};

struct Outcome {
    /// Visual Basic's number of the error; 0 for none.
    int error = 0;
    char message[512] = {};
    Cell value = {};  ///< its text is valid until the next call
};

inline constexpr int kOutOfMemory = 7;
inline constexpr int kInternalError = 51;

/// The body of the function with the neutral name; null when there is none that takes so many arguments.
const void* FindBody(const char* name, int arguments) noexcept;
/// Calls it. wantsDate: a result's text is a date.
void CallBody(const void* body, const Cell* arguments, int count, bool wantsDate, Outcome& outcome) noexcept;

}  // namespace kpTables::engines::postgres::extension
