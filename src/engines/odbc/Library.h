// The ODBC driver manager, loaded when the first book behind ODBC is opened: programs start, and install, without it.
#pragma once

#include "engines/odbc/Manager.h"

namespace kpTables::engines::odbc {

/// The functions of the driver manager that this engine calls; texts are UTF-16.
struct Library {
    decltype(&SQLAllocHandle) AllocateHandle;
    decltype(&SQLFreeHandle) FreeHandle;
    decltype(&SQLSetEnvAttr) SetEnvironmentAttribute;
    decltype(&SQLDriverConnectW) DriverConnect;
    decltype(&SQLDisconnect) Disconnect;
    decltype(&SQLSetConnectAttrW) SetConnectionAttribute;
    decltype(&SQLGetInfoW) GetInfo;
    decltype(&SQLGetDiagRecW) GetDiagnostics;
    decltype(&SQLEndTran) EndTransaction;
    decltype(&SQLSetStmtAttrW) SetStatementAttribute;
    decltype(&SQLExecDirectW) ExecuteDirect;
    decltype(&SQLPrepareW) Prepare;
    decltype(&SQLExecute) Execute;
    decltype(&SQLBindParameter) BindParameter;
    decltype(&SQLNumResultCols) CountColumns;
    decltype(&SQLDescribeColW) DescribeColumn;
    decltype(&SQLColAttributeW) ColumnAttribute;
    decltype(&SQLRowCount) CountAffectedRows;
    decltype(&SQLFetch) Fetch;
    decltype(&SQLGetData) GetData;
    decltype(&SQLMoreResults) MoreResults;
    decltype(&SQLFreeStmt) FreeStatement;
    decltype(&SQLCancel) Cancel;
    decltype(&SQLTablesW) Tables;
    decltype(&SQLColumnsW) Columns;
    decltype(&SQLPrimaryKeysW) PrimaryKeys;
    decltype(&SQLStatisticsW) Statistics;
};

/// The loaded library; a DatabaseError that says what to install when there is none.
const Library& LoadedLibrary();

}  // namespace kpTables::engines::odbc
