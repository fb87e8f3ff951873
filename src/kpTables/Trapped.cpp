#include "kpTables/Trapped.h"

#include <utility>

#include "kpTables/TrappedError.h"

namespace kpTables {

namespace {

thread_local std::exception_ptr trapped;

}  // namespace

void KeepTrappedError() noexcept { trapped = std::current_exception(); }

std::exception_ptr TakeTrappedError() noexcept { return std::exchange(trapped, nullptr); }

}  // namespace kpTables
