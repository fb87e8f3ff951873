#include "kpbook/commands/ReportLayout.h"

#include <algorithm>
#include <memory>

#include "kpTables/Convert.h"
#include "kpTables/MemoryRecordset.h"
#include "kpbook/Interruption.h"
#include "kpbook/output/CellText.h"

namespace kpTables::kpbook::commands {

namespace {

bool HasWord(const std::string& heading, std::string_view word) { return heading.find(word) != heading.npos; }

/// The columns of a method, with those in between that stand for one of them.
std::vector<ReportColumn> AllColumns(const Recordset& rows, const ReportLayout& layout) {
    std::vector<ReportColumn> columns;
    for (int i = 0; i < rows.FieldCount(); ++i) {
        const auto& name = rows.FieldAt(i).name;
        const auto replaced = layout.replaced.find(name);
        columns.push_back(replaced == layout.replaced.end() ? ReportColumn{name, name} : replaced->second);
    }
    columns.insert(columns.end(), layout.added.begin(), layout.added.end());
    return columns;
}

VarType TypeOf(const Recordset& rows, const ReportColumn& column) {
    return column.worked ? column.type : rows.FieldAt(rows.FieldIndex(column.column)).type;
}

Variant ValueOf(const ReportRow& row, const ReportColumn& column) {
    return column.worked ? column.worked(row) : row.At(column.column);
}

/// Without a text, and without a figure other than 0.
bool IsEmptyColumn(Recordset& rows, int column) {
    if (rows.RecordCount() == 0) return true;
    bool isEmpty = true;
    for (rows.MoveFirst(); isEmpty && !rows.Eof(); rows.MoveNext()) {
        const Variant value = rows.GetValue(column);
        isEmpty = output::IsNumber(value.Type()) ? CDbl(value) == 0 : Trim(Text(value)).empty();
    }
    return isEmpty;
}

RecordsetPtr Filled(Recordset& rows, const std::vector<ReportColumn>& columns, const ReportRow& row) {
    std::vector<FieldInfo> fields;
    for (const auto& column : columns) fields.push_back({column.heading, TypeOf(rows, column)});
    auto filled = std::make_shared<MemoryRecordset>(std::move(fields));
    for (; !rows.Eof(); rows.MoveNext()) {
        ThrowIfInterrupted();
        filled->AddNew();
        for (std::size_t i = 0; i < columns.size(); ++i)
            filled->SetValue(static_cast<int>(i), ValueOf(row, columns[i]));
        filled->Update();
    }
    if (filled->RecordCount() > 0) filled->MoveFirst();
    return filled;
}

RecordsetPtr Without(Recordset& rows, const std::vector<int>& kept) {
    std::vector<FieldInfo> fields;
    for (const int column : kept) fields.push_back(rows.FieldAt(column));
    auto filled = std::make_shared<MemoryRecordset>(std::move(fields));
    if (rows.RecordCount() == 0) return filled;
    for (rows.MoveFirst(); !rows.Eof(); rows.MoveNext()) {
        filled->AddNew();
        for (std::size_t i = 0; i < kept.size(); ++i) filled->SetValue(static_cast<int>(i), rows.GetValue(kept[i]));
        filled->Update();
    }
    filled->MoveFirst();
    return filled;
}

output::Presentation PresentationOf(const Recordset& rows, const std::vector<std::string>& totalled) {
    output::Presentation presentation;
    for (int i = 0; i < rows.FieldCount(); ++i) {
        const auto& field = rows.FieldAt(i);
        presentation.looks.push_back(LookOfHeading(field.name, field.type));
        if (std::ranges::find(totalled, field.name) != totalled.end()) presentation.totalled.push_back(i);
    }
    return presentation;
}

}  // namespace

template <class Read>
std::string ReportNames::NameIn(std::optional<ClassNames>& names, const Variant& code, Read read) {
    if (!names) {
        names.emplace();
        for (const RecordsetPtr rows = read(); !rows->Eof(); rows->MoveNext()) {
            names->emplace(Trim(Text(rows->Fields("ClassCode").Value())), Text(rows->Fields("ClassName").Value()));
        }
    }
    const std::string key(Trim(Text(code)));
    const auto found = names->find(key);
    return found == names->end() || found->second.empty() ? key : found->second;
}

std::string ReportNames::ProductClass(const Variant& code) {
    return NameIn(productClasses_, code, [this] { return tables_.rs商品分类(); });
}

std::string ReportNames::ProjectClass(const Variant& code) {
    return NameIn(projectClasses_, code, [this] { return tables_.rs项目分类(); });
}

std::string ReportNames::PartnerClass(bool isSupplier, const Variant& code) {
    if (isSupplier) return NameIn(supplierClasses_, code, [this] { return tables_.rs厂商分类(); });
    return NameIn(customerClasses_, code, [this] { return tables_.rs客户分类(); });
}

std::string ReportNames::OperatorOf(const std::string& id) {
    if (!operators_) {
        operators_.emplace();
        // rs操作员 would add an operator to an empty table, but listing must not change the book.
        const auto rows = tables_.Cnn()->Execute("Select ID,姓名 From 操作员");
        for (; !rows->Eof(); rows->MoveNext()) operators_->emplace(Text(rows->GetValue(0)), Text(rows->GetValue(1)));
    }
    const std::string key(Trim(id));
    const auto found = operators_->find(key);
    return found == operators_->end() || found->second.empty() ? key : found->second;
}

const ReportNames::Product& ReportNames::ProductOf(const Variant& id) {
    if (!products_) {
        products_.emplace();
        // rs商品资料 makes a valid statement for one product only.
        const auto rows =
            tables_.Cnn()->Execute("Select pdID,商品编号,商品名称,规格,型号,计量单位,ClassCode From 商品设置");
        for (; !rows->Eof(); rows->MoveNext()) {
            const auto text = [&](const char* column) { return Text(rows->Fields(column).Value()); };
            products_->emplace(CLng(rows->GetValue(0)), Product{text("商品编号"), text("商品名称"), text("规格"),
                                                                text("型号"), text("计量单位"), text("ClassCode")});
        }
    }
    const std::int32_t product = id.IsNull() ? 0 : CLng(id);
    const auto found = products_->find(product);
    if (found != products_->end()) return found->second;
    return products_->emplace(product, Product{"", "(商品 " + std::to_string(product) + ")", "", "", "", ""})
        .first->second;
}

Variant ReportRow::Average(std::string_view amount, std::string_view quantity) const {
    return tables.CalcPrice(At(amount), At(quantity));
}

LaidOutRows LayOut(Recordset& rows, const ReportLayout& layout, Columns columns, CTables& tables, ReportNames& names,
                   bool isInbound) {
    const ReportRow row{rows, tables, names, isInbound};
    if (columns == Columns::All) {
        const auto all = Filled(rows, AllColumns(rows, layout), row);
        return {all, PresentationOf(*all, layout.totalled)};
    }
    auto shown = Filled(rows, layout.shown, row);
    std::vector<int> kept;
    for (int i = 0; i < shown->FieldCount(); ++i) {
        const bool isLeftOut = layout.shown[static_cast<std::size_t>(i)].leftOutEmpty && IsEmptyColumn(*shown, i);
        if (!isLeftOut) kept.push_back(i);
    }
    shown = Without(*shown, kept);
    return {shown, PresentationOf(*shown, layout.totalled)};
}

output::Look LookOfHeading(const std::string& heading, VarType type) {
    if (!output::IsNumber(type)) return output::Look::Plain;
    if (HasWord(heading, "价税合计")) return output::Look::Money;
    if (HasWord(heading, "单价") || HasWord(heading, "均价")) return output::Look::Price;
    if (HasWord(heading, "数量") || HasWord(heading, "最低库存") || HasWord(heading, "最高库存")) {
        return output::Look::Quantity;
    }
    if (type == VarType::Currency || HasWord(heading, "金额")) return output::Look::Money;
    return type == VarType::Double ? output::Look::Quantity : output::Look::Plain;
}

}  // namespace kpTables::kpbook::commands
