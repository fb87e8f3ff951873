#include <algorithm>
#include <cstdio>

#include "kpTables/Convert.h"
#include "kpTables/MemoryRecordset.h"
#include "kpTables/bookkeeping/CapitalFigures.h"
#include "kpbook/Exit.h"
#include "kpbook/Host.h"
#include "kpbook/commands/BillCommand.h"
#include "kpbook/output/BillPage.h"
#include "kpbook/output/Output.h"
#include "kpbook/output/PdfFile.h"
#include "kpbook/output/ResultWriter.h"

namespace kpTables::kpbook::commands {

namespace {

using bookkeeping::BillFamily;
using bookkeeping::StoredBill;
using bookkeeping::StoredBillLine;

using LabelledText = std::pair<std::string, std::string>;

/// A bill with the names that its ids stand for.
class NamedBill {
public:
    NamedBill(Workspace& workspace, StoredBill stored)
        : tables_(workspace.tables),
          bill(std::move(stored)),
          counterpart(bookkeeping::CounterpartOf(workspace.connection, bill)) {
        if (counterpart == 0) return;
        const auto other = bill.family == BillFamily::Inbound ? BillFamily::Outbound : BillFamily::Inbound;
        otherWarehouse_ = bookkeeping::ReadBill(*workspace.connection, other, counterpart).warehouse;
    }

