#include <cstdio>

#include "kpbook/Host.h"
#include "kpbook/Workspace.h"
#include "kpbook/commands/Commands.h"
#include "kpbook/output/ResultWriter.h"

namespace kpTables::kpbook::commands {

int Sql(const SqlOptions& options, const GlobalOptions& global) {
    Workspace workspace(options.book, std::make_shared<ConsoleHost>(global.today, global.answer), global);
    if (const auto recordset = workspace.connection->Execute(options.text)) {
        output::WriteRecordset(*recordset, global);
    } else {
        const auto rows = workspace.book->RecordsAffected();
        workspace.Log("执行 " + options.text);
        std::fprintf(stderr, rows == 1 ? "%lld row changed\n" : "%lld rows changed\n", static_cast<long long>(rows));
    }
    return kSucceeded;
}

}  // namespace kpTables::kpbook::commands
