#include "kpTables/bookkeeping/Operators.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <utility>

#include "bookkeeping/CheckedTables.h"
#include "bookkeeping/Query.h"
#include "bookkeeping/Refusal.h"
#include "kpTables/Convert.h"
#include "kpTables/Quoted.h"
#include "kpTables/Transaction.h"
#include "kpTables/bookkeeping/ActingOperator.h"
#include "kpTables/bookkeeping/DidYouMean.h"
#include "kpTables/text/Message.h"

namespace kpTables::bookkeeping {

namespace {

/// The columns before this position are the operator's own.
constexpr int kFirstRight = 4;
/// Rights that the component keeps in other columns.
constexpr std::array kRenamedRights{"发货单位", "收货单位", "部件管理"};

std::string WithId(std::int32_t id) { return " Where ID=" + std::to_string(id); }

void CheckName(Connection& book, const std::string& name, std::int32_t self) {
    if (Trim(name).empty()) RefuseWith(Message("the operator needs a name"));
    if (HasRows(book, "Select ID From 操作员 Where 姓名='" + Quoted(name) + "' And ID<>" + std::to_string(self))) {
        RefuseWith(Message("an operator has the name {1} already", name));
    }
}

std::string NameOfOperator(Connection& book, std::int32_t id) {
    const auto rows = book.Execute("Select 姓名 From 操作员" + WithId(id));
    if (rows->Eof()) RefuseWith(Message("the book has no operator {1}", id));
    return Text(rows->GetValue(0));
}

void CheckRight(const std::vector<std::string>& all, const std::string& right) {
    if (std::ranges::find(all, right) != all.end()) return;
    if (std::ranges::find(kRenamedRights, right) != kRenamedRights.end()) return;
    std::string list;
    for (const auto& each : all) list += (list.empty() ? "" : "、") + each;
    RefuseWith(Message("there is no right {1}{2} (rights: {3})", right, DidYouMean(right, all), list));
}

/// Someone must be able to switch the demand for an operator off again.
void CheckSomebodyIsLeft(const ConnectionPtr& book) {
    if (OperatorRequired(book) && !HasRows(*book, "Select ID From 操作员 Where 系统设置<>0")) {
        RefuseWith(
            Message("no operator would have the right 系统设置, and the book demands an operator for every change"));
    }
}

/// The bills that carry an operator's name.
std::string BillsOf(Connection& book, const std::string& name) {
    std::string uses;
    for (const char* table : {"入库目录", "出库目录", "派遣目录"}) {
        const auto count = NumberOf(book, "Select Count(*) From " + std::string(table) + " Where 录入员='" +
                                              Quoted(name) + "' Or 审核员='" + Quoted(name) + "'");
        if (count == 0) continue;
        uses += (uses.empty() ? "" : ", ") + CountedMessage(count, "{1} row of {2}", "{1} rows of {2}", table);
    }
    return uses;
}

/// Does a step of the component in a transaction.
template <class Call>
void DoStep(const ConnectionPtr& book, std::int32_t id, const char* what, Call call) {
    Transaction transaction(*book);
    NameOfOperator(*book, id);
    CheckedTables(book).Do(what, call);
    CheckSomebodyIsLeft(book);
    transaction.Commit();
}

bool GiveRights(CTables& tables, std::int32_t id, const std::vector<RightChange>& changes) {
    return std::ranges::all_of(changes, [&](const RightChange& change) {
        bool given = change.given;
        return tables.操作权限_Update(id, change.right, given);
    });
}

}  // namespace

std::int32_t OperatorId(const ConnectionPtr& book, const std::string& text) {
    const auto rows = book->Execute("Select ID From 操作员 Where 姓名='" + Quoted(text) + "' Order by ID");
    if (rows->RecordCount() > 1) RefuseWith(Message("several operators have the name {1}", text));
    if (!rows->Eof()) return CLng(rows->GetValue(0));
    std::int32_t id = 0;
    const auto* const end = text.data() + text.size();
    const auto read = std::from_chars(text.data(), end, id);
    if (read.ec == std::errc() && read.ptr == end && HasRows(*book, "Select ID From 操作员" + WithId(id))) return id;
    RefuseWith(Message("the book has no operator {1}", text));
}

std::vector<std::string> AllRights(const ConnectionPtr& book) {
    const auto rows = book->Execute("Select * From 操作员 Where 1=0");
    std::vector<std::string> rights;
    for (int i = kFirstRight; i < rows->FieldCount(); ++i) rights.push_back(rows->FieldAt(i).name);
    return rights;
}

std::int32_t AddOperator(const ConnectionPtr& book, const std::string& name) {
    Transaction transaction(*book);
    const std::string words(Trim(name));
    CheckName(*book, words, 0);
    const bool first = !HasRows(*book, "Select TOP 1 ID From 操作员");
    CheckedTables tables(book);
    const auto id = tables.Ask([&](CTables& component) { return component.操作员_Append(words); });
    // The method means to give the first one all rights, but counts the row that it adds.
    std::vector<RightChange> rights;
    if (first) {
        for (auto& right : AllRights(book)) rights.push_back({std::move(right), true});
    }
    tables.Do("操作权限_Update", [&](CTables& component) { return GiveRights(component, id, rights); });
    transaction.Commit();
    return id;
}

void RenameOperator(const ConnectionPtr& book, std::int32_t id, const std::string& name) {
    CheckName(*book, name, id);
    DoStep(book, id, "操作员_Update", [&](CTables& tables) { return tables.操作员_Update(id, Quoted(Trim(name))); });
}

void SetManagedWarehouse(const ConnectionPtr& book, std::int32_t id, std::int32_t warehouse) {
    if (warehouse != 0 && !HasRows(*book, "Select dpID From 仓库设置 Where dpID=" + std::to_string(warehouse))) {
        RefuseWith(Message("the book has no warehouse {1}", warehouse));
    }
    DoStep(book, id, "管理仓库_Update", [&](CTables& tables) { return tables.管理仓库_Update(id, warehouse); });
}

void ChangeRights(const ConnectionPtr& book, std::int32_t id, const std::vector<RightChange>& changes) {
    const auto all = AllRights(book);
    for (const auto& change : changes) CheckRight(all, change.right);
    DoStep(book, id, "操作权限_Update", [&](CTables& tables) { return GiveRights(tables, id, changes); });
}

void ClearRights(const ConnectionPtr& book, std::int32_t id) {
    DoStep(book, id, "操作权限_Clear", [&](CTables& tables) { return tables.操作权限_Clear(id); });
}

void SetPassword(const ConnectionPtr& book, std::int32_t id, const std::string& password) {
    std::string quoted = Quoted(password);
    DoStep(book, id, "Update_Password", [&](CTables& tables) { return tables.Update_Password("", quoted, id); });
}

void ClearPassword(const ConnectionPtr& book, std::int32_t id) {
    DoStep(book, id, "Clear_Password", [&](CTables& tables) { return tables.Clear_Password(id); });
}

void RemoveOperator(const ConnectionPtr& book, std::int32_t id) {
    Transaction transaction(*book);
    const std::string name = NameOfOperator(*book, id);
    if (!CheckedTables(book).Ask([&](CTables& tables) { return tables.AllowDelOperator(id); })) {
        RefuseWith(Message("the operator {1} has lines in the log; take the rights instead", name));
    }
    if (const auto bills = BillsOf(*book, name); !bills.empty()) {
        RefuseWith(Message("the operator {1} has entered or audited bills: {2}; take the rights instead", name, bills));
    }
    DoStep(book, id, "操作员_Delete", [&](CTables& tables) { return tables.操作员_Delete(id); });
    transaction.Commit();
}

}  // namespace kpTables::bookkeeping
