// Month-end closing of a warehouse.
#include <span>
#include <utility>
#include <vector>

#include "kpTables/CTables.h"
#include "kpTables/Convert.h"
#include "kpTables/Fill.h"
#include "kpTables/Numbers.h"
#include "kpTables/Trapped.h"
#include "kpTables/db/Access.h"

namespace kpTables {
namespace {

/// Where the figures of a movement go in the balance row; nullptr for a figure that is not taken over.
struct Targets {
    const char* price;
    const char* quantity;
    const char* amount;
};

/// One grouped query's figures per product, and the balance columns that they are written to.
class Movement {
public:
    Movement(RecordsetPtr figures, Recordset& balance, const Targets& targets) : figures_(std::move(figures)) {
        if (figures_->RecordCount() < 1) return;
        Connect(balance, "单价", targets.price, false);
        Connect(balance, "数量", targets.quantity, false);
        Connect(balance, "金额", targets.amount, true);
    }

    /// Writes the product's figures into the current balance row. A product without any keeps what the row holds.
    void WriteTo(Recordset& balance, const std::string& findProduct) const {
        if (columns_.empty()) return;
        figures_->MoveFirst();
        figures_->Find(findProduct);
        if (figures_->Eof()) return;
        for (const Column& each : columns_) {
            const Variant figure = figures_->GetValue(each.from);
            balance.SetValue(each.to, each.isAmount ? Variant(vCur(figure)) : Variant(vDbl(figure)));
        }
    }

private:
    struct Column {
        int from;
        int to;
        bool isAmount;
    };

    void Connect(const Recordset& balance, const char* figure, const char* target, bool isAmount) {
        if (target) columns_.push_back({figures_->FieldIndex(figure), balance.FieldIndex(target), isAmount});
    }

    RecordsetPtr figures_;
    std::vector<Column> columns_;
};

// Figures per product of a warehouse's bills: a month's, and the year's up to it. kind is "入库" or "出库".
using FiguresText = Template<"kind", "warehouse", "month">;
constexpr FiguresText kMonthFigures =
    "Select pdID,Avg(除税单价) As 单价,Sum(数量) As 数量,Sum(除税金额) As 金额 From {kind}记录 "
    "Where BillID in (Select BillID From {kind}目录 Where dpID={warehouse} And 月份={month}) Group by pdID";
constexpr FiguresText kYearFigures =
    "Select pdID,Sum(数量) As 数量,Sum(除税金额) As 金额 From {kind}记录 "
    "Where BillID in (Select BillID From {kind}目录 Where dpID={warehouse} And 月份<={month}) Group by pdID";
// The same of the cost bills.
using CostFiguresText = Template<"warehouse", "month">;
constexpr CostFiguresText kMonthCosts =
    "Select pdID,Avg(单价) As 单价,Sum(数量) As 数量,Sum(金额) As 金额 From 成本记录 "
    "Where CostID in (Select CostID From 成本目录 Where dpID={warehouse} And 月份={month}) Group by pdID";
constexpr CostFiguresText kYearCosts =
    "Select pdID,Avg(单价) As 单价,Sum(数量) As 数量,Sum(金额) As 金额 From 成本记录 "
    "Where CostID in (Select CostID From 成本目录 Where dpID={warehouse} And 月份<={month}) Group by pdID";

/// One closing of one warehouse and month.
class Closing {
public:
    Closing(ConnectionPtr cnn, std::int32_t warehouse, std::int16_t month, ProgressBar* bar)
        : cnn_(std::move(cnn)), warehouse_(warehouse), month_(month), bar_(bar) {}

    void Run(bool costUsed, const Variant& note, bool carryForward) {
        balance_ = db::OpenText(cnn_, Fill("Select * From 仓库余额表 Where dpID={warehouse} And 月份={month}",
                                           "warehouse"_gap(warehouse_), "month"_gap(month_)));
        if (balance_->RecordCount() < 1) return;
        if (bar_) bar_->SetVisible(true);
        ReadMovements(costUsed);
        FillMonth();
        if (carryForward) AddNextMonth(note);
        if (bar_) bar_->SetValue(100);
        balance_->Close();
        if (bar_) bar_->SetVisible(false);
    }

private:
    void ReadMovements(bool costUsed);
    void FillMonth();
    void AddNextMonth(const Variant& note);

