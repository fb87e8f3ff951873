#include <cstdio>

#include "engines/BookUrl.h"
#include "kpTables/bookkeeping/Backup.h"
#include "kpTables/text/Message.h"
#include "kpbook/Host.h"
#include "kpbook/Terminal.h"
#include "kpbook/Workspace.h"
#include "kpbook/commands/Commands.h"

namespace kpTables::kpbook::commands {

int Copy(const CopyOptions& options, const GlobalOptions& global) {
    const auto target = engines::ParseBookUrl(options.copy);
    const Workspace workspace(options.book, std::make_shared<ConsoleHost>(global.today, global.answer), global,
                              Access::Read);
    if (target.scheme != engines::ParseBookUrl(options.book).scheme) {
        throw CommandError(Message("{1}: a book is copied to its own kind of place, a {2}", options.copy,
                                   engines::ParseBookUrl(options.book).scheme));
    }
    bookkeeping::BackUpBook(*workspace.book,
                            {.path = target.address, .open = [](const auto& path) { return OpenBook(path); }});
    TellLine(Message("{1}: copied and checked", options.copy));
    return kSucceeded;
}

}  // namespace kpTables::kpbook::commands
