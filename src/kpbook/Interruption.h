// Ctrl-C, SIGTERM and statements that take too long.
#pragma once

#include <chrono>
#include <exception>
#include <optional>

namespace kpTables::kpbook {

/// The user has ended the program; it rolls back, closes the book and exits.
class Interrupted : public std::exception {
public:
    const char* what() const noexcept override { return "interrupted"; }
};

/// Throws Interrupted when a signal has arrived.
void ThrowIfInterrupted();

/// Measures how long a statement runs.
class StatementClock {
public:
    /// Without a positive limit no statement takes too long.
    void SetLimit(std::chrono::duration<double> limit) noexcept { limit_ = limit; }
    void Start() noexcept { start_ = std::chrono::steady_clock::now(); }
    void Stop() noexcept { start_.reset(); }
    bool IsOver() const noexcept {
        return start_ && limit_.count() > 0 && std::chrono::steady_clock::now() - *start_ > limit_;
    }

private:
    std::chrono::duration<double> limit_{};
    std::optional<std::chrono::steady_clock::time_point> start_;  ///< nothing between statements
};

}  // namespace kpTables::kpbook
