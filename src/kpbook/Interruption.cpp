#include "kpbook/Interruption.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <csignal>

namespace kpTables::kpbook {

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

void ThrowIfInterrupted() {
    if (arrived != 0) throw Interrupted();
}

void WaitToRead(int descriptor) {
    pollfd waits[] = {{descriptor, POLLIN, 0}, {wake[0], POLLIN, 0}};
    while (::poll(waits, 2, -1) < 0 && errno == EINTR) ThrowIfInterrupted();
    ThrowIfInterrupted();
}

}  // namespace kpTables::kpbook
