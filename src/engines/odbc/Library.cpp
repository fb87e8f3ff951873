#include "engines/odbc/Library.h"

#include <cstdint>
#include <string>

#include "kpTables/Error.h"
#include "kpTables/text/Message.h"
#include "platform/SharedLibrary.h"

namespace kpTables::engines::odbc {

namespace {

[[noreturn]] void RefuseManager(const std::string& reason) {
    throw DatabaseError(static_cast<std::int32_t>(DatabaseErrorNumber::Failure),
                        Message("A book behind ODBC needs the driver manager unixODBC (Debian's package libodbc2) and "
                                "the server's driver: {1}",
                                reason));
}

#ifdef _WIN32
constexpr const char* kFileName = "odbc32.dll";
#else
constexpr const char* kFileName = "libodbc.so.2";
#endif

Library LoadManager() {
    platform::SharedLibrary file(kFileName);
    Library library{};
    file.Find(library.AllocateHandle, "SQLAllocHandle");
    file.Find(library.FreeHandle, "SQLFreeHandle");
    file.Find(library.SetEnvironmentAttribute, "SQLSetEnvAttr");
    file.Find(library.DriverConnect, "SQLDriverConnectW");
    file.Find(library.Disconnect, "SQLDisconnect");
    file.Find(library.SetConnectionAttribute, "SQLSetConnectAttrW");
    file.Find(library.GetInfo, "SQLGetInfoW");
    file.Find(library.GetDiagnostics, "SQLGetDiagRecW");
    file.Find(library.EndTransaction, "SQLEndTran");
    file.Find(library.SetStatementAttribute, "SQLSetStmtAttrW");
    file.Find(library.ExecuteDirect, "SQLExecDirectW");
    file.Find(library.Prepare, "SQLPrepareW");
    file.Find(library.Execute, "SQLExecute");
    file.Find(library.BindParameter, "SQLBindParameter");
    file.Find(library.CountColumns, "SQLNumResultCols");
    file.Find(library.DescribeColumn, "SQLDescribeColW");
    file.Find(library.ColumnAttribute, "SQLColAttributeW");
    file.Find(library.CountAffectedRows, "SQLRowCount");
    file.Find(library.Fetch, "SQLFetch");
    file.Find(library.GetData, "SQLGetData");
    file.Find(library.MoreResults, "SQLMoreResults");
    file.Find(library.FreeStatement, "SQLFreeStmt");
    file.Find(library.Cancel, "SQLCancel");
    file.Find(library.Tables, "SQLTablesW");
    file.Find(library.Columns, "SQLColumnsW");
    file.Find(library.PrimaryKeys, "SQLPrimaryKeysW");
    file.Find(library.Statistics, "SQLStatisticsW");
    if (!file.Fault().empty()) RefuseManager(file.Fault());
    return library;
}

}  // namespace

const Library& LoadedLibrary() {
    static const Library library = LoadManager();
    return library;
}

}  // namespace kpTables::engines::odbc
