// The tables of an open book, read from the server's catalog.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "engines/common/Catalog.h"
#include "engines/postgres/Database.h"
#include "sql/Translation.h"

namespace kpTables::engines::postgres {

/// Reads the columns of all tables at once, at the first question about one; what waits for locks, when it is needed.
class ServerCatalog final : public engines::Catalog {
public:
    explicit ServerCatalog(Database& database) noexcept : database_(database) {}

    TableInfo Describe(std::string_view table) const override;
    std::vector<std::string> TableNames() const override;
    /// A counter, or a whole number as the only key.
    std::string RowIdColumn(std::string_view table) const override;
    std::string RowIdName(const sql::CatalogTable& table) const override { return table.rowId; }
    /// The transaction that wrote the row.
    std::string RowVersionName() const override { return "xmin"; }
    /// The column's default as the change converts it, in the server's words; "" for none.
    std::string ConvertedDefault(const sql::ColumnChange& change) const;
    /// Whether the database had the extension kptables, in this program's version, at the last Refresh.
    bool HasExtension() const noexcept { return hasExtension_; }

private:
    struct Column {
        std::string name;
        std::string type;
        std::string expression;  ///< its default, or what computes it, once read; "" for none
        bool required = false;
        bool identity = false;
        bool computed = false;
        bool key = false;
        bool counted = false;
    };
    struct Table {
        std::string name;
        std::vector<Column> columns;
        bool hasExpressions = false;  ///< they were read
    };
    /// A default, and the type of the column that has it.
    struct Default {
        std::string expression;
        VarType type = VarType::Empty;
        Variant value = {};
    };

    std::optional<sql::CatalogTable> ReadTable(std::string_view name) const override;
    std::int64_t ReadVersion() override;
    void DropKept() override;

    void ReadTables() const;
    /// Null when there is none of that name, as the server spells it, among those that were read.
    const Table* Kept(std::string_view name) const;
    /// Whether a default is to be worked out by the server.
    static bool HasDefault(const Column& column) { return !column.computed && !column.expression.empty(); }
    /// Of one of the tables that were read, or of all for "".
    void ReadExpressions(const std::string& name) const;
    /// Works out what is not known of the expressions that were read.
    void ReadDefaults() const;
    static const Default* KnownDefault(const std::vector<Default>& among, const std::string& expression, VarType type);
    void WorkOut(std::vector<Default>& defaults) const;
    Variant DefaultOf(const std::string& expression, VarType type) const;

    Database& database_;
    mutable std::optional<std::vector<Table>> tables_;
    mutable std::vector<Default> defaults_;
    bool hasExtension_ = false;
};

}  // namespace kpTables::engines::postgres
