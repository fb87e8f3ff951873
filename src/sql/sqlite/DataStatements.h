// INSERT, UPDATE and DELETE.
#pragma once

#include <string>

#include "sql/Tree.h"
#include "sql/sqlite/Session.h"

namespace kpTables::sql {

std::string TranslateInsert(Session& session, const InsertStatement& statement);
std::string TranslateUpdate(Session& session, const UpdateStatement& statement);
std::string TranslateDelete(Session& session, const DeleteStatement& statement);

}  // namespace kpTables::sql
