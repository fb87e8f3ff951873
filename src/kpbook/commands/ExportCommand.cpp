#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <memory>

#include "kpTables/BookFiles.h"
#include "kpTables/Transaction.h"
#include "kpTables/text/Message.h"
#include "kpbook/Host.h"
#include "kpbook/Names.h"
#include "kpbook/Terminal.h"
#include "kpbook/Workspace.h"
#include "kpbook/commands/Commands.h"
#include "kpbook/input/Manifest.h"
#include "kpbook/output/CellText.h"
#include "kpbook/output/JsonText.h"
#include "kpbook/output/Output.h"
#include "kpbook/output/RowWriters.h"

namespace kpTables::kpbook::commands {

namespace {

namespace fs = std::filesystem;

/// Columns in which an empty field means another value than Null: an empty text, the default, or the next number.
std::vector<bool> ColumnsThatMarkNull(const TableInfo& table) {
    std::vector<bool> marked;
    for (const auto& column : table.columns) {
        marked.push_back(column.type == VarType::String || !column.defaultValue.IsNull() || column.counter);
    }
    return marked;
}

std::int64_t WriteTable(Book& book, const TableInfo& table, output::Output& output, bool excel) {
    std::string columns;
    for (const auto& column : table.columns) columns += (columns.empty() ? "[" : ",[") + column.name + "]";
    const auto rows = book.Execute("Select " + columns + " From [" + table.name + "]");
    if (excel) output.Write("\xEF\xBB\xBF");
    return output::WriteTableCsv(*rows, output, ColumnsThatMarkNull(table));
}

std::string FileOf(const TableInfo& table) {
    if (table.name.find('/') != table.name.npos || table.name.starts_with('.')) {
        throw CommandError(Message("the table {1} cannot be exported: its name is no file's name", table.name));
    }
    return table.name + ".csv";
}

std::string ManifestLine(const TableInfo& table, std::int64_t rows) {
    std::string line = "{\"table\":";
    output::AppendJsonString(line, table.name);
    line += ",\"file\":";
    output::AppendJsonString(line, FileOf(table));
    line += ",\"rows\":" + std::to_string(rows) + ",\"columns\":[";
    for (const auto& column : table.columns) {
        line += line.ends_with('[') ? "{\"name\":" : ",{\"name\":";
        output::AppendJsonString(line, column.name);
        line += ",\"type\":\"" + std::string(output::TypeName(column.type)) + "\"}";
    }
    return line + "]}";
}

/// A folder that is removed again when nothing was put into it.
class TargetFolder {
public:
    explicit TargetFolder(const std::string& path) : path_(path) {
        std::error_code error;
        made_ = fs::create_directories(path, error);
        // As a new book, which has passwords too.
        if (made_) fs::permissions(path, fs::perms::owner_all, error);
        if (!fs::is_directory(path)) {
            throw CommandError(Message("{1}: no folder can be made: {2}", path,
                                       error ? SystemMessage(error) : Message("there is a file")));
        }
    }
    ~TargetFolder() {
        std::error_code error;
        if (made_) fs::remove(path_, error);
    }
    TargetFolder(const TargetFolder&) = delete;
    TargetFolder& operator=(const TargetFolder&) = delete;

private:
    std::string path_;
    bool made_ = false;
};

std::unique_ptr<output::Output> OpenTarget(const std::string& path, const std::string& book) {
    if (IsPartOfBook(path, book))
        throw UsageError(Message("{1} belongs to a book; tables are not written over it", path));
    return std::make_unique<output::Output>(path);
}

/// Writes tables into a folder; all files take their places when the last is whole.
std::int64_t WriteFolder(Book& book, const std::vector<TableInfo>& tables, const std::string& folder,
                         const ExportOptions& options, bool hasManifest) {
    const TargetFolder target(folder);
    std::vector<std::unique_ptr<output::Output>> files;
    std::string manifest = "{\"tables\":[";
    std::int64_t total = 0;
    for (const TableInfo& table : tables) {
        files.push_back(OpenTarget(folder + "/" + FileOf(table), options.book));
        const auto rows = WriteTable(book, table, *files.back(), options.excel);
        files.back()->Finish();
        manifest += (total == 0 && files.size() == 1 ? "\n" : ",\n") + ManifestLine(table, rows);
        total += rows;
    }
    if (hasManifest) {
        files.push_back(OpenTarget(folder + "/" + input::kManifestName, options.book));
        files.back()->Write(manifest + "\n]}\n");
        files.back()->Finish();
    }
    for (const auto& file : files) file->Keep();
    return total;
}

}  // namespace

int Export(const ExportOptions& options, const GlobalOptions& global) {
    const bool all = options.target.empty();
    if (all && options.table == "-")
        throw UsageError(Message("export to standard output takes one table: BOOK TABLE -"));
    Workspace workspace(options.book, std::make_shared<ConsoleHost>(global.today, global.answer), global, Access::Copy);
    Book& book = *workspace.book;
    // All tables as of one moment.
    const Transaction standstill(book);
    auto tables = book.Tables();
    if (!all) {
        std::erase_if(tables, [&](const TableInfo& table) { return !SameName(table.name, options.table); });
        if (tables.empty()) throw CommandError(Message("the book has no table {1}", options.table));
    }
    std::int64_t rows = 0;
    if (options.target == "-") {
        output::Output output("");
        rows = WriteTable(book, tables.front(), output, options.excel);
        output.Close();
    } else {
        rows = WriteFolder(book, tables, all ? options.table : options.target, options, all);
    }
    const std::string what = all ? Message("{1} tables", tables.size()) : tables.front().name;
    TellLine(CountedMessage(rows, "{2}: {1} row exported", "{2}: {1} rows exported", what));
    return kSucceeded;
}

}  // namespace kpTables::kpbook::commands
