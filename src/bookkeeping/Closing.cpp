#include "kpTables/bookkeeping/Closing.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "bookkeeping/Answers.h"
#include "bookkeeping/BalanceChanges.h"
#include "bookkeeping/BalanceRows.h"
#include "bookkeeping/BillKinds.h"
#include "bookkeeping/Query.h"
#include "bookkeeping/Warehouses.h"
#include "kpTables/CTables.h"
#include "kpTables/Convert.h"
#include "kpTables/Error.h"
#include "kpTables/Transaction.h"
#include "kpTables/bookkeeping/WatchedConnection.h"
#include "kpTables/text/Message.h"

namespace kpTables::bookkeeping {

namespace {

/// Of the question about products without a row; the component's own words.
std::string TitleOf(const BillKind& kind) { return "检查" + kind.Lines(); }

/// One run over all warehouses.
class ClosingRun {
public:
    ClosingRun(const ConnectionPtr& book, const std::shared_ptr<Host>& host, const ClosingOptions& options,
               const ClosingWatch& watch)
        : book_(std::make_shared<WatchedConnection>(book, [] { return std::int64_t{0}; })),
          answers_(std::make_shared<Answers>(host)),
          tables_(answers_),
          options_(options),
          watch_(watch),
          through_(std::max(options.month, options.through)) {
        tables_.Cnn(book_);
        tables_.isSQL(options.isSQL);
    }

    std::vector<ClosingResult> Run();

private:
    /// An examination goes as far as the first figure and is always rolled back: it finds the questions.
    enum class Purpose { Examine, Close };

    ClosingResult WithAnswers(const Warehouse& warehouse, Purpose purpose);
    ClosingResult Attempt(const Warehouse& warehouse, Purpose purpose);
    bool MayClose(const BalanceRows& rows, std::int16_t closed, ClosingResult& result);
    void CheckProducts();
    void AddMissing(const BalanceRows& rows, std::int16_t month, ClosingResult& result);
    std::int32_t NewRowsYear(const BalanceRows& rows, std::int16_t month);
    bool IsToBeAdded(const BillKind& kind, const std::string& warehouse, std::size_t count);
    bool Prepare(const BalanceRows& rows, std::int16_t month, ClosingResult& result);
    bool Close(const BalanceRows& rows, std::int16_t month, ClosingResult& result);
    bool CloseAll(const BalanceRows& rows, ClosingResult& result);
    std::string Reason(std::int32_t warehouse, std::int16_t month);

