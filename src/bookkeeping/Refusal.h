// An error that says why something was refused, in a sentence of its own.
#pragma once

#include <string>

#include "kpTables/Error.h"

namespace kpTables::bookkeeping {

[[noreturn]] inline void RefuseWith(const std::string& reason) {
    throw Error(static_cast<std::int32_t>(ErrorNumber::InvalidCall), reason);
}

}  // namespace kpTables::bookkeeping
