#include "kpTables/bookkeeping/StockOnHand.h"

#include <map>
#include <string>

#include "bookkeeping/BillKinds.h"
#include "kpTables/Convert.h"
#include "kpTables/bookkeeping/LineAmounts.h"

namespace kpTables::bookkeeping {

namespace {

/// The stock that a balance row begins its month with; month 0 where there is no row.
struct OpeningStock {
    std::int32_t month = 0;
    double quantity = 0;
    Currency amount;
};

std::string RowsOfProduct(std::int32_t warehouse, std::int32_t product) {
    return " And dpID=" + std::to_string(warehouse) + " And pdID=" + std::to_string(product);
}

/// Of the first row that a query yields.
OpeningStock ReadOpening(Connection& book, const std::string& condition, const char* order) {
    const auto rows = book.Execute("Select TOP 1 月份,上期库存数量,上期库存金额 From 仓库余额表 Where " + condition +
                                   " Order by 月份" + order);
    if (rows->Eof()) return {};
    const auto number = [&](int column) {
        const Variant value = rows->GetValue(column);
        return value.IsNull() ? Variant(std::int32_t{0}) : value;
    };
    return {CLng(number(0)), CDbl(number(1)), CCur(number(2))};
}

/// The lines of a product on the bills of a warehouse, which closing counts by the header's dpID.
std::string LinesOfProduct(const BillKind& kind, std::int32_t warehouse, std::int32_t product, std::int32_t month) {
    return " From " + kind.Lines() + " As R Inner Join " + kind.Headers() +
           " As L On R.BillID=L.BillID Where R.pdID=" + std::to_string(product) +
           " And L.dpID=" + std::to_string(warehouse) + " And L.月份>=" + std::to_string(month);
}

using DayOfYear = std::pair<std::int32_t, std::int32_t>;  // month and day

void AddMovements(Connection& book, const std::string& lines, double sign, std::map<DayOfYear, double>& movements) {
    const auto rows = book.Execute("Select L.月份,L.日子,Sum(R.数量) As n" + lines + " Group by L.月份,L.日子");
    for (; !rows->Eof(); rows->MoveNext()) {
        const Variant day = rows->GetValue(1);
        const Variant sum = rows->GetValue(2);
        if (sum.IsNull()) continue;
        movements[{CLng(rows->GetValue(0)), day.IsNull() ? 0 : CLng(day)}] += sign * CDbl(sum);
    }
}

}  // namespace

StockLow LowestStock(Connection& book, std::int32_t warehouse, std::int32_t product, Date from) {
    const auto opening = ReadOpening(book, "True" + RowsOfProduct(warehouse, product), "");
    std::map<DayOfYear, double> movements;
    AddMovements(book, LinesOfProduct(kInbound, warehouse, product, opening.month), 1, movements);
    AddMovements(book, LinesOfProduct(kOutbound, warehouse, product, opening.month), -1, movements);
    const DayOfYear first{from.Month(), from.Day()};
    double stock = opening.quantity;
    auto at = movements.begin();
    for (; at != movements.end() && at->first <= first; ++at) stock += at->second;
    StockLow low{stock, from};
    for (; at != movements.end(); ++at) {
        stock += at->second;
        if (stock < low.quantity) low = {stock, Date::FromYearMonthDay(from.Year(), at->first.first, at->first.second)};
    }
    return low;
}

std::optional<Currency> CurrentCost(Connection& book, std::int32_t warehouse, std::int32_t product, Date date) {
    const std::string month = std::to_string(date.Month());
    const auto opening = ReadOpening(book, "月份<=" + month + RowsOfProduct(warehouse, product), " DESC");
    const auto rows = book.Execute(
        "Select Sum(R.数量) As n,Sum(R.除税金额) As a" + LinesOfProduct(kInbound, warehouse, product, opening.month) +
        " And (L.月份<" + month + " Or (L.月份=" + month + " And L.日子<=" + std::to_string(date.Day()) + "))");
    const Variant received = rows->GetValue(0);
    const Variant value = rows->GetValue(1);
    const double quantity = opening.quantity + (received.IsNull() ? 0 : CDbl(received));
    const Currency amount = opening.amount + (value.IsNull() ? Currency() : CCur(value));
    if (quantity <= 0 || amount.Scaled() <= 0) return std::nullopt;
    return PriceOf(amount, quantity);
}

}  // namespace kpTables::bookkeeping
