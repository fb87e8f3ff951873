#include "engines/postgres/Library.h"

#include <dlfcn.h>

#include <cstdint>
#include <string>

#include "kpTables/Error.h"
#include "kpTables/text/Message.h"

namespace kpTables::engines::postgres {

namespace {

[[noreturn]] void RefuseLibrary(const std::string& reason) {
    throw DatabaseError(
        static_cast<std::int32_t>(DatabaseErrorNumber::Failure),
        Message("A book on a PostgreSQL server needs its client library, libpq (Debian's package libpq5): {1}",
                reason));
}

template <class Function>
void Find(void* library, Function& function, const char* name) {
    void* const found = dlsym(library, name);
    if (!found) RefuseLibrary(Message("it has no function {1}", name));
    function = reinterpret_cast<Function>(found);
}

Library Load() {
    void* const handle = dlopen("libpq.so.5", RTLD_NOW | RTLD_LOCAL);
    if (!handle) RefuseLibrary(dlerror());
    Library library{};
    Find(handle, library.Connect, "PQconnectdb");
    Find(handle, library.Finish, "PQfinish");
    Find(handle, library.Status, "PQstatus");
    Find(handle, library.TransactionStatus, "PQtransactionStatus");
    Find(handle, library.ErrorMessage, "PQerrorMessage");
    Find(handle, library.Socket, "PQsocket");
    Find(handle, library.ServerVersion, "PQserverVersion");
    Find(handle, library.SetNoticeProcessor, "PQsetNoticeProcessor");
    Find(handle, library.SendQuery, "PQsendQuery");
    Find(handle, library.SendQueryParams, "PQsendQueryParams");
    Find(handle, library.SendPrepare, "PQsendPrepare");
    Find(handle, library.SendQueryPrepared, "PQsendQueryPrepared");
    Find(handle, library.SetSingleRowMode, "PQsetSingleRowMode");
    Find(handle, library.EnterPipelineMode, "PQenterPipelineMode");
    Find(handle, library.ExitPipelineMode, "PQexitPipelineMode");
    Find(handle, library.PipelineSync, "PQpipelineSync");
    Find(handle, library.Flush, "PQflush");
    Find(handle, library.ConsumeInput, "PQconsumeInput");
    Find(handle, library.IsBusy, "PQisBusy");
    Find(handle, library.GetResult, "PQgetResult");
    Find(handle, library.PutCopyData, "PQputCopyData");
    Find(handle, library.PutCopyEnd, "PQputCopyEnd");
    Find(handle, library.Notifies, "PQnotifies");
    Find(handle, library.FreeMemory, "PQfreemem");
    Find(handle, library.GetCancel, "PQgetCancel");
    Find(handle, library.Cancel, "PQcancel");
    Find(handle, library.FreeCancel, "PQfreeCancel");
    Find(handle, library.NeedsPassword, "PQconnectionNeedsPassword");
    Find(handle, library.EncryptPassword, "PQencryptPasswordConn");
    Find(handle, library.Clear, "PQclear");
    Find(handle, library.ResultStatus, "PQresultStatus");
    Find(handle, library.ResultErrorField, "PQresultErrorField");
    Find(handle, library.ResultErrorMessage, "PQresultErrorMessage");
    Find(handle, library.AffectedRows, "PQcmdTuples");
    Find(handle, library.Rows, "PQntuples");
    Find(handle, library.Columns, "PQnfields");
    Find(handle, library.ColumnType, "PQftype");
    Find(handle, library.IsNull, "PQgetisnull");
    Find(handle, library.Value, "PQgetvalue");
    Find(handle, library.Length, "PQgetlength");
    return library;
}

}  // namespace

const Library& LoadedLibrary() {
    static const Library library = Load();
    return library;
}

}  // namespace kpTables::engines::postgres
