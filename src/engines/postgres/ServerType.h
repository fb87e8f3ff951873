// The server's numbers of its types.
#pragma once

#include "engines/postgres/Library.h"

namespace kpTables::engines::postgres {

enum ServerType : Oid {
    kBoolean = 16,
    kInteger8 = 20,
    kInteger2 = 21,
    kInteger4 = 23,
    kTransaction = 28,
    kReal4 = 700,
    kReal8 = 701,
    kText = 1042,
    kDate = 1082,
    kTimestamp = 1114,
    kNumeric = 1700,
};

}  // namespace kpTables::engines::postgres
