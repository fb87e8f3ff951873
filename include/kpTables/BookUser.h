// A user of the server that keeps a book.
#pragma once

#include <string>
#include <vector>

namespace kpTables {

/// What a user may change in a table. All tables can be read.
struct TableRights {
    std::string table;
    bool insert = false;
    bool remove = false;
    /// The columns that may be changed.
    std::vector<std::string> columns = {};
    /// Where it names a column: the user sees and changes only the rows in which it has this value, or with "" all, and
    /// users without such rights see none.
    std::string ownColumn = {};
    std::string ownValue = {};
};

struct BookUser {
    std::string name;
    std::string password;  ///< of a user that is made; one that exists keeps its own
    std::vector<TableRights> rights;
};

}  // namespace kpTables
