#include <charconv>
#include <cstdio>
#include <functional>

#include "kpTables/Book.h"
#include "kpTables/bookkeeping/NewBook.h"
#include "kpTables/bookkeeping/NextYear.h"
#include "kpTables/text/Message.h"
#include "kpbook/Host.h"
#include "kpbook/Terminal.h"
#include "kpbook/Workspace.h"
#include "kpbook/commands/BalanceTexts.h"
#include "kpbook/commands/Commands.h"

namespace kpTables::kpbook::commands {

namespace {

using bookkeeping::Beginning;

/// A whole number between two others, asked for until one is typed; an empty answer is the proposed one.
std::int16_t AskNumber(const std::string& what, std::int16_t proposed, std::int16_t least, std::int16_t most) {
    for (;;) {
        const auto line = AskLine(what + " [" + std::to_string(proposed) + "]: ");
        if (!line || line->empty()) return proposed;
        std::int16_t number = 0;
        const auto* end = line->data() + line->size();
        const auto read = std::from_chars(line->data(), end, number);
        if (read.ec == std::errc() && read.ptr == end && number >= least && number <= most) return number;
    }
}

/// What the firm's options leave open is asked for at a terminal, otherwise taken from today.
Beginning BeginningOf(const NewOptions& options, const std::string& company, Date today) {
    Beginning beginning{.company = company, .warehouses = options.warehouses};
    const bool ask = InputIsTerminal();
    const auto year = static_cast<std::int16_t>(today.Year());
    const auto month = static_cast<std::int16_t>(today.Month());
    using bookkeeping::kFirstYear;
    using bookkeeping::kLastYear;
    beginning.year = options.year ? *options.year
                     : ask        ? AskNumber(Message("Year"), year, kFirstYear, kLastYear)
                                  : year;
    beginning.month = options.month ? *options.month
                      : ask         ? AskNumber(Message("First month, 1 to 12"), month, 1, kLastMonth)
                                    : month;
    if (!ask || !beginning.warehouses.empty()) return beginning;
    while (auto name = AskLine(Message("Warehouse (empty: no more): "))) {
        if (name->empty()) break;
        beginning.warehouses.push_back(*name);
    }
    return beginning;
}

/// The firm that the book is for; nothing: it is not said yet.
std::optional<Beginning> FirmOf(const NewOptions& options, Date today) {
    std::string company = options.company;
    if (company.empty()) company = AskLine(Message("Company (empty: none yet): ")).value_or("");
    if (!company.empty()) return BeginningOf(options, company, today);
    if (options.year || options.month || !options.warehouses.empty()) {
        throw UsageError(Message("--year, --month and --warehouse are a firm's: give its name with --company"));
    }
    return std::nullopt;
}

/// Creates the book, prepared by a function that gets its connection. What fails in a method that traps errors ends it
/// too. Answers the number of its tables.
std::size_t Create(const NewOptions& options, const GlobalOptions& global, HeaderDialect header,
                   const std::function<void(const BookPtr&, const ConnectionPtr&)>& prepare) {
    NewBookOptions book;
    book.header = header;
    const BookOptions bounds = OptionsOf(global);
    book.maxRows = bounds.maxRows;
    book.maxBytes = bounds.maxBytes;
    book.interrupted = bounds.interrupted;
    book.password = bounds.password;
    std::size_t tables = 0;
    book.prepare = [&](const BookPtr& made) {
        Workspace workspace(made, std::make_shared<ConsoleHost>(global.today, global.answer), global);
        prepare(made, workspace.connection);
        tables = made->Tables().size();
        if (workspace.LogIncidents()) throw CommandError(Message("{1}: was not made", options.book));
    };
    CreateBook(options.book, book);
    return tables;
}

std::string DoneText(const NewOptions& options, const std::optional<Beginning>& firm, std::size_t tables) {
    if (options.bare) return Message("{1}: {2} tables made", options.book, tables);
    if (!firm) return Message("{1}: {2} tables made, names, dates and payment methods set", options.book, tables);
    return CountedMessage(std::ssize(firm->warehouses), "{2}: {3} tables made, {4} begins {5}-{6} with {1} warehouse",
                          "{2}: {3} tables made, {4} begins {5}-{6} with {1} warehouses", options.book, tables,
                          firm->company, firm->year, firm->month);
}

int BeginNextYear(const NewOptions& options, const GlobalOptions& global) {
    const Workspace from(options.from, std::make_shared<ConsoleHost>(global.today, global.answer), global,
                         Access::Copy);
    bookkeeping::NextYear next;
    Create(options, global, bookkeeping::HeaderDialectOf(*from.book),
           [&](const BookPtr& made, const ConnectionPtr&) { next = bookkeeping::BeginNextYear(*from.book, made); });
    for (const std::string& table : next.ownTables)
        TellLine("kpbook: " + Message("your own table {1} was left behind", table));
    TellLine(CountedMessage(next.openingRows, "{2}: {3} begins with {1} row of opening stock",
                            "{2}: {3} begins with {1} rows of opening stock", options.book, next.year));
    return kSucceeded;
}

}  // namespace

int NewBook(const NewOptions& options, const GlobalOptions& global) {
    if (!options.from.empty()) return BeginNextYear(options, global);
    const HeaderDialect header = options.sqlNames ? HeaderDialect::SqlServer : HeaderDialect::Jet;
    const Date today = ConsoleHost(global.today, global.answer).Today();
    const auto firm = options.bare ? std::nullopt : FirmOf(options, today);
    const auto tables = Create(options, global, header, [&](const BookPtr&, const ConnectionPtr& book) {
        if (options.bare) return;
        if (firm) {
            bookkeeping::BeginBook(book, *firm);
        } else {
            bookkeeping::PrepareBook(book, today);
        }
    });
    TellLine(DoneText(options, firm, tables));
    return kSucceeded;
}

}  // namespace kpTables::kpbook::commands
