// The tables of an open book.
#pragma once

#include <cstdint>
#include <list>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "kpTables/Book.h"
#include "sql/Catalog.h"

namespace kpTables::engines {

/// The field type of a column's type; Empty for Unknown and Null.
VarType FieldType(sql::Type type) noexcept;
/// A column as hosts see it; whether it has a default, is required or a key is for the engine to add.
TableInfo::Column DescriptionOf(const sql::CatalogColumn& column);

/// A database's description of its tables, read on demand and kept until the schema changes.
class Catalog : public sql::Catalog {
public:
    const sql::CatalogTable* Find(std::string_view table) const override;
    /// True when the schema has changed since it was read; it is then read again.
    bool Refresh();
    /// Makes the next Refresh read the schema again: after a rollback, its version may name another schema.
    void Forget() noexcept { version_ = kUnread; }

    /// With keys and defaults; without computed columns.
    virtual TableInfo Describe(std::string_view table) const = 0;
    /// Of all tables, in order of creation.
    virtual std::vector<std::string> TableNames() const = 0;
    /// The table's own column that is the row id; "" when there is none.
    virtual std::string RowIdColumn(std::string_view table) const = 0;
    /// The name by which a statement reads a table's row id; no column of the table has it.
    virtual std::string RowIdName(const sql::CatalogTable& table) const = 0;
    /// The name by which a statement reads what changes with every change of a row, a whole number; "" where there is
    /// no such thing.
    virtual std::string RowVersionName() const { return {}; }

private:
    virtual std::optional<sql::CatalogTable> ReadTable(std::string_view name) const = 0;
    /// A number that changes with the schema.
    virtual std::int64_t ReadVersion() = 0;
    /// The schema has changed: what an engine keeps of it beside the tables is outdated too.
    virtual void DropKept() {}

    mutable std::list<sql::CatalogTable> known_;
    static constexpr std::int64_t kUnread = -1;
    std::int64_t version_ = kUnread;
};

}  // namespace kpTables::engines
