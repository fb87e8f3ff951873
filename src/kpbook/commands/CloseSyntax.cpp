#include "kpbook/commands/CloseSyntax.h"

#include <string>

namespace kpTables::kpbook::commands {

namespace {

void AddWarehouse(CLI::App& command, std::string& warehouse) {
    command
        .add_option("--warehouse", warehouse,
                    "The warehouse's name or dpID, or 全部; default: the one that --operator manages, else all of them")
        ->check(kUtf8)
        ->type_name("D");
}

}  // namespace

void AddClose(CLI::App& app, CloseWords& words) {
    auto& options = words.options;
    auto* command = AddCommand(
        app, "close", "Close a month for one warehouse or for all",
        "Products on bills that have no balance row are searched for, and added if the question is answered with yes.\n"
        "Then each warehouse's balance rows of the month are filled, the next month's rows are created, and the\n"
        "warehouse is marked as closed: all of it or, when a step fails, nothing. A month is closed after the one before\n"
        "it, and once; --again closes it anew, from the bills as they are now.\n\n"
        "Examples:\n  kpbook close shop.kpbook --month 3 --answer yes\n"
        "  kpbook close shop.kpbook --month 4 --warehouse 中心仓库 --cost --date 2004-04-30 --answer yes\n"
        "  kpbook close shop.kpbook --month 4 --warehouse 中心仓库 --again --dry-run --answer yes");
    AddBook(*command, options.book);
    AddMonth(*command, "--month", options.month, "The month, 1 to 12")->required();
    AddWarehouse(*command, options.warehouse);
    auto* cost = command->add_flag("--cost", options.costUsed, "Take outbound amounts from the cost bills");
    command
        ->add_flag("--no-cost", options.costUnused,
                   "Take them from the outbound bills; default: the book's setting 出库计价, else these")
        ->excludes(cost);
    command->add_option("--date", words.date, "The date noted in the rows that are created; default: today")
        ->check(kDate)
        ->type_name("DATE");
    command->add_flag("--again", options.again, "Close a month that is closed already");
    AddMonth(*command, "--through", options.through, "Close the months up to this one too");
    command->add_flag("--dry-run", options.dryRun, "Show what would change, row by row, and change nothing");
}

void AddReopen(CLI::App& app, ReopenOptions& options) {
    auto* command = AddCommand(
        app, "reopen", "Open the last closed month again",
        "The rows that were carried into the next month are removed, the month's rows are put back to how they were\n"
        "before the closing, and its bills can be entered again.\n\n"
        "Examples:\n  kpbook reopen shop.kpbook --month 2 --warehouse 2\n  kpbook reopen shop.kpbook --month 2 --warehouse 1\n"
        "  kpbook reopen shop.kpbook --month 1 --warehouse 2");
    AddBook(*command, options.book);
    AddMonth(*command, "--month", options.month, "The month, 1 to 12")->required();
    AddWarehouse(*command, options.warehouse);
}

void AddCheck(CLI::App& app, CheckOptions& options) {
    auto* command = AddCommand(
        app, "check", "Check a book's file and figures",
        "Says nothing when all is well, else lists what is wrong by warehouse, month and product, with exit code 1: the\n"
        "file's integrity; the figures of the closed months, each against the other and against the bills; lines without\n"
        "a header, headers without lines; ids without a master row; products without a balance row; doubled rows.\n"
        "--repair removes doubled balance rows that are equal in every column, after a question, and nothing else.\n\n"
        "Examples:\n  kpbook check shop.kpbook\n  kpbook check shop.kpbook -O csv\n"
        "  kpbook check shop.kpbook --repair --answer yes");
    AddBook(*command, options.book);
    command->add_flag("--repair", options.repair, "Remove doubled balance rows that are equal");
}

void AddBackup(CLI::App& app, BackupOptions& options) {
    auto* command = AddCommand(
        app, "backup", "Copy a book, also while it is in use",
        "The copy is checked before it takes its name. An existing FILE is refused, unless --keep says how many\n"
        "generations to keep: FILE is the newest, then FILE.1, FILE.2, ...\n\n"
        "Examples:\n  kpbook backup shop.kpbook shop-copy.kpbook\n"
        "  kpbook backup shop.kpbook shop-$(date +%F).kpbook\n"
        "  kpbook backup shop.kpbook backups/shop.kpbook --keep 7");
    AddBook(*command, options.book);
    command->add_option("FILE", options.path, "The copy")->required()->type_name("");
    command->add_option("--keep", options.keep, "The number of generations to keep")
        ->check(CLI::Range(1, kMostGenerations))
        ->type_name("N");
}

}  // namespace kpTables::kpbook::commands
