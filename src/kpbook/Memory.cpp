#include "kpbook/Memory.h"

#include <atomic>
#include <new>

namespace kpTables::kpbook {

namespace {

std::atomic<bool> shortage = false;

}  // namespace

void WatchMemory() noexcept {
    std::set_new_handler([] {
        shortage = true;
        throw std::bad_alloc();
    });
}

bool TakeMemoryShortage() noexcept { return shortage.exchange(false); }

Error MemoryError() {
    constexpr std::int32_t kOutOfMemory = 7;
    return Error(kOutOfMemory, "Out of memory");
}

}  // namespace kpTables::kpbook
