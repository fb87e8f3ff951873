#include "engines/postgres/Pooler.h"

#include <chrono>
#include <memory>

#include "engines/postgres/Failure.h"
#include "kpTables/Error.h"

namespace kpTables::engines::postgres {

namespace {

/// Whether another program's transaction is given this program's connection of the server's.
bool IsGivenToOthers(Database& database) {
    constexpr auto kPatience = std::chrono::milliseconds(500);
    const auto own = database.Run("SELECT pg_backend_pid()").Integer(0, 0);
    std::unique_ptr<Database> other;
    try {
        other = database.Another(std::chrono::steady_clock::now() + kPatience);
        // Poolers give away first what they have used last.
        if (other->Run("BEGIN; SELECT pg_backend_pid()").Integer(0, 0) == own) return true;
    } catch (const DatabaseError&) {
        return false;  // A pooler that keeps connections apart may have none left.
    }
    // One that takes turns finds another connection for this, which raises.
    database.Run("SELECT 1");
    return false;
}

}  // namespace

void RefuseSharedConnections(Database& database) {
    if (!database.IsPooled() || !IsGivenToOthers(database)) return;
    // Others are not to find this program's settings.
    database.Run("RESET ALL; UNLISTEN *");
    RaiseSharing();
}

}  // namespace kpTables::engines::postgres
