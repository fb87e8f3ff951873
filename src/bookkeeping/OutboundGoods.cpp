#include "bookkeeping/OutboundGoods.h"

#include <set>
#include <tuple>

#include "bookkeeping/BillKinds.h"
#include "bookkeeping/Query.h"
#include "kpTables/Convert.h"

namespace kpTables::bookkeeping {

namespace {

using Place = std::tuple<std::int32_t, std::int32_t, std::optional<std::int32_t>>;

Place PlaceOf(const OutboundGoods& goods) { return {goods.warehouse, goods.month, goods.product}; }

std::vector<OutboundGoods> SumsOfBills(Connection& book, const BillKind& kind, const std::string& amount,
                                       const std::string& condition, SumsOf sums) {
    const bool byDay = sums == SumsOf::Days;
    const std::string key = kind.key;
    // The headers come as a query, whose columns keep their names apart from the lines'.
    const auto rows = book.Execute("Select Lst.dpID,Lst.月份," + std::string(byDay ? "Lst.日子" : "0 As 日子") +
                                   ",Rec.pdID,Sum(Rec.数量) As 数量,Sum(Rec." + amount + ") As 金额 From (Select " +
                                   key + ",dpID,月份,日子 From " + kind.Headers() + condition + ") As Lst Inner Join " +
                                   kind.Lines() + " As Rec On Lst." + key + "=Rec." + key +
                                   " Group by Lst.dpID,Lst.月份," + (byDay ? "Lst.日子," : "") + "Rec.pdID");
    std::vector<OutboundGoods> found;
    found.reserve(static_cast<std::size_t>(rows->RecordCount()));
    const auto whole = [&](int column) { return IdOf(rows->GetValue(column)).value_or(0); };
    for (; !rows->Eof(); rows->MoveNext()) {
        OutboundGoods& goods = found.emplace_back();
        goods.warehouse = whole(0);
        goods.month = whole(1);
        goods.day = whole(2);
        goods.product = IdOf(rows->GetValue(3));
        if (const Variant sum = rows->GetValue(4); !sum.IsNull()) goods.quantity = CDbl(sum);
        if (const Variant sum = rows->GetValue(5); !sum.IsNull()) goods.amount = CCur(sum);
    }
    return found;
}

}  // namespace

std::vector<OutboundGoods> OutboundAt(Connection& book, Valuation valuation, const std::string& condition,
                                      SumsOf sums) {
    auto outbound = SumsOfBills(book, kOutbound, "除税金额", condition, sums);
    if (valuation == Valuation::OutboundBills) return outbound;
    auto goods = SumsOfBills(book, kCost, "金额", condition, sums);
    std::set<Place> costed;
    for (const OutboundGoods& each : goods) costed.insert(PlaceOf(each));
    std::erase_if(outbound, [&](const OutboundGoods& each) { return costed.contains(PlaceOf(each)); });
    goods.insert(goods.end(), outbound.begin(), outbound.end());
    return goods;
}

}  // namespace kpTables::bookkeeping
