// Rewrites of bound statements: each keeps the result; all but the implied order make it come faster.
#pragma once

#include <span>
#include <string_view>

#include "sql/bind/Query.h"

namespace kpTables::sql::rewrite {

struct Rule {
    std::string_view name;
    void (*apply)(bind::BoundStatement& statement);
    /// What it yields may read columns that the grouping keys determine.
    bool readsDependentColumns = false;
    /// It gives an order to rows that are equal in the statement's own.
    bool breaksTies = false;
    /// For engines that can read no dependent columns.
    bool readsKeysOnly = false;
    /// For engines that leave the order of texts in a result to the client.
    bool leavesTextOrder = false;
    /// It rearranges nothing that could change rows with random numbers or those of a full join.
    bool keepsWritten = false;
};

/// All rules, in the order of application.
std::span<const Rule> Rules();

/// Where groups are formed over a query in FROM that only joins tables, they are formed over the tables, which the
/// other rules see then.
void FlattenGroups(bind::BoundStatement& statement);
/// A date built from a year, a month and a day column becomes a node of its own, and its comparison with a constant
/// becomes one of its columns, which can use an index.
void RecognizeBillDates(bind::BoundStatement& statement);
/// Grouping or ordering by a bill's date becomes that by its columns, which can use an index.
void SplitBillDateKeys(bind::BoundStatement& statement);
/// Eager aggregation: where a query reads only sums of lines, the lines are added up by bill before they are joined
/// with it, so that one row for each bill is joined and sorted, not one for each line. Sums of money stay exact; those
/// of doubles are added in another order.
void AggregateEagerly(bind::BoundStatement& statement);
/// Where a query reads only the distinct values of bills that have lines, the join with the lines becomes an EXISTS.
void ReduceToExists(bind::BoundStatement& statement);
/// Drops grouping keys that have one value in each group of the other keys: the groups stay the same, and sorting by
/// them costs more.
void DropDependentKeys(bind::BoundStatement& statement);
/// Likewise while the other rules see the query, except where a sub-query may read the keys.
void DropDependentKeysForNow(bind::BoundStatement& statement);
/// Groups by the columns that are read without being keys, which the keys determine, and reads a key with literals by
/// the key's own.
void GroupByWhatIsRead(bind::BoundStatement& statement);
/// Turns right joins into left joins, and the deeper side of a join to the left: a join on the right side needs
/// parentheses, for which an engine may build a temporary table.
void OrderJoins(bind::BoundStatement& statement);
/// Where a statement leaves the order open, rows are ordered by its grouping keys, the columns of DISTINCT or UNION, or
/// else the tables' row ids, on every engine alike.
void ImplyOrder(bind::BoundStatement& statement);
/// Likewise the rows that are equal in the statement's own order, for engines whose sorting does not keep the order of
/// equal rows.
void ImplyTies(bind::BoundStatement& statement);
/// Selectivity hints for engines that keep no statistics: where a condition fixes one value in two tables and a range
/// in one of them, most rows are assumed to be in the range: a warehouse's bills up to some month are many rows, a
/// product's lines are few.
void HintRanges(bind::BoundStatement& statement);
/// Deferred look-up: tables whose row is determined by a grouping key are looked up once for each group, not for each
/// row that is grouped, and their columns are not sorted with the rows.
void DeferLookups(bind::BoundStatement& statement);
/// The order of a result that is ordered by texts, among others, becomes the client's; keys that are not shown become
/// hidden items. What a limit cuts off depends on the order and keeps it.
void LeaveTextOrder(bind::BoundStatement& statement);

}  // namespace kpTables::sql::rewrite
