#include "platform/Socket.h"

#include <winsock2.h>

namespace kpTables::platform {

bool WaitForSocket(int socket, int milliseconds) noexcept {
    // Whoever opened the socket has loaded the library; programs without one do without it.
    using Poll = int(WSAAPI*)(WSAPOLLFD*, ULONG, INT);
    static const auto poll =
        reinterpret_cast<Poll>(reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"ws2_32.dll"), "WSAPoll")));
    WSAPOLLFD waited{static_cast<SOCKET>(socket), POLLRDNORM, 0};
    return !poll || poll(&waited, 1, milliseconds) != 0;
}

}  // namespace kpTables::platform
