#include "kpbook/commands/UpgradeCommand.h"

#include <cstdio>

#include "kpTables/Book.h"
#include "kpbook/commands/Commands.h"

namespace kpTables::kpbook::commands {

void AddUpgrade(CLI::App& app, UpgradeOptions& options) {
    auto* command = AddCommand(
        app, "upgrade", "Bring a book of an earlier version up to date",
        "Gives the book the tables, columns and indexes of a new one, also those that somebody dropped. Every row, and\n"
        "every table and column of your own, stays. All or nothing: after a failure the book is as it was. Close other\n"
        "programs that use the book. First, the book is copied beside itself, to BOOK.before-upgrade.\n\n"
        "Examples:\n  kpbook upgrade shop.kpbook\n  kpbook upgrade shop.kpbook --no-backup\n"
        "  for book in *.kpbook; do kpbook upgrade $book; done");
    AddBook(*command, options.book);
    command->add_flag("--no-backup", options.noBackup, "Make no copy first");
}

int Upgrade(const UpgradeOptions& options, const GlobalOptions& /*global*/) {
    const char* const book = options.book.c_str();
    const BookUpgrade done = UpgradeBook(options.book, {.copyFirst = !options.noBackup});
    if (done.changes.empty()) {
        std::fprintf(stderr, "%s: is up to date, format %d\n", book, done.toFormat);
        return kSucceeded;
    }
    for (const std::string& change : done.changes) std::fprintf(stderr, "%s\n", change.c_str());
    if (done.fromFormat == done.toFormat) {
        std::fprintf(stderr, "%s: has everything of format %d again\n", book, done.toFormat);
    } else {
        std::fprintf(stderr, "%s: upgraded from format %d to %d\n", book, done.fromFormat, done.toFormat);
    }
    if (!done.copy.empty()) std::fprintf(stderr, "the book as it was: %s\n", done.copy.c_str());
    return kSucceeded;
}

}  // namespace kpTables::kpbook::commands
