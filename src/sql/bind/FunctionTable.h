// The functions of both dialects that map to one neutral function each, as data.
#pragma once

#include <string_view>

#include "sql/Type.h"

namespace kpTables::sql::bind {

struct DialectFunction {
    std::string_view name;  ///< in lower case
    /// One letter an argument: t text, n number, d date, i interval ('m', or the server's word month).
    std::string_view arguments;
    std::size_t required;  ///< the arguments after these are optional
    Type result;
    std::string_view function;  ///< its neutral name
};

/// The row of that name, ignoring case, or nullptr.
const DialectFunction* FindDialectFunction(std::string_view name);

}  // namespace kpTables::sql::bind
