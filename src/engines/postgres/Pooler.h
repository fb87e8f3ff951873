// Poolers of connections, such as pgbouncer, between programs and a server. A book's settings, its prepared statements
// and its watch for changes of the schema belong to a connection of the server's, so a program needs one for itself.
#pragma once

#include "engines/postgres/Database.h"

namespace kpTables::engines::postgres {

/// Refuses a pooler that would pass the statements of one program to several connections. One that does so unnoticed,
/// because it is busy, is noticed by the statement that comes to another connection: see Database::IsPooled.
void RefuseSharedConnections(Database& database);

}  // namespace kpTables::engines::postgres
