// The functions that a translated text may call and SQLite lacks: the engine registers them all.
#pragma once

#include <span>
#include <string_view>

namespace kpTables::sql::print::sqlite {

/// Dates are ISO text, Currency is a count of ten-thousandths, Booleans are -1 and 0, as they are stored. Unless
/// documented otherwise a function returns Null when an argument is Null, and raises Visual Basic's error when an
/// argument is invalid: type mismatch, overflow, invalid procedure call.
struct EngineFunction {
    std::string_view name;
    int minimumArguments;
    int maximumArguments;
    bool deterministic;
    bool aggregate;
    std::string_view meaning;
};

/// In alphabetical order of the names.
std::span<const EngineFunction> EngineFunctions() noexcept;

/// The collation of every text column and of computed texts.
inline constexpr std::string_view kTextCollation = "KPTEXT";

}  // namespace kpTables::sql::print::sqlite
