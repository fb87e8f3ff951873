// A recordset with prepared rows that records what is done to it and can be made to fail.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "kpTables/MemoryRecordset.h"
#include "support/Journal.h"

namespace kpTables::test {

/// Rows as a test writes them, positioned on the first.
using Rows = std::vector<std::vector<Variant>>;

/// Journal entries: "AddNew", "Set 上期库存数量=2.5", "Update", "Close"; Null and Empty are written as such.
class ScriptedRecordset : public Recordset {
public:
    ScriptedRecordset(std::vector<FieldInfo> fields, const Rows& rows);

    /// Writes edits and Close down from now on.
    ScriptedRecordset& RecordTo(JournalPtr journal);
    /// RecordCount answers this, as -1 from a cursor on the server.
    ScriptedRecordset& ReportCount(std::int32_t count);
    /// The n-th call (from 1) of "AddNew", "Set", "Update", "Find", "MoveFirst" or "Close" fails before it does
    /// anything.
    ScriptedRecordset& FailAt(const std::string& operation, int call);

    /// All rows as they are now, whatever the current row is.
    Rows Contents();

    int FieldCount() const override { return rows_.FieldCount(); }
    const FieldInfo& FieldAt(int index) const override { return rows_.FieldAt(index); }
    int FieldIndex(std::string_view name) const override { return rows_.FieldIndex(name); }
    Variant GetValue(int index) const override { return rows_.GetValue(index); }
    void SetValue(int index, const Variant& value) override;
    std::int32_t RecordCount() const override { return count_.value_or(rows_.RecordCount()); }
    std::int32_t AbsolutePosition() const override { return rows_.AbsolutePosition(); }
    bool Eof() const override { return rows_.Eof(); }
    void MoveFirst() override;
    void MoveNext() override { rows_.MoveNext(); }
    void Find(std::string_view criteria, std::int32_t skip, int direction) override;
    void Sort(std::string_view order) override { rows_.Sort(order); }
    void AddNew() override;
    void Update() override;
    void Close() override;

private:
    void Count(const std::string& operation);
    void Write(const std::string& entry);

    MemoryRecordset rows_;
    JournalPtr journal_;
    std::optional<std::int32_t> count_;
    std::string failing_;
    int callsToFailure_ = 0;
};

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

/// A value as the journal shows it: text forms, "Null", "Empty", "object".
std::string Shown(const Variant& value);

std::shared_ptr<ScriptedRecordset> MakeRows(std::vector<FieldInfo> fields, const Rows& rows);

}  // namespace kpTables::test
