#include <cstdio>

#include "kpTables/Book.h"
#include "kpbook/Commands.h"
#include "kpbook/Host.h"
#include "kpbook/Session.h"

namespace kpTables::kpbook {

namespace {

/// Create_NewBook shows an error in a message box and SetDefaultSFK answers false; here either ends the command.
void MakeReady(const BookPtr& book, const GlobalOptions& global) {
    const auto host = std::make_shared<BatchHost>();
    host->today = global.today;
    Session session(book, host, global);
    const bool named = session.tables.Create_NewBook() && host->messages.empty();
    if (named && session.tables.SetDefaultSFK()) return;
    if (const auto& error = session.connection->LastError()) throw *error;
    throw CommandError(book->Url() + ": cannot be made ready" +
                       (host->messages.empty() ? "" : ": " + host->messages[0].text));
}

}  // namespace

int NewBook(const NewOptions& options, const GlobalOptions& global) {
    NewBookOptions book;
    book.header = options.sqlNames ? HeaderDialect::SqlServer : HeaderDialect::Jet;
    if (!options.bare) book.prepare = [&](const BookPtr& made) { MakeReady(made, global); };
    const auto tables = CreateBook(options.book, book)->Tables().size();
    std::fprintf(stderr, "%s: %zu tables made%s\n", options.book.c_str(), tables,
                 options.bare ? "" : ", names, dates and payment methods set");
    return kSucceeded;
}

}  // namespace kpTables::kpbook
