#include "engines/sqlite/SchemaScript.h"

#include "BookSchema.h"
#include "engines/common/SchemaText.h"
#include "engines/sqlite/BookFile.h"
#include "engines/sqlite/SchemaNote.h"
#include "engines/sqlite/TextOrderVersion.h"
#include "sql/print/sqlite/SqliteEngine.h"

namespace kpTables::engines::sqlite {

std::string SchemaScript() {
    return "PRAGMA application_id = " + std::to_string(kApplicationId) +
           ";\nPRAGMA user_version = " + std::to_string(schema::kFormat) + ";\n" + TextOrderVersionScript() +
           SchemaNoteScript() + engines::SchemaIn(sql::print::sqlite::SqliteEngine());
}

}  // namespace kpTables::engines::sqlite
