// One statement of a connection, and the rows that it answers with.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "engines/odbc/Library.h"
#include "engines/odbc/Parameters.h"
#include "engines/odbc/Session.h"
#include "kpTables/Currency.h"
#include "kpTables/Date.h"

namespace kpTables::engines::odbc {

/// A column of a result as the driver describes it.
struct ColumnDescription {
    std::string name;
    SQLSMALLINT type = SQL_UNKNOWN_TYPE;  ///< SQL_INTEGER, SQL_WVARCHAR, ...
    SQLULEN size = 0;                     ///< characters or digits
    SQLSMALLINT digits = 0;               ///< behind the point
    bool counter = false;                 ///< the server assigns its values
};

/// shown is the text for error messages, as the caller sent it.
class Query {
public:
    explicit Query(Session& session) : session_(session), statement_(SQL_HANDLE_STMT, session.Get()) {}

    /// Sends the text as it stands.
    void ExecuteDirect(std::string_view text, const Parameters& parameters, std::string_view shown);
    void Prepare(std::string_view text);
    /// Runs what was prepared; shown: the text that was prepared unless another is given.
    void Execute(const Parameters& parameters, std::string_view shown = {});

    // The catalog, whose answers are rows. Names are plain, patterns where said so.
    void ListTables(std::string_view pattern);
    void ListColumns(const std::string& catalog, const std::string& schema, std::string_view tablePattern);
    void ListPrimaryKeys(const std::string& catalog, const std::string& schema, const std::string& table);
    void ListUniqueIndexes(const std::string& catalog, const std::string& schema, const std::string& table);

    /// Of the present result; 0 when it has no rows.
    int Columns();
    ColumnDescription Describe(int column);
    /// Rows that a change touched; -1 where the driver does not say.
    std::int64_t AffectedRows();
    /// To the next result of the same text, if any.
    bool NextResult();
    /// To the next row; false behind the last.
    bool Fetch();
    /// Makes ready for another Execute.
    void CloseCursor() noexcept;

    // The cells of the row, each read once, in the order of the columns; nothing for Null.
    std::optional<std::int32_t> Whole(int column);
    std::optional<std::int64_t> WideWhole(int column);
    std::optional<double> Real(int column);
    std::optional<bool> Flag(int column);
    /// Decimals as digits, so that no amount passes through a double.
    std::optional<std::string> Digits(int column);
    /// To the nearest second. Error TypeMismatch for a year that a Date does not have.
    std::optional<Date> Moment(int column);
    /// Valid until the next cell is read.
    std::optional<std::string_view> Text(int column);

private:
    void Check(SQLRETURN code);
    [[noreturn]] void RaiseOfStatement();
    void Ran(SQLRETURN code);
    template <class Value>
    std::optional<Value> Cell(int column, SQLSMALLINT type);
    void BindAll(const Parameters& parameters);

    Session& session_;
    Handle statement_;
    std::string shown_;
    std::u16string units_;  ///< of the last text that was read
    std::string text_;
};

}  // namespace kpTables::engines::odbc
