#include <algorithm>
#include <filesystem>

#include "kpTables/Transaction.h"
#include "kpTables/bookkeeping/RowEntry.h"
#include "kpTables/text/Message.h"
#include "kpbook/Host.h"
#include "kpbook/Names.h"
#include "kpbook/Suggestion.h"
#include "kpbook/Terminal.h"
#include "kpbook/Workspace.h"
#include "kpbook/commands/Commands.h"
#include "kpbook/commands/FilesSyntax.h"
#include "kpbook/input/Manifest.h"
#include "kpbook/input/TableFile.h"
#include "kpbook/input/TableImport.h"
#include "text/Path.h"

namespace kpTables::kpbook::commands {

namespace {

const TableInfo& TableNamed(const std::vector<TableInfo>& tables, const std::string& name) {
    const auto table = std::ranges::find_if(tables, [&](const auto& t) { return SameName(t.name, name); });
    if (table == tables.end()) {
        std::vector<std::string_view> names;
        for (const TableInfo& each : tables) names.push_back(each.name);
        throw CommandError(Message("the book has no table {1}{2}", name, DidYouMean(name, names)));
    }
    return *table;
}

input::TableFileOptions FormatOf(const ImportOptions& options) {
    return {options.encoding, SeparatorOf(options.separator), options.sheet};
}

std::string RowsText(std::int64_t rows) { return CountedMessage(rows, "{1} row", "{1} rows"); }

int ImportFile(Workspace& workspace, const ImportOptions& options) {
    Book& book = *workspace.book;
    const auto tables = book.Tables();
    const TableInfo& table = TableNamed(tables, options.table);
    input::TableFile file(options.path, FormatOf(options));
    input::TableImport import(book, table, file.Rows(), file.Name(),
                              {.update = options.update, .key = ColumnsOf(options.key)});
    input::ImportCounts counts;
    workspace.Change([&] {
        counts = import.Run();
        return "导入 " + table.name + " " + std::to_string(counts.added + counts.changed);
    });
    const std::string done = options.update ? Message("{1} added, {2} changed, {3} unchanged", counts.added,
                                                      counts.changed, counts.unchanged)
                                            : Message("{1} imported", RowsText(counts.added));
    const std::string encoding(file.Rows().Encoding());
    const bool isPlain = encoding == "UTF-8" || !options.encoding.empty();
    TellLine(isPlain ? table.name + ": " + done : Message("{1}: {2}, read as {3}", table.name, done, encoding));
    return kSucceeded;
}

/// The rows of a file of a folder, which are as many as the manifest counts.
std::int64_t ImportEntry(Book& book, const std::vector<TableInfo>& tables, const std::string& folder,
                         const input::ManifestEntry& entry, const ImportOptions& options) {
    const TableInfo& table = TableNamed(tables, entry.table);
    input::TableFile file(folder + "/" + entry.file, FormatOf(options));
    // The bills of closed months belong to a whole book.
    input::TableImport import(book, table, file.Rows(), file.Name(), {.closedMonths = true});
    const auto rows = import.Run().added;
    if (entry.rows && rows != *entry.rows) {
        throw CommandError(Message("{1}: {2}, but {3} counts {4}; export the book again", file.Name(), RowsText(rows),
                                   input::kManifestName, *entry.rows));
    }
    return rows;
}

int ImportFolder(Book& book, const ImportOptions& options) {
    const std::string& folder = options.table;
    const auto entries = input::ReadFolder(folder);
    const auto tables = book.Tables();
    Transaction transaction(book);
    if (const auto taken = bookkeeping::FirstTableWithRows(book); !taken.empty()) {
        throw CommandError(Message(
            "the book has rows in {1}; a folder is imported into an empty book, which kpbook new BOOK --bare makes",
            taken));
    }
    std::int64_t rows = 0;
    std::int64_t bad = 0;
    for (const auto& entry : entries) {
        try {
            rows += ImportEntry(book, tables, folder, entry, options);
        } catch (const CommandError& error) {
            TellLine(std::string("kpbook: ") + error.what());
            ++bad;
        }
    }
    if (bad > 0) {
        throw CommandError(CountedMessage(bad, "{2}: {1} bad file, nothing was imported",
                                          "{2}: {1} bad files, nothing was imported", folder));
    }
    transaction.Commit();
    TellLine(Message("{1}: {2} tables, {3} imported", folder, entries.size(), RowsText(rows)));
    return kSucceeded;
}

}  // namespace

int Import(const ImportOptions& options, const GlobalOptions& global) {
    const bool isFolder = options.path.empty();
    if (std::error_code error; isFolder && !std::filesystem::is_directory(text::PathOf(options.table), error)) {
        throw UsageError(Message("import takes a table and a file, or the folder of an export; there is no folder {1}",
                                 options.table));
    }
    Workspace workspace(options.book, std::make_shared<ConsoleHost>(global.today, global.answer), global);
    return isFolder ? ImportFolder(*workspace.book, options) : ImportFile(workspace, options);
}

}  // namespace kpTables::kpbook::commands
