#include "bookkeeping/BalanceCheck.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "bookkeeping/MonthFigures.h"
#include "bookkeeping/Query.h"
#include "kpTables/Convert.h"
#include "kpTables/bookkeeping/ClosedMonths.h"
#include "kpTables/text/Message.h"

namespace kpTables::bookkeeping {

namespace {

bool Same(double a, double b) {
    constexpr double kTolerance = 1e-9;
    constexpr double kLeast = 1000;
    return std::abs(a - b) <= kTolerance * std::max({kLeast, std::abs(a), std::abs(b)});
}
bool Same(Currency a, Currency b) { return a == b; }

template <class Figures>
const typename Figures::mapped_type* Of(const Figures& figures, std::int32_t product) {
    const auto found = figures.find(product);
    return found == figures.end() ? nullptr : &found->second;
}

/// Exact beyond Currency's range, where an addition would raise an error.
Currency Plus(Currency a, Currency b, Currency minus = {}) {
    return Currency::FromScaled(static_cast<std::int64_t>(static_cast<std::uint64_t>(a.Scaled()) +
                                                          static_cast<std::uint64_t>(b.Scaled()) -
                                                          static_cast<std::uint64_t>(minus.Scaled())));
}

/// One warehouse's months, one after the other.
class WarehouseCheck {
public:
    WarehouseCheck(Connection& book, std::int32_t warehouse, std::vector<Finding>& findings)
        : book_(book), warehouse_(warehouse), findings_(findings) {}

    void Run(std::int16_t through);

private:
    void ReadMonth();
    void CheckRow(const BalanceRow& row, const BalanceRow* last);
    void CheckOpening(const BalanceRow& row, const BalanceRow* last);
    void CheckTotals(const BalanceRow& row, const BalanceRow* last);
    void CheckClosing(const BalanceRow& row);
    void CheckAgainstBills(const BalanceRow& row);
    void CheckProductsOnBills(const FiguresByProduct& figures, const std::string& kind);
    bool TookCosts() const;

    template <class Figure>
    void Expect(const BalanceRow& row, const std::string& column, const char* what, Figure expected, Figure found) {
        const GapValue gaps[] = {column};
        if (!Same(expected, found))
            findings_.push_back({warehouse_, row.year, month_, row.product, FillGaps(what, gaps), expected, found});
    }

