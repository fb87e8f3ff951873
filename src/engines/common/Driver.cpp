#include "engines/common/Driver.h"

#include "engines/common/BookTexts.h"
#include "kpTables/text/Message.h"
#include "sql/SqlError.h"

namespace kpTables::engines {

const TextOrder& Driver::Texts() const noexcept { return kBookTexts; }

void Driver::ChangeColumn(const sql::ColumnChange&) {
    throw sql::SqlError(sql::ErrorKind::Unsupported, Message("ALTER COLUMN is not supported by this engine"), 0);
}

}  // namespace kpTables::engines
