// The script that makes a book.
#pragma once

#include <string>

namespace kpTables::engines::sqlite {

std::string SchemaScript();

}  // namespace kpTables::engines::sqlite
