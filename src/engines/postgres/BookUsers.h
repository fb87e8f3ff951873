// The server's users of a book: roles, and what each may do in the book's schema.
#pragma once

#include <string>

#include "engines/postgres/Database.h"
#include "kpTables/BookUser.h"

namespace kpTables::engines::postgres {

bool HasUser(Database& database, const std::string& user);
// See Book::Grant and Revoke; a transaction is open. A superuser, and the owner of the book, are refused.
void GrantUser(Database& database, const BookUser& user);
bool RevokeUser(Database& database, const std::string& user);

}  // namespace kpTables::engines::postgres
