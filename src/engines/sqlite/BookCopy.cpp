#include "engines/sqlite/BookCopy.h"

#include <sqlite3.h>

#include "engines/sqlite/BookFile.h"
#include "engines/sqlite/Collation.h"
#include "engines/sqlite/Failure.h"
#include "engines/sqlite/Functions.h"
#include "engines/sqlite/NewBookFile.h"
#include "kpTables/Error.h"
#include "kpTables/text/Message.h"

namespace kpTables::engines::sqlite {

namespace {

void CopyPages(const Database& database, const std::string& path) {
    const Database copy = OpenDraft(path, BookOptions().busyTimeout);
    sqlite3_backup* const backup = sqlite3_backup_init(copy.Get(), "main", database.Get(), "main");
    if (!backup) RaiseFailure(copy.Get(), sqlite3_errcode(copy.Get()), {});
    constexpr int kAllPages = -1;
    const int code = sqlite3_backup_step(backup, kAllPages);
    // Finishing reports a failed step, but not that the source was in use.
    Check(copy.Get(), sqlite3_backup_finish(backup));
    if (code != SQLITE_DONE) RaiseFailure(copy.Get(), code, {});
}

void CheckCopy(const std::string& path) {
    const Database copy = OpenUnchanging(path);
    RegisterCollation(copy.Get());
    RegisterFunctions(copy.Get());
    PreparedStatement check = copy.Prepare("PRAGMA integrity_check(1)");
    if (check.Step() && check.Text(0) == "ok") return;
    throw DatabaseError(
        static_cast<std::int32_t>(DatabaseErrorNumber::Damaged),
        Message("The copy was not kept, because it is damaged ({1}); check the book itself", check.Text(0)));
}

}  // namespace

void CopyBook(const Database& database, const std::string& path) {
    NewBookFile draft(path);
    CopyPages(database, draft.Path());
    MarkAsLogged(draft.Path());
    CheckCopy(draft.Path());
    draft.Publish();
}

}  // namespace kpTables::engines::sqlite
