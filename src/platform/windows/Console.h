// Reading from the console, whose texts are UTF-16.
#pragma once

#include <windows.h>

#include <optional>
#include <string>

namespace kpTables::platform {

/// A line with its end, "\n", in UTF-8; nothing at the end (Ctrl-Z), and when a signal arrives. What was typed until
/// then belongs to the line that is read next.
std::optional<std::string> ReadConsoleText(HANDLE console);

/// From now on Ctrl-C has arrived.
void NoteInterruption() noexcept;

/// Lets ReadConsoleText see that a signal has arrived.
void WakeConsoleReader() noexcept;

}  // namespace kpTables::platform
