#include "engines/sqlite/Collation.h"

#include <sqlite3.h>

#include <string>

#include "engines/sqlite/Failure.h"
#include "sql/print/sqlite/FunctionList.h"
#include "text/TextOrder.h"

namespace kpTables::engines::sqlite {

namespace {

int CollateCallback(void*, int leftSize, const void* left, int rightSize, const void* right) noexcept {
    return text::CompareTexts({static_cast<const char*>(left), static_cast<std::size_t>(leftSize)},
                              {static_cast<const char*>(right), static_cast<std::size_t>(rightSize)});
}

}  // namespace

void RegisterCollation(sqlite3* database) {
    const std::string name(sql::print::sqlite::kTextCollation);
    Check(database,
          sqlite3_create_collation_v2(database, name.c_str(), SQLITE_UTF8, nullptr, CollateCallback, nullptr));
}

}  // namespace kpTables::engines::sqlite
