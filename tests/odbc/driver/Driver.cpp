// The functions that the driver manager calls.
#include <algorithm>
#include <cmath>
#include <cstring>
#include <map>

#include "State.h"
#include "kpTables/Convert.h"
#include "kpTables/Error.h"
#include "kpTables/MemoryRecordset.h"

namespace td = kpTables::testdriver;
using kpTables::Currency;
using kpTables::FieldInfo;
using kpTables::MemoryRecordset;
using kpTables::TableInfo;
using kpTables::Variant;
using kpTables::VarType;

namespace {

td::Connection& ConnectionOf(SQLHANDLE handle) { return *static_cast<td::Connection*>(handle); }
td::Statement& StatementOf(SQLHANDLE handle) { return *static_cast<td::Statement*>(handle); }

template <class Work>
SQLRETURN Guarded(td::Diagnosis& diagnosis, Work work) {
    try {
        return work();
    } catch (const std::exception& error) {
        diagnosis = td::DiagnosisOf(error);
        return SQL_ERROR;
    }
}

/// Puts a text into a buffer of bytes, zero-terminated; length gets its whole size in bytes.
SQLRETURN PutText(const std::u16string& text, SQLPOINTER buffer, SQLSMALLINT bytes, SQLSMALLINT* length) {
    if (length) *length = static_cast<SQLSMALLINT>(text.size() * sizeof(SQLWCHAR));
    if (!buffer || bytes < static_cast<SQLSMALLINT>(sizeof(SQLWCHAR))) return SQL_SUCCESS;
    const std::size_t units = std::min(text.size(), static_cast<std::size_t>(bytes) / sizeof(SQLWCHAR) - 1);
    auto* const to = static_cast<SQLWCHAR*>(buffer);
    std::copy_n(text.begin(), units, to);
    to[units] = 0;
    return units < text.size() ? SQL_SUCCESS_WITH_INFO : SQL_SUCCESS;
}

struct SqlType {
    SQLSMALLINT type;
    SQLULEN size;
    SQLSMALLINT digits;
};

SqlType TypeOf(VarType type) {
    switch (type) {
        case VarType::Boolean:
            return {SQL_BIT, 1, 0};
        case VarType::Integer:
            return {SQL_SMALLINT, 5, 0};
        case VarType::Long:
            return {SQL_INTEGER, 10, 0};
        case VarType::Double:
            return {SQL_DOUBLE, 15, 0};
        case VarType::Currency:
            return {SQL_NUMERIC, 19, 4};
        case VarType::Date:
            return {SQL_TYPE_TIMESTAMP, 19, 0};
        default:
            return {SQL_WVARCHAR, 255, 0};
    }
}

std::map<std::string, std::string> AttributesOf(const std::string& connection) {
    std::map<std::string, std::string> attributes;
    for (std::size_t at = 0; at < connection.size();) {
        const auto end = std::min(connection.find(';', at), connection.size());
        const auto equals = connection.find('=', at);
        if (equals < end) {
            std::string value = connection.substr(equals + 1, end - equals - 1);
            if (value.starts_with('{') && value.ends_with('}')) value = value.substr(1, value.size() - 2);
            attributes[connection.substr(at, equals - at)] = value;
        }
        at = end + 1;
    }
    return attributes;
}

/// The next piece of a text.
SQLRETURN GivePiece(td::Statement& statement, SQLPOINTER value, SQLLEN room, SQLLEN* length) {
    const std::size_t left = statement.pieces.size() - statement.given;
    if (left == 0 && statement.given > 0) return SQL_NO_DATA;
    const std::size_t units = std::min(left, static_cast<std::size_t>(room) / sizeof(SQLWCHAR) - 1);
    auto* const to = static_cast<SQLWCHAR*>(value);
    std::copy_n(statement.pieces.begin() + static_cast<std::ptrdiff_t>(statement.given), units, to);
    to[units] = 0;
    *length = static_cast<SQLLEN>(left * sizeof(SQLWCHAR));
    statement.given += units;
    if (units == left) return SQL_SUCCESS;
    statement.diagnosis = {"01004", "more follows"};
    return SQL_SUCCESS_WITH_INFO;
}

SQLRETURN GiveCell(const Variant& cell, SQLSMALLINT type, SQLPOINTER value, SQLLEN room, SQLLEN* length) {
    switch (type) {
        case SQL_C_SLONG:
            *static_cast<SQLINTEGER*>(value) = CLng(cell);
            return SQL_SUCCESS;
        case SQL_C_DOUBLE:
            *static_cast<double*>(value) = CDbl(cell);
            return SQL_SUCCESS;
        case SQL_C_BIT:
            *static_cast<unsigned char*>(value) = CBool(cell) ? 1 : 0;
            return SQL_SUCCESS;
        case SQL_C_CHAR: {
            const std::string digits = CCur(cell).ToText();
            if (digits.size() >= static_cast<std::size_t>(room)) return SQL_ERROR;
            std::memcpy(value, digits.c_str(), digits.size() + 1);
            *length = static_cast<SQLLEN>(digits.size());
            return SQL_SUCCESS;
        }
        case SQL_C_TYPE_TIMESTAMP: {
            const auto parts = CDate(cell).ToParts();
            *static_cast<SQL_TIMESTAMP_STRUCT*>(value) = {static_cast<SQLSMALLINT>(parts.year),
                                                          static_cast<SQLUSMALLINT>(parts.month),
                                                          static_cast<SQLUSMALLINT>(parts.day),
                                                          static_cast<SQLUSMALLINT>(parts.hour),
                                                          static_cast<SQLUSMALLINT>(parts.minute),
                                                          static_cast<SQLUSMALLINT>(parts.second),
                                                          0};
            return SQL_SUCCESS;
        }
        default:
            return SQL_ERROR;
    }
}

/// An answer of the catalog with so many columns, of which the row gives those that are asked for.
using CatalogRow = std::map<int, Variant>;
void AnswerCatalog(td::Statement& statement, int columns, const std::vector<int>& numbers,
                   const std::vector<CatalogRow>& rows) {
    std::vector<FieldInfo> fields;
    for (int i = 0; i < columns; ++i) {
        const bool number = std::find(numbers.begin(), numbers.end(), i) != numbers.end();
        fields.push_back({"c" + std::to_string(i), number ? VarType::Long : VarType::String});
    }
    auto answer = std::make_shared<MemoryRecordset>(std::move(fields));
    for (const CatalogRow& row : rows) {
        answer->AddNew();
        for (const auto& [column, value] : row) answer->SetValue(column, value);
        answer->Update();
    }
    if (!rows.empty()) answer->MoveFirst();
    statement.results.clear();
    statement.results.push_back({std::move(answer)});
    statement.described = statement.onRow = false;
}

std::vector<TableInfo> TablesLike(td::Statement& statement, const SQLWCHAR* name, SQLSMALLINT length) {
    std::vector<TableInfo> found;
    if (!statement.connection.book) return found;
    const std::string pattern = name ? td::FromUnits(name, length) : "%";
    for (TableInfo& table : statement.connection.book->Tables()) {
        if (pattern == "%" || strcasecmp(pattern.c_str(), table.name.c_str()) == 0) found.push_back(std::move(table));
    }
    return found;
}

}  // namespace

