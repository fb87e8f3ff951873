#include "Child.h"

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <exception>
#include <fstream>
#include <stdexcept>
#include <string>

namespace kpTables::bench {

namespace {

[[noreturn]] void RunAndExit(const std::function<std::vector<double>()>& work, int answer) {
    try {
        const std::vector<double> figures = work();
        const auto size = static_cast<ssize_t>(figures.size() * sizeof(double));
        _exit(write(answer, figures.data(), static_cast<std::size_t>(size)) == size ? 0 : 1);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "kpbench: %s\n", error.what());
    }
    _exit(1);
}

}  // namespace

Measured InChild(const std::function<std::vector<double>()>& work) {
    std::array<int, 2> ends{};
    if (pipe(ends.data()) != 0) {
        throw std::runtime_error("no pipe");
    }
    std::fflush(nullptr);
    const pid_t child = fork();
    if (child < 0) {
        throw std::runtime_error("no process");
    }
    if (child == 0) {
        close(ends[0]);
        RunAndExit(work, ends[1]);
    }
    close(ends[1]);
    Measured measured;
    double figure = 0;
    while (read(ends[0], &figure, sizeof figure) == static_cast<ssize_t>(sizeof figure)) {
        measured.figures.push_back(figure);
    }
    close(ends[0]);
    int status = 0;
    rusage usage{};
    wait4(child, &status, 0, &usage);
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) {
        throw std::runtime_error(WIFSIGNALED(status)
                                     ? "a measured process died of signal " + std::to_string(WTERMSIG(status))
                                     : "a measured process failed");
    }
    measured.peakMebibytes = static_cast<double>(usage.ru_maxrss) / 1024;
    return measured;
}

double ResidentBytes() {
    std::ifstream file("/proc/self/statm");
    double total = 0;
    double resident = 0;
    file >> total >> resident;
    return resident * static_cast<double>(sysconf(_SC_PAGESIZE));
}

}  // namespace kpTables::bench
