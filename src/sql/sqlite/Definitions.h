// CREATE, DROP and ALTER.
#pragma once

#include <string>

#include "sql/Tree.h"
#include "sql/sqlite/Session.h"

namespace kpTables::sql {

std::string TranslateCreateTable(Session& session, const CreateTableStatement& statement);
std::string TranslateCreateIndex(Session& session, const CreateIndexStatement& statement);
std::string TranslateDropTable(Session& session, const DropTableStatement& statement);
std::string TranslateDropIndex(Session& session, const DropIndexStatement& statement);
std::string TranslateAddColumn(Session& session, const AddColumnStatement& statement);

}  // namespace kpTables::sql
