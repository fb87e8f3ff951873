#include "faults/FailingMemory.h"

#include <sqlite3.h>

#include <cstdlib>
#include <new>
#include <stdexcept>

#include "faults/Plan.h"

namespace kpTables::faults {

namespace {

sqlite3_mem_methods realMemory{};

void* Allocate(int size) { return Fails(Point::EngineMemory) ? nullptr : realMemory.xMalloc(size); }

void* Reallocate(void* block, int size) {
    return Fails(Point::EngineMemory) ? nullptr : realMemory.xRealloc(block, size);
}

/// As the standard says: the handler is called until it makes room (which it cannot here), goes away or throws.
void* FailedNew(bool mayThrow) {
    constexpr int kPatience = 100;
    for (int i = 0; i < kPatience; ++i) {
        const std::new_handler handler = std::get_new_handler();
        if (!handler) break;
        try {
            handler();
        } catch (const std::bad_alloc&) {
            if (mayThrow) throw;
            return nullptr;
        }
    }
    if (mayThrow) throw std::bad_alloc();
    return nullptr;
}

}  // namespace

void InstallFailingMemory() {
    if (sqlite3_config(SQLITE_CONFIG_GETMALLOC, &realMemory) != SQLITE_OK) throw std::runtime_error("no allocator");
    sqlite3_mem_methods failing = realMemory;
    failing.xMalloc = Allocate;
    failing.xRealloc = Reallocate;
    if (sqlite3_config(SQLITE_CONFIG_MALLOC, &failing) != SQLITE_OK) throw std::runtime_error("allocator refused");
}

namespace {

void* New(std::size_t size, bool mayThrow) {
    if (Fails(Point::Memory)) return FailedNew(mayThrow);
    if (void* const block = std::malloc(size == 0 ? 1 : size)) return block;
    return FailedNew(mayThrow);
}

void* NewAligned(std::size_t size, std::align_val_t alignment, bool mayThrow) {
    if (Fails(Point::Memory)) return FailedNew(mayThrow);
    const auto unit = static_cast<std::size_t>(alignment);
    if (void* const block = std::aligned_alloc(unit, (size + unit - 1) / unit * unit)) return block;
    return FailedNew(mayThrow);
}

}  // namespace

}  // namespace kpTables::faults

using kpTables::faults::New;
using kpTables::faults::NewAligned;

void* operator new(std::size_t size) { return New(size, true); }
void* operator new[](std::size_t size) { return New(size, true); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return New(size, false); }
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept { return New(size, false); }
void* operator new(std::size_t size, std::align_val_t a) { return NewAligned(size, a, true); }
void* operator new[](std::size_t size, std::align_val_t a) { return NewAligned(size, a, true); }
void operator delete(void* block) noexcept { std::free(block); }
void operator delete[](void* block) noexcept { std::free(block); }
void operator delete(void* block, std::size_t) noexcept { std::free(block); }
void operator delete[](void* block, std::size_t) noexcept { std::free(block); }
void operator delete(void* block, std::align_val_t) noexcept { std::free(block); }
void operator delete[](void* block, std::align_val_t) noexcept { std::free(block); }
void operator delete(void* block, std::size_t, std::align_val_t) noexcept { std::free(block); }
void operator delete[](void* block, std::size_t, std::align_val_t) noexcept { std::free(block); }
