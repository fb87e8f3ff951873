#include "support/ScriptedRecordset.h"

#include <utility>

#include "kpTables/Convert.h"
#include "kpTables/Error.h"

namespace kpTables::test {

ScriptedRecordset::ScriptedRecordset(std::vector<FieldInfo> fields, const Rows& rows) : rows_(std::move(fields)) {
    for (const auto& row : rows) {
        rows_.AddNew();
        for (std::size_t i = 0; i < row.size(); ++i) rows_.SetValue(static_cast<int>(i), row[i]);
        rows_.Update();
    }
    if (!rows.empty()) rows_.MoveFirst();
}

ScriptedRecordset& ScriptedRecordset::RecordTo(JournalPtr journal) {
    journal_ = std::move(journal);
    return *this;
}

ScriptedRecordset& ScriptedRecordset::ReportCount(std::int32_t count) {
    count_ = count;
    return *this;
}

ScriptedRecordset& ScriptedRecordset::FailAt(const std::string& operation, int call) {
    failing_ = operation;
    callsToFailure_ = call;
    return *this;
}

Rows ScriptedRecordset::Contents() {
    Rows contents;
    if (rows_.RecordCount() == 0) return contents;
    for (rows_.MoveFirst(); !rows_.Eof(); rows_.MoveNext()) {
        auto& row = contents.emplace_back();
        for (int i = 0; i < rows_.FieldCount(); ++i) row.push_back(rows_.GetValue(i));
    }
    return contents;
}

void ScriptedRecordset::SetValue(int index, const Variant& value) {
    Count("Set");
    Write("Set " + rows_.FieldAt(index).name + "=" + Shown(value));
    rows_.SetValue(index, value);
}

void ScriptedRecordset::MoveFirst() {
    Count("MoveFirst");
    rows_.MoveFirst();
}

void ScriptedRecordset::Find(std::string_view criteria, std::int32_t skip, int direction) {
    Count("Find");
    rows_.Find(criteria, skip, direction);
}

void ScriptedRecordset::AddNew() {
    Count("AddNew");
    Write("AddNew");
    rows_.AddNew();
}

void ScriptedRecordset::Update() {
    Count("Update");
    Write("Update");
    rows_.Update();
}

void ScriptedRecordset::Close() {
    Count("Close");
    // The rows stay readable for the test.
    Write("Close");
}

void ScriptedRecordset::Count(const std::string& operation) {
    if (operation == failing_ && --callsToFailure_ == 0)
        throw DatabaseError(static_cast<std::int32_t>(DatabaseErrorNumber::Failure), operation + " was told to fail");
}

void ScriptedRecordset::Write(const std::string& entry) {
    if (journal_) journal_->push_back(entry);
}

std::string Shown(const Variant& value) {
    switch (value.Type()) {
        case VarType::Null:
            return "Null";
        case VarType::Empty:
            return "Empty";
        case VarType::Missing:
            return "Missing";
        case VarType::Object:
        case VarType::Array:
            return "object";
        default:
            return Text(value);
    }
}

std::shared_ptr<ScriptedRecordset> MakeRows(std::vector<FieldInfo> fields, const Rows& rows) {
    return std::make_shared<ScriptedRecordset>(std::move(fields), rows);
}

}  // namespace kpTables::test
