// Brings books of earlier formats up to date.
#pragma once

#include <string>

#include "kpTables/Book.h"

namespace kpTables::engines::sqlite {

// See UpgradeBook.
BookUpgrade UpgradeFile(const std::string& path, const std::string& url, const UpgradeOptions& options);
/// Always raises.
BookUpgrade UpgradeInMemory(const std::string& name, const std::string& url, const UpgradeOptions& options);

}  // namespace kpTables::engines::sqlite
