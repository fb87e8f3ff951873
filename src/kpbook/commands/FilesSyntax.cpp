#include "kpbook/commands/FilesSyntax.h"

#include "kpTables/text/Message.h"

#include <algorithm>

namespace kpTables::kpbook::commands {

void AddImport(CLI::App& app, ImportOptions& options) {
    auto* command = AddCommand(
        app, "import", "Add the rows of a CSV file or workbook to a table, or an exported folder to an empty book",
        "The first line names the columns. Either all rows are added or, if any row is bad, none; every bad row is\n"
        "reported with its line and the reason. An empty field takes the column's default, except in text columns; \\N\n"
        "without quotes is Null. Commas, tabs and semicolons are recognised from the first line, UTF-8, UTF-16 with a\n"
        "byte order mark and GB18030 (GBK) from the text; of a workbook (xlsx), the first sheet is taken. Bills of closed\n"
        "months are refused.\n"
        "--update changes the row that has the same key, adds rows whose key is new, and says how many are which.\n"
        "A folder that export has written is imported as a whole into an empty book (new BOOK --bare).\n\n"
        "Examples:\n  kpbook import shop.kpbook 商品设置 products.csv\n"
        "  kpbook import shop.kpbook 商品设置 prices.xlsx --update --key 商品编号\n"
        "  produce | kpbook import shop.kpbook 入库记录 -\n"
        "  kpbook import copy.kpbook exported");
    AddBook(*command, options.book);
    command->add_option("TABLE", options.table, "The table; the folder where no FILE follows")
        ->required()
        ->check(kUtf8)
        ->type_name("");
    command->add_option("FILE", options.path, "The file, - for standard input")->type_name("");
    command->add_option("--encoding", options.encoding, "The file's encoding, by its iconv name; default: recognised")
        ->type_name("NAME");
    command->add_option("--separator", options.separator, "comma, tab, semicolon or a character; default: recognised")
        ->type_name("S");
    command->add_option("--sheet", options.sheet, "The sheet of a workbook; default: the first")
        ->check(kUtf8)
        ->type_name("NAME");
    auto* update = command->add_flag("--update", options.update, "Change the rows that have the same key");
    command->add_option("--key", options.key, "Columns that tell the rows apart; default: the table's primary key")
        ->check(kUtf8)
        ->needs(update)
        ->type_name("COLUMN[,COLUMN]");
}

void AddExport(CLI::App& app, ExportOptions& options) {
    auto* command = AddCommand(
        app, "export", "Write the tables as CSV files that import reads back",
        "Writes every table of the book, or one, as TABLE.csv into a folder, which is made if need be: UTF-8, with all\n"
        "digits, dates as 2004-03-07, and \\N for Null where an empty field means something else. For all tables,\n"
        "manifest.json lists them with their rows; kpbook import takes the folder into an empty book. The files take\n"
        "their places when all of them are whole.\n\n"
        "Examples:\n  kpbook export shop.kpbook exported\n  kpbook export shop.kpbook 商品设置 exported --excel\n"
        "  kpbook export shop.kpbook 商品设置 - | sort");
    AddBook(*command, options.book);
    command->add_option("TABLE", options.table, "The table; the folder where no DIR follows, for all tables")
        ->required()
        ->check(kUtf8)
        ->type_name("");
    command->add_option("DIR", options.target, "The folder, - for standard output")->type_name("");
    command->add_flag("--excel", options.excel, "Begin the files with a byte order mark, by which Excel knows UTF-8");
}

std::optional<char> SeparatorOf(const std::string& word) {
    if (word.empty()) return std::nullopt;
    if (word == "comma") return ',';
    if (word == "tab" || word == "\\t") return '\t';
    if (word == "semicolon") return ';';
    const bool isText = word.size() > 1 || static_cast<unsigned char>(word[0]) >= 0x80;
    if (isText || word == "\"" || word == "\n" || word == "\r") {
        throw CLI::ValidationError(
            Message("--separator takes comma, tab, semicolon or another ASCII character, not {1}", word));
    }
    return word[0];
}

std::vector<std::string> ColumnsOf(const std::string& word) {
    std::vector<std::string> columns;
    for (std::size_t start = 0; start < word.size();) {
        const auto end = std::min(word.find(',', start), word.size());
        columns.push_back(word.substr(start, end - start));
        start = end + 1;
    }
    return columns;
}

void CheckImport(const ImportOptions& options) {
    SeparatorOf(options.separator);
    if (options.path.empty() && options.update) {
        throw CLI::ValidationError(
            Message("--update takes a table and a file; a folder is imported into an empty book"));
    }
}

}  // namespace kpTables::kpbook::commands
