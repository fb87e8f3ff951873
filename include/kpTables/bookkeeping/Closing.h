// Month-end closing that leaves a book as it was or closed, never between.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "kpTables/Connection.h"
#include "kpTables/Host.h"
#include "kpTables/bookkeeping/ClosedMonths.h"

namespace kpTables::bookkeeping {

/// A figure of a balance row (or, without a product, of the warehouse) that an operation changes. A row that is added
/// has no value before, one that is removed none after: Null.
struct Change {
    std::int32_t year = 0;
    std::int32_t month = 0;
    std::optional<std::int32_t> product;  ///< pdID
    std::string column;
    Variant before;
    Variant after;
};

struct ClosingOptions {
    std::int16_t month = 0;                      ///< 1 to 12
    std::optional<std::int32_t> warehouse = {};  ///< dpID; empty: every warehouse
    bool costUsed = false;                       ///< outbound amounts come from the cost bills
    Variant note = {};                           ///< 备注 of the rows that are created
    bool again = false;                          ///< close a month that is closed already
    std::int16_t through = 0;                    ///< close the months up to this one too; 0: only month
    bool dryRun = false;                         ///< answer the changes and make none
    bool isSQL = false;                          ///< the dialect of the statements
};

enum class ClosingOutcome {
    Done,
    NothingToDo,        ///< closing: no balance rows; reopening: the month is not closed
    LeftAsItWas,        ///< the host did not agree to replace rows of the next month
    ClosedAlready,      ///< and options.again is not set
    EarlierMonthOpen,   ///< ClosingResult::month is the first such month
    LaterMonthsClosed,  ///< ClosingResult::month is the last of them: they would become stale
    Failed,             ///< ClosingResult::reason says why
};

struct ClosedMonth {
    std::int16_t month = 0;
    std::int32_t year = 0;
    std::int32_t products = 0;  ///< balance rows
};

/// What became of one warehouse. But for Done its rows are as they were.
struct ClosingResult {
    std::int32_t warehouse = 0;
    std::string name;
    ClosingOutcome outcome = ClosingOutcome::Done;
    std::int16_t month = 0;                ///< the month that the outcome is about
    std::int32_t year = 0;                 ///< of that month; 0 where no row has one
    std::string reason = {};               ///< of a failure
    std::vector<ClosedMonth> months = {};  ///< that were closed, or reopened
    std::int32_t rowsAdded = 0;            ///< for products on bills that had no balance row
    std::int32_t leftOut = 0;              ///< such products that the host did not agree to add
    std::vector<Change> changes = {};      ///< of a dry run
};

/// How a host follows the work.
struct ClosingWatch {
    /// A bar for the closing that begins, labelled with warehouse, year and month; it may answer null.
    std::function<std::unique_ptr<ProgressBar>(const std::string& label)> bar = {};
    /// Called after each warehouse.
    std::function<void(const ClosingResult& result)> done = {};
};

/// Closes a month, each warehouse in one transaction: adds balance rows for products on bills that have none, removes
/// what an earlier closing carried into the next month, fills the rows, carries them forward, and sets the closed flag
/// and date. host answers the questions; none is asked inside a transaction, and one that raises an error leaves what
/// is not closed yet as it was. One result a warehouse, in the order of their ids; error 5 when there is none.
std::vector<ClosingResult> CloseMonth(const ConnectionPtr& book, const std::shared_ptr<Host>& host,
                                      const ClosingOptions& options, const ClosingWatch& watch = {});

struct ReopeningOptions {
    std::int16_t month = 0;                      ///< 1 to 12
    std::optional<std::int32_t> warehouse = {};  ///< dpID; empty: every warehouse
    bool isSQL = false;                          ///< the dialect of the statements
};

/// Opens the last closed month again: removes what was carried into the next month, puts the month's rows back to how
/// they were carried in (no movements, closing stock = opening stock), and sets the closed flag back. Each warehouse in
/// one transaction.
std::vector<ClosingResult> ReopenMonth(const ConnectionPtr& book, const ReopeningOptions& options);

}  // namespace kpTables::bookkeeping
