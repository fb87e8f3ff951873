// The operators: names, rights, managed warehouses and passwords.
#include <string_view>

#include "kpTables/CTables.h"
#include "kpTables/Convert.h"
#include "kpTables/Fill.h"
#include "kpTables/Trapped.h"
#include "kpTables/db/Access.h"

namespace kpTables {
namespace {

/// The column that keeps a right.
std::string RightColumn(const std::string& right) {
    if (right == "发货单位") return "资产处理";
    if (right == "收货单位") return "卡片打印";
    if (right == "部件管理") return "资产折旧";
    return right;
}

std::string OperatorText(std::int32_t id) { return Fill("Select * From 操作员 Where ID={id}", "id"_gap(id)); }

/// Runs a statement; false when it fails.
bool Executed(const ConnectionPtr& cnn, const std::string& text) {
    return Done([&] { db::Execute(cnn, text); });
}

void SetColumnsFrom(Recordset& row, int first, const Variant& value) {
    for (int i = first; i < row.FieldCount(); ++i) row.SetValue(i, value);
}

}  // namespace

RecordsetPtr CTables::rs操作员(std::int32_t rID) {
    if (rID >= 1) return db::Execute(cnn_, OperatorText(rID));
    constexpr std::string_view all = "Select * From 操作员 Order By ID";
    auto operators = db::Execute(cnn_, all);
    if (operators && operators->Eof()) {
        操作员_Append("系统操作员");
        operators = db::Execute(cnn_, all);
    }
    return operators;
}

std::int32_t CTables::操作员_Append(const std::string& rName) {
    constexpr int kFirstRight = 3;
    const auto operators = db::OpenTable(cnn_, "操作员");
    operators->AddNew();
    operators->Fields("姓名").SetValue(rName);
    operators->Fields("密码").SetValue("");
    // The new row counts already, so that the first operator too is added without rights; kept for compatibility.
    const bool first = operators->RecordCount() == 0;
    SetColumnsFrom(*operators, kFirstRight, std::int16_t{first});
    operators->Fields("凭证处理").SetValue(std::int16_t{1});
    operators->Update();
    const std::int32_t id = CLng(operators->Fields("ID").Value());
    operators->Close();
    return id;
}

bool CTables::操作员_Update(std::int32_t rID, const std::string& rName) {
    return Executed(cnn_, Fill("Update 操作员 set 姓名='{name}' Where ID={id}", "name"_gap(rName), "id"_gap(rID)));
}

bool CTables::操作权限_Update(std::int32_t rID, const std::string& rRightName, InOut<bool> rValue) {
    return Executed(cnn_, Fill("Update 操作员 Set {right}={value} Where ID={id}", "right"_gap(RightColumn(rRightName)),
                               "value"_gap(rValue), "id"_gap(rID)));
}

bool CTables::管理仓库_Update(std::int32_t rID, InOut<std::int32_t> rdpID) {
    return Executed(cnn_,
                    Fill("Update 操作员 Set dpID={warehouse} Where ID={id}", "warehouse"_gap(rdpID), "id"_gap(rID)));
}

bool CTables::操作员_Delete(std::int32_t rID) {
    return Executed(cnn_, Fill("Delete From 操作员 Where ID={id}", "id"_gap(rID)));
}

bool CTables::操作权限_Clear(std::int32_t rID) {
    // One column later than in 操作员_Append, kept for compatibility: the column at position 3 is left as it is.
    constexpr int kFirstCleared = 4;
    return Done([&] {
        const auto row = db::OpenText(cnn_, OperatorText(rID));
        if (row->RecordCount() == 1) {
            SetColumnsFrom(*row, kFirstCleared, false);
            row->Update();
        }
        row->Close();
    });
}

std::string CTables::GetPassword(const std::string& rName, std::int32_t rID) {
    return Trapped(std::string(), [&] {
        const auto row = db::OpenText(
            cnn_, rID < 1 ? Fill("Select * From 操作员 Where姓名='{name}'", "name"_gap(rName)) : OperatorText(rID));
        return row->RecordCount() >= 1 ? db::TextField(*row, "密码") : "";
    });
}

bool CTables::Update_Password(const std::string& rName, InOut<std::string> rPassWord, std::int32_t rID) {
    const auto password = "password"_gap(rPassWord);
    if (rID >= 1)
        return Executed(cnn_, Fill("Update 操作员 Set 密码='{password}' Where ID={id}", password, "id"_gap(rID)));
    return Executed(cnn_, Fill("Update 操作员 Set 密码='{password}' Where 姓名='{name}'", password, "name"_gap(rName)));
}

bool CTables::Clear_Password(std::int32_t rID) {
    return Executed(cnn_, Fill("Update 操作员 Set 密码='' Where ID={id}", "id"_gap(rID)));
}

bool CTables::Get操作权限(std::int32_t rID, const std::string& rFieldName) {
    return Trapped(
        false, [&] { return CBool(db::OpenText(cnn_, OperatorText(rID))->Fields(RightColumn(rFieldName)).Value()); });
}

std::int32_t CTables::Get管理仓库(std::int32_t rID) {
    return Trapped(0, [&] { return CLng(db::OpenText(cnn_, OperatorText(rID))->Fields("dpID").Value()); });
}

std::string CTables::Get操作员(std::int32_t rID, const std::string& rFieldName) {
    return Trapped(std::string(), [&] { return db::TextField(*db::OpenText(cnn_, OperatorText(rID)), rFieldName); });
}

}  // namespace kpTables