    bool IsCost() const { return bill.family == BillFamily::Cost; }
    /// What is known of the bill as a whole, without what is empty.
    std::vector<LabelledText> Header() const;
    std::string ProductText(const StoredBillLine& line, const char* column) const {
        return Text(tables_.Get商品资料(line.product, column));
    }
    /// "425# 散装"
    std::string Specification(const StoredBillLine& line) const {
        const std::string model = ProductText(line, "型号");
        const std::string specification = ProductText(line, "规格");
        return specification + (model.empty() || specification.empty() ? "" : " ") + model;
    }

private:
    CTables& tables_;

public:
    const StoredBill bill;
    const std::int32_t counterpart;  ///< 0: none

private:
    std::int32_t otherWarehouse_ = 0;
};

std::vector<LabelledText> NamedBill::Header() const {
    const bool inbound = bill.family == BillFamily::Inbound;
    const std::string warehouse = tables_.Get仓库名称(bill.warehouse);
    std::vector<LabelledText> fields{{"单据编号", bill.number}, {"日期", bill.date ? bill.date->ToText() : ""}};
    if (counterpart != 0) {
        const std::string other = tables_.Get仓库名称(otherWarehouse_);
        fields.emplace_back("调出仓库", inbound ? other : warehouse);
        fields.emplace_back("调入仓库", inbound ? warehouse : other);
    } else {
        fields.emplace_back("仓库", warehouse);
    }
    if (bill.partner != 0) {
        fields.emplace_back(inbound ? "供应商" : "客户",
                            inbound ? tables_.Get厂商名称(bill.partner) : tables_.Get客户名称(bill.partner));
    }
    if (bill.project != 0) fields.emplace_back("项目", tables_.Get项目名称(bill.project));
    fields.emplace_back("单据类型", bill.type);
    fields.emplace_back("类型", bill.subtype);
    fields.emplace_back("说明", bill.remarks);
    std::erase_if(fields, [](const LabelledText& field) { return field.second.empty(); });
    return fields;
}

NamedBill ReadNamed(Workspace& workspace, const BillOptions& options) {
    const std::int32_t id = BillMeant(workspace, options);
    return {workspace, bookkeeping::ReadBill(*workspace.connection, FamilyOf(options.kind), id)};
}

RecordsetPtr HeaderRows(const NamedBill& named, bool asRow) {
    std::vector<LabelledText> fields{{named.IsCost() ? "CostID" : "BillID", std::to_string(named.bill.id)}};
    for (auto& field : named.Header()) fields.push_back(std::move(field));
    const auto add = [&](const char* label, const std::string& text) {
        if (!text.empty()) fields.emplace_back(label, text);
    };
    add("录入员", named.bill.clerk);
    add("录入日期", named.bill.entered ? named.bill.entered->ToText() : "");
    add("审核员", named.bill.auditor);
    add("审核日期", named.bill.audited ? named.bill.audited->ToText() : "");
    if (named.counterpart != 0) add("对方BillID", std::to_string(named.counterpart));
    std::vector<FieldInfo> columns;
    if (asRow) {
        for (const auto& field : fields) columns.push_back({field.first, VarType::String});
    } else {
        columns = {{"栏目", VarType::String}, {"内容", VarType::String}};
    }
    auto rows = std::make_shared<MemoryRecordset>(columns);
    if (asRow) rows->AddNew();
    int column = 0;
    for (const auto& [label, text] : fields) {
        if (asRow) {
            rows->SetValue(column++, text);
            continue;
        }
        rows->AddNew();
        rows->SetValue(0, label);
        rows->SetValue(1, text);
        rows->Update();
    }
    if (asRow) rows->Update();
    rows->MoveFirst();
    return rows;
}

RecordsetPtr LineRows(const NamedBill& named) {
    std::vector<FieldInfo> columns{{"商品编号", VarType::String},
                                   {"商品名称", VarType::String},
                                   {"规格型号", VarType::String},
                                   {"计量单位", VarType::String},
                                   {"数量", VarType::Double}};
    const std::vector<const char*> money =
        named.IsCost() ? std::vector<const char*>{"单价", "金额"}
                       : std::vector<const char*>{"除税单价", "除税金额", "税额", "单价", "金额"};
    for (const char* name : money) columns.push_back({name, VarType::Currency});
    auto rows = std::make_shared<MemoryRecordset>(columns);
    for (const StoredBillLine& line : named.bill.lines) {
        const auto& amounts = line.amounts;
        int column = 0;
        const auto add = [&](const Variant& value) { rows->SetValue(column++, value); };
        rows->AddNew();
        for (const char* name : {"商品编号", "商品名称"}) add(named.ProductText(line, name));
        add(named.Specification(line));
        add(named.ProductText(line, "计量单位"));
        add(line.quantity);
        add(amounts.netPrice);
        add(amounts.net);
        if (!named.IsCost()) {
            for (const Currency value : {amounts.tax, amounts.grossPrice, amounts.gross}) add(value);
        }
        rows->Update();
    }
    if (rows->RecordCount() > 0) rows->MoveFirst();
    return rows;
}

std::string MoneyText(Currency amount) { return Format(amount, "#,##0.00"); }
std::string PriceText(Currency price) { return Format(price, "#,##0.00##"); }

std::string TitleOf(const NamedBill& named) {
    if (named.IsCost()) return "成本单";
    if (named.bill.IsTransfer()) return "调拨单";
    return named.bill.family == BillFamily::Inbound ? "入库单" : "出库单";
}

/// The different texts of the lines.
std::string PeopleOf(const StoredBill& bill, std::string StoredBillLine::*person) {
    std::vector<std::string> names;
    for (const auto& line : bill.lines) {
        const std::string& name = line.*person;
        if (!name.empty() && std::ranges::find(names, name) == names.end()) names.push_back(name);
    }
    std::string text;
    for (const auto& name : names) text += (text.empty() ? "" : "、") + name;
    return text;
}

output::BillPage PageOf(const NamedBill& named, const std::string& company) {
    const bool hasTax = !named.IsCost() && !named.bill.IsTransfer();
    const auto totals = bookkeeping::TotalsOf(named.bill);
    const Currency total = named.IsCost() ? totals.net : totals.gross;
    output::BillPage page;
    page.company = company;
    page.title = TitleOf(named);
    page.fields = named.Header();
    page.columns = {{"序号", true},      {"商品编号", false}, {"商品名称", false},
                    {"规格型号", false}, {"单位", false},     {"数量", true}};
    page.totals = {"", "合计", "", "", "", Text(totals.quantity)};
    if (hasTax) {
        page.columns.insert(page.columns.end(),
                            {{"除税单价", true}, {"除税金额", true}, {"税额", true}, {"价税合计", true}});
        page.totals.insert(page.totals.end(), {"", MoneyText(totals.net), MoneyText(totals.tax), MoneyText(total)});
    } else {
        page.columns.insert(page.columns.end(), {{"单价", true}, {"金额", true}});
        page.totals.insert(page.totals.end(), {"", MoneyText(total)});
    }
    for (const StoredBillLine& line : named.bill.lines) {
        auto& row = page.rows.emplace_back();
        row = {std::to_string(page.rows.size()),    named.ProductText(line, "商品编号"),
               named.ProductText(line, "商品名称"), named.Specification(line),
               named.ProductText(line, "计量单位"), Text(line.quantity),
               PriceText(line.amounts.netPrice),    MoneyText(line.amounts.net)};
        if (!hasTax) continue;
        row.push_back(MoneyText(line.amounts.tax));
        row.push_back(MoneyText(line.amounts.gross));
    }
    page.capitals = bookkeeping::CapitalFigures(total);
    page.figures = MoneyText(total);
    page.signers = {{"制单", named.bill.clerk},
                    {"审核", named.bill.auditor},
                    {"经手人", PeopleOf(named.bill, &StoredBillLine::handler)},
                    {"交接人", PeopleOf(named.bill, &StoredBillLine::counterpart)}};
    return page;
}

}  // namespace

int ShowBill(const BillOptions& options, const GlobalOptions& global) {
    Workspace workspace(options.book, std::make_shared<ConsoleHost>(global.today, global.answer), global, Access::Read);
    RequireReading(workspace, options.kind);
    const NamedBill named = ReadNamed(workspace, options);
    const bool isText = global.format == OutputFormat::Table || global.format == OutputFormat::Markdown;
    output::WriteSections({{"单据", HeaderRows(named, !isText)}, {"明细", LineRows(named)}}, global);
    return kSucceeded;
}

int PrintBill(const BillOptions& options, const GlobalOptions& global) {
    Workspace workspace(options.book, std::make_shared<ConsoleHost>(global.today, global.answer), global, Access::Read);
    RequireReading(workspace, options.kind);
    const NamedBill named = ReadNamed(workspace, options);
    const std::string html =
        output::BillHtml(PageOf(named, std::string(Trim(Text(workspace.tables.Get_AccInfo("单位名称"))))));
    if (global.outputPath.ends_with(".pdf")) {
        output::WritePdf(html, global.outputPath);
        return kSucceeded;
    }
    output::Output output(global.outputPath);
    output.Write(html);
    output.Close();
    return kSucceeded;
}

}  // namespace kpTables::kpbook::commands
