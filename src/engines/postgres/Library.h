// libpq, loaded when the first book on a server is opened: programs start, and install, without it.
#pragma once

#include <libpq-fe.h>

namespace kpTables::engines::postgres {

/// The functions of libpq that this engine calls.
struct Library {
    decltype(&PQconnectdb) Connect;
    decltype(&PQfinish) Finish;
    decltype(&PQstatus) Status;
    decltype(&PQtransactionStatus) TransactionStatus;
    decltype(&PQerrorMessage) ErrorMessage;
    decltype(&PQsocket) Socket;
    decltype(&PQbackendPID) BackendProcess;
    decltype(&PQserverVersion) ServerVersion;
    decltype(&PQsetNoticeProcessor) SetNoticeProcessor;
    decltype(&PQsendQuery) SendQuery;
    decltype(&PQsendQueryParams) SendQueryParams;
    decltype(&PQsendPrepare) SendPrepare;
    decltype(&PQsendQueryPrepared) SendQueryPrepared;
    decltype(&PQsetSingleRowMode) SetSingleRowMode;
    decltype(&PQenterPipelineMode) EnterPipelineMode;
    decltype(&PQexitPipelineMode) ExitPipelineMode;
    decltype(&PQpipelineSync) PipelineSync;
    decltype(&PQflush) Flush;
    decltype(&PQconsumeInput) ConsumeInput;
    decltype(&PQisBusy) IsBusy;
    decltype(&PQgetResult) GetResult;
    decltype(&PQputCopyData) PutCopyData;
    decltype(&PQputCopyEnd) PutCopyEnd;
    decltype(&PQnotifies) Notifies;
    decltype(&PQfreemem) FreeMemory;
    decltype(&PQgetCancel) GetCancel;
    decltype(&PQcancel) Cancel;
    decltype(&PQfreeCancel) FreeCancel;
    decltype(&PQconnectionNeedsPassword) NeedsPassword;
    decltype(&PQencryptPasswordConn) EncryptPassword;
    decltype(&PQclear) Clear;
    decltype(&PQresultStatus) ResultStatus;
    decltype(&PQresultErrorField) ResultErrorField;
    decltype(&PQresultErrorMessage) ResultErrorMessage;
    decltype(&PQcmdTuples) AffectedRows;
    decltype(&PQntuples) Rows;
    decltype(&PQnfields) Columns;
    decltype(&PQftype) ColumnType;
    decltype(&PQgetisnull) IsNull;
    decltype(&PQgetvalue) Value;
    decltype(&PQgetlength) Length;
};

/// The loaded library; a DatabaseError that says what to install when there is none.
const Library& LoadedLibrary();

}  // namespace kpTables::engines::postgres
