#include <cstdio>

#include "engines/BookUrl.h"
#include "kpTables/bookkeeping/Backup.h"
#include "kpTables/text/Message.h"
#include "kpbook/Host.h"
#include "kpbook/Terminal.h"
#include "kpbook/Workspace.h"
#include "kpbook/commands/BookCopying.h"
#include "kpbook/commands/Commands.h"

namespace kpTables::kpbook::commands {

int Backup(const BackupOptions& options, const GlobalOptions& global) {
    const Workspace workspace(options.book, std::make_shared<ConsoleHost>(global.today, global.answer), global,
                              Access::Copy);
    bookkeeping::BackupOptions backup;
    backup.path = options.path;
    if (IsFile(options.book)) {
        backup.bookFile = engines::ParseBookUrl(options.book).address;
    } else {
        backup.copy = [&](const std::string& path) { CopyRows(workspace, path, global); };
    }
    backup.keep = options.keep;
    backup.open = [](const std::string& path) { return OpenBook(path); };
    bookkeeping::BackUpBook(*workspace.book, backup);
    TellLine(Message("{1}: copied and checked", options.path));
    return kSucceeded;
}

}  // namespace kpTables::kpbook::commands
