#include "kpTables/bookkeeping/BillSheet.h"

#include <algorithm>
#include <set>
#include <utility>

#include "bookkeeping/BillRun.h"
#include "bookkeeping/Query.h"
#include "bookkeeping/SheetCells.h"
#include "kpTables/Convert.h"
#include "kpTables/Transaction.h"
#include "kpTables/text/Message.h"

namespace kpTables::bookkeeping {

namespace {

constexpr const char* kKey = "单据";

std::vector<std::string> HeaderColumns(EntryKind kind) {
    if (kind == EntryKind::Transfer) {
        return {"单据编号", "日期", "调出仓库", "调入仓库", "项目", "类型", "说明"};
    }
    if (kind == EntryKind::Cost) return {"日期", "仓库"};
    return {"单据编号", "日期", "仓库", "单位", "项目", "类型", "单据类型", "说明"};
}

std::vector<std::string> LineColumns(EntryKind kind) {
    if (kind == EntryKind::Cost) return {"商品编号", "商品", "数量", "单价", "金额"};
    return {"商品编号", "商品",     "数量", "单价",   "金额",   "除税单价", "含税单价", "除税金额",
            "税额",     "价税合计", "税率", "经手人", "交接人", "包装",     "货位",     "期限"};
}

const std::string& CellOf(const std::map<std::string, std::string>& cells, const std::string& column) {
    static const std::string empty;
    const auto found = cells.find(column);
    return found == cells.end() ? empty : found->second;
}

/// The rows of one bill.
struct RowGroup {
    std::string key;
    std::map<std::string, std::string> header;
    std::vector<const SheetRow*> rows;
};

class SheetReader {
public:
    SheetReader(const ConnectionPtr& book, const SheetOptions& options, std::vector<BillFault>& faults)
        : book_(book), options_(options), faults_(faults), names_(book), header_(HeaderColumns(options.kind)) {}

    std::vector<NewBill> Read(const std::vector<SheetRow>& rows);
    NewBillLine LineOf(const SheetRow& row, const std::string& key);
    void CheckColumns(const std::vector<SheetRow>& rows, const std::vector<std::string>& known);

private:
    void Group(const std::vector<SheetRow>& rows);
    RowGroup& GroupOf(const SheetRow& row);
    bool Continues(const RowGroup& group, const SheetRow& row) const;
    void TakeHeader(RowGroup& group, const SheetRow& row);
    NewBill BillOf(const RowGroup& group);
    std::string HeaderText(const RowGroup& group, const std::string& column) const;
    std::int32_t Warehouse(const RowGroup& group, const std::string& column);
    void SetTypes(NewBill& bill, const RowGroup& group) const;

    /// Reads something; an Error becomes a fault, and the answer is Value().
    template <class Read>
    auto Try(const std::string& key, std::int64_t row, const std::string& column, Read read) -> decltype(read()) {
        try {
            return read();
        } catch (const DatabaseError&) {
            throw;
        } catch (const Error& error) {
            faults_.push_back({key, row, column, error.Description()});
            return {};
        }
    }

