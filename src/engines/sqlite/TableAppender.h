// Adds rows to one table, one statement a row.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "ColumnSet.h"
#include "Session.h"
#include "kpTables/Sqlite.h"

namespace kpTables::sqlite {

class TableAppender : public RowAppender {
public:
    TableAppender(SessionPtr session, std::string_view table, const std::vector<std::string>& columns);

    void Append(const std::vector<Variant>& values) override;

private:
    /// A column of the table that values are given for.
    struct Target {
        int column;
        std::size_t value;  ///< its place among the values
        VarType type;
    };

    SessionPtr session_;
    CachedStatementPtr statement_;
    std::vector<Target> targets_;  ///< in the table's order
    // Of the current row.
    ColumnSet set_;
    std::vector<const Variant*> given_;
};

}  // namespace kpTables::sqlite
