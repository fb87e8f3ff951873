// The faults of an import's rows.
#pragma once

#include <cstdint>
#include <string>

namespace kpTables::kpbook::input {

/// Writes each fault to standard error, up to a limit, and counts them all.
class ImportFaults {
public:
    explicit ImportFaults(std::string file) : file_(std::move(file)) {}

    /// Adds a fault of the row that begins on a line; column may be empty.
    void Add(std::int64_t line, const std::string& column, const std::string& reason);
    std::int64_t Count() const noexcept { return count_; }
    std::int64_t BadRows() const noexcept { return badRows_; }
    /// Reports how many faults were not shown.
    void Finish() const;

private:
    static constexpr std::int64_t kShown = 100;

    std::string file_;
    std::int64_t count_ = 0;
    std::int64_t badRows_ = 0;
    std::int64_t lastLine_ = 0;
};

}  // namespace kpTables::kpbook::input
