#include "kpbook/commands/NewSyntax.h"

#include "kpTables/bookkeeping/NewBook.h"
#include "kpTables/text/Message.h"

namespace kpTables::kpbook::commands {

void AddNew(CLI::App& app, NewWords& words) {
    auto& options = words.options;
    auto* command = AddCommand(
        app, "new", "Create a book, ready for data entry",
        "The book has all its tables, its names, today as the date on which it was set up, and the usual payment\n"
        "methods. With --company it is the firm's: its name, the first month, its warehouses; without, somebody at a\n"
        "terminal is asked. With --from it is the next year's: master data, options, operators, layouts and saved\n"
        "reports come along, and the closing stock of month 12 is the opening stock. An existing file is not changed.\n\n"
        "Examples:\n  kpbook new shop.kpbook --company 测试商行 --year 2026 --month 1 --warehouse 中心仓库\n"
        "  kpbook new 2027.kpbook --from 2026.kpbook\n  kpbook new shop.kpbook --bare");
    AddBook(*command, options.book);
    auto* bare = command->add_flag("--bare", options.bare, "Create the tables only");
    auto* dialect =
        command
            ->add_option("--dialect", words.dialect,
                         "Column names of the table Header: Table and Index (jet) or TableName and ColIndex (sql)")
            ->check(CLI::IsMember({"jet", "sql"}))
            ->type_name("DIALECT");
    auto* from = command->add_option("--from", options.from, "The book of the year before, closed through month 12")
                     ->excludes(bare)
                     ->excludes(dialect)
                     ->type_name("BOOK");
    const auto add = [&](const char* name, auto& value, const char* what) {
        return command->add_option(name, value, what)->excludes(bare)->excludes(from);
    };
    add("--company", options.company, Translatable("The firm's name"))->check(kUtf8)->type_name("NAME");
    add("--year", options.year, Translatable("The year of the book; default: today's"))
        ->check(CLI::Range(static_cast<int>(bookkeeping::kFirstYear), static_cast<int>(bookkeeping::kLastYear)))
        ->type_name("Y");
    add("--month", options.month, Translatable("The first month, 1 to 12; default: today's"))
        ->check(CLI::Range(1, kLastMonth))
        ->type_name("M");
    add("--warehouse", options.warehouses, Translatable("The name of a warehouse; give it once for each"))
        ->check(kUtf8)
        ->allow_extra_args(false)
        ->type_name("NAME");
}

void ReadNew(NewWords& words) { words.options.sqlNames = words.dialect == "sql"; }

void AddOpening(CLI::App& app, OpeningOptions& options) {
    auto* command = AddCommand(
        app, "opening", "Enter the opening stock of the first month",
        "The first line names the columns 仓库, 商品编号, 数量 and 金额; a warehouse and a product are given by number, name\n"
        "or id. Either all rows are entered or, if any row is bad, none; every bad row is reported with its line and the\n"
        "reason. While the first month is open the opening stock may be entered again: it replaces that of the products\n"
        "in the file, and no other.\n\n"
        "Examples:\n  kpbook opening shop.kpbook stock.csv\n  produce | kpbook opening shop.kpbook -\n"
        "  kpbook opening shop.kpbook stock.csv --trace");
    AddBook(*command, options.book);
    command->add_option("FILE", options.path, "The CSV file, - for standard input")->required()->type_name("");
}

void AddCopy(CLI::App& app, CopyOptions& options) {
    auto* command = AddCommand(
        app, "copy", "Copy a whole book into a new one, also while it is in use",
        "The copy is checked before it takes its name. An existing file, or book on a server, is not changed.\n"
        "Between a file and a server, or two servers, all rows are copied and compared: the rows and a checksum of\n"
        "each table are shown.\n\n"
        "Examples:\n  kpbook copy shop.kpbook trial.kpbook\n  kpbook copy shop.kpbook backups/2026.kpbook\n"
        "  kpbook copy shop.kpbook second.kpbook --trace\n"
        "  kpbook copy shop.kpbook 'postgresql://kp@shop-server/books?book=shop'");
    AddBook(*command, options.book);
    command->add_option("BOOK2", options.copy, "The new book")->required()->type_name("");
}

}  // namespace kpTables::kpbook::commands
