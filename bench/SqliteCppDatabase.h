// A book over SQLiteCpp, used as its users do.
#pragma once

#include <memory>
#include <string>

#include "Cell.h"

namespace SQLite {
class Database;
}

namespace kpTables::bench {

class SqliteCppDatabase {
public:
    explicit SqliteCppDatabase(const std::string& path);
    ~SqliteCppDatabase();

    void Run(const std::string& text);
    /// Prepares and runs a text and looks up the column by name.
    Cell First(const std::string& text, const char* column);

private:
    std::unique_ptr<SQLite::Database> database_;
};

}  // namespace kpTables::bench
