// An open book with the component on it.
#pragma once

#include <memory>
#include <string>

#include "kpTables/Book.h"
#include "kpTables/CTables.h"
#include "kpbook/Options.h"
#include "kpbook/TracingConnection.h"

namespace kpTables::kpbook {

/// A command that only reads takes a book in a place where nothing can be written, too.
enum class Access { Read, Change };

struct Session {
    /// Opens the book at a path or URL. With --trace every statement is written to standard error.
    Session(const std::string& url, std::shared_ptr<Host> host, const GlobalOptions& global,
            Access access = Access::Change);
    Session(BookPtr opened, std::shared_ptr<Host> host, const GlobalOptions& global);

    BookPtr book;
    std::shared_ptr<TracingConnection> connection;
    CTables tables;
};

/// First column of the row that a statement finds; without one a CommandError: the book has no "warehouse 9".
std::string NameOf(Session& session, const std::string& statement, const std::string& what);

/// Calls a method or a property by name: a property with one argument is set, without one it is read. Error 438 for an
/// unknown name and for Cnn, which is this program's own.
Variant CallMember(CTables& tables, const std::string& name, std::vector<Variant>& arguments);

}  // namespace kpTables::kpbook
