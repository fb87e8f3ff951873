// Waiting for what comes from a network.
#pragma once

namespace kpTables::platform {

/// Waits until a socket has something to read, at most so long. False when the time has passed.
bool WaitForSocket(int socket, int milliseconds) noexcept;

}  // namespace kpTables::platform
