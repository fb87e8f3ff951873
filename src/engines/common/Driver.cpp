#include "engines/common/Driver.h"

#include "kpTables/text/Message.h"
#include "sql/SqlError.h"

namespace kpTables::engines {

void Driver::ChangeColumn(const sql::ColumnChange&) {
    throw sql::SqlError(sql::ErrorKind::Unsupported, Message("ALTER COLUMN is not supported by this engine"), 0);
}

}  // namespace kpTables::engines
