// Values that nobody should type, and that a component must survive.
#pragma once

#include <string>
#include <vector>

#include "kpTables/Variant.h"

namespace kpTables::test {

struct HostileValue {
    const char* name;
    Variant value;
    /// A text that a statement may hold between quotes as it is, and that a column takes: it is stored unchanged.
    bool storable = false;
};

const std::vector<HostileValue>& HostileValues();

}  // namespace kpTables::test
