// Reports as people read them: headings, notes, columns with names, charts.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "kpTables/bookkeeping/ReportValuation.h"
#include "kpbook/Workspace.h"
#include "kpbook/commands/Options.h"
#include "kpbook/commands/ReportLayout.h"
#include "kpbook/output/View.h"

namespace kpTables::kpbook::commands {

struct ReportKind;

/// What the views of one run share.
struct ReportDesk {
    ReportDesk(Workspace& opened, const Showing& showing, const GlobalOptions& global);

    Workspace& workspace;
    ReportNames names;
    bool isForPrograms;  ///< all columns, no headings
    Columns columns;
    bool hasCharts;
    std::optional<bool> atCost;  ///< as asked for

    /// What was asked for, else the book's own; found out once.
    bookkeeping::Valuation Valuation();
    /// "2004年"; "" in an empty book.
    const std::string& YearText();

private:
    std::optional<bookkeeping::Valuation> valuation_;
    std::optional<std::string> year_;
};

/// A report's view. Values that the method writes back are put into the filters.
output::View ViewOf(ReportDesk& desk, const ReportKind& kind, ReportFilters& filters);
/// The stock figures' view.
output::View StockViewOf(ReportDesk& desk, const StockOptions& options);
/// The stock figures as they are.
RecordsetPtr StockRows(Workspace& workspace, const StockOptions& options, bookkeeping::Valuation valuation);

/// Turns the names of warehouses, partners and projects into ids. An unknown one is a CommandError: it would give an
/// empty report, which looks like a valid one.
void ResolveNames(Workspace& workspace, ReportFilters& filters);
/// The same for the warehouse and the product.
void ResolveNames(Workspace& workspace, StockOptions& options);

}  // namespace kpTables::kpbook::commands
