// Adds and changes the rows of one table, which its key or, without one, all of its values tell apart.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "engines/common/ColumnSet.h"
#include "engines/common/RowWriter.h"
#include "engines/odbc/Query.h"
#include "engines/odbc/ServerTables.h"
#include "engines/odbc/Session.h"

namespace kpTables::engines::odbc {

/// The values of a row, one for each of the writer's columns.
using RowValues = std::vector<Variant>;

class TableWriter {
public:
    /// columns: those of the table that are read and written, as results describe them.
    TableWriter(Session& session, const ServerTable& table, const std::vector<ColumnDescription>& columns);

    const std::vector<ServerColumn>& Columns() const noexcept { return columns_; }
    /// The columns that tell a row: the key, else all.
    const std::vector<int>& Identity() const noexcept { return key_.empty() ? all_ : key_; }
    /// The table as a statement names it.
    const std::string& Name() const noexcept { return name_; }

    /// Adds a row; its counter, if the server has given it one.
    std::optional<std::int32_t> Insert(const ColumnSet& set, WrittenValues values);
    /// Changes a row that was read as before. isOwn: it was written here since then, so that the server may hold it
    /// rounded. An error, and nothing changed, when somebody else has changed or deleted it, or when another row is
    /// equal.
    void Change(const ColumnSet& set, WrittenValues values, const RowValues& before, bool isOwn);
    std::int64_t CountRows();

    /// The counter's place among the columns.
    std::optional<int> CounterColumn() const noexcept { return counter_; }

private:
    std::vector<int> With(bool reals) const;
    std::string Condition(const std::vector<int>& columns, const RowValues& before, Parameters& parameters) const;
    std::string Assignments(const ColumnSet& set, WrittenValues values, Parameters& parameters) const;
    std::int64_t CountWhere(const std::vector<int>& columns, const RowValues& before);
    std::int64_t ChangeWhere(const ColumnSet& set, WrittenValues values, const std::vector<int>& columns,
                             const RowValues& before);
    void ChangeIfUnchanged(const ColumnSet& set, WrittenValues values, const RowValues& before);
    void RefuseCounterValue(const ColumnSet& set) const;
    std::optional<std::int32_t> ReadCounter(Query& insert, const std::string& text);
    Query& Prepared(const std::string& text);

    Session& session_;
    std::string name_;
    std::vector<ServerColumn> columns_;
    std::vector<int> key_;  ///< places of the key's columns; empty when one of them is not read
    std::vector<int> all_;
    std::optional<int> counter_;
    bool hasCounter_;  ///< perhaps in a column that is not read
    std::unordered_map<std::string, std::unique_ptr<Query>> prepared_;
};

}  // namespace kpTables::engines::odbc
