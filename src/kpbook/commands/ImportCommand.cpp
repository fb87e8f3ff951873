#include <algorithm>
#include <cstdio>

#include "kpbook/Host.h"
#include "kpbook/Names.h"
#include "kpbook/Suggestion.h"
#include "kpbook/Workspace.h"
#include "kpbook/commands/Commands.h"
#include "kpbook/input/CsvImport.h"
#include "kpbook/input/InputFile.h"

namespace kpTables::kpbook::commands {

int Import(const ImportOptions& options, const GlobalOptions& global) {
    Workspace workspace(options.book, std::make_shared<ConsoleHost>(global.today, global.answer), global);
    const auto tables = workspace.book->Tables();
    const auto table = std::ranges::find_if(tables, [&](const auto& t) { return SameName(t.name, options.table); });
    if (table == tables.end()) {
        std::vector<std::string_view> names;
        for (const TableInfo& each : tables) names.push_back(each.name);
        throw CommandError("the book has no table " + options.table + DidYouMean(options.table, names));
    }

    input::InputFile file(options.path);
    input::CsvReader csv([&file](char* buffer, std::size_t size) { return file.Read(buffer, size); });
    input::CsvImport import(*workspace.book, *table, csv, options.path == "-" ? "standard input" : options.path);
    const auto rows = import.Run();
    std::fprintf(stderr, "%s: %lld %s imported\n", table->name.c_str(), static_cast<long long>(rows),
                 rows == 1 ? "row" : "rows");
    return kSucceeded;
}

}  // namespace kpTables::kpbook::commands
