#include "Machine.h"

#include <sqlite3.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <ctime>
#include <fstream>

#include "Report.h"

namespace kpTables::bench {

namespace {

std::string ProcessorModel() {
    std::ifstream file("/proc/cpuinfo");
    for (std::string line; std::getline(file, line);) {
        const std::size_t colon = line.find(": ");
        if (line.starts_with("model name") && colon != std::string::npos) return line.substr(colon + 2);
    }
    return "unknown processor";
}

#ifdef __clang__
constexpr const char* kCompiler = "clang++ " __clang_version__;
#else
constexpr const char* kCompiler = "g++ " __VERSION__;
#endif

}  // namespace

std::vector<std::string> DescribeMachine() {
    constexpr double kGibibyte = 1 << 30;
    const double memory = static_cast<double>(sysconf(_SC_PHYS_PAGES)) * static_cast<double>(sysconf(_SC_PAGESIZE));
    return {std::to_string(sysconf(_SC_NPROCESSORS_ONLN)) + " cores of " + ProcessorModel(),
            Fixed(memory / kGibibyte, 1) + " GiB of memory", kCompiler, std::string("SQLite ") + sqlite3_libversion()};
}

double LoadOfLastMinute() {
    std::array<double, 1> load{};
    return getloadavg(load.data(), 1) == 1 ? load[0] : 0;
}

std::string Today() {
    const std::time_t now = std::time(nullptr);
    std::tm day{};
    localtime_r(&now, &day);
    std::array<char, sizeof "9999-12-31"> text{};
    std::strftime(text.data(), text.size(), "%Y-%m-%d", &day);
    return text.data();
}

}  // namespace kpTables::bench
