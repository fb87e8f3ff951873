#include "kpbook/Memory.h"

#include <atomic>
#include <cstdlib>
#include <exception>
#include <new>

#include "kpTables/text/Message.h"
#include "kpbook/Exit.h"
#include "kpbook/Terminal.h"

namespace kpTables::kpbook {

namespace {

std::atomic<bool> shortage = false;

/// Where an allocation failed in a function that must not fail, in a library's for example.
[[noreturn]] void EndForWantOfMemory() {
    if (!shortage) std::abort();
    TellText("kpbook: ");
    TellText(Translated("Out of memory"));
    TellText("\n");
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
    return Error(kOutOfMemory, Message("Out of memory"));
}

}  // namespace kpTables::kpbook
