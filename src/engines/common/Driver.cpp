#include "engines/common/Driver.h"

#include "engines/common/BookTexts.h"
#include "kpTables/Error.h"
#include "kpTables/text/Message.h"
#include "sql/SqlError.h"

namespace kpTables::engines {

namespace {

[[noreturn]] void RefuseUsers() {
    throw DatabaseError(static_cast<std::int32_t>(DatabaseErrorNumber::NotPermitted),
                        Message("the book is not on a server, so it has no users of its own: the rights of its file "
                                "say who reads and writes it"));
}

[[noreturn]] void RefuseCounters() {
    throw DatabaseError(static_cast<std::int32_t>(DatabaseErrorNumber::Failure),
                        Message("this engine does not tell how far a counter has got"));
}

}  // namespace

const TextOrder& Driver::Texts() const noexcept { return kBookTexts; }

void Driver::ChangeColumn(const sql::ColumnChange&) {
    throw sql::SqlError(sql::ErrorKind::Unsupported, Message("ALTER COLUMN is not supported by this engine"), 0);
}

std::int64_t Driver::LastCounter(const std::string& /*table*/, const std::string& /*counter*/) { RefuseCounters(); }

void Driver::AdvanceCounter(const std::string& /*table*/, const std::string& /*counter*/, std::int64_t /*last*/) {
    RefuseCounters();
}

bool Driver::HasUser(const std::string& /*user*/) { RefuseUsers(); }
void Driver::Grant(const BookUser& /*user*/) { RefuseUsers(); }
bool Driver::Revoke(const std::string& /*user*/) { RefuseUsers(); }

}  // namespace kpTables::engines
