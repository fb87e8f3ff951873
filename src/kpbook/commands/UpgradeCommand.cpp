#include "kpbook/commands/UpgradeCommand.h"

#include <cstdio>

#include "kpTables/Book.h"
#include "kpTables/text/Message.h"
#include "kpbook/Terminal.h"
#include "kpbook/Workspace.h"
#include "kpbook/commands/Commands.h"

namespace kpTables::kpbook::commands {

void AddUpgrade(CLI::App& app, UpgradeOptions& options) {
    auto* command = AddCommand(
        app, "upgrade", "Bring a book of an earlier version up to date",
        "Gives the book the tables, columns and indexes of a new one, also those that somebody dropped. Every row, and\n"
        "every table and column of your own, stays. All or nothing: after a failure the book is as it was. Close other\n"
        "programs that use the book. First, a book in a file is copied beside itself, to\n"
        "BOOK.before-upgrade.\n\n"
        "Examples:\n  kpbook upgrade shop.kpbook\n  kpbook upgrade shop.kpbook --no-backup\n"
        "  for book in *.kpbook; do kpbook upgrade $book; done");
    AddBook(*command, options.book);
    command->add_flag("--no-backup", options.noBackup, "Make no copy first");
}

int Upgrade(const UpgradeOptions& options, const GlobalOptions& global) {
    const std::string& book = options.book;
    const BookUpgrade done =
        UpgradeBook(options.book, {.password = OptionsOf(global).password, .copyFirst = !options.noBackup});
    if (done.changes.empty()) {
        TellLine(Message("{1}: is up to date, format {2}", book, done.toFormat));
        return kSucceeded;
    }
    for (const std::string& change : done.changes) TellLine(change);
    if (done.fromFormat == done.toFormat) {
        TellLine(Message("{1}: has everything of format {2} again", book, done.toFormat));
    } else {
        TellLine(Message("{1}: upgraded from format {2} to {3}", book, done.fromFormat, done.toFormat));
    }
    if (!done.copy.empty()) TellLine(Message("the book as it was: {1}", done.copy));
    return kSucceeded;
}

}  // namespace kpTables::kpbook::commands
