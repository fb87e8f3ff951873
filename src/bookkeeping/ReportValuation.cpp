#include "kpTables/bookkeeping/ReportValuation.h"

#include <algorithm>
#include <string>

#include "bookkeeping/OutboundGoods.h"
#include "bookkeeping/Query.h"
#include "kpTables/Convert.h"
#include "kpTables/Error.h"
#include "kpTables/bookkeeping/ClosedMonths.h"
#include "kpTables/text/Message.h"

namespace kpTables::bookkeeping {

namespace {

Currency SumOf(Connection& book, const std::string& query) {
    const auto rows = book.Execute(query);
    return rows->Eof() || rows->GetValue(0).IsNull() ? Currency() : CCur(rows->GetValue(0));
}

Currency OutboundAmount(Connection& book, Valuation valuation, const std::string& ofMonth) {
    Currency sum;
    for (const auto& goods : OutboundAt(book, valuation, ofMonth, SumsOf::Months)) sum = sum + goods.amount;
    return sum;
}

}  // namespace

std::optional<Valuation> ValuationSetting(CTables& tables) {
    // Get_Option answers with an empty text after an error, which must not look like a missing setting.
    const auto rows =
        tables.Cnn()->Execute("Select Discription From 系统选项 Where Item='" + std::string(kValuationSetting) + "'");
    const std::string setting(rows->Eof() ? "" : Trim(Text(rows->GetValue(0))));
    if (setting.empty()) return std::nullopt;
    if (setting == "成本") return Valuation::CostBills;
    if (setting == "出库") return Valuation::OutboundBills;
    throw Error(static_cast<std::int32_t>(ErrorNumber::InvalidCall),
                Message("the book's setting {1} is {2}; it can be 成本 or 出库", kValuationSetting, setting));
}

std::optional<Valuation> ClosedWith(Connection& book, std::int32_t warehouse, std::int16_t month) {
    const std::string ofMonth = OfMonth(warehouse, month);
    const Currency stored = SumOf(book, "Select Sum(本期出库金额) As 合计 From 仓库余额表" + ofMonth);
    const bool isOutbound = stored == OutboundAmount(book, Valuation::OutboundBills, ofMonth);
    const bool isCost = stored == OutboundAmount(book, Valuation::CostBills, ofMonth);
    if (isOutbound == isCost) return std::nullopt;
    return isCost ? Valuation::CostBills : Valuation::OutboundBills;
}

Valuation ValuationOf(CTables& tables) {
    if (const auto setting = ValuationSetting(tables)) return *setting;
    Connection& book = *tables.Cnn();
    const ClosedMonths closed(book);
    std::int16_t month = 0;
    for (const auto& [warehouse, through] : closed.All()) month = std::max(month, through);
    for (; month > 0; --month) {
        for (const auto& [warehouse, through] : closed.All()) {
            if (month > through) continue;
            if (const auto valuation = ClosedWith(book, warehouse, month)) return *valuation;
        }
    }
    return Valuation::OutboundBills;
}

}  // namespace kpTables::bookkeeping