    ConnectionPtr book_;
    const SheetOptions& options_;
    std::vector<BillFault>& faults_;
    MasterCells names_;
    std::vector<std::string> header_;
    std::vector<RowGroup> groups_;
    std::map<std::string, std::size_t> byKey_;
};

void SheetReader::CheckColumns(const std::vector<SheetRow>& rows, const std::vector<std::string>& known) {
    std::set<std::string> told;
    for (const SheetRow& row : rows) {
        for (const auto& [column, text] : row.cells) {
            const bool isKnown = text.empty() || std::ranges::find(known, column) != known.end();
            if (isKnown || !told.insert(column).second) continue;
            std::string names;
            for (const std::string& name : known) names += (names.empty() ? "" : ", ") + name;
            faults_.push_back(
                {"", row.row, column, Message("such a bill has no column of this name; it has {1}", names)});
        }
    }
}

/// Whether all that the row says of the bill is what the group says.
bool SheetReader::Continues(const RowGroup& group, const SheetRow& row) const {
    return std::ranges::all_of(header_, [&](const std::string& column) {
        const std::string& text = CellOf(row.cells, column);
        return text.empty() || text == CellOf(group.header, column);
    });
}

RowGroup& SheetReader::GroupOf(const SheetRow& row) {
    const std::string& key = CellOf(row.cells, kKey);
    const bool isSheetWithKeys = !byKey_.empty();
    if (key.empty()) {
        const bool continues = !groups_.empty() && (isSheetWithKeys || Continues(groups_.back(), row));
        return continues ? groups_.back() : groups_.emplace_back();
    }
    const auto [found, isNew] = byKey_.try_emplace(key, groups_.size());
    if (isNew) groups_.push_back({key, {}, {}});
    return groups_[found->second];
}

void SheetReader::TakeHeader(RowGroup& group, const SheetRow& row) {
    for (const std::string& column : header_) {
        const std::string& text = CellOf(row.cells, column);
        if (text.empty()) continue;
        const auto [found, isNew] = group.header.try_emplace(column, text);
        if (isNew || found->second == text) continue;
        faults_.push_back(
            {group.key, row.row, column, Message("{1}, but the bill's first row says {2}", text, found->second)});
    }
}

void SheetReader::Group(const std::vector<SheetRow>& rows) {
    for (const SheetRow& row : rows) {
        RowGroup& group = GroupOf(row);
        TakeHeader(group, row);
        group.rows.push_back(&row);
    }
}

std::string SheetReader::HeaderText(const RowGroup& group, const std::string& column) const {
    const std::string& text = CellOf(group.header, column);
    return text.empty() ? CellOf(options_.defaults, column) : text;
}

/// In a book with one warehouse, that one is meant where none is given.
std::int32_t SheetReader::Warehouse(const RowGroup& group, const std::string& column) {
    const std::string text = HeaderText(group, column);
    if (!text.empty()) return names_.Id(MasterKind::Warehouse, text);
    const auto rows = book_->Execute("Select TOP 2 dpID From 仓库设置");
    return rows->RecordCount() == 1 ? CLng(rows->GetValue(0)) : 0;
}

void SheetReader::SetTypes(NewBill& bill, const RowGroup& group) const {
    bill.type = HeaderText(group, "单据类型");
    bill.subtype = HeaderText(group, "类型");
    if (bill.type.empty() && IsEnteredType(bill.subtype)) std::swap(bill.type, bill.subtype);
}

NewBill SheetReader::BillOf(const RowGroup& group) {
    const std::int64_t row = group.rows.front()->row;
    const bool isTransfer = options_.kind == EntryKind::Transfer;
    const auto read = [&](const std::string& column, auto action) {
        return Try(group.key, row, column, [&] { return action(HeaderText(group, column)); });
    };
    const auto id = [&](const std::string& column, MasterKind kind) {
        return read(column,
                    [&](const std::string& text) { return text.empty() ? std::int32_t{0} : names_.Id(kind, text); });
    };
    NewBill bill;
    bill.kind = options_.kind;
    bill.key = group.key;
    bill.date = read("日期", [&](const std::string& text) { return text.empty() ? options_.today : DayOfCell(text); });
    const std::string from = isTransfer ? "调出仓库" : "仓库";
    bill.warehouse = Try(group.key, row, from, [&] { return Warehouse(group, from); });
    if (isTransfer) bill.toWarehouse = id("调入仓库", MasterKind::Warehouse);
    bill.partner = id("单位", options_.kind == EntryKind::Inbound ? MasterKind::Supplier : MasterKind::Customer);
    bill.project = id("项目", MasterKind::Project);
    SetTypes(bill, group);
    bill.number = HeaderText(group, "单据编号");
    bill.remarks = HeaderText(group, "说明");
    bill.clerk = options_.clerk;
    for (const SheetRow* line : group.rows) bill.lines.push_back(LineOf(*line, group.key));
    return bill;
}

NewBillLine SheetReader::LineOf(const SheetRow& row, const std::string& key) {
    const auto text = [&](const std::string& column) -> const std::string& { return CellOf(row.cells, column); };
    const auto money = [&](const std::string& column) {
        return Try(key, row.row, column, [&] { return MoneyOfCell(text(column)); });
    };
    NewBillLine line;
    line.row = row.row;
    const std::string column = text("商品编号").empty() ? "商品" : "商品编号";
    line.product = Try(key, row.row, column, [&] {
        return text(column).empty() ? std::int32_t{0} : names_.Id(MasterKind::Product, text(column));
    });
    line.quantity = Try(key, row.row, "数量", [&] { return QuantityOfCell(text("数量")); });
    line.amounts = {money("除税单价"), money("含税单价"), money("除税金额"), money("税额"), money("价税合计")};
    auto& price = options_.gross ? line.amounts.grossPrice : line.amounts.netPrice;
    auto& amount = options_.gross ? line.amounts.gross : line.amounts.net;
    if (const auto given = money("单价")) price = given;
    if (const auto given = money("金额")) amount = given;
    line.taxRate = Try(key, row.row, "税率", [&] { return RateOfCell(text("税率")); });
    line.handler = text("经手人");
    line.counterpart = text("交接人");
    line.packing = text("包装");
    line.slot = text("货位");
    line.term = Try(key, row.row, "期限", [&] { return text("期限").empty() ? 0.0 : QuantityOfCell(text("期限")); });
    return line;
}

std::vector<NewBill> SheetReader::Read(const std::vector<SheetRow>& rows) {
    CheckColumns(rows, SheetColumns(options_.kind));
    Group(rows);
    std::vector<NewBill> bills;
    for (const RowGroup& group : groups_) {
        const std::size_t before = faults_.size();
        NewBill bill = BillOf(group);
        if (faults_.size() == before) bills.push_back(std::move(bill));
    }
    return bills;
}

}  // namespace

std::vector<std::string> SheetColumns(EntryKind kind) {
    std::vector<std::string> columns{kKey};
    for (const auto& part : {HeaderColumns(kind), LineColumns(kind)})
        columns.insert(columns.end(), part.begin(), part.end());
    return columns;
}

std::vector<NewBill> ReadBillSheet(const ConnectionPtr& book, const std::vector<SheetRow>& rows,
                                   const SheetOptions& options, std::vector<BillFault>& faults) {
    return SheetReader(book, options, faults).Read(rows);
}

std::vector<EnteredBill> EnterBillSheet(const ConnectionPtr& book, const std::vector<SheetRow>& rows,
                                        const SheetOptions& sheet, const EntryOptions& options) {
    Transaction transaction(*book);
    BillRun run(book, options);
    for (const NewBill& bill : ReadBillSheet(book, rows, sheet, run.Faults())) run.Enter(bill);
    auto entered = run.Finish();
    transaction.Commit();
    return entered;
}

std::vector<NewBillLine> ReadSheetLines(const ConnectionPtr& book, const std::vector<SheetRow>& rows,
                                        const SheetOptions& options) {
    std::vector<BillFault> faults;
    SheetReader reader(book, options, faults);
    reader.CheckColumns(rows, LineColumns(options.kind));
    std::vector<NewBillLine> lines;
    for (const SheetRow& row : rows) lines.push_back(reader.LineOf(row, ""));
    if (!faults.empty()) throw BillsRefused(std::move(faults));
    return lines;
}

}  // namespace kpTables::bookkeeping
