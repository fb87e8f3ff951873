#include "faults/Command.h"

#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <stdexcept>

#include "faults/PowerCut.h"

// kpbook's main under another name.
int KpbookMain(int count, char** words);

// What the sanitizers end a process with must differ from every exit code of kpbook.
extern "C" const char* __asan_default_options() { return "exitcode=99:detect_leaks=0:allocator_may_return_null=1"; }
extern "C" const char* __ubsan_default_options() { return "exitcode=99:print_stacktrace=1"; }

namespace kpTables::faults {

namespace {

constexpr int kSanitizerCode = 99;
constexpr unsigned kHungAfterSeconds = 60;

class MemoryFile {
public:
    explicit MemoryFile(const char* name) : file_(::memfd_create(name, MFD_CLOEXEC)) {
        if (file_ < 0) throw std::runtime_error(std::string("memfd_create: ") + std::strerror(errno));
    }
    ~MemoryFile() { ::close(file_); }
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;

    void Fill(const std::string& text) const {
        if (::pwrite(file_, text.data(), text.size(), 0) != static_cast<ssize_t>(text.size())) {
            throw std::runtime_error("standard input cannot be filled");
        }
    }
    void Become(int descriptor) const { ::dup2(file_, descriptor); }
    std::string Read() const {
        std::string text(static_cast<std::size_t>(::lseek(file_, 0, SEEK_END)), '\0');
        const ssize_t length = ::pread(file_, text.data(), text.size(), 0);
        text.resize(length < 0 ? 0 : static_cast<std::size_t>(length));
        return text;
    }

private:
    int file_;
};

/// Shared by the processes of a run.
Report& SharedReport() {
    static void* const memory =
        ::mmap(nullptr, sizeof(Report), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED) throw std::runtime_error("no shared memory");
    return *static_cast<Report*>(memory);
}

[[noreturn]] void Child(std::vector<std::string> words, const Plan& plan) {
    const rlimit none{0, 0};
    ::setrlimit(RLIMIT_CORE, &none);
    ::alarm(kHungAfterSeconds);
    words.insert(words.begin(), "kpbook");
    std::vector<char*> pointers;
    for (auto& word : words) pointers.push_back(word.data());
    pointers.push_back(nullptr);
    Arm(plan, SharedReport());
    const int code = KpbookMain(static_cast<int>(words.size()), pointers.data());
    std::fflush(nullptr);
    // The power may also fail after the last operation.
    if (plan.kind && plan.kind->effect == Effect::PowerCut) CutPower();
    ::_exit(code);
}

}  // namespace

Outcome RunKpbook(const std::vector<std::string>& words, const std::string& input, const Plan& plan) {
    const MemoryFile in("in"), out("out"), err("err");
    in.Fill(input);
    SharedReport() = {};
    const pid_t child = ::fork();
    if (child < 0) throw std::runtime_error("fork failed");
    if (child == 0) {
        in.Become(STDIN_FILENO);
        ::lseek(STDIN_FILENO, 0, SEEK_SET);
        out.Become(STDOUT_FILENO);
        err.Become(STDERR_FILENO);
        Child(words, plan);
    }
    const auto begin = std::chrono::steady_clock::now();
    const bool toKill = plan.kind && plan.kind->effect == Effect::Kill;
    if (toKill) {
        ::usleep(static_cast<useconds_t>(plan.number));
        ::kill(child, SIGKILL);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    Outcome outcome;
    outcome.out = out.Read();
    outcome.err = err.Read();
    outcome.report = SharedReport();
    const auto elapsed = std::chrono::steady_clock::now() - begin;
    outcome.report.passed[static_cast<std::size_t>(Point::Moment)] =
        std::chrono::duration_cast<std::chrono::microseconds>(elapsed).count();
    if (toKill && WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL) {
        outcome.report.injected = 1;
        outcome.end = Outcome::End::Ended;
    } else if (WIFSIGNALED(status)) {
        outcome.code = WTERMSIG(status);
        outcome.end = outcome.code == SIGALRM ? Outcome::End::Hung : Outcome::End::Crashed;
    } else {
        outcome.code = WEXITSTATUS(status);
        if (outcome.code == kSanitizerCode) outcome.end = Outcome::End::Crashed;
        if (outcome.code == kEnded) outcome.end = Outcome::End::Ended;
    }
    return outcome;
}

}  // namespace kpTables::faults
