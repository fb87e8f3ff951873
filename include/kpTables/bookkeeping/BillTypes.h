// The values of 单据类型 that the component's reports tell apart.
#pragma once

#include <algorithm>
#include <iterator>
#include <string_view>

namespace kpTables::bookkeeping {

struct BillType {
    std::string_view name;
    const char* code;            ///< in the header's BillType, by which some lists sort
    const char* inboundPrefix;   ///< of bill numbers; "" where inbound bills have no such type
    const char* outboundPrefix;  ///< likewise
};

inline constexpr std::string_view kTransferType = "调拨单";

inline constexpr BillType kBillTypes[] = {{"入库单", "01", "RK", ""},
                                          {"出库单", "01", "", "CK"},
                                          {"普通发票", "02", "JP", "XP"},
                                          {"增值税发票", "03", "JZ", "XZ"},
                                          {kTransferType, "04", "DB", "DB"}};

/// The type of that name; null for one that another host has given a bill.
constexpr const BillType* FindBillType(std::string_view name) noexcept {
    const auto* found = std::ranges::find(kBillTypes, name, &BillType::name);
    return found == std::end(kBillTypes) ? nullptr : found;
}

/// Whether it is a type that an inbound or outbound bill is entered with, rather than a firm's own 类型.
constexpr bool IsEnteredType(std::string_view name) noexcept {
    return name != kTransferType && FindBillType(name) != nullptr;
}

}  // namespace kpTables::bookkeeping
