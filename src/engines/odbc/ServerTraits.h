// What servers behind ODBC say in their own way, where the interface has no call for it.
#pragma once

#include <string_view>

namespace kpTables::engines::odbc {

struct ServerTraits {
    std::string_view name;  ///< how SQL_DBMS_NAME begins; without regard to case
    // A level inside a transaction; {1} is its number. "": nothing to say; without undoLevel
    // the whole transaction is undone with a level.
    const char* beginLevel;
    const char* mergeLevel;
    const char* undoLevel;
    /// Asks for the counter of the row that was just added; "": it is not known how.
    const char* lastCounter;
    /// It answers only in the batch of the statement that added the row.
    bool counterInBatch;
    /// Refuses values for a counter.
    bool keepsCounters;
    /// Said when the connection is made: how long to wait for a lock, {1} milliseconds; "" where it is not said so.
    const char* lockTimeout;
    /// Also said then; "" for nothing.
    const char* settings;
    /// Asks how many transactions are open, where a failed statement may end one unnoticed; "" where none does.
    const char* openTransactions;
};

/// The traits of the server of that name; those of the SQL standard for one that is not known.
const ServerTraits& TraitsOf(std::string_view server) noexcept;

}  // namespace kpTables::engines::odbc
