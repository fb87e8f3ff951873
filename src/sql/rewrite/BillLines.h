// The lines and the bills among a query's joined tables: an inner join of a column with a counter.
#pragma once

#include <cstddef>

#include "sql/bind/Query.h"

namespace kpTables::sql::rewrite {

/// What a SELECT of whole joined tables reads of lines and their bills. A query in its FROM may be between it and the
/// tables.
class BillLines {
public:
    explicit BillLines(bind::Select& select);

    /// True when the tables include a join of lines with their bills, and no other join reads the lines.
    bool AreJoined() const { return join_ != nullptr; }
    bool AreReadByOthers() const;

    const bind::SourcePtr& Lines() const { return lines_; }
    const bind::SourcePtr& Bills() const { return bills_; }
    /// The lines' column that is joined with the bills' counter.
    std::size_t Key() const { return key_; }
    const bind::TermPtr& Condition() const { return join_->on; }
    /// The joins around it keep every row of the join.
    bool AreKept() const;
    /// The SELECT that names the tables: the one between, or the query itself.
    bind::Select& Inner() const { return between_ ? *between_ : select_; }

    /// The tables' column that the query's term refers to; null for any other term.
    const bind::ColumnTerm* Meaning(const bind::Term& term) const;
    /// True for a column of the lines. What the query between computes reads none: see AreReadByOthers.
    bool MayReadLines(const bind::Term& term) const;
    /// The opposite, for an expression and all its parts.
    bool ReadsNoLines(const bind::Term& expression) const;

private:
    void FindJoin(const bind::TablePtr& table);
    bool IsJoinOfLines(const bind::Table& table);
    bool ReadsNoLinesInside(const bind::Term& expression) const;

    bind::Select& select_;
    bind::Select* between_ = nullptr;
    const bind::Source* betweenSource_ = nullptr;
    const bind::Table* join_ = nullptr;
    bind::SourcePtr lines_;
    bind::SourcePtr bills_;
    std::size_t key_ = 0;
};

}  // namespace kpTables::sql::rewrite
