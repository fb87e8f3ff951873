// Measures in a separate process, so that the memory of one run does not count in the next.
#pragma once

#include <chrono>
#include <functional>
#include <vector>

namespace kpTables::bench {

struct Measured {
    std::vector<double> figures;  ///< the result of the work
    double peakMebibytes = 0;     ///< largest resident set of the process
};

/// Runs work in a child process. Throws std::runtime_error when it fails there.
Measured InChild(const std::function<std::vector<double>()>& work);

/// Resident memory of this process in bytes.
double ResidentBytes();

class Stopwatch {
public:
    double Seconds() const { return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin_).count(); }

private:
    std::chrono::steady_clock::time_point begin_ = std::chrono::steady_clock::now();
};

}  // namespace kpTables::bench
