#include <csignal>
#include <cstdio>
#include <exception>
#include <new>

#include "kpbook/CommandLine.h"
#include "kpbook/Exit.h"
#include "kpbook/Interruption.h"
#include "kpbook/Memory.h"
#include "kpbook/Utf8.h"

namespace {

/// Made before every other static object: their constructors may run out of memory too.
struct MemoryWatch {
    MemoryWatch() noexcept { kpTables::kpbook::WatchMemory(); }
};
[[gnu::init_priority(101)]] const MemoryWatch memoryWatch;

}  // namespace

int main(int count, char** words) {
    using namespace kpTables::kpbook;
    // A reader that goes away (head) must fail a write instead of killing the program, so that the book is closed
    // properly.
    std::signal(SIGPIPE, SIG_IGN);
    WatchSignals();
    try {
        return RunCommandLine(count, words);
    } catch (const std::bad_alloc&) {
        // Nothing that tells of it may need memory.
        std::fputs("kpbook: Out of memory\n", stderr);
        return kFailed;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "kpbook: %s\n", ReplaceInvalidUtf8(error.what()).c_str());
        return kFailed;
    }
}
