// An open book and the component that works on it.
#pragma once

#include <memory>
#include <string>

#include "kpTables/Book.h"
#include "kpTables/CTables.h"
#include "kpTables/bookkeeping/WatchedConnection.h"
#include "kpbook/GlobalOptions.h"
#include "kpbook/Incidents.h"

namespace kpTables::kpbook {

/// A command that only reads also opens a book that cannot be written.
enum class Access { Read, Change };

struct Workspace {
    /// Opens the book at a path or URL. With --trace, every statement is written to standard error.
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

    BookPtr book;
    std::shared_ptr<bookkeeping::WatchedConnection> connection;
    CTables tables;

private:
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
