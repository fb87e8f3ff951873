// Who changes a book: one at a time, as with a book in a file, so that what a change has read stays true until it is
// saved. Readers do not wait.
#pragma once

#include <type_traits>

#include "engines/postgres/Database.h"

namespace kpTables::engines::postgres {

/// Undoes what an open transaction has done, ignoring errors.
void RollBackQuietly(Database& database) noexcept;

/// Begins a transaction for changes, or leaves none open. Waits until no other connection has unsaved changes; a
/// DatabaseError when that takes too long.
void BeginChange(Database& database);

/// Runs a change, in the open transaction or in one of its own.
template <class Work>
auto Changing(Database& database, const Work& work) {
    if (database.InTransaction()) return database.Guarded(work);
    BeginChange(database);
    struct Ending {
        Database& database;
        ~Ending() {
            if (database.InTransaction() || database.HasLostTransaction()) RollBackQuietly(database);
        }
    } const ending{database};
    if constexpr (std::is_void_v<decltype(work())>) {
        work();
        database.Commit();
    } else {
        auto answer = work();
        database.Commit();
        return answer;
    }
}

}  // namespace kpTables::engines::postgres
