// What ends a program from outside: Ctrl-C, SIGTERM, the end of the session.
#pragma once

namespace kpTables::platform {

/// From now on, the first such signal is only remembered; a second one ends the program.
void WatchSignals() noexcept;
/// SIGINT or SIGTERM when one has arrived, else 0.
int ArrivedSignal() noexcept;
/// Goes on after a signal: the next one is remembered again.
void ForgetSignal() noexcept;

}  // namespace kpTables::platform
