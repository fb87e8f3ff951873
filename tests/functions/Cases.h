// Calls of functions as a statement writes them, with their results. Arguments are texts, numbers and NULL, so that a
// test can make the call directly or through an engine.
#pragma once

#include <ostream>
#include <span>

#include "functions/Fault.h"

namespace kpTables::functions::test {

struct AnswerCase {
    const char* call;
    const char* answer;  ///< a double has a point; nullptr for Null
};

struct FaultCase {
    const char* call;
    FaultNumber number;
    const char* text;  ///< part of the error's text
};

inline void PrintTo(const AnswerCase& each, std::ostream* out) { *out << each.call; }
inline void PrintTo(const FaultCase& each, std::ostream* out) { *out << each.call; }

std::span<const AnswerCase> AnswerCases() noexcept;
std::span<const FaultCase> FaultCases() noexcept;

}  // namespace kpTables::functions::test
