#include "platform/Signals.h"

#include <fcntl.h>
#include <io.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <new>

#include "platform/Input.h"
#include "platform/windows/Console.h"
#include "platform/windows/Wide.h"

namespace kpTables::platform {

namespace {

std::atomic<int> arrived = 0;
/// Whether the reading thread waits for input, from which a signal wakes it.
std::atomic<bool> reading = false;
HANDLE reader = nullptr;

/// Runs in a thread of its own.
BOOL WINAPI NoteControl(DWORD event) {
    const int signal = event == CTRL_C_EVENT || event == CTRL_BREAK_EVENT ? SIGINT : SIGTERM;
    if (arrived.exchange(signal) != 0) return FALSE;
    constexpr int kAttempts = 100;
    constexpr DWORD kBetween = 10;
    // Reading may be about to begin, so that there is nothing to cancel yet.
    for (int i = 0; i < kAttempts && reading; ++i) {
        CancelSynchronousIo(reader);
        Sleep(kBetween);
    }
    // A console that closes ends the program when this function returns.
    constexpr DWORD kUntilClosed = 4000;
    if (signal == SIGTERM) Sleep(kUntilClosed);
    return TRUE;
}

std::ptrdiff_t ReadBytes(HANDLE file, char* buffer, std::size_t size) noexcept {
    DWORD count = 0;
    if (ReadFile(file, buffer, static_cast<DWORD>(size), &count, nullptr)) return static_cast<std::ptrdiff_t>(count);
    const DWORD code = GetLastError();
    // The end of a pipe.
    if (code == ERROR_BROKEN_PIPE || code == ERROR_HANDLE_EOF) return 0;
    errno = code == ERROR_OPERATION_ABORTED ? EINTR : ErrorNumberOf(code);
    return -1;
}

/// A line of the console is handed out in pieces.
std::ptrdiff_t ReadConsoleLine(HANDLE console, char* buffer, std::size_t size) noexcept {
    static std::string rest;
    try {
        if (rest.empty()) {
            const auto line = ReadConsoleText(console);
            if (!line) return 0;
            rest = *line;
        }
    } catch (const std::bad_alloc&) {
        errno = ENOMEM;
        return -1;
    }
    const std::size_t count = rest.copy(buffer, size);
    rest.erase(0, count);
    return static_cast<std::ptrdiff_t>(count);
}

}  // namespace

WakesForSignals::WakesForSignals() noexcept { reading = true; }

WakesForSignals::~WakesForSignals() { reading = false; }

void WakesForSignals::WaitForNote() noexcept {
    constexpr int kAttempts = 50;
    constexpr DWORD kBetween = 10;
    for (int i = 0; i < kAttempts && arrived == 0; ++i) Sleep(kBetween);
}

void WatchSignals() noexcept {
    DuplicateHandle(GetCurrentProcess(), GetCurrentThread(), GetCurrentProcess(), &reader, 0, FALSE,
                    DUPLICATE_SAME_ACCESS);
    SetConsoleCtrlHandler(NoteControl, TRUE);
}

void ForgetSignal() noexcept { arrived = 0; }

int ArrivedSignal() noexcept { return arrived; }

std::ptrdiff_t ReadInput(int descriptor, char* buffer, std::size_t size) noexcept {
    const auto file = reinterpret_cast<HANDLE>(_get_osfhandle(descriptor));
    DWORD mode = 0;
    std::ptrdiff_t count = 0;
    if (arrived == 0) {
        const WakesForSignals waiting;
        count = GetConsoleMode(file, &mode) ? ReadConsoleLine(file, buffer, size) : ReadBytes(file, buffer, size);
    }
    if (arrived == 0 || count > 0) return count;
    errno = EINTR;
    return -1;
}

int OpenInput(const std::string& path) noexcept {
    const HANDLE handle =
        CreateFileW(WidePath(path).c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                    nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (handle != INVALID_HANDLE_VALUE)
        return _open_osfhandle(reinterpret_cast<intptr_t>(handle), _O_RDONLY | _O_BINARY);
    errno = ErrorNumberOf(GetLastError());
    return -1;
}

void CloseInput(int descriptor) noexcept { _close(descriptor); }

std::FILE* OpenFile(const std::string& path, const char* mode) noexcept {
    std::wstring binary = Wide(mode);
    if (std::strchr(mode, 'b') == nullptr) binary += L'b';
    return _wfopen(WidePath(path).c_str(), binary.c_str());
}

}  // namespace kpTables::platform