    Connection& book_;
    std::int32_t warehouse_;
    std::vector<Finding>& findings_;
    std::int16_t month_ = 0;
    BillMonth bills_;
    std::vector<BalanceRow> rows_;  ///< of the month
    std::vector<BalanceRow> last_;  ///< of the month before
    bool costs_ = false;            ///< the month was closed with costs
};

const BalanceRow* Find(const std::vector<BalanceRow>& rows, std::int32_t product) {
    const auto found = std::ranges::lower_bound(rows, product, {}, &BalanceRow::product);
    return found == rows.end() || found->product != product ? nullptr : &*found;
}

void WarehouseCheck::Run(std::int16_t through) {
    for (month_ = 1; month_ <= through; ++month_) {
        ReadMonth();
        bills_.Read(book_, warehouse_, month_);
        costs_ = TookCosts();
        for (const BalanceRow& row : rows_) {
            if (!row.doubled) CheckRow(row, Find(last_, row.product));
        }
        CheckProductsOnBills(bills_.in, "入库");
        CheckProductsOnBills(bills_.out, "出库");
        if (costs_) CheckProductsOnBills(bills_.cost, "成本");
    }
    if (through == kLastMonth) return;
    // The first open month was carried in from the last closed one.
    ReadMonth();
    for (const BalanceRow& row : rows_) {
        if (!row.doubled) CheckOpening(row, Find(last_, row.product));
    }
}

void WarehouseCheck::ReadMonth() {
    last_ = std::move(rows_);
    rows_ = ReadBalance(book_, warehouse_, month_);
    for (const BalanceRow& row : last_) {
        if (!Find(rows_, row.product))
            findings_.push_back(
                {warehouse_, row.year, month_, row.product, Message("was not carried in: there is no row")});
    }
}

/// Products on the bills of a closed month that its figures leave out.
void WarehouseCheck::CheckProductsOnBills(const FiguresByProduct& figures, const std::string& kind) {
    for (const auto& [product, of] : figures) {
        if (!Find(rows_, product))
            findings_.push_back({warehouse_, 0, month_, product,
                                 Message("{1}记录: no balance row in a closed month", kind), Variant::Null(),
                                 LinesText(of.lines)});
    }
}

/// With costs, a product on cost bills has their amounts instead of the outbound bills'.
bool WarehouseCheck::TookCosts() const {
    return std::ranges::any_of(rows_, [this](const BalanceRow& row) {
        const auto* cost = Of(bills_.cost, row.product);
        const auto* out = Of(bills_.out, row.product);
        if (cost && cost->sums.amount != (out ? out->sums.amount : Currency()))
            return row.out.amount == cost->sums.amount;
        const auto* costTotal = Of(bills_.costTotal, row.product);
        const auto* outTotal = Of(bills_.outTotal, row.product);
        return costTotal && costTotal->amount != (outTotal ? outTotal->amount : Currency()) &&
               row.outTotal.amount == costTotal->amount;
    });
}

void WarehouseCheck::CheckRow(const BalanceRow& row, const BalanceRow* last) {
    CheckOpening(row, last);
    CheckTotals(row, last);
    CheckClosing(row);
    CheckAgainstBills(row);
}

void WarehouseCheck::CheckOpening(const BalanceRow& row, const BalanceRow* last) {
    if (!last || last->doubled) return;
    const char* const what = Translated("{1} is not the last month's closing stock");
    Expect(row, "上期库存单价", what, last->closing.price, row.opening.price);
    Expect(row, "上期库存数量", what, last->closing.quantity, row.opening.quantity);
    Expect(row, "上期库存金额", what, last->closing.amount, row.opening.amount);
}

void WarehouseCheck::CheckTotals(const BalanceRow& row, const BalanceRow* last) {
    if (!last || last->doubled) return;
    const char* const what = Translated("{1} is not the last month's and this month's together");
    Expect(row, "累计入库数量", what, last->inTotal.quantity + row.in.quantity, row.inTotal.quantity);
    Expect(row, "累计入库金额", what, Plus(last->inTotal.amount, row.in.amount), row.inTotal.amount);
    Expect(row, "累计出库数量", what, last->outTotal.quantity + row.out.quantity, row.outTotal.quantity);
    // A closing takes the costs alone for a product that has any since January, also in months without: compared with
    // the bills, the figure tells more.
    if (costs_ && Of(bills_.costTotal, row.product)) return;
    Expect(row, "累计出库金额", what, Plus(last->outTotal.amount, row.out.amount), row.outTotal.amount);
}

void WarehouseCheck::CheckClosing(const BalanceRow& row) {
    const char* const what = Translated("{1} is not opening + inbound - outbound");
    Expect(row, "本期库存数量", what, row.opening.quantity + row.in.quantity - row.out.quantity, row.closing.quantity);
    Expect(row, "本期库存金额", what, Plus(row.opening.amount, row.in.amount, row.out.amount), row.closing.amount);
    const double quantity = row.closing.quantity;
    Expect(row, "本期库存单价", Translated("{1} is not amount / quantity"),
           quantity > 0 ? row.closing.amount.ToDouble() / quantity : 0, row.closing.price);
}

void WarehouseCheck::CheckAgainstBills(const BalanceRow& row) {
    const char* const what = Translated("{1} is not what the bills add up to");
    const auto sums = [&row](const FiguresByProduct& figures) {
        const auto* of = Of(figures, row.product);
        return of ? of->sums : Stock();
    };
    const auto total = [&row](const TotalsByProduct& totals) {
        const auto* of = Of(totals, row.product);
        return of ? *of : Total();
    };
    const Stock in = sums(bills_.in);
    Expect(row, "本期入库单价", what, in.price, row.in.price);
    Expect(row, "本期入库数量", what, in.quantity, row.in.quantity);
    Expect(row, "本期入库金额", what, in.amount, row.in.amount);
    const Total inTotal = total(bills_.inTotal);
    Expect(row, "累计入库数量", what, inTotal.quantity, row.inTotal.quantity);
    Expect(row, "累计入库金额", what, inTotal.amount, row.inTotal.amount);
    const Stock out = sums(bills_.out);
    const Total outTotal = total(bills_.outTotal);
    const bool cost = costs_ && Of(bills_.cost, row.product);
    const bool costTotal = costs_ && Of(bills_.costTotal, row.product);
    Expect(row, "本期出库单价", what, out.price, row.out.price);
    Expect(row, "本期出库数量", what, out.quantity, row.out.quantity);
    Expect(row, "本期出库金额", what, cost ? sums(bills_.cost).amount : out.amount, row.out.amount);
    Expect(row, "累计出库数量", what, outTotal.quantity, row.outTotal.quantity);
    Expect(row, "累计出库金额", what, costTotal ? total(bills_.costTotal).amount : outTotal.amount,
           row.outTotal.amount);
}

}  // namespace

void CheckDoubledRows(Connection& book, std::vector<Finding>& findings) {
    const auto rows = book.Execute(
        "Select dpID,年份,月份,pdID,Count(*) As 行数 From 仓库余额表 Group by dpID,年份,月份,pdID Having Count(*)>1");
    for (; !rows->Eof(); rows->MoveNext()) {
        findings.push_back({IdOf(rows->GetValue(0)), IdOf(rows->GetValue(1)).value_or(0),
                            IdOf(rows->GetValue(2)).value_or(0), IdOf(rows->GetValue(3)),
                            Message("仓库余额表: more than one row"), std::int32_t{1}, rows->GetValue(4)});
    }
}

void CheckClosedMonths(Connection& book, std::vector<Finding>& findings) {
    const ClosedMonths closed(book);
    for (const auto& [warehouse, through] : closed.All()) WarehouseCheck(book, warehouse, findings).Run(through);
}

}  // namespace kpTables::bookkeeping
