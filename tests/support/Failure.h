// The number of the error that something raises.
#pragma once

#include <cstdint>

#include "kpTables/Error.h"

namespace kpTables::test {

/// 0 when nothing is raised.
template <class Action>
std::int32_t FailureOf(Action&& action) {
    try {
        action();
    } catch (const Error& error) {
        return error.Number();
    }
    return 0;
}

/// ADO's number of an unspecified failure, as the scripted objects raise it.
inline constexpr std::int32_t kRefused = static_cast<std::int32_t>(DatabaseErrorNumber::Failure);

}  // namespace kpTables::test
