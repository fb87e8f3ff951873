// The functions of both dialects that are one function of the engine each, as data.
#pragma once

#include <string_view>

#include "sql/Type.h"

namespace kpTables::sql {

struct DialectFunction {
    std::string_view name;  ///< in lower case
    /// One letter an argument: t text, n number, d date, i interval ('m', or the server's word month).
    std::string_view arguments;
    std::size_t required;  ///< the arguments after these may be left out
    Type result;
    std::string_view engine;
};

/// The row of that name, letters without regard to case, or nullptr.
const DialectFunction* FindDialectFunction(std::string_view name);

}  // namespace kpTables::sql
