#include "text/LocalTime.h"

namespace kpTables::text {

std::tm LocalTime() {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
#ifdef _WIN32
    localtime_s(&local, &now);
#else
    localtime_r(&now, &local);
#endif
    return local;
}

}  // namespace kpTables::text