extern "C" {

SQLRETURN SQL_API SQLAllocHandle(SQLSMALLINT type, SQLHANDLE parent, SQLHANDLE* handle) {
    if (type == SQL_HANDLE_ENV) *handle = new td::Environment;
    if (type == SQL_HANDLE_DBC) *handle = new td::Connection;
    if (type == SQL_HANDLE_STMT) *handle = new td::Statement(ConnectionOf(parent));
    return type == SQL_HANDLE_DESC ? SQL_ERROR : SQL_SUCCESS;
}

SQLRETURN SQL_API SQLFreeHandle(SQLSMALLINT type, SQLHANDLE handle) {
    if (type == SQL_HANDLE_ENV) delete static_cast<td::Environment*>(handle);
    if (type == SQL_HANDLE_DBC) delete &ConnectionOf(handle);
    if (type == SQL_HANDLE_STMT) delete &StatementOf(handle);
    return SQL_SUCCESS;
}

SQLRETURN SQL_API SQLSetEnvAttr(SQLHENV, SQLINTEGER, SQLPOINTER, SQLINTEGER) { return SQL_SUCCESS; }

SQLRETURN SQL_API SQLDriverConnectW(SQLHDBC handle, SQLHWND, SQLWCHAR* text, SQLSMALLINT length, SQLWCHAR*, SQLSMALLINT,
                                    SQLSMALLINT*, SQLUSMALLINT) {
    td::Connection& connection = ConnectionOf(handle);
    return Guarded(connection.diagnosis, [&] {
        auto attributes = AttributesOf(td::FromUnits(text, length));
        connection.serverName = attributes["Name"];
        connection.isFragile = attributes.contains("Fragile");
        if (attributes.contains("Needs") && attributes["PWD"] != attributes["Needs"]) {
            connection.diagnosis = {"28000", "the password is wrong"};
            return SQL_ERROR;
        }
        if (attributes.contains("Database")) connection.book = kpTables::OpenBook(attributes["Database"]);
        return SQL_SUCCESS;
    });
}

SQLRETURN SQL_API SQLDisconnect(SQLHDBC handle) {
    ConnectionOf(handle).book.reset();
    return SQL_SUCCESS;
}

SQLRETURN SQL_API SQLSetConnectAttrW(SQLHDBC handle, SQLINTEGER attribute, SQLPOINTER value, SQLINTEGER) {
    td::Connection& connection = ConnectionOf(handle);
    if (attribute != SQL_ATTR_AUTOCOMMIT) return SQL_SUCCESS;
    const bool on = reinterpret_cast<std::uintptr_t>(value) == SQL_AUTOCOMMIT_ON;
    return Guarded(connection.diagnosis, [&] {
        if (on != connection.autoCommit) on ? connection.End(true) : connection.Begin();
        connection.autoCommit = on;
        return SQL_SUCCESS;
    });
}

SQLRETURN SQL_API SQLEndTran(SQLSMALLINT, SQLHANDLE handle, SQLSMALLINT how) {
    td::Connection& connection = ConnectionOf(handle);
    if (connection.autoCommit) return SQL_SUCCESS;
    return Guarded(connection.diagnosis, [&] {
        connection.End(how == SQL_COMMIT);
        connection.Begin();
        return SQL_SUCCESS;
    });
}

SQLRETURN SQL_API SQLGetInfoW(SQLHDBC handle, SQLUSMALLINT what, SQLPOINTER value, SQLSMALLINT room,
                              SQLSMALLINT* length) {
    switch (what) {
        case SQL_DBMS_NAME:
            return PutText(td::ToUnits(ConnectionOf(handle).serverName), value, room, length);
        case SQL_IDENTIFIER_QUOTE_CHAR:
            return PutText(ConnectionOf(handle).IsServer() ? u"\"" : u"`", value, room, length);
        case SQL_DRIVER_ODBC_VER:
            return PutText(u"03.00", value, room, length);
        case SQL_TXN_ISOLATION_OPTION:
            *static_cast<SQLUINTEGER*>(value) = 0;
            return SQL_SUCCESS;
        case SQL_IDENTIFIER_CASE:
            *static_cast<SQLUSMALLINT*>(value) = SQL_IC_MIXED;
            return SQL_SUCCESS;
        case SQL_CURSOR_COMMIT_BEHAVIOR:
        case SQL_CURSOR_ROLLBACK_BEHAVIOR:
            *static_cast<SQLUSMALLINT*>(value) = SQL_CB_CLOSE;
            return SQL_SUCCESS;
        default:
            return PutText(u"", value, room, length);
    }
}

SQLRETURN SQL_API SQLGetDiagRecW(SQLSMALLINT type, SQLHANDLE handle, SQLSMALLINT record, SQLWCHAR* state,
                                 SQLINTEGER* native, SQLWCHAR* message, SQLSMALLINT room, SQLSMALLINT* length) {
    if (record != 1) return SQL_NO_DATA;
    const td::Diagnosis& diagnosis = type == SQL_HANDLE_STMT  ? StatementOf(handle).diagnosis
                                     : type == SQL_HANDLE_DBC ? ConnectionOf(handle).diagnosis
                                                              : static_cast<td::Environment*>(handle)->diagnosis;
    if (diagnosis.state.empty()) return SQL_NO_DATA;
    PutText(td::ToUnits(diagnosis.state), state, (SQL_SQLSTATE_SIZE + 1) * sizeof(SQLWCHAR), nullptr);
    if (native) *native = 0;
    SQLSMALLINT bytes = 0;
    const SQLRETURN code = PutText(td::ToUnits("[test]" + diagnosis.message), message,
                                   static_cast<SQLSMALLINT>(room * sizeof(SQLWCHAR)), &bytes);
    if (length) *length = static_cast<SQLSMALLINT>(bytes / static_cast<SQLSMALLINT>(sizeof(SQLWCHAR)));
    return code;
}

SQLRETURN SQL_API SQLGetDiagFieldW(SQLSMALLINT, SQLHANDLE, SQLSMALLINT, SQLSMALLINT, SQLPOINTER, SQLSMALLINT,
                                   SQLSMALLINT*) {
    return SQL_NO_DATA;
}

SQLRETURN SQL_API SQLSetStmtAttrW(SQLHSTMT, SQLINTEGER, SQLPOINTER, SQLINTEGER) { return SQL_SUCCESS; }

SQLRETURN SQL_API SQLExecDirectW(SQLHSTMT handle, SQLWCHAR* text, SQLINTEGER length) {
    td::Statement& statement = StatementOf(handle);
    const std::string bytes = td::FromUnits(text, length);
    td::WriteDown(text, td::ToUnits(bytes).size());
    return Guarded(statement.diagnosis, [&] {
        statement.Run(bytes);
        return SQL_SUCCESS;
    });
}

SQLRETURN SQL_API SQLPrepareW(SQLHSTMT handle, SQLWCHAR* text, SQLINTEGER length) {
    td::Statement& statement = StatementOf(handle);
    statement.prepared = td::FromUnits(text, length);
    td::WriteDown(text, td::ToUnits(statement.prepared).size());
    statement.results.clear();
    statement.described = false;
    return SQL_SUCCESS;
}

SQLRETURN SQL_API SQLExecute(SQLHSTMT handle) {
    td::Statement& statement = StatementOf(handle);
    return Guarded(statement.diagnosis, [&] {
        statement.Run(statement.prepared);
        return SQL_SUCCESS;
    });
}

SQLRETURN SQL_API SQLBindParameter(SQLHSTMT handle, SQLUSMALLINT number, SQLSMALLINT, SQLSMALLINT valueType,
                                   SQLSMALLINT type, SQLULEN, SQLSMALLINT, SQLPOINTER data, SQLLEN, SQLLEN* length) {
    td::Statement& statement = StatementOf(handle);
    if (statement.markers.size() < number) statement.markers.resize(number);
    statement.markers[number - 1u] = {valueType, type, data, length};
    return SQL_SUCCESS;
}

SQLRETURN SQL_API SQLNumResultCols(SQLHSTMT handle, SQLSMALLINT* columns) {
    td::Statement& statement = StatementOf(handle);
    return Guarded(statement.diagnosis, [&] {
        *columns = static_cast<SQLSMALLINT>(statement.Fields().size());
        return SQL_SUCCESS;
    });
}

SQLRETURN SQL_API SQLDescribeColW(SQLHSTMT handle, SQLUSMALLINT number, SQLWCHAR* name, SQLSMALLINT room,
                                  SQLSMALLINT* length, SQLSMALLINT* type, SQLULEN* size, SQLSMALLINT* digits,
                                  SQLSMALLINT* nullable) {
    const FieldInfo& field = StatementOf(handle).Fields()[number - 1u];
    const SqlType described = TypeOf(field.type);
    if (type) *type = described.type;
    if (size) *size = described.size;
    if (digits) *digits = described.digits;
    if (nullable) *nullable = SQL_NULLABLE;
    SQLSMALLINT bytes = 0;
    const SQLRETURN code =
        PutText(td::ToUnits(field.name), name, static_cast<SQLSMALLINT>(room * sizeof(SQLWCHAR)), &bytes);
    if (length) *length = static_cast<SQLSMALLINT>(bytes / static_cast<SQLSMALLINT>(sizeof(SQLWCHAR)));
    return code;
}

SQLRETURN SQL_API SQLColAttributeW(SQLHSTMT, SQLUSMALLINT, SQLUSMALLINT, SQLPOINTER, SQLSMALLINT, SQLSMALLINT*,
                                   SQLLEN* number) {
    if (number) *number = SQL_FALSE;
    return SQL_SUCCESS;
}

SQLRETURN SQL_API SQLRowCount(SQLHSTMT handle, SQLLEN* rows) {
    const td::Statement& statement = StatementOf(handle);
    *rows = statement.results.empty() ? -1 : statement.results.front().affected;
    return SQL_SUCCESS;
}

SQLRETURN SQL_API SQLMoreResults(SQLHSTMT handle) {
    td::Statement& statement = StatementOf(handle);
    if (statement.results.size() < 2) return SQL_NO_DATA;
    statement.results.pop_front();
    statement.described = statement.onRow = false;
    return SQL_SUCCESS;
}

SQLRETURN SQL_API SQLFetch(SQLHSTMT handle) {
    td::Statement& statement = StatementOf(handle);
    kpTables::Recordset* const rows = statement.Rows();
    return Guarded(statement.diagnosis, [&] {
        if (!rows) throw std::runtime_error("there are no rows");
        if (statement.onRow) rows->MoveNext();
        statement.onRow = true;
        statement.piecesOf = -1;
        return rows->Eof() ? SQL_NO_DATA : SQL_SUCCESS;
    });
}

SQLRETURN SQL_API SQLGetData(SQLHSTMT handle, SQLUSMALLINT number, SQLSMALLINT type, SQLPOINTER value, SQLLEN room,
                             SQLLEN* length) {
    td::Statement& statement = StatementOf(handle);
    return Guarded(statement.diagnosis, [&]() -> SQLRETURN {
        if (type == SQL_C_WCHAR && statement.piecesOf == number) return GivePiece(statement, value, room, length);
        const Variant cell = statement.Rows()->GetValue(number - 1);
        if (cell.IsNull()) {
            *length = SQL_NULL_DATA;
            return SQL_SUCCESS;
        }
        if (type != SQL_C_WCHAR) return GiveCell(cell, type, value, room, length);
        statement.pieces = td::ToUnits(kpTables::Text(cell));
        statement.given = 0;
        statement.piecesOf = number;
        return GivePiece(statement, value, room, length);
    });
}

SQLRETURN SQL_API SQLFreeStmt(SQLHSTMT handle, SQLUSMALLINT option) {
    if (option == SQL_DROP) return SQLFreeHandle(SQL_HANDLE_STMT, handle);
    td::Statement& statement = StatementOf(handle);
    if (option == SQL_RESET_PARAMS) statement.markers.clear();
    if (option == SQL_CLOSE) statement.results.clear();
    return SQL_SUCCESS;
}

SQLRETURN SQL_API SQLCancel(SQLHSTMT) { return SQL_SUCCESS; }

SQLRETURN SQL_API SQLTablesW(SQLHSTMT handle, SQLWCHAR*, SQLSMALLINT, SQLWCHAR*, SQLSMALLINT, SQLWCHAR* name,
                             SQLSMALLINT length, SQLWCHAR*, SQLSMALLINT) {
    td::Statement& statement = StatementOf(handle);
    return Guarded(statement.diagnosis, [&] {
        std::vector<CatalogRow> rows;
        for (const TableInfo& table : TablesLike(statement, name, length))
            rows.push_back({{2, table.name}, {3, "TABLE"}});
        AnswerCatalog(statement, 5, {}, rows);
        return SQL_SUCCESS;
    });
}

SQLRETURN SQL_API SQLColumnsW(SQLHSTMT handle, SQLWCHAR*, SQLSMALLINT, SQLWCHAR*, SQLSMALLINT, SQLWCHAR* name,
                              SQLSMALLINT length, SQLWCHAR*, SQLSMALLINT) {
    td::Statement& statement = StatementOf(handle);
    return Guarded(statement.diagnosis, [&] {
        std::vector<CatalogRow> rows;
        for (const TableInfo& table : TablesLike(statement, name, length)) {
            for (const TableInfo::Column& column : table.columns) {
                const SqlType type = TypeOf(column.type);
                const bool server = statement.connection.IsServer();
                CatalogRow row{{2, table.name},
                               {3, column.name},
                               {4, std::int32_t{type.type}},
                               {5, !column.counter ? "other"
                                   : server        ? "int identity"
                                                   : "COUNTER"},
                               {6, static_cast<std::int32_t>(type.size)},
                               {8, std::int32_t{type.digits}},
                               {10, std::int32_t{column.required || column.key ? SQL_NO_NULLS : SQL_NULLABLE}}};
                if (!column.defaultValue.IsNull()) {
                    const std::string written = kpTables::Text(column.defaultValue);
                    row[12] = column.type == VarType::String    ? "'" + written + "'"
                              : column.type == VarType::Boolean ? std::string("((0))")
                                                                : "((" + written + "))";
                }
                rows.push_back(std::move(row));
            }
        }
        AnswerCatalog(statement, 18, {4, 6, 8, 10}, rows);
        return SQL_SUCCESS;
    });
}

SQLRETURN SQL_API SQLPrimaryKeysW(SQLHSTMT handle, SQLWCHAR*, SQLSMALLINT, SQLWCHAR*, SQLSMALLINT, SQLWCHAR* name,
                                  SQLSMALLINT length) {
    td::Statement& statement = StatementOf(handle);
    return Guarded(statement.diagnosis, [&] {
        std::vector<CatalogRow> rows;
        for (const TableInfo& table : TablesLike(statement, name, length)) {
            for (const TableInfo::Column& column : table.columns) {
                if (column.key) rows.push_back({{3, column.name}, {4, static_cast<std::int32_t>(rows.size() + 1)}});
            }
        }
        AnswerCatalog(statement, 6, {4}, rows);
        return SQL_SUCCESS;
    });
}

SQLRETURN SQL_API SQLStatisticsW(SQLHSTMT handle, SQLWCHAR*, SQLSMALLINT, SQLWCHAR*, SQLSMALLINT, SQLWCHAR*,
                                 SQLSMALLINT, SQLUSMALLINT, SQLUSMALLINT) {
    AnswerCatalog(StatementOf(handle), 13, {3, 6, 7}, {});
    return SQL_SUCCESS;
}

}  // extern "C"