    void ShowProgress(const Recordset& rows, double from) const {
        if (bar_) bar_->SetValue(static_cast<double>(rows.AbsolutePosition()) / rows.RecordCount() * 50 + from);
    }

    ConnectionPtr cnn_;
    std::int32_t warehouse_;
    std::int16_t month_;
    ProgressBar* bar_;
    RecordsetPtr balance_;
    std::vector<Movement> movements_;
};

void Closing::ReadMovements(bool costUsed) {
    const auto warehouse = "warehouse"_gap(warehouse_);
    const auto month = "month"_gap(month_);
    const auto add = [&](const std::string& figures, const Targets& targets) {
        movements_.emplace_back(db::Query(cnn_, figures), *balance_, targets);
    };
    const auto addBills = [&](const FiguresText& text, std::string_view kind, const Targets& targets) {
        add(Fill(text, "kind"_gap(kind), warehouse, month), targets);
    };
    addBills(kMonthFigures, "入库", {"本期入库单价", "本期入库数量", "本期入库金额"});
    addBills(kMonthFigures, "出库", {"本期出库单价", "本期出库数量", "本期出库金额"});
    addBills(kYearFigures, "入库", {nullptr, "累计入库数量", "累计入库金额"});
    addBills(kYearFigures, "出库", {nullptr, "累计出库数量", "累计出库金额"});
    if (!costUsed) return;
    // Costs replace the outbound amounts; price and quantity stay those of the outbound bills.
    add(Fill(kMonthCosts, warehouse, month), {nullptr, nullptr, "本期出库金额"});
    add(Fill(kYearCosts, warehouse, month), {nullptr, nullptr, "累计出库金额"});
}

void Closing::FillMonth() {
    Recordset& row = *balance_;
    const int product = row.FieldIndex("pdID");
    const int openingQuantity = row.FieldIndex("上期库存数量");
    const int openingAmount = row.FieldIndex("上期库存金额");
    const int inQuantity = row.FieldIndex("本期入库数量");
    const int inAmount = row.FieldIndex("本期入库金额");
    const int outQuantity = row.FieldIndex("本期出库数量");
    const int outAmount = row.FieldIndex("本期出库金额");
    const int closingPrice = row.FieldIndex("本期库存单价");
    const int closingQuantity = row.FieldIndex("本期库存数量");
    const int closingAmount = row.FieldIndex("本期库存金额");

    for (; !row.Eof(); row.MoveNext()) {
        ShowProgress(row, 0);
        const std::string findProduct = Fill("pdID={product}", "product"_gap(row.GetValue(product)));
        for (const Movement& each : movements_) each.WriteTo(row, findProduct);

        row.SetValue(closingQuantity, Finite(vDbl(row.GetValue(openingQuantity)) + vDbl(row.GetValue(inQuantity)) -
                                             vDbl(row.GetValue(outQuantity))));
        // The opening amount must be there: a Null ends the closing.
        row.SetValue(closingAmount,
                     CCur(row.GetValue(openingAmount)) + vCur(row.GetValue(inAmount)) - vCur(row.GetValue(outAmount)));
        row.SetValue(closingPrice, kpTables::CalcPrice(row.GetValue(closingAmount), row.GetValue(closingQuantity)));
        row.Update();
    }
}

/// A column of next month's row and the column of this month's row that it is filled from; nullptr: it starts at 0.
struct Carried {
    const char* to;
    const char* from;
};

constexpr Carried kKeys[] = {{"dpID", "dpID"}, {"pdID", "pdID"}, {"年份", "年份"}};
constexpr Carried kFigures[] = {
    {"上期库存单价", "本期库存单价"}, {"上期库存数量", "本期库存数量"}, {"上期库存金额", "本期库存金额"},
    {"本期入库单价", nullptr},        {"本期入库数量", nullptr},        {"本期入库金额", nullptr},
    {"累计入库数量", nullptr},        {"累计入库金额", nullptr},        {"本期出库单价", nullptr},
    {"本期出库数量", nullptr},        {"本期出库金额", nullptr},        {"累计出库数量", nullptr},
    {"累计出库金额", nullptr},        {"本期库存单价", "本期库存单价"}, {"本期库存数量", "本期库存数量"},
    {"本期库存金额", "本期库存金额"},
};

/// A list of Carried with the columns' positions looked up once.
class CarriedColumns {
public:
    CarriedColumns(std::span<const Carried> columns, const Recordset& source, const Recordset& target) {
        for (const Carried& each : columns)
            positions_.push_back({target.FieldIndex(each.to), each.from ? source.FieldIndex(each.from) : kZero});
    }

