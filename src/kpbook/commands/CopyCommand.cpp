#include <cstdio>

#include "engines/BookUrl.h"
#include "kpTables/bookkeeping/Backup.h"
#include "kpbook/Host.h"
#include "kpbook/Workspace.h"
#include "kpbook/commands/Commands.h"

namespace kpTables::kpbook::commands {

int Copy(const CopyOptions& options, const GlobalOptions& global) {
    const auto target = engines::ParseBookUrl(options.copy);
    const Workspace workspace(options.book, std::make_shared<ConsoleHost>(global.today, global.answer), global,
                              Access::Read);
    if (target.scheme != engines::ParseBookUrl(options.book).scheme) {
        throw CommandError(options.copy + ": a book is copied to its own kind of place, a " +
                           engines::ParseBookUrl(options.book).scheme);
    }
    bookkeeping::BackUpBook(*workspace.book,
                            {.path = target.address, .open = [](const auto& path) { return OpenBook(path); }});
    std::fprintf(stderr, "%s: copied and checked\n", options.copy.c_str());
    return kSucceeded;
}

}  // namespace kpTables::kpbook::commands
