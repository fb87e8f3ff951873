// Sums below a column.
#pragma once

#include <string>
#include <vector>

#include "kpTables/Recordset.h"
#include "kpbook/output/Presentation.h"

namespace kpTables::kpbook::output {

/// The sum of a column's values without Nulls. Currency is added exactly. A sum of Doubles has as many decimals as the
/// summand with the most in fifteen digits, as in adding up by hand: 0.1 and 0.2 make 0.3.
class ColumnTotal {
public:
    /// A value that is not a number raises error 13, an overflow error 6.
    void Add(const Variant& value);
    /// Currency for a column of Currency, otherwise a Double.
    Variant Value() const;

private:
    Currency money_;
    double number_ = 0;
    double lost_ = 0;  ///< accumulated rounding error of number_
    bool isMoney_ = true;
    int decimals_ = 0;
};

/// The row of totals below a recordset: the sums of some columns and, in the first of the others, a label.
class TotalsRow {
public:
    TotalsRow(const Recordset& recordset, const Presentation& presentation);

    /// Adds the recordset's current row.
    void Add(const Recordset& recordset);
    /// False without a column to sum, or without a row.
    bool IsShown() const noexcept { return !presentation_.totalled.empty() && hasRows_; }
    std::string Cell(int column) const;
    /// The sum of a column, the label in its place; Null where there is neither.
    Variant Value(int column) const;

private:
    Presentation presentation_;
    std::vector<ColumnTotal> totals_;
    int labelled_;  ///< position of the label; -1 where every column is summed
    bool hasRows_ = false;
};

}  // namespace kpTables::kpbook::output
