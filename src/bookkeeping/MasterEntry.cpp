#include "kpTables/bookkeeping/MasterEntry.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "bookkeeping/CheckedTables.h"
#include "bookkeeping/MasterFields.h"
#include "bookkeeping/MasterUse.h"
#include "bookkeeping/Query.h"
#include "bookkeeping/Refusal.h"
#include "kpTables/Convert.h"
#include "kpTables/Transaction.h"
#include "kpTables/text/Message.h"

namespace kpTables::bookkeeping {

namespace {

/// A row that is to be added, or changed.
struct MasterRowEntry {
    ConnectionPtr book;
    const MasterTable& table;
    ColumnValues values;
    std::optional<MasterRow> self;  ///< of a row that is changed
    RecordsetPtr current;           ///< as it is before; null for a new one

    const ColumnValue* Given(std::string_view column) const {
        const auto found = std::ranges::find(values, column, &ColumnValue::column);
        return found == values.end() ? nullptr : &*found;
    }
    std::string StoredText(std::string_view column) const {
        return current ? Text(current->Fields(column).Value()) : std::string();
    }
    /// As it will be.
    std::string TextOf(std::string_view column) const {
        const auto* given = Given(column);
        return given ? Text(given->value) : StoredText(column);
    }
    std::string RowText() const { return std::string(Translated(table.noun)) + " " + self->Text(); }
    /// The rows but for this one.
    std::vector<MasterRow> Others(std::vector<MasterRow> rows) const {
        if (self) std::erase_if(rows, [this](const MasterRow& row) { return row.id == self->id; });
        return rows;
    }
};

std::vector<std::string_view> RequiredColumns(const MasterTable& table) {
    if (IsClass(table.kind) || table.kind == MasterKind::Product) return {table.number, table.name};
    return {table.name};
}

/// The component's look-ups ask 单位名称, its lists show 企业名称: a partner has one name until it is given a short
/// one.
void CompletePartnerNames(MasterRowEntry& entry) {
    if (entry.table.kind != MasterKind::Supplier && entry.table.kind != MasterKind::Customer) return;
    const auto* name = entry.Given("企业名称");
    const auto* shortName = entry.Given("单位名称");
    if (name && !shortName && entry.StoredText("企业名称") == entry.StoredText("单位名称")) {
        entry.values.push_back({"单位名称", Variant(name->value)});
    } else if (shortName && !name && !entry.self) {
        entry.values.push_back({"企业名称", Variant(shortName->value)});
    }
}

void CheckRequired(const MasterRowEntry& entry) {
    for (const auto column : RequiredColumns(entry.table)) {
        if ((entry.self && !entry.Given(column)) || !Trim(entry.TextOf(column)).empty()) continue;
        RefuseWith(Message("a {1} needs {2}", Translated(entry.table.noun), column));
    }
}

[[noreturn]] void RefuseTaken(const MasterRowEntry& entry, const std::string& what, const MasterRow& other) {
    RefuseWith(Message("{1}: the {2} {3} has it already", what, Translated(entry.table.noun), other.Text()));
}

/// Products of one name differ in their specification or model.
void CheckProductName(const MasterRowEntry& entry) {
    constexpr std::array kParts{"商品名称", "规格", "型号"};
    if (std::ranges::none_of(kParts, [&](const char* column) { return entry.Given(column); })) return;
    std::string condition;
    for (const char* column : kParts) {
        condition += (condition.empty() ? "" : " And ") + TextIs(column, entry.TextOf(column));
    }
    const auto others = entry.Others(RowsWhere(*entry.book, entry.table, condition));
    if (!others.empty()) RefuseTaken(entry, "商品名称 " + entry.TextOf("商品名称"), others.front());
}

/// What a row is known by must not mean another row, too. Short codes may be shared.
void CheckDistinct(const MasterRowEntry& entry) {
    constexpr std::string_view kShortCode = "输入简码";
    std::vector<std::string_view> known(entry.table.known.begin(), entry.table.known.end());
    std::erase(known, "商品名称");
    for (const auto& [column, value] : entry.values) {
        const std::string text = Text(value);
        if (text.empty() || std::ranges::find(known, column) == known.end()) continue;
        for (const std::string_view other : known) {
            if (column == kShortCode && other == kShortCode) continue;
            const auto rows = entry.Others(RowsWith(*entry.book, entry.table, std::string(other), text));
            if (!rows.empty()) RefuseTaken(entry, column + " " + text, rows.front());
        }
    }
    if (entry.table.kind == MasterKind::Product) CheckProductName(entry);
}

void CheckWarehouseName(const MasterRowEntry& entry) {
    if (entry.table.kind != MasterKind::Warehouse) return;
    const std::string name = entry.TextOf("仓库名称");
    if (name == "全部" || name == "全部仓库") RefuseWith(Message("仓库名称: {1} means all warehouses", name));
}

void CheckClassCode(const MasterRowEntry& entry) {
    const auto* code = entry.Given("ClassCode");
    if (!IsClass(entry.table.kind) || !entry.self || !code || Text(code->value) == entry.self->number) return;
    const auto uses = UsesOf(*entry.book, entry.table.kind, *entry.self);
    if (!uses.empty()) RefuseWith(Message("the ClassCode of the {1} is used: {2}", entry.RowText(), uses));
}

void CheckEntry(MasterRowEntry& entry) {
    if (entry.values.empty()) RefuseWith(Message("nothing is given for the {1}", Translated(entry.table.noun)));
    CompletePartnerNames(entry);
    CheckRequired(entry);
    CheckWarehouseName(entry);
    CheckClassCode(entry);
    CheckDistinct(entry);
}

void WriteValues(Recordset& rows, const ColumnValues& values) {
    for (const auto& [column, value] : values) rows.Fields(column).SetValue(value);
    rows.Update();
}

/// The row as it stands in its table; a row without an id must be the only one of its name.
std::string OnlyRow(Connection& book, const MasterTable& table, const MasterRow& row) {
    std::string condition = ConditionOf(table, row);
    if (RowsWhere(book, table, condition).size() != 1) {
        RefuseWith(Message("several {1} are called '{2}'", Translated(table.plural), row.name));
    }
    return condition;
}

/// Removes a row; the component has methods for three of the classes.
void DeleteRow(const ConnectionPtr& book, const MasterTable& table, const MasterRow& row,
               const std::string& condition) {
    CheckedTables tables(book);
    switch (table.kind) {
        case MasterKind::SupplierClass:
            return tables.Do("Del_厂商分类", [&](CTables& each) { return each.Del_厂商分类(row.id); });
        case MasterKind::CustomerClass:
            return tables.Do("Del_客户分类", [&](CTables& each) { return each.Del_客户分类(row.id); });
        case MasterKind::ProjectClass:
            return tables.Do("Del_项目分类", [&](CTables& each) { return each.Del_项目分类(row.id); });
        default:
            book->Execute("Delete From " + std::string(table.table) + " Where " + condition);
    }
}

}  // namespace

std::int32_t AddMaster(const ConnectionPtr& book, MasterKind kind, const ColumnValues& values) {
    Transaction transaction(*book);
    const MasterTable& table = TableOf(kind);
    MasterRowEntry entry{book, table, ReadMasterValues(book, table, values), std::nullopt, nullptr};
    CheckEntry(entry);
    const auto rows = book->Open(table.table, SourceKind::Table);
    rows->AddNew();
    WriteValues(*rows, entry.values);
    const bool hasId = *table.id != '\0';
    std::int32_t id = hasId ? CLng(rows->Fields(table.id).Value()) : 0;
    rows->Close();
    if (!hasId) id = NumberOf(*book, "Select Count(*) From " + std::string(table.table));
    transaction.Commit();
    return id;
}

void EditMaster(const ConnectionPtr& book, MasterKind kind, const std::string& which, const ColumnValues& values) {
    Transaction transaction(*book);
    const MasterTable& table = TableOf(kind);
    const MasterRow row = FindMaster(book, kind, which);
    const auto rows = book->Open("Select * From " + std::string(table.table) + " Where " + OnlyRow(*book, table, row),
                                 SourceKind::Text);
    MasterRowEntry entry{book, table, ReadMasterValues(book, table, values), row, rows};
    CheckEntry(entry);
    WriteValues(*rows, entry.values);
    rows->Close();
    transaction.Commit();
}

void RemoveMaster(const ConnectionPtr& book, MasterKind kind, const std::string& which) {
    Transaction transaction(*book);
    const MasterTable& table = TableOf(kind);
    const MasterRow row = FindMaster(book, kind, which);
    const auto uses = UsesOf(*book, kind, row);
    if (!uses.empty()) RefuseWith(Message("the {1} {2} is used: {3}", Translated(table.noun), row.Text(), uses));
    DeleteRow(book, table, row, OnlyRow(*book, table, row));
    transaction.Commit();
}

RecordsetPtr ListMasters(const ConnectionPtr& book, MasterKind kind) {
    CTables tables;
    tables.Cnn(book);
    switch (kind) {
        case MasterKind::Warehouse:
            return tables.rs仓库列表();
        case MasterKind::Supplier:
            return tables.rs厂商资料();
        case MasterKind::Customer:
            return tables.rs客户资料();
        case MasterKind::Project:
            return tables.rs项目资料();
        case MasterKind::Employee:
            return tables.rs雇员资料();
        case MasterKind::SupplierClass:
            return tables.rs厂商分类();
        case MasterKind::CustomerClass:
            return tables.rs客户分类();
        case MasterKind::ProjectClass:
            return tables.rs项目分类();
        case MasterKind::DepartmentClass:
            return tables.rs部门分类();
        case MasterKind::ProductClass:
            return tables.rs商品分类();
        case MasterKind::Product:
            // rs商品资料 lists the products only by an id.
            return book->Execute("Select * From 商品设置 Order by 商品编号,pdID");
        default:
            return book->Execute("Select * From 收付款方式");
    }
}

std::string MasterText(const ConnectionPtr& book, MasterKind kind, const std::string& which) {
    return FindMaster(book, kind, which).Text();
}

}  // namespace kpTables::bookkeeping
