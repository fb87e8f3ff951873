// An editable recordset over the rows of one table behind ODBC.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "engines/odbc/OpenConnection.h"
#include "engines/odbc/Query.h"
#include "engines/odbc/TableWriter.h"
#include "kpTables/Recordset.h"

namespace kpTables::engines::odbc {

/// What an editable recordset reads: a prepared Select and where its rows are written.
struct EditableQuery {
    std::string text;
    std::unique_ptr<Query> query;
    bool hasRun = false;      ///< it had to, to be described; its rows are next
    bool wholeTable = false;  ///< its rows are all of the table, which can be counted unread
    std::unique_ptr<TableWriter> writer = nullptr;
};

/// Fetches its rows when one is first requested, keeps them in memory, and Update writes a row to the table at once. A
/// change that Update could not write stays pending, and Close drops it.
class EditableRows : public Recordset {
public:
    EditableRows(OpenConnectionPtr connection, EditableQuery source);
    ~EditableRows() override;

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

    OpenConnectionPtr connection_;
    std::unique_ptr<State> state_;  ///< null after Close
};

}  // namespace kpTables::engines::odbc
