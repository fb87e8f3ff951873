// A bill as it stands in the book.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "kpTables/Connection.h"
#include "kpTables/Date.h"
#include "kpTables/bookkeeping/BillTypes.h"
#include "kpTables/bookkeeping/LineAmounts.h"

namespace kpTables::bookkeeping {

enum class BillFamily { Inbound, Outbound, Cost };

/// Of the inbound one the outbound one, and the other way round: where the other half of a transfer is.
constexpr BillFamily OtherDirection(BillFamily family) noexcept {
    return family == BillFamily::Inbound ? BillFamily::Outbound : BillFamily::Inbound;
}

/// "入库", "出库" or "成本", as the methods take it.
const char* SelectorOf(BillFamily family) noexcept;

struct StoredBillLine {
    std::int32_t product = 0;
    double quantity = 0;
    LineAmounts amounts = {};  ///< a cost bill's price and amount are netPrice and net, the others are 0
    std::string handler = {};
    std::string counterpart = {};
    std::string packing = {};
    std::string slot = {};
    double term = 0;
};

/// A Null text is "", a Null id 0. A cost bill has an id, a date, a warehouse and lines only.
struct StoredBill {
    BillFamily family = BillFamily::Inbound;
    std::int32_t id = 0;       ///< BillID or CostID
    std::optional<Date> date;  ///< nothing where the three numbers are no day
    std::int32_t month = 0;    ///< 月份, also where there is no date
    std::int32_t warehouse = 0;
    std::int32_t partner = 0;
    std::int32_t project = 0;
    std::string type = {};     ///< 单据类型
    std::string subtype = {};  ///< 类型
    std::string number = {};
    std::string clerk = {};            ///< 录入员
    std::optional<Date> entered = {};  ///< 录入日期
    std::string auditor = {};          ///< 审核员; "": not audited
    std::optional<Date> audited = {};  ///< 审核日期
    std::string remarks = {};          ///< 说明
    std::vector<StoredBillLine> lines = {};

    bool IsTransfer() const { return type == kTransferType; }
};

/// Reads a bill with its lines in the order of entry; error 5 when there is none with this id.
StoredBill ReadBill(Connection& book, BillFamily family, std::int32_t id);

/// The id of the bill that a text means: its number, its id, or "id:" and its id. month: of the number; 0: any. Error
/// 5 when there is none or, with the candidates (id, date, kind, number), when there are several. Cost bills have no
/// number.
std::int32_t FindBill(Connection& book, BillFamily family, const std::string& text, std::int16_t month = 0);

/// The other half of a transfer; 0 for other bills and where it is missing. Error 5 when more than one bill could be
/// it.
std::int32_t CounterpartOf(const ConnectionPtr& book, const StoredBill& bill);

struct BillTotals {
    double quantity = 0;
    Currency net;
    Currency tax;
    Currency gross;
};
BillTotals TotalsOf(const StoredBill& bill);

}  // namespace kpTables::bookkeeping
