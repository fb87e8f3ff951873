// Memory that ran out: a method that traps errors would answer as if nothing had happened.
#pragma once

#include "kpTables/Error.h"

namespace kpTables::kpbook {

/// From now on, an allocation that fails is remembered before it raises bad_alloc, and one that nothing can catch ends
/// the program with a message.
void WatchMemory() noexcept;
/// Whether an allocation has failed since the last call of this function.
bool TakeMemoryShortage() noexcept;
/// Whether one has failed, without forgetting it.
bool IsMemoryShort() noexcept;
/// Visual Basic's error for it.
Error MemoryError();

}  // namespace kpTables::kpbook
