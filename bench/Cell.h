// One cell of a statement's first row.
#pragma once

#include <cstdint>
#include <string>
#include <variant>

namespace kpTables::bench {

struct NoRow {};
struct NullCell {};
using Cell = std::variant<NoRow, NullCell, std::int64_t, double, std::string>;

}  // namespace kpTables::bench
