#include <algorithm>
#include <cstdio>

#include "kpbook/Commands.h"
#include "kpbook/CsvImport.h"
#include "kpbook/Host.h"
#include "kpbook/InputFile.h"
#include "kpbook/Names.h"
#include "kpbook/Session.h"

namespace kpTables::kpbook {

int Import(const ImportOptions& options, const GlobalOptions& global) {
    Session session(options.book, std::make_shared<ConsoleHost>(global.today, global.answer), global);
    const auto tables = session.book->Tables();
    const auto table = std::ranges::find_if(tables, [&](const auto& t) { return SameName(t.name, options.table); });
    if (table == tables.end()) throw CommandError("the book has no table " + options.table);

    InputFile file(options.path);
    CsvReader csv([&file](char* buffer, std::size_t size) { return file.Read(buffer, size); });
    CsvImport import(*session.book, *table, csv, options.path == "-" ? "standard input" : options.path);
    const auto rows = import.Run();
    std::fprintf(stderr, "%s: %lld %s imported\n", table->name.c_str(), static_cast<long long>(rows),
                 rows == 1 ? "row" : "rows");
    return kSucceeded;
}

}  // namespace kpTables::kpbook
