// Copies a statement's rows in the plainest possible form.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

struct sqlite3_stmt;

namespace kpTables::bench {

/// All values of all rows, one after the other.
class Copies {
public:
    void Add(sqlite3_stmt* row, int column);
    double TextBytes() const noexcept { return static_cast<double>(textBytes_); }

private:
    void Append(const void* bytes, std::size_t count);

    std::vector<std::vector<char>> blocks_;
    std::int64_t textBytes_ = 0;
};

}  // namespace kpTables::bench
