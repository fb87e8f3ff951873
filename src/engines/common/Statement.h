// A statement as an engine has prepared it.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "engines/common/RowWriter.h"
#include "kpTables/Connection.h"
#include "recordset/RowStore.h"
#include "sql/Translation.h"
#include "sql/Tree.h"

namespace kpTables::engines {

/// A prepared statement. shown is the text for error messages, as the caller sent it.
class Statement {
public:
    Statement() = default;
    virtual ~Statement() = default;
    Statement(const Statement&) = delete;
    Statement& operator=(const Statement&) = delete;

    /// Gives every parameter its value: BindLiterals with the engine's own sink.
    virtual void Bind(const std::vector<sql::Parameter>& parameters, const std::vector<sql::LiteralValue>& literals,
                      std::string_view shown) = 0;
    /// The query has one row at most, so that it need not be read row by row.
    virtual void ExpectOneRow() noexcept {}
    /// All rows of the bound query. A field whose type is Empty gets the type of its first value that is not Null.
    virtual std::unique_ptr<recordset::RowStore> ReadRows(recordset::FieldsPtr fields, std::string_view shown) = 0;
    /// Runs the bound statement, which returns no rows; the number of rows changed.
    virtual std::int64_t Run(std::string_view shown) = 0;
    /// Whether the schema of its last run differs from the one it was prepared for, so that the translation may be
    /// outdated. Returns true once.
    virtual bool TakeSchemaChange() noexcept = 0;
};

/// A statement with its translation.
struct CachedStatement {
    sql::Translation translation;
    std::unique_ptr<Statement> prepared;
    recordset::FieldsPtr fields;        ///< of a query; with a writer, followed by the row id and perhaps the version
    recordset::FieldsPtr read;          ///< them, and behind them those that only the client's order reads
    int hidden = 0;                     ///< how many of them are not the caller's
    std::shared_ptr<RowWriter> writer;  ///< of a query whose rows can be edited
    std::optional<sql::CellLayout> cells = {};  ///< of a TRANSFORM that is put together from its cells
};
using CachedStatementPtr = std::shared_ptr<CachedStatement>;

/// A statement with the text and the literals of the request.
struct BoundQuery {
    CachedStatementPtr statement;
    std::string text;
    std::vector<sql::LiteralValue> literals;
    SourceKind kind = SourceKind::Text;
    sql::Dialect dialect = sql::Dialect::Jet;
};

}  // namespace kpTables::engines
