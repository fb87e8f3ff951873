// The error number that a call raises.
#pragma once

#include "kpTables/Error.h"

/// 0 when the call returns.
template <class Call>
int Raised(Call&& call) {
    try {
        call();
    } catch (const kpTables::Error& error) {
        return error.Number();
    }
    return 0;
}
