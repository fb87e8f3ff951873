#include "engines/postgres/BookLock.h"

#include "kpTables/Error.h"

namespace kpTables::engines::postgres {

void RollBackQuietly(Database& database) noexcept {
    database.DropPending();
    try {
        database.Run("ROLLBACK");
    } catch (const DatabaseError&) {
        // The connection is lost, and the server rolls back.
        database.AcceptLoss();
    }
}

void BeginChange(Database& database) {
    try {
        database.Repeated([&] {
            const Result lock = database.Run(
                "BEGIN; LOCK TABLE kp_book IN EXCLUSIVE MODE; SELECT xmax, CAST(pg_current_xact_id() AS xid) FROM kp_book "
                "FOR UPDATE");
            database.others.Began(lock.Integer(0, 0), lock.Integer(0, 1));
        });
    } catch (const DatabaseError&) {
        if (database.InTransaction()) RollBackQuietly(database);
        throw;
    }
}

}  // namespace kpTables::engines::postgres
