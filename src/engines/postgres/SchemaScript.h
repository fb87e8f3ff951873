// The script that makes a book.
#pragma once

#include <string>

namespace kpTables::engines::postgres {

std::string SchemaScript();

}  // namespace kpTables::engines::postgres
