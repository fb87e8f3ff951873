#include "engines/postgres/Library.h"

#include <cstdint>
#include <string>

#include "kpTables/Error.h"
#include "kpTables/text/Message.h"
#include "platform/SharedLibrary.h"

namespace kpTables::engines::postgres {

namespace {

#ifdef _WIN32
constexpr const char* kFileName = "libpq.dll";
#else
constexpr const char* kFileName = "libpq.so.5";
#endif

[[noreturn]] void RefuseLibrary(const std::string& reason) {
    throw DatabaseError(
        static_cast<std::int32_t>(DatabaseErrorNumber::Failure),
        Message("A book on a PostgreSQL server needs its client library, libpq (Debian's package libpq5): {1}",
                reason));
}

Library Load() {
    platform::SharedLibrary file(kFileName);
    Library library{};
    file.Find(library.Connect, "PQconnectdb");
    file.Find(library.Finish, "PQfinish");
    file.Find(library.Status, "PQstatus");
    file.Find(library.TransactionStatus, "PQtransactionStatus");
    file.Find(library.ErrorMessage, "PQerrorMessage");
    file.Find(library.Socket, "PQsocket");
    file.Find(library.BackendProcess, "PQbackendPID");
    file.Find(library.ServerVersion, "PQserverVersion");
    file.Find(library.SetNoticeProcessor, "PQsetNoticeProcessor");
    file.Find(library.SendQuery, "PQsendQuery");
    file.Find(library.SendQueryParams, "PQsendQueryParams");
    file.Find(library.SendPrepare, "PQsendPrepare");
    file.Find(library.SendQueryPrepared, "PQsendQueryPrepared");
    file.Find(library.SetSingleRowMode, "PQsetSingleRowMode");
    file.Find(library.EnterPipelineMode, "PQenterPipelineMode");
    file.Find(library.ExitPipelineMode, "PQexitPipelineMode");
    file.Find(library.PipelineSync, "PQpipelineSync");
    file.Find(library.Flush, "PQflush");
    file.Find(library.ConsumeInput, "PQconsumeInput");
    file.Find(library.IsBusy, "PQisBusy");
    file.Find(library.GetResult, "PQgetResult");
    file.Find(library.PutCopyData, "PQputCopyData");
    file.Find(library.PutCopyEnd, "PQputCopyEnd");
    file.Find(library.Notifies, "PQnotifies");
    file.Find(library.FreeMemory, "PQfreemem");
    file.Find(library.GetCancel, "PQgetCancel");
    file.Find(library.Cancel, "PQcancel");
    file.Find(library.FreeCancel, "PQfreeCancel");
    file.Find(library.NeedsPassword, "PQconnectionNeedsPassword");
    file.Find(library.EncryptPassword, "PQencryptPasswordConn");
    file.Find(library.Clear, "PQclear");
    file.Find(library.ResultStatus, "PQresultStatus");
    file.Find(library.ResultErrorField, "PQresultErrorField");
    file.Find(library.ResultErrorMessage, "PQresultErrorMessage");
    file.Find(library.AffectedRows, "PQcmdTuples");
    file.Find(library.Rows, "PQntuples");
    file.Find(library.Columns, "PQnfields");
    file.Find(library.ColumnType, "PQftype");
    file.Find(library.IsNull, "PQgetisnull");
    file.Find(library.Value, "PQgetvalue");
    file.Find(library.Length, "PQgetlength");
    if (!file.Fault().empty()) RefuseLibrary(file.Fault());
    return library;
}

}  // namespace

const Library& LoadedLibrary() {
    static const Library library = Load();
    return library;
}

}  // namespace kpTables::engines::postgres
