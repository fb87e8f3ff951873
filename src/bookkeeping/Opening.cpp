#include "kpTables/bookkeeping/Opening.h"

#include <map>
#include <set>
#include <string>
#include <utility>

#include "bookkeeping/Query.h"
#include "bookkeeping/Refusal.h"
#include "bookkeeping/Setup.h"
#include "kpTables/Convert.h"
#include "kpTables/Error.h"
#include "kpTables/Transaction.h"
#include "kpTables/bookkeeping/ClosedMonths.h"
#include "kpTables/bookkeeping/Masters.h"
#include "kpTables/bookkeeping/NewBook.h"
#include "kpTables/text/Message.h"

namespace kpTables::bookkeeping {

namespace {

/// The rows of a file by warehouse and product: their places.
using StockPositions = std::map<std::int32_t, std::map<std::int32_t, std::size_t>>;

class OpeningEntry {
public:
    OpeningEntry(const ConnectionPtr& book, const std::vector<OpeningRow>& rows)
        : book_(book), setup_(book), rows_(rows) {}

    OpeningResult Run(OpeningPurpose purpose);

private:
    void ReadFirstMonth();
    void ReadWarehouseNames();
    void ReadDoubledRows();
    void CheckRow(std::size_t row, const ClosedMonths& closed);
    std::int32_t IdIn(std::size_t row, const char* column, MasterKind kind, const std::string& text);
    void CheckFigures(std::size_t row);
    void Fault(std::size_t row, const char* column, const std::string& reason) {
        result_.faults.push_back({row, column, reason});
    }
    void Enter(std::int32_t warehouse, std::map<std::int32_t, std::size_t> products);
    void Write(Recordset& row, const OpeningRow& opening);

