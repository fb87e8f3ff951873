// The arguments of the bill list by name.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "kpTables/CTables.h"
#include "kpTables/Quoted.h"

namespace kpTables {

/// What the bills of a list have in common; a filter that is not set (or empty, or id 0) allows all of them. Texts are
/// given as they are: a quote in one needs no doubling.
struct BillFilter {
    bool inbound = true;            ///< inbound bills, or else outbound ones
    std::string type = {};          ///< 类型
    std::optional<Date> from = {};  ///< first day
    std::optional<Date> to = {};    ///< last day
    std::string lowestNumber = {};  ///< 单据编号, compared as a text
    std::string highestNumber = {};
    std::int32_t warehouse = 0;    ///< dpID
    std::int32_t partner = 0;      ///< ksID: a supplier of inbound, a customer of outbound bills
    std::int32_t project = 0;      ///< pjID
    std::string handler = {};      ///< 经手人 of a line; sums count the lines that match
    std::string counterpart = {};  ///< 交接人 of a line
    std::string packing = {};      ///< 包装 of a line
    double leastQuantity = 0;      ///< of the bill's lines; 0: no bound
    double mostQuantity = 0;
    Currency leastAmount = {};  ///< net, of the bill's lines; 0: no bound
    Currency mostAmount = {};
};

/// The bills that meet a filter: rs单据列表 with its arguments by name.
inline RecordsetPtr ListBills(CTables& tables, const BillFilter& filter) {
    const auto day = [](const std::optional<Date>& date) { return date ? Variant(*date) : Variant(); };
    const auto text = [](const std::string& value) { return Variant(Quoted(value)); };
    const Variant ignored;
    return tables.rs单据列表(filter.inbound ? "入库" : "出库", text(filter.type), day(filter.from), day(filter.to),
                             text(filter.lowestNumber), text(filter.highestNumber), filter.warehouse, filter.partner,
                             filter.project, text(filter.handler), text(filter.counterpart), text(filter.packing),
                             ignored, ignored, ignored, ignored, ignored, filter.leastQuantity, filter.mostQuantity,
                             filter.leastAmount, filter.mostAmount);
}

}  // namespace kpTables
