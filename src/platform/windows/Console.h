// Reading from the console, whose texts are UTF-16, and waiting until a signal arrives.
#pragma once

#include <windows.h>

#include <optional>
#include <string>

namespace kpTables::platform {

/// A line with its end, "\n", in UTF-8; nothing at the end (Ctrl-Z), and when Ctrl-C is typed.
std::optional<std::string> ReadConsoleText(HANDLE console);

/// While it lives, a signal ends what the thread waits for.
class WakesForSignals {
public:
    WakesForSignals() noexcept;
    ~WakesForSignals();
    WakesForSignals(const WakesForSignals&) = delete;
    WakesForSignals& operator=(const WakesForSignals&) = delete;

    /// After Ctrl-C the console ends a read before the signal is noted, in another thread.
    static void WaitForNote() noexcept;
};

}  // namespace kpTables::platform
