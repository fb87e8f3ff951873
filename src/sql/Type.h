// The column types that both dialects know.
#pragma once

#include <cstdint>

namespace kpTables::sql {

enum class Type : std::uint8_t {
    Unknown,  ///< cannot be told before the statement runs
    Null,     ///< the bare literal
    Boolean,  ///< YESNO: -1 and 0
    Short,    ///< 16-bit
    Long,     ///< 32-bit
    Double,
    Currency,  ///< exact, four decimals
    Date,
    Text,
};

}  // namespace kpTables::sql