    void Copy(const Recordset& source, Recordset& target) const {
        for (const Position& each : positions_)
            target.SetValue(each.to, each.from == kZero ? Variant(std::int16_t{0}) : source.GetValue(each.from));
    }

private:
    static constexpr int kZero = -1;
    struct Position {
        int to;
        int from;
    };
    std::vector<Position> positions_;
};

void Closing::AddNextMonth(const Variant& note) {
    const auto source = db::Query(cnn_, Fill("Select * From 仓库余额表 Where 月份={month} And dpID={warehouse}",
                                             "month"_gap(month_), "warehouse"_gap(warehouse_)));
    if (source->Eof()) return;
    const CarriedColumns keys(kKeys, *source, *balance_);
    const CarriedColumns figures(kFigures, *source, *balance_);
    const int sourceMonth = source->FieldIndex("月份");
    const int month = balance_->FieldIndex("月份");
    const int remark = balance_->FieldIndex("备注");

    for (; !source->Eof(); source->MoveNext()) {
        ShowProgress(*source, 50);
        balance_->AddNew();
        keys.Copy(*source, *balance_);
        balance_->SetValue(month, CLng(source->GetValue(sourceMonth)) + 1);
        figures.Copy(*source, *balance_);
        balance_->SetValue(remark, note);
        balance_->Update();
    }
}

/// Whether a query has rows; one that fails has none.
bool HasRows(const ConnectionPtr& cnn, const std::string& text) {
    return Trapped(false, [&] {
        const auto rows = db::Execute(cnn, text);
        return rows && rows->RecordCount() >= 1;
    });
}

}  // namespace

bool CTables::Close_DepotBalance(std::int32_t rdpID, std::int16_t rMonth, InOut<bool> rCostUsed,
                                 InOut<Variant> rBookCurrentDate, ProgressBar* rpgBar) {
    constexpr std::int16_t kLastMonth = 12;
    return Done([&] { Closing(cnn_, rdpID, rMonth, rpgBar).Run(rCostUsed, rBookCurrentDate, rMonth < kLastMonth); });
}

void CTables::UpdateDepotClosedFlag(InOut<std::int32_t> rdpID, InOut<Date> rDate, InOut<bool> rClosed) {
    const std::string flag = isSQL_ ? (rClosed ? "1" : "0") : Text(rClosed.get());
    db::Execute(cnn_, Fill("Update 仓库设置 Set 结帐日期='{date}',结帐标志={flag} Where dpID={warehouse}",
                           "date"_gap(rDate), "flag"_gap(flag), "warehouse"_gap(rdpID)));
}

bool CTables::isSaled(std::int32_t dpID, std::int16_t Month) {
    const auto month = "month"_gap(Month);
    const auto warehouse = "warehouse"_gap(dpID);
    return HasRows(cnn_, Fill("Select * from 出库记录 Where billID in (Select billID From 出库目录 "
                              "Where 月份={month} And dpID={warehouse})",
                              month, warehouse)) ||
           HasRows(cnn_, Fill("Select * From 销售汇总记录 Where ListID in (Select ID As ListID From 销售汇总目录 "
                              "Where 月份={month} And dpID={warehouse})",
                              month, warehouse));
}

}  // namespace kpTables
