// The state behind the test's own ODBC driver, whose database is a book in a file: with it, texts of both dialects run
// behind a real driver manager. docs/odbc.md says what it cannot show.
#pragma once

#include <sql.h>
#include <sqlext.h>

#include <deque>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "kpTables/Book.h"

namespace kpTables::testdriver {

/// What SQLGetDiagRec answers about a handle.
struct Diagnosis {
    std::string state;
    std::string message;
};

struct Environment {
    Diagnosis diagnosis;
};

struct Connection {
    Diagnosis diagnosis;
    BookPtr book;  ///< null: texts are written down and nothing is answered
    std::string serverName;
    bool isFragile = false;  ///< a failed statement rolls back unnoticed
    bool autoCommit = true;
    bool hasTransaction = false;
    std::vector<std::string> savepoints;

    bool IsServer() const { return serverName == "Microsoft SQL Server"; }
    void Begin();
    void End(bool commit);
    void RollBackTo(const std::string& savepoint);
};

struct Statement {
    explicit Statement(Connection& theConnection) : connection(theConnection) {}

    struct Marker {
        SQLSMALLINT valueType;
        SQLSMALLINT type;
        SQLPOINTER data;
        SQLLEN* length;
    };
    /// A result: rows, or the number of rows that a change touched.
    struct Result {
        RecordsetPtr rows;
        SQLLEN affected = -1;
    };

    void Run(std::string_view text);
    /// Null when there are no rows.
    Recordset* Rows() const { return results.empty() ? nullptr : results.front().rows.get(); }
    /// Of the result; before the text has run, as it would have them.
    const std::vector<FieldInfo>& Fields();

    Connection& connection;
    Diagnosis diagnosis;
    std::string prepared;
    std::vector<Marker> markers;
    std::deque<Result> results;
    std::vector<FieldInfo> fields;
    bool described = false;
    bool onRow = false;
    // The text that SQLGetData is handing out in pieces.
    int piecesOf = -1;
    std::u16string pieces;
    std::size_t given = 0;

private:
    void RunAll(std::string_view text);
    void RunOne(std::string_view text);
    NamedValues Values() const;
    bool RunForServer(std::string_view text);
};

/// Writes a text down in the file that KPTABLES_TEST_TEXTS names: its length in units, then the UTF-16 units.
void WriteDown(const SQLWCHAR* text, std::size_t units);

std::u16string ToUnits(std::string_view text);
std::string FromUnits(const SQLWCHAR* text, SQLINTEGER length);
Diagnosis DiagnosisOf(const std::exception& error);

}  // namespace kpTables::testdriver
