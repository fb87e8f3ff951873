// Counts the steps of a long work, so that it can be ended in the middle.
#pragma once

#include <cstdint>
#include <functional>
#include <utility>

namespace kpTables::recordset {

class Steps {
public:
    /// pause: called every few ten thousand steps, and may throw; may be empty.
    explicit Steps(std::function<void()> pause) : pause_(std::move(pause)) {}

    void Count() {
        if (++taken_ % kBetweenPauses == 0 && pause_) pause_();
    }

private:
    static constexpr std::uint32_t kBetweenPauses = 1U << 16;

    std::function<void()> pause_;
    std::uint32_t taken_ = 0;
};

}  // namespace kpTables::recordset
