// Rewrites of bound statements: each keeps the rows and makes them come faster. One rule a file, one pipeline.
#pragma once

#include <span>
#include <string_view>

#include "sql/bind/Query.h"

namespace kpTables::sql::rewrite {

struct Rule {
    std::string_view name;
    void (*apply)(bind::BoundStatement& statement);
};

/// All rules, in the order in which they are to be applied.
std::span<const Rule> Rules();

/// A date put together from a year, a month and a day column becomes a node of its own, and a comparison of it with a
/// constant one of its columns, so that an index on them answers.
void RecognizeBillDates(bind::BoundStatement& statement);
/// A bill's date to group or order by gives way to its columns, which an index may hold.
void SplitBillDateKeys(bind::BoundStatement& statement);
/// Eager aggregation: where a query asks for nothing but sums of lines, the lines are added up by their bill before
/// they are joined with it, so that there is a row for each bill to be joined and sorted, not one for each line. Sums
/// of money stay exact; those of doubles are added in another order.
void AggregateEagerly(bind::BoundStatement& statement);
/// Where the distinct values of bills that have lines are asked for, the lines are asked no more than whether there
/// are any.
void ReduceToExists(bind::BoundStatement& statement);
/// Drops grouping keys that have one value in each group of the other keys: they make no other groups, and sorting by
/// them is dearer.
void DropDependentKeys(bind::BoundStatement& statement);
/// Turns right joins into left joins, and the deeper side of a join to the left: a join on the right side needs
/// parentheses, which an engine may answer with a table made for it.
void OrderJoins(bind::BoundStatement& statement);
/// Where a text leaves the order of its rows open, they come by their grouping keys, by the columns of DISTINCT or UNION,
/// and else by the row ids of the tables, on every engine the same.
void ImplyOrder(bind::BoundStatement& statement);
/// Selectivity hints for engines that keep no statistics: where a condition asks for one value in two tables and for a
/// range in one of them, most rows are taken to be in the range. All months up to one of a warehouse's bills are many
/// rows, the lines of a product are few.
void HintRanges(bind::BoundStatement& statement);
/// Deferred look-up: tables whose row is determined by a grouping key are looked up once for each group, not for each
/// row that is grouped, and their columns are not sorted with the rows.
void DeferLookups(bind::BoundStatement& statement);

}  // namespace kpTables::sql::rewrite
