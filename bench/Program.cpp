#include "Program.h"

#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <stdexcept>

#include "Child.h"

namespace kpTables::bench {

namespace {

/// Starts a program and redirects its output to the pipe.
pid_t Start(const std::vector<std::string>& words, const std::array<int, 2>& ends) {
    std::vector<std::string> copies = words;
    std::vector<char*> arguments;
    for (std::string& word : copies) {
        arguments.push_back(word.data());
    }
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, ends[1], STDERR_FILENO);
    posix_spawn_file_actions_addclose(&actions, ends[0]);
    posix_spawn_file_actions_addclose(&actions, ends[1]);
    pid_t child = 0;
    const int failure = posix_spawnp(&child, arguments.front(), &actions, nullptr, arguments.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    return failure == 0 ? child : -1;
}

std::string ReadAll(int file) {
    std::string text;
    std::array<char, 4096> buffer{};
    for (ssize_t count = 0; (count = read(file, buffer.data(), buffer.size())) > 0;) {
        text.append(buffer.data(), static_cast<std::size_t>(count));
    }
    return text;
}

}  // namespace

Ended RunProgram(const std::vector<std::string>& words) {
    std::array<int, 2> ends{};
    if (pipe(ends.data()) != 0) {
        throw std::runtime_error("no pipe");
    }
    std::fflush(nullptr);
    const Stopwatch watch;
    const pid_t child = Start(words, ends);
    close(ends[1]);
    if (child < 0) {
        close(ends[0]);
        throw std::runtime_error("cannot run " + words.front());
    }
    Ended ended{0, 0, ReadAll(ends[0])};
    close(ends[0]);
    int status = 0;
    rusage usage{};
    wait4(child, &status, 0, &usage);
    ended.seconds = watch.Seconds();
    ended.peakMebibytes = static_cast<double>(usage.ru_maxrss) / 1024;
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) {
        throw std::runtime_error(words.front() + " failed: " + ended.output);
    }
    return ended;
}

}  // namespace kpTables::bench
