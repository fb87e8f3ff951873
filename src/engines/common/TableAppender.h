// Adds rows to one table, one statement a row.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "engines/common/Executor.h"
#include "kpTables/Book.h"

namespace kpTables::engines {

class TableAppender : public RowAppender {
public:
    TableAppender(ExecutorPtr executor, std::string_view table, const std::vector<std::string>& columns);

    void Append(const std::vector<Variant>& values) override;

private:
    /// A column of the table that values are given for.
    struct Target {
        int column;
        std::size_t value;  ///< its place among the values
        VarType type;
    };

    ExecutorPtr executor_;
    CachedStatementPtr statement_;
    std::vector<Target> targets_;  ///< in the table's order
    // Of the current row.
    ColumnSet set_;
    std::vector<const Variant*> given_;
};

}  // namespace kpTables::engines
