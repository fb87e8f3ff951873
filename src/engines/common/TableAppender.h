// Adds rows to one table.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "engines/common/Executor.h"
#include "kpTables/Book.h"

namespace kpTables::engines {

class TableAppender : public RowAppender {
public:
    TableAppender(ExecutorPtr executor, std::string_view table, const std::vector<std::string>& columns);

    ~TableAppender() override;
    TableAppender(const TableAppender&) = delete;
    TableAppender& operator=(const TableAppender&) = delete;

    void Append(const std::vector<Variant>& values) override;
    void Gather(const Refused& refused) override { refused_ = refused; }
    void Flush() override;

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
    Refused refused_;              ///< empty unless rows are gathered
    std::int64_t appended_ = 0;
    // Of the current row.
    ColumnSet set_;
    std::vector<const Variant*> given_;
};

}  // namespace kpTables::engines
