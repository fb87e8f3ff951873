#include "platform/Signals.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <csignal>

#include "platform/Input.h"

namespace kpTables::platform {

namespace {

std::atomic<int> arrived = 0;
/// A signal writes a byte, so that waiting for input ends even when it arrives just before.
int wake[2] = {-1, -1};

void Note(int signal) {
    const int reason = errno;
    arrived = signal;
    const char byte = 0;
    [[maybe_unused]] const auto written = ::write(wake[1], &byte, 1);
    errno = reason;
}

void RememberSignals() noexcept {
    struct sigaction action {};
    action.sa_handler = Note;
    action.sa_flags = static_cast<int>(SA_RESETHAND);
    sigemptyset(&action.sa_mask);
    ::sigaction(SIGINT, &action, nullptr);
    ::sigaction(SIGTERM, &action, nullptr);
}

/// Waits until a descriptor can be read; false when a signal arrives first.
bool CanBeRead(int descriptor) noexcept {
    pollfd waits[] = {{descriptor, POLLIN, 0}, {wake[0], POLLIN, 0}};
    while (::poll(waits, 2, -1) < 0 && errno == EINTR && arrived == 0) continue;
    return arrived == 0;
}

}  // namespace

void WatchSignals() noexcept {
    if (::pipe2(wake, O_CLOEXEC | O_NONBLOCK) == 0) RememberSignals();
}

void ForgetSignal() noexcept {
    char bytes[16];
    while (::read(wake[0], bytes, sizeof bytes) > 0) continue;
    arrived = 0;
    RememberSignals();
}

int ArrivedSignal() noexcept { return arrived; }

std::ptrdiff_t ReadInput(int descriptor, char* buffer, std::size_t size) noexcept {
    for (;;) {
        if (!CanBeRead(descriptor)) {
            errno = EINTR;
            return -1;
        }
        const auto count = ::read(descriptor, buffer, size);
        if (count >= 0 || errno != EINTR) return count;
    }
}

int OpenInput(const std::string& path) noexcept { return ::open(path.c_str(), O_RDONLY | O_CLOEXEC); }

void CloseInput(int descriptor) noexcept { ::close(descriptor); }

std::FILE* OpenFile(const std::string& path, const char* mode) noexcept { return std::fopen(path.c_str(), mode); }

}  // namespace kpTables::platform
