#include <cstdio>

#include "kpTables/Book.h"
#include "kpTables/Error.h"
#include "kpbook/Host.h"
#include "kpbook/Workspace.h"
#include "kpbook/commands/Commands.h"

namespace kpTables::kpbook::commands {

namespace {

/// Create_NewBook reports an error in a message box, SetDefaultSFK by returning false; here either ends the command.
void MakeReady(const BookPtr& book, const GlobalOptions& global) {
    const auto host = std::make_shared<BatchHost>();
    host->today = global.today;
    Workspace workspace(book, host, global);
    const bool named = workspace.tables.Create_NewBook() && host->messages.empty();
    if (named && workspace.tables.SetDefaultSFK()) return;
    if (const auto* error = workspace.connection->LastError()) throw *error;
    throw CommandError(book->Url() + ": cannot be prepared for use" +
                       (host->messages.empty() ? "" : ": " + host->messages[0].text));
}

}  // namespace

int NewBook(const NewOptions& options, const GlobalOptions& global) {
    NewBookOptions book;
    book.header = options.sqlNames ? HeaderDialect::SqlServer : HeaderDialect::Jet;
    const BookOptions bounds = OptionsOf(global);
    book.maxRows = bounds.maxRows;
    book.maxBytes = bounds.maxBytes;
    book.interrupted = bounds.interrupted;
    if (!options.bare) book.prepare = [&](const BookPtr& made) { MakeReady(made, global); };
    const auto tables = CreateBook(options.book, book)->Tables().size();
    std::fprintf(stderr, "%s: %zu tables made%s\n", options.book.c_str(), tables,
                 options.bare ? "" : ", names, dates and payment methods set");
    return kSucceeded;
}

}  // namespace kpTables::kpbook::commands
