#include "kpbook/HostObjects.h"

namespace kpTables::kpbook {

namespace {

std::vector<FieldInfo> FieldsOf(const std::vector<std::pair<std::string, Variant>>& row) {
    std::vector<FieldInfo> fields;
    for (const auto& [name, value] : row) {
        fields.push_back({name, value.IsNull() ? VarType::Empty : value.Type()});
    }
    return fields;
}

}  // namespace

RowArgument::RowArgument(const std::vector<std::pair<std::string, Variant>>& row) : MemoryRecordset(FieldsOf(row)) {
    AddNew();
    for (std::size_t i = 0; i < row.size(); ++i) SetValue(static_cast<int>(i), row[i].second);
    Update();
    MoveFirst();
}

}  // namespace kpTables::kpbook
