// An open book and the component that works on it.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "kpTables/Book.h"
#include "kpTables/CTables.h"
#include "kpTables/Transaction.h"
#include "kpTables/bookkeeping/ActingOperator.h"
#include "kpTables/bookkeeping/WatchedConnection.h"
#include "kpbook/GlobalOptions.h"
#include "kpbook/Incidents.h"

namespace kpTables::kpbook {

/// A command that only reads also opens a book that cannot be written. Copy reads all of it as of one moment: on a
/// server, others change the book meanwhile.
enum class Access { Read, Copy, Change };

inline SqlDialect DialectOf(bool isSQL) { return isSQL ? SqlDialect::SqlServer : SqlDialect::Jet; }

struct Workspace {
    /// Opens the book at a path or URL. With --trace, every statement is written to standard error. With --operator,
    /// the operator logs in and must have the command's right; without, a book that demands an operator is not opened
    /// for a change: a CommandError.
    Workspace(const std::string& url, std::shared_ptr<Host> host, const GlobalOptions& global,
              Access access = Access::Change);
    Workspace(BookPtr opened, std::shared_ptr<Host> host, const GlobalOptions& global);
    /// Adds what failed to the incidents of the run.
    ~Workspace();
    Workspace(const Workspace&) = delete;
    Workspace& operator=(const Workspace&) = delete;

    /// What failed since the last call of this function, whatever the methods answered: statements, memory, and rows
    /// that were not saved.
    Incidents TakeIncidents();
    /// Adds them to the incidents of the run, which its end tells. True when there were any.
    bool LogIncidents();

    // Without --operator, everything is permitted and nothing is logged.
    /// Refuses what the operator has no right to: error 5.
    void Require(const std::string& right) const;
    /// Adds a line to the log; call it in the transaction of the change.
    void Log(const std::string& what) const;
    /// The line of a statement that has just run, and how many rows it changed, on standard error.
    void LogChange(const std::string& statement) const;
    /// The line of a method that was called; lists (rs...) and look-ups (Get...) have none.
    void LogCall(const std::string& method) const;
    /// Does a step, which answers its line in the log, wholly or not at all.
    template <class Step>
    void Change(Step step) {
        Transaction transaction(*connection);
        Log(step());
        transaction.Commit();
    }
    /// The warehouse that was asked for, else the operator's, if it manages one.
    std::optional<std::int32_t> WarehouseOr(std::optional<std::int32_t> asked) const;
    /// The same for a word of the command line: a name or an id, 全部 for all warehouses; "" when none was given.
    std::optional<std::int32_t> WarehouseOf(const std::string& word) const;

    BookPtr book;
    std::shared_ptr<bookkeeping::WatchedConnection> connection;
    CTables tables;
    /// Who --operator names; nobody without it.
    std::optional<bookkeeping::ActingOperator> acting;

private:
    /// hasOptions: the book has the table that says whether an operator is demanded.
    void LogIn(const GlobalOptions& global, Access access, bool hasOptions);

    std::optional<Date> today_;
    std::shared_ptr<IncidentLog> log_;
};

/// How the options of every command bound the statements on a book.
BookOptions OptionsOf(const GlobalOptions& global);

/// The first column of the row that a statement finds; if there is none, a CommandError: the book has no "warehouse 9".
std::string NameOf(Workspace& workspace, const std::string& statement, const std::string& what);

/// Calls a method or a property by name: a property with one argument is set, without one it is read. Error 438 for an
/// unknown name and for Cnn, which this program manages.
Variant CallMember(CTables& tables, const std::string& name, std::vector<Variant>& arguments);

}  // namespace kpTables::kpbook
