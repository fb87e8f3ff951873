// The editable rows of one table behind ODBC.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "engines/common/EditableRows.h"
#include "engines/odbc/OpenConnection.h"
#include "engines/odbc/Query.h"
#include "engines/odbc/TableWriter.h"

namespace kpTables::engines::odbc {

/// What an editable recordset reads: a prepared Select and where its rows are written.
struct EditableQuery {
    std::string text;
    std::unique_ptr<Query> query;
    bool hasRun = false;      ///< it had to, to be described; its rows are next
    bool wholeTable = false;  ///< its rows are all of the table, which can be counted unread
    std::unique_ptr<TableWriter> writer = nullptr;
};

/// Tells rows apart by the writer's identity; behind the caller's columns is a flag that is True for a row that was
/// written here.
class ServerRows final : public EditableRows {
public:
    ServerRows(OpenConnectionPtr connection, EditableQuery source);

    const recordset::FieldsPtr& Fields() const noexcept override { return fields_; }
    int Columns() const noexcept override { return columns_; }
    const Variant& DefaultOf(int column) const override;
    engines::Transaction& GetTransaction() noexcept override { return connection_->transaction; }

    bool IsWholeTable() const noexcept override { return source_.wholeTable; }
    std::int64_t CountOthers() override;
    std::unique_ptr<MemoryRecordset> Read(MemoryRecordset& added) override;

    void BeginChange(const MemoryRecordset& row) override;
    void Insert(const ColumnSet& set, WrittenValues values, MemoryRecordset& row) override;
    void Change(const ColumnSet& set, WrittenValues values, MemoryRecordset& row) override;

private:
    std::unique_ptr<recordset::RowStore> ReadAll();
    std::unique_ptr<recordset::RowStore> WithAddedBehind(const recordset::RowStore& all) const;
    std::string IdentityOf(const std::function<Variant(int column)>& value) const;
    std::string IdentityOf(const recordset::RowStore& rows, std::size_t row) const;
    std::string IdentityOf(const MemoryRecordset& row) const;

    OpenConnectionPtr connection_;
    EditableQuery source_;
    recordset::FieldsPtr fields_;
    int columns_;  ///< without the flag, which follows them
    bool read_ = false;
    std::vector<std::string> added_;  ///< identities, until Read
    RowValues before_;                ///< the row that is being changed, as it was
};

}  // namespace kpTables::engines::odbc
