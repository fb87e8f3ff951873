// A book in memory over SQLite's own functions, for texts that need no others.
#pragma once

#include <sqlite3.h>

#include <string>
#include <vector>

#include "TestCatalog.h"
#include "sql/parse/Lexer.h"

namespace kpTables::sql::test {

struct BoundValue {
    std::string text;
    bool number = false;
};

/// The tables of the test catalog. The collation compares ASCII letters without regard to case and drops blanks at the
/// end.
class SqliteBook {
public:
    SqliteBook();
    ~SqliteBook();
    SqliteBook(const SqliteBook&) = delete;
    SqliteBook& operator=(const SqliteBook&) = delete;

    /// Translates and runs one text. Rows as "1|x|", one a line; Null is an empty value.
    std::string Run(const std::string& text, const std::vector<LiteralValue>& pivotValues = {});
    /// SQLite's own text, as it stands.
    std::string RunPlain(const std::string& sql, const std::vector<BoundValue>& parameters = {});
    /// Lets SQLite read the translation, whose functions answer Null here. Throws when it cannot, or when its
    /// parameters or columns are not those of the translation.
    void Prepare(const std::string& text, const std::vector<LiteralValue>& pivotValues = {});
    /// What SQLite's planner says of a text.
    std::string Plan(const std::string& text);

private:
    TestCatalog catalog_;
    sqlite3* database_ = nullptr;
};

}  // namespace kpTables::sql::test
