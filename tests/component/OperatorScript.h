// Rows of the operators on a scripted connection.
#pragma once

#include <memory>
#include <utility>
#include <vector>

#include "support/ScriptedRecordset.h"

namespace kpTables::test {

inline std::vector<FieldInfo> OperatorColumns() {
    return {{"ID", VarType::Long},          {"姓名", VarType::String},      {"密码", VarType::String},
            {"dpID", VarType::Long},        {"入库处理", VarType::Boolean}, {"资产处理", VarType::Boolean},
            {"凭证处理", VarType::Boolean}, {"卡片打印", VarType::Boolean}, {"资产折旧", VarType::Boolean}};
}

/// The rows of a table that gives each new row an id in its first column, as a database does: not before it is saved.
class NumberedRecordset : public ScriptedRecordset {
public:
    NumberedRecordset(std::vector<FieldInfo> fields, const Rows& rows, std::int32_t nextId)
        : ScriptedRecordset(std::move(fields), rows), nextId_(nextId) {}

    Variant GetValue(int index) const override {
        Variant value = ScriptedRecordset::GetValue(index);
        return saved_ && index == 0 && value.IsNull() ? Variant(nextId_) : value;
    }
    void Update() override {
        ScriptedRecordset::Update();
        saved_ = true;
    }

private:
    std::int32_t nextId_;
    bool saved_ = false;
};

inline std::shared_ptr<NumberedRecordset> Operators(const Rows& rows = {}) {
    return std::make_shared<NumberedRecordset>(OperatorColumns(), rows, 7);
}

}  // namespace kpTables::test
