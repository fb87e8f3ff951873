// The kinds of bills: each has a table of headers and one of lines.
#pragma once

#include <string>

namespace kpTables::bookkeeping {

struct BillKind {
    const char* name;
    const char* key;  ///< the bill's id, in both tables
    bool linesHaveWarehouse;

    std::string Headers() const { return std::string(name) + "目录"; }
    std::string Lines() const { return std::string(name) + "记录"; }
};

inline constexpr BillKind kInbound{"入库", "BillID", true};
inline constexpr BillKind kOutbound{"出库", "BillID", true};
inline constexpr BillKind kCost{"成本", "CostID", false};
inline constexpr BillKind kBillKinds[] = {kInbound, kOutbound, kCost};

}  // namespace kpTables::bookkeeping
