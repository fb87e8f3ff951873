// The directions of a bill, which name its tables.
#pragma once

namespace kpTables {

inline constexpr const char* kInbound = "入库";
inline constexpr const char* kOutbound = "出库";

}  // namespace kpTables
