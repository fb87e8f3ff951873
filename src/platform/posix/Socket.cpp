#include "platform/Socket.h"

#include <poll.h>

namespace kpTables::platform {

bool WaitForSocket(int socket, int milliseconds) noexcept {
    pollfd waited{socket, POLLIN, 0};
    return poll(&waited, 1, milliseconds) != 0;
}

}  // namespace kpTables::platform
