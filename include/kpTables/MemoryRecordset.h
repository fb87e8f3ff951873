// A recordset held in memory, bound to no table.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "kpTables/Recordset.h"

namespace kpTables {

namespace db {
class RowStore;
}

/// A client-side recordset with the fields that it is given: what a host or a report builds row by row with AddNew,
/// SetValue and Update, and what engines hand out as a query's result (then read-only).
class MemoryRecordset : public Recordset {
public:
    /// An empty, editable recordset.
    explicit MemoryRecordset(std::vector<FieldInfo> fields);
    /// A recordset over the rows of a store, positioned on the first; read-only unless editable.
    explicit MemoryRecordset(std::unique_ptr<db::RowStore> rows, bool editable = false);
    ~MemoryRecordset() override;

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

    std::unique_ptr<State> state_;  ///< null after Close
};

}  // namespace kpTables