    ConnectionPtr book_;
    Setup setup_;
    const std::vector<OpeningRow>& rows_;
    std::map<std::int32_t, std::string> names_;                ///< of the warehouses
    std::set<std::pair<std::int32_t, std::int32_t>> doubled_;  ///< warehouse and product with more than one row
    StockPositions stock_;
    OpeningResult result_;
};

OpeningResult OpeningEntry::Run(OpeningPurpose purpose) {
    Transaction transaction(*book_);
    ReadFirstMonth();
    const ClosedMonths closed(*book_);
    ReadWarehouseNames();
    ReadDoubledRows();
    for (std::size_t row = 0; row < rows_.size(); ++row) CheckRow(row, closed);
    if (purpose == OpeningPurpose::Check || !result_.faults.empty()) return std::move(result_);
    for (const auto& [warehouse, products] : stock_) Enter(warehouse, products);
    setup_.Check();
    transaction.Commit();
    return std::move(result_);
}

void OpeningEntry::ReadFirstMonth() {
    const Date built = setup_.Tables().Get_BuiltDate();
    setup_.Check(built.Year() >= kFirstYear);
    result_.year = built.Year();
    result_.month = static_cast<std::int16_t>(built.Month());
    const std::string year = std::to_string(result_.year);
    const std::string month = std::to_string(result_.month);
    const auto others = book_->Execute("Select TOP 1 年份,月份 From 仓库余额表 Where 年份<>" + year + " Or 月份<" +
                                       month + " Order by 年份,月份");
    if (others->Eof()) return;
    RefuseWith(
        Message("the book has balance rows of {1}-{2}, but was set up in {3}-{4}; set 建帐日期 to its first month",
                Text(others->GetValue(0)), Text(others->GetValue(1)), year, month));
}

void OpeningEntry::ReadWarehouseNames() {
    const auto rows = setup_.Tables().rs仓库列表();
    for (; !rows->Eof(); rows->MoveNext())
        names_[CLng(rows->Fields("dpID").Value())] = Text(rows->Fields("仓库名称").Value());
}

void OpeningEntry::ReadDoubledRows() {
    const auto rows = book_->Execute("Select dpID,pdID From 仓库余额表 Where 月份=" + std::to_string(result_.month) +
                                     " And dpID Is Not Null And pdID Is Not Null Group by dpID,pdID Having Count(*)>1");
    for (; !rows->Eof(); rows->MoveNext()) doubled_.emplace(CLng(rows->GetValue(0)), CLng(rows->GetValue(1)));
}

void OpeningEntry::CheckRow(std::size_t row, const ClosedMonths& closed) {
    const OpeningRow& given = rows_[row];
    const std::int32_t warehouse = IdIn(row, "仓库", MasterKind::Warehouse, given.warehouse);
    const std::int32_t product = IdIn(row, "商品编号", MasterKind::Product, given.product);
    CheckFigures(row);
    if (warehouse == 0) return;
    const std::string& name = names_.at(warehouse);
    if (closed.IsClosed(warehouse, result_.month)) {
        Fault(row, "", Message("month {1} of {2} is closed", result_.month, name));
    }
    if (product == 0) return;
    if (!stock_[warehouse].emplace(product, row).second) {
        Fault(row, "", Message("the product {1} stands twice for {2}", given.product, name));
    }
    if (doubled_.contains({warehouse, product})) {
        Fault(row, "", Message("the product {1} has two balance rows in {2}; remove one", given.product, name));
    }
}

/// The id that a text means; 0 when it means none.
std::int32_t OpeningEntry::IdIn(std::size_t row, const char* column, MasterKind kind, const std::string& text) {
    if (Trim(text).empty()) {
        Fault(row, column, Message("is empty"));
        return 0;
    }
    try {
        return MasterId(book_, kind, text);
    } catch (const DatabaseError&) {
        throw;
    } catch (const Error& error) {
        Fault(row, column, error.Description());
        return 0;
    }
}

void OpeningEntry::CheckFigures(std::size_t row) {
    const OpeningRow& given = rows_[row];
    if (given.quantity < 0) Fault(row, "数量", Message("is below 0"));
    if (given.amount < Currency()) Fault(row, "金额", Message("is below 0"));
    if (given.quantity == 0 && given.amount > Currency()) Fault(row, "金额", Message("is there without a quantity"));
}

/// The rows that are there are changed where they stand, the others are added behind them.
void OpeningEntry::Enter(std::int32_t warehouse, std::map<std::int32_t, std::size_t> products) {
    const auto rows = setup_.Tables().rs仓库余额表(warehouse, result_.month);
    for (; !rows->Eof(); rows->MoveNext()) {
        const auto id = IdOf(rows->Fields("pdID").Value());
        const auto named = id ? products.find(*id) : products.end();
        if (named == products.end()) continue;
        Write(*rows, rows_[named->second]);
        products.erase(named);
        ++result_.changed;
    }
    for (const auto& [product, row] : products) {
        rows->AddNew();
        rows->Fields("年份").SetValue(result_.year);
        rows->Fields("月份").SetValue(result_.month);
        rows->Fields("pdID").SetValue(product);
        rows->Fields("dpID").SetValue(warehouse);
        Write(*rows, rows_[row]);
        ++result_.added;
    }
    rows->Close();
}

void OpeningEntry::Write(Recordset& row, const OpeningRow& opening) {
    const double price = setup_.Tables().CalcPrice(Variant(opening.amount), Variant(opening.quantity));
    for (const char* stock : {"上期库存", "本期库存"}) {
        const std::string name = stock;
        row.Fields(name + "单价").SetValue(price);
        row.Fields(name + "数量").SetValue(opening.quantity);
        row.Fields(name + "金额").SetValue(opening.amount);
    }
    row.Update();
}

}  // namespace

OpeningResult EnterOpening(const ConnectionPtr& book, const std::vector<OpeningRow>& rows, OpeningPurpose purpose) {
    return OpeningEntry(book, rows).Run(purpose);
}

}  // namespace kpTables::bookkeeping