    std::shared_ptr<WatchedConnection> book_;
    std::shared_ptr<Answers> answers_;
    CTables tables_;
    const ClosingOptions& options_;
    const ClosingWatch& watch_;
    std::int16_t through_;
    /// The book has no balance rows yet: what the closing adds are its first.
    bool isFirst_ = false;
    bool productsChecked_ = false;
};

std::vector<ClosingResult> ClosingRun::Run() {
    const auto warehouses = ReadWarehouses(*book_, options_.warehouse);
    isFirst_ = !HasRows(*book_, "Select TOP 1 pdID From 仓库余额表");
    // All questions are asked before the first change, so that one without an answer leaves the book unchanged. A
    // single warehouse asks as it goes: its transaction is rolled back for each question.
    if (warehouses.size() > 1) {
        for (const auto& warehouse : warehouses) WithAnswers(warehouse, Purpose::Examine);
    }
    std::vector<ClosingResult> results;
    for (const auto& warehouse : warehouses) {
        results.push_back(WithAnswers(warehouse, Purpose::Close));
        if (watch_.done) watch_.done(results.back());
    }
    return results;
}

ClosingResult ClosingRun::WithAnswers(const Warehouse& warehouse, Purpose purpose) {
    for (;;) {
        Question open;
        try {
            return Attempt(warehouse, purpose);
        } catch (const Unanswered& unanswered) {
            open = unanswered.question;
        } catch (const Error& error) {
            ClosingResult failed{.warehouse = warehouse.id, .name = warehouse.name, .month = options_.month};
            failed.outcome = ClosingOutcome::Failed;
            failed.reason = error.Description();
            return failed;
        }
        answers_->Ask(open);
    }
}

ClosingResult ClosingRun::Attempt(const Warehouse& warehouse, Purpose purpose) {
    ClosingResult result{.warehouse = warehouse.id, .name = warehouse.name, .month = options_.month};
    const BalanceRows rows(*book_, warehouse.id);
    Transaction transaction(*book_);
    const std::int16_t closed = ClosedThrough(*book_, warehouse.id);
    if (!MayClose(rows, closed, result)) return result;
    const auto snapshot = [&] {
        return BalanceSnapshot(*book_, warehouse.id, options_.month, std::max(closed, through_) + 1);
    };
    const auto before = options_.dryRun ? std::optional(snapshot()) : std::nullopt;
    if (!productsChecked_) CheckProducts();
    for (std::int16_t month = closed; month >= options_.month; --month) {
        rows.RemoveCarried(month);
        rows.Reset(month);
    }
    if (!Prepare(rows, options_.month, result) || purpose == Purpose::Examine) return result;
    if (!CloseAll(rows, result)) return result;
    if (before) {
        result.changes = before->ChangesTo(snapshot());
    } else {
        transaction.Commit();
        productsChecked_ = true;
    }
    return result;
}

bool ClosingRun::MayClose(const BalanceRows& rows, std::int16_t closed, ClosingResult& result) {
    result.outcome = ClosingOutcome::Done;
    if (closed >= options_.month && !options_.again) {
        result.outcome = ClosingOutcome::ClosedAlready;
    } else if (closed > through_) {
        result.outcome = ClosingOutcome::LaterMonthsClosed;
        result.month = closed;
    } else if (const auto open = rows.FirstUsedMonth(closed, options_.month); open > 0) {
        // A month without rows and bills that does not follow an open one has not begun yet.
        const bool begun = rows.FirstUsedMonth(options_.month - 2, options_.month + 1) > 0;
        result.outcome = begun ? ClosingOutcome::EarlierMonthOpen : ClosingOutcome::NothingToDo;
        if (begun) result.month = open;
    }
    if (result.outcome == ClosingOutcome::Done) return true;
    result.year = rows.Year(result.month);
    return false;
}

/// The component's check of all warehouses. It takes the year of the rows that it adds from the balance table, so it
/// cannot repair an empty one: AddMissing does.
void ClosingRun::CheckProducts() {
    if (isFirst_) return;
    tables_.CheckBnProduct(options_.month);
    // With nothing to add it need not be run again.
    const auto added = [this](const BillKind& kind) {
        const auto* answer = answers_->Under(TitleOf(kind));
        return answer && *answer == MessageAnswer::Yes;
    };
    productsChecked_ = !added(kInbound) && !added(kOutbound);
}

/// The balance table's, else the book's own; a book without a current date has that of the bills.
std::int32_t ClosingRun::NewRowsYear(const BalanceRows& rows, std::int16_t month) {
    if (const auto year = NumberOf(*book_, "Select Max(年份) As y From 仓库余额表"); year > 0) return year;
    const Variant current = tables_.Get_AccInfo("当前日期");
    const std::int32_t year = IsDate(current) ? CDate(current).Year() : rows.BillsYear(month);
    if (year == 0) Raise(ErrorNumber::InvalidCall, Message("neither the book nor its bills have a year"));
    return year;
}

/// In a book's first rows nothing is missing that somebody would have to know of.
bool ClosingRun::IsToBeAdded(const BillKind& kind, const std::string& warehouse, std::size_t count) {
    if (isFirst_) return true;
    if (const auto* answer = answers_->Under(TitleOf(kind))) return *answer == MessageAnswer::Yes;
    const std::string text = kind.Lines() + "中，有仓库余额表中没有的记录：" + std::to_string(count) + ",是否修正？";
    return answers_->MsgBox(text, MessageButtons::YesNo, TitleOf(kind) + " (" + warehouse + ")") == MessageAnswer::Yes;
}

/// The component's check takes a product for known that has a row in any warehouse; the closing of this one would leave
/// its bills out.
void ClosingRun::AddMissing(const BalanceRows& rows, std::int16_t month, ClosingResult& result) {
    std::vector<BillKind> kinds{kInbound, kOutbound};
    if (options_.costUsed) kinds.push_back(kCost);
    for (const BillKind& kind : kinds) {
        const auto products = rows.Missing(kind, month);
        if (products.empty()) continue;
        const bool add = IsToBeAdded(kind, result.name, products.size());
        if (add) rows.Add(products, NewRowsYear(rows, month), month);
        (add ? result.rowsAdded : result.leftOut) += static_cast<std::int32_t>(products.size());
    }
}

/// What comes before the closing itself; false when there is nothing to close or the host did not agree.
bool ClosingRun::Prepare(const BalanceRows& rows, std::int16_t month, ClosingResult& result) {
    AddMissing(rows, month, result);
    if (rows.Count(month) == 0) {
        result.outcome = ClosingOutcome::NothingToDo;
        return false;
    }
    const std::int32_t carried = rows.CarriedBefore(month);
    if (carried > 0 && !options_.again) {
        const std::string text = Message("month {1} of {2} has {3} rows already; remove and make them anew?", month + 1,
                                         result.name, carried);
        if (answers_->MsgBox(text, MessageButtons::YesNo, Message("closing")) != MessageAnswer::Yes) {
            result.outcome = ClosingOutcome::LeftAsItWas;
            result.year = rows.Year(month);
            return false;
        }
    }
    rows.RemoveCarried(month);
    // A closing that did not end may have left figures.
    if (carried > 0) rows.Reset(month);
    return true;
}

bool ClosingRun::CloseAll(const BalanceRows& rows, ClosingResult& result) {
    for (std::int16_t month = options_.month; month <= through_; ++month) {
        if (month > options_.month && !Prepare(rows, month, result)) {
            result.month = month;
            return false;
        }
        if (!Close(rows, month, result)) return false;
    }
    MarkClosedThrough(tables_, result.warehouse, result.months.back().year, through_, true);
    return true;
}

bool ClosingRun::Close(const BalanceRows& rows, std::int16_t month, ClosingResult& result) {
    const std::int32_t year = rows.Year(month);
    const std::string label = result.name + " " + std::to_string(year) + "-" + std::to_string(month);
    const auto bar = watch_.bar ? watch_.bar(label) : nullptr;
    book_->ForgetFailures();
    if (tables_.Close_DepotBalance(result.warehouse, month, bool(options_.costUsed), Variant(options_.note),
                                   bar.get())) {
        result.months.push_back({month, year, rows.Count(month)});
        return true;
    }
    result.outcome = ClosingOutcome::Failed;
    result.month = month;
    result.year = year;
    result.reason = Reason(result.warehouse, month);
    return false;
}

/// The component answers False, whatever happened.
std::string ClosingRun::Reason(std::int32_t warehouse, std::int16_t month) {
    if (const auto* error = book_->LastError()) return error->Description();
    const auto count = NumberOf(
        *book_, "Select Count(*) As n From 仓库余额表" + OfMonth(warehouse, month) + " And 上期库存金额 Is Null");
    if (count > 0) return Message("{1} of its rows have no 上期库存金额", count);
    return Message("a figure is out of range, or there is not enough memory");
}

ClosingResult Reopen(CTables& tables, Connection& book, const Warehouse& warehouse, std::int16_t month) {
    ClosingResult result{.warehouse = warehouse.id, .name = warehouse.name, .month = month};
    const BalanceRows rows(book, warehouse.id);
    Transaction transaction(book);
    const std::int16_t closed = ClosedThrough(book, warehouse.id);
    result.year = rows.Year(month);
    if (closed != month) {
        result.outcome = closed < month ? ClosingOutcome::NothingToDo : ClosingOutcome::LaterMonthsClosed;
        result.month = std::max(closed, month);
        return result;
    }
    rows.RemoveCarried(month);
    rows.Reset(month);
    // Before the warehouse's first month none was closed.
    MarkClosedThrough(tables, warehouse.id, result.year, month - 1, rows.Count(month - 1) > 0);
    result.months.push_back({month, result.year, rows.Count(month)});
    transaction.Commit();
    return result;
}

}  // namespace

std::vector<ClosingResult> CloseMonth(const ConnectionPtr& book, const std::shared_ptr<Host>& host,
                                      const ClosingOptions& options, const ClosingWatch& watch) {
    return ClosingRun(book, host, options, watch).Run();
}

std::vector<ClosingResult> ReopenMonth(const ConnectionPtr& book, const ReopeningOptions& options) {
    CTables tables;
    tables.Cnn(book);
    tables.isSQL(options.isSQL);
    std::vector<ClosingResult> results;
    for (const auto& warehouse : ReadWarehouses(*book, options.warehouse)) {
        try {
            results.push_back(Reopen(tables, *book, warehouse, options.month));
        } catch (const Error& error) {
            ClosingResult failed{.warehouse = warehouse.id, .name = warehouse.name, .month = options.month};
            failed.outcome = ClosingOutcome::Failed;
            failed.reason = error.Description();
            results.push_back(std::move(failed));
        }
    }
    return results;
}

}  // namespace kpTables::bookkeeping
