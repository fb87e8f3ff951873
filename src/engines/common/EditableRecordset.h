// An editable recordset over the rows of one table.
#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

#include "engines/common/EditableRows.h"
#include "kpTables/Recordset.h"

namespace kpTables::engines {

/// Fetches its rows when one is first requested, keeps them in memory, and Update writes a row to the table at once. A
/// change that Update could not write stays pending, and Close drops it.
class EditableRecordset : public Recordset {
public:
    explicit EditableRecordset(std::unique_ptr<EditableRows> table);
    ~EditableRecordset() override;

    int FieldCount() const override;
    const FieldInfo& FieldAt(int index) const override;
    int FieldIndex(std::string_view name) const override;
    Variant GetValue(int index) const override;
    void SetValue(int index, const Variant& value) override;
    std::int32_t RecordCount() const override;
    std::int32_t AbsolutePosition() const override;
    bool Eof() const override;
    void MoveFirst() override;
    void MoveNext() override;
    void Find(std::string_view criteria, std::int32_t skip = 0, int direction = 1) override;
    void Sort(std::string_view order) override;
    void AddNew() override;
    void Update() override;
    void Close() override;

private:
    struct State;
    /// Error 3704 after Close.
    State& Opened() const;
    /// Writes what is pending and fetches the rows.
    State& Fetched();

    std::unique_ptr<State> state_;  ///< null after Close
};

}  // namespace kpTables::engines
