#include "engines/postgres/BookLock.h"

#include "kpTables/Error.h"

namespace kpTables::engines::postgres {

void RollBackQuietly(Database& database) noexcept {
    try {
        database.Run("ROLLBACK");
    } catch (const DatabaseError&) {
        // The connection is lost, and the server rolls back.
        database.AcceptLoss();
    }
}

void BeginChange(Database& database) {
    try {
        database.Repeated([&] { database.Run(kBeginChange); });
    } catch (const DatabaseError&) {
        if (database.InTransaction()) RollBackQuietly(database);
        throw;
    }
}

}  // namespace kpTables::engines::postgres
