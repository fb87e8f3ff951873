// Tables whose rows are edited one by one: operators, saved reports, column layouts.
#pragma once

#include <memory>
#include <vector>

#include "support/ScriptedRecordset.h"

namespace kpTables::test {

inline std::vector<FieldInfo> OperatorColumns() {
    return {{"ID", VarType::Long},          {"姓名", VarType::String},      {"密码", VarType::String},
            {"dpID", VarType::Long},        {"入库处理", VarType::Boolean}, {"资产处理", VarType::Boolean},
            {"凭证处理", VarType::Boolean}, {"卡片打印", VarType::Boolean}, {"资产折旧", VarType::Boolean}};
}

/// The next operator is number 7; so is the next report.
inline std::shared_ptr<NumberedRecordset> Operators(const Rows& rows = {}) {
    return std::make_shared<NumberedRecordset>(OperatorColumns(), rows, 7);
}

inline std::shared_ptr<NumberedRecordset> Reports(const Rows& rows = {}) {
    return std::make_shared<NumberedRecordset>(std::vector<FieldInfo>{{"rpID", VarType::Long},
                                                                      {"Caption", VarType::String},
                                                                      {"setting", VarType::String},
                                                                      {"rptDate", VarType::Date}},
                                               rows, 7);
}

/// Rows of saved column layouts, in the dialect's names.
inline std::shared_ptr<ScriptedRecordset> Layout(bool isSQL, const Rows& rows = {}) {
    return MakeRows({{isSQL ? "TableName" : "Table", VarType::String},
                     {isSQL ? "ColIndex" : "Index", VarType::Long},
                     {"Flag", VarType::String},
                     {"colkey", VarType::String},
                     {"Header", VarType::String},
                     {"Hidden", VarType::Boolean},
                     {"Width", VarType::Double}},
                    rows);
}

}  // namespace kpTables::test
