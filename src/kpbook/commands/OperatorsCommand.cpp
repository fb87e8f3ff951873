#include <algorithm>
#include <cstdio>

#include "kpTables/Convert.h"
#include "kpTables/MemoryRecordset.h"
#include "kpTables/Quoted.h"
#include "kpbook/Exit.h"
#include "kpbook/Host.h"
#include "kpbook/Names.h"
#include "kpbook/Terminal.h"
#include "kpbook/Workspace.h"
#include "kpbook/commands/Commands.h"
#include "kpbook/output/ResultWriter.h"

namespace kpTables::kpbook::commands {

namespace {

/// All other columns are rights.
constexpr const char* kOtherColumns[] = {"ID", "姓名", "密码", "dpID"};

bool IsRight(const std::string& column) {
    return std::ranges::none_of(kOtherColumns, [&](const char* other) { return SameName(column, other); });
}

std::string RightsOf(const Recordset& row) {
    std::string rights;
    for (int i = 0; i < row.FieldCount(); ++i) {
        const auto& column = row.FieldAt(i).name;
        const auto value = row.GetValue(i);
        if (!IsRight(column) || value.IsNull() || !CBool(value)) continue;
        if (!rights.empty()) rights += "、";
        rights += column;
    }
    return rights;
}

void AddOperator(MemoryRecordset& list, Recordset& row, CTables& tables) {
    const auto warehouse = row.Fields("dpID").Value();
    list.AddNew();
    list.SetValue(0, row.Fields("ID").Value());
    list.SetValue(1, row.Fields("姓名").Value());
    list.SetValue(2, Text(row.Fields("密码").Value()).empty() ? "not set" : "set");
    list.SetValue(3, warehouse);
    list.SetValue(4, warehouse.IsNull() ? std::string() : tables.Get仓库名称(CLng(warehouse)));
    list.SetValue(5, RightsOf(row));
    list.Update();
}

/// The id of the only operator with a name.
std::int32_t OperatorNamed(Workspace& workspace, const std::string& name) {
    const auto rows = workspace.connection->Execute("Select ID From 操作员 Where 姓名='" + Quoted(name) + "'");
    if (rows->Eof()) throw CommandError("the book has no operator " + name);
    if (rows->RecordCount() > 1) throw CommandError("several operators have the name " + name);
    return CLng(rows->GetValue(0));
}

int SetPassword(const OperatorsOptions& options, const GlobalOptions& global) {
    Workspace workspace(options.book, std::make_shared<ConsoleHost>(global.today, global.answer), global);
    const auto id = OperatorNamed(workspace, options.name);
    const std::string password = Quoted(AskPassword());
    global.incidents->Hide(password);
    if (!workspace.tables.Update_Password(Quoted(options.name), password, id)) return kFailed;
    std::fprintf(stderr, "%s: password set\n", options.name.c_str());
    return kSucceeded;
}

}  // namespace

int Operators(const OperatorsOptions& options, const GlobalOptions& global) {
    if (!options.action.empty()) return SetPassword(options, global);
    Workspace workspace(options.book, std::make_shared<ConsoleHost>(global.today, global.answer), global, Access::Read);
    // rs操作员 would add an operator to an empty table, but listing must not change the book.
    const auto rows = workspace.connection->Execute("Select * From 操作员 Order By ID");
    MemoryRecordset list({{"ID", VarType::Long},
                          {"姓名", VarType::String},
                          {"密码", VarType::String},
                          {"dpID", VarType::Long},
                          {"仓库名称", VarType::String},
                          {"权限", VarType::String}});
    for (; !rows->Eof(); rows->MoveNext()) AddOperator(list, *rows, workspace.tables);
    if (list.RecordCount() > 0) list.MoveFirst();
    output::WriteRecordset(list, global);
    return kSucceeded;
}

}  // namespace kpTables::kpbook::commands
