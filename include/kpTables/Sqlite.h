// The embedded engine: a book in one SQLite file.
#pragma once

#include <chrono>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "kpTables/Connection.h"

namespace kpTables {

/// A table of a book as a host sees it.
struct TableInfo {
    struct Column {
        std::string name;
        VarType type = VarType::Empty;
        Variant defaultValue;   ///< Null when the column has none
        bool required = false;  ///< a key or NOT NULL column that the engine does not fill by itself
        bool counter = false;   ///< the engine assigns the value when none is given
    };
    std::string name;
    std::vector<Column> columns;
};

struct SqliteOptions {
    bool readOnly = false;
    /// How long a statement waits for another program's lock before it fails.
    std::chrono::milliseconds busyTimeout{5000};
};

/// Adds rows to some columns of one table without keeping them, for as many as an import has.
class RowAppender : public Object {
public:
    /// Writes a row. values: one for each column, of its type or Null (error 13), or Missing where the engine fills it.
    /// Outside a transaction of the host every row is one of its own.
    virtual void Append(const std::vector<Variant>& values) = 0;
};

/// Two columns of the table Header have a name in each dialect: Table and Index in Jet's, TableName and ColIndex in SQL
/// Server's, where the others are reserved. CTables::Header is told by its argument isSQL which names a book has.
enum class HeaderDialect { Jet, SqlServer };

/// An open book. Runs the texts of both dialects as they stand. One thread at a time.
class SqliteConnection : public Connection {
public:
    using Connection::Open;
    /// Opens the book at path. A DatabaseError says what is wrong: no such file, a directory, no book, not readable, in
    /// use.
    static std::shared_ptr<SqliteConnection> Open(const std::string& path, const SqliteOptions& options = {});
    /// Makes a new book file with every table of the schema, all or nothing. An existing file is refused and left as it
    /// is.
    static std::shared_ptr<SqliteConnection> Create(const std::string& path, const SqliteOptions& options = {},
                                                    HeaderDialect dialect = HeaderDialect::Jet);
    /// A book in memory with every table of the schema.
    static std::shared_ptr<SqliteConnection> CreateInMemory(HeaderDialect dialect = HeaderDialect::Jet);

    /// All tables of the book, in the schema's order.
    virtual std::vector<TableInfo> Tables() = 0;
    /// Names without regard to case, each once; error 3265 for an unknown column.
    virtual std::unique_ptr<RowAppender> AppendTo(std::string_view table, const std::vector<std::string>& columns) = 0;
    /// Rows that the last Execute of an Insert, Update or Delete touched.
    virtual std::int64_t RecordsAffected() const = 0;
    virtual const std::string& Path() const = 0;
};

}  // namespace kpTables
