#include <cstdio>

#include "kpbook/Commands.h"
#include "kpbook/Host.h"
#include "kpbook/ResultWriter.h"
#include "kpbook/Session.h"

namespace kpTables::kpbook {

int Sql(const SqlOptions& options, const GlobalOptions& global) {
    Session session(options.book, std::make_shared<ConsoleHost>(global.today, global.answer), global);
    if (const auto recordset = session.connection->Execute(options.text)) {
        WriteRecordset(*recordset, global);
    } else {
        const auto rows = session.book->RecordsAffected();
        std::fprintf(stderr, rows == 1 ? "%lld row changed\n" : "%lld rows changed\n", static_cast<long long>(rows));
    }
    return kSucceeded;
}

}  // namespace kpTables::kpbook
