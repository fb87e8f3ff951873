#include "engines/postgres/SchemaScript.h"

#include "BookSchema.h"
#include "engines/common/SchemaText.h"
#include "engines/postgres/BookTables.h"
#include "sql/print/postgres/FunctionList.h"
#include "sql/print/postgres/PostgresEngine.h"

namespace kpTables::engines::postgres {

std::string SchemaScript() {
    return std::string(sql::print::postgres::SharedSchemaText()) + ";\n" + BookNoteText(schema::kFormat, "") + ";\n" +
           engines::SchemaIn(sql::print::postgres::PostgresEngine());
}

}  // namespace kpTables::engines::postgres
