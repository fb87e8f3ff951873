// A date that a statement puts together from a year, a month and a day column.
#pragma once

#include <optional>
#include <vector>

#include "sql/Tree.h"

namespace kpTables::sql {

/// The three operands, and the separators between them, on whose value the recognition rests.
struct BillDate {
    const Column* year;
    const Column* month;
    const Column* day;
    const Literal* firstSeparator;
    const Literal* secondSeparator;
};

/// Recognizes CDATE(y & '-' & m & '-' & d) and CAST(CAST(y AS char(4)) + '-' + CAST(m AS char(2)) + '-' +
/// CAST(d AS char(2)) AS DATETIME); nothing for any other expression. That the operands are whole numbers is left to
/// the caller.
std::optional<BillDate> MatchBillDate(const Expression& expression);

}  // namespace kpTables::sql
