#include "kpbook/Memory.h"

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <new>

#include "kpbook/Exit.h"

namespace kpTables::kpbook {

namespace {

std::atomic<bool> shortage = false;

/// Where an allocation failed in a function that must not fail, in a library's for example.
[[noreturn]] void EndForWantOfMemory() {
    if (!shortage) std::abort();
    std::fputs("kpbook: Out of memory\n", stderr);
    std::_Exit(kFailed);
}

}  // namespace

void WatchMemory() noexcept {
    std::set_terminate(EndForWantOfMemory);
    std::set_new_handler([] {
        shortage = true;
        throw std::bad_alloc();
    });
}

bool TakeMemoryShortage() noexcept { return shortage.exchange(false); }

bool IsMemoryShort() noexcept { return shortage; }

Error MemoryError() {
    constexpr std::int32_t kOutOfMemory = 7;
    return Error(kOutOfMemory, "Out of memory");
}

}  // namespace kpTables::kpbook
