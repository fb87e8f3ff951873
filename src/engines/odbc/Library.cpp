#include "engines/odbc/Library.h"

#ifndef _WIN32
#include <dlfcn.h>
#endif

#include <cstdint>
#include <string>

#include "kpTables/Error.h"
#include "kpTables/text/Message.h"

namespace kpTables::engines::odbc {

namespace {

[[noreturn]] void RefuseManager(const std::string& reason) {
    throw DatabaseError(static_cast<std::int32_t>(DatabaseErrorNumber::Failure),
                        Message("A book behind ODBC needs the driver manager unixODBC (Debian's package libodbc2) and "
                                "the server's driver: {1}",
                                reason));
}

#ifdef _WIN32
HMODULE OpenManager() {
    const HMODULE library = LoadLibraryA("odbc32.dll");
    if (!library) RefuseManager("odbc32.dll");
    return library;
}
void* Symbol(HMODULE library, const char* name) { return reinterpret_cast<void*>(GetProcAddress(library, name)); }
#else
void* OpenManager() {
    void* const library = dlopen("libodbc.so.2", RTLD_NOW | RTLD_LOCAL);
    if (!library) RefuseManager(dlerror());
    return library;
}
void* Symbol(void* library, const char* name) { return dlsym(library, name); }
#endif

template <class Handle, class Function>
void FindInManager(Handle library, Function& function, const char* name) {
    const auto found = Symbol(library, name);
    if (!found) RefuseManager(Message("it has no function {1}", name));
    function = reinterpret_cast<Function>(found);
}

Library LoadManager() {
    const auto handle = OpenManager();
    Library library{};
    FindInManager(handle, library.AllocateHandle, "SQLAllocHandle");
    FindInManager(handle, library.FreeHandle, "SQLFreeHandle");
    FindInManager(handle, library.SetEnvironmentAttribute, "SQLSetEnvAttr");
    FindInManager(handle, library.DriverConnect, "SQLDriverConnectW");
    FindInManager(handle, library.Disconnect, "SQLDisconnect");
    FindInManager(handle, library.SetConnectionAttribute, "SQLSetConnectAttrW");
    FindInManager(handle, library.GetInfo, "SQLGetInfoW");
    FindInManager(handle, library.GetDiagnostics, "SQLGetDiagRecW");
    FindInManager(handle, library.EndTransaction, "SQLEndTran");
    FindInManager(handle, library.SetStatementAttribute, "SQLSetStmtAttrW");
    FindInManager(handle, library.ExecuteDirect, "SQLExecDirectW");
    FindInManager(handle, library.Prepare, "SQLPrepareW");
    FindInManager(handle, library.Execute, "SQLExecute");
    FindInManager(handle, library.BindParameter, "SQLBindParameter");
    FindInManager(handle, library.CountColumns, "SQLNumResultCols");
    FindInManager(handle, library.DescribeColumn, "SQLDescribeColW");
    FindInManager(handle, library.ColumnAttribute, "SQLColAttributeW");
    FindInManager(handle, library.CountAffectedRows, "SQLRowCount");
    FindInManager(handle, library.Fetch, "SQLFetch");
    FindInManager(handle, library.GetData, "SQLGetData");
    FindInManager(handle, library.MoreResults, "SQLMoreResults");
    FindInManager(handle, library.FreeStatement, "SQLFreeStmt");
    FindInManager(handle, library.Cancel, "SQLCancel");
    FindInManager(handle, library.Tables, "SQLTablesW");
    FindInManager(handle, library.Columns, "SQLColumnsW");
    FindInManager(handle, library.PrimaryKeys, "SQLPrimaryKeysW");
    FindInManager(handle, library.Statistics, "SQLStatisticsW");
    return library;
}

}  // namespace

const Library& LoadedLibrary() {
    static const Library library = LoadManager();
    return library;
}

}  // namespace kpTables::engines::odbc
