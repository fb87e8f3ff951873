#include "kpbook/CommandLine.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <iterator>
#include <limits>
#include <sstream>
#include <string_view>

#include "kpTables/BookFiles.h"
#include "kpTables/text/Message.h"
#include "kpbook/Ending.h"
#include "kpbook/Exit.h"
#include "kpbook/Names.h"
#include "kpbook/Suggestion.h"
#include "kpbook/Terminal.h"
#include "kpbook/batch/BatchCommand.h"
#include "kpbook/commands/BillSyntax.h"
#include "kpbook/commands/CloseSyntax.h"
#include "kpbook/commands/CommandRights.h"
#include "kpbook/commands/CommandSyntax.h"
#include "kpbook/commands/Commands.h"
#include "kpbook/commands/CompletionCommand.h"
#include "kpbook/commands/FilesSyntax.h"
#include "kpbook/commands/HelpLanguage.h"
#include "kpbook/commands/MasterSyntax.h"
#include "kpbook/commands/NewSyntax.h"
#include "kpbook/commands/OperatorsSyntax.h"
#include "kpbook/commands/ReportSyntax.h"
#include "kpbook/commands/Reports.h"
#include "kpbook/commands/ServerSyntax.h"
#include "kpbook/commands/SqlCommand.h"
#include "kpbook/commands/UpgradeCommand.h"
#include "kpbook/input/ArgumentText.h"
#include "kpbook/output/Output.h"
#include "kpbook/shell/Shell.h"
#include "text/Path.h"

namespace kpTables::kpbook {

namespace {

/// Everything that can be set on the command line.
struct Parsed {
    GlobalOptions global;
    commands::NewWords create;
    commands::OpeningOptions opening;
    commands::CopyOptions copy;
    commands::BooksOptions books;
    commands::SchemaOptions schema;
    commands::GrantOptions grant;
    commands::InfoOptions info;
    commands::StockOptions stock;
    commands::FigureWords figures;
    commands::ReportWords report;
    commands::MasterOptions master;
    commands::OperatorsOptions operators;
    commands::LogOptions log;
    commands::PayrollOptions payroll;
    commands::ImportOptions import;
    commands::BillWords bill;
    commands::ExportOptions exported;
    commands::CallOptions call;
    commands::SqlOptions sql;
    shell::ShellOptions shell;
    commands::CompletionOptions completion;
    commands::ManOptions man;
    const CLI::App* tree = nullptr;  ///< the definitions of the commands
    commands::CloseWords close;
    commands::ReopenOptions reopen;
    commands::CheckOptions check;
    commands::BackupOptions backup;
    commands::UpgradeOptions upgrade;
    commands::MethodsOptions methods;
    bool batch = false;
    bool clean = false;
    std::string format = "table";
    std::string today;
    std::string answer;
    double timeout = 0;
    std::int64_t maxMegabytes = 0;
};

constexpr std::int64_t kMegabyte = 1 << 20;
constexpr std::int64_t kMostMegabytes = std::numeric_limits<std::int64_t>::max() / kMegabyte;

void AddGlobalOptions(CLI::App& app, Parsed& parsed) {
    auto& global = parsed.global;
    app.add_option("-O,--output-format", parsed.format,
                   "The output format: table, csv, json, markdown, html or xlsx; default: by -o")
        ->check(CLI::IsMember({"table", "csv", "json", "markdown", "html", "xlsx"}))
        ->type_name("FORMAT");
    app.add_option(
           "-o,--output", global.outputPath,
           "Write results to a file (xlsx needs one), in the format of its name: .csv, .json, .md, .html or .xlsx")
        ->type_name("FILE");
    app.add_flag("--trace", global.trace, "Show every statement on standard error as it is sent");
    app.add_flag("--sql", global.isSQL, "Send statements in SQL Server's dialect (isSQL)");
    app.add_option("--today", parsed.today, "The date that counts as today")->check(commands::kDate)->type_name("DATE");
    app.add_option("--answer", parsed.answer, "Answer every question with yes or no")
        ->check(CLI::IsMember({"yes", "no"}))
        ->type_name("ANSWER");
    app.add_option("--operator", global.operatorName,
                   "The operator to act as; the password is asked for, or read from the file that the environment\n"
                   "variable KPBOOK_PASSWORD_FILE names")
        ->check(commands::kUtf8)
        ->type_name("NAME");
    app.add_option("--password-file", global.passwordFile,
                   "The file whose first line is the password that a server wants; default: it is asked for")
        ->type_name("FILE");
    app.add_option("--timeout", parsed.timeout, "End a statement that runs longer than S seconds")
        ->check(CLI::PositiveNumber)
        ->type_name("S");
    app.add_option("--max-rows", global.maxRows, "The largest number of rows of a result; default: any")
        ->check(CLI::PositiveNumber)
        ->type_name("N");
    app.add_option("--max-memory", parsed.maxMegabytes,
                   "Memory for the rows of a result, in megabytes; default: half of what is free")
        ->check(CLI::Range(std::int64_t{1}, kMostMegabytes))
        ->type_name("MB");
    app.set_version_flag("--version", std::string("kpbook ") + KPBOOK_VERSION);
}

void AddInfo(CLI::App& app, Parsed& parsed) {
    auto* command =
        commands::AddCommand(app, "info", "Describe a book and its contents",
                             "Its information and dates as they are stored, the row counts of its tables, the months\n"
                             "of its balance, and which warehouses are closed. The book is not changed.\n\n"
                             "Examples:\n  kpbook info shop.kpbook\n  kpbook info shop.kpbook -O json\n"
                             "  kpbook info shop.kpbook -O markdown -o shop.md");
    commands::AddBook(*command, parsed.info.book);
}

void AddStock(CLI::App& app, Parsed& parsed) {
    auto* command = commands::AddCommand(
        app, "stock", "Show the products' stock figures for a month",
        "Opening, inbound, outbound and closing stock, from the balance rows and bills as they are now, without a\n"
        "closing. The book is not changed.\n\n"
        "Examples:\n  kpbook stock shop.kpbook --month 3\n"
        "  kpbook stock shop.kpbook --month 3 --warehouse 中心仓库 --product 01001 --cost\n"
        "  kpbook stock shop.kpbook --month 3 -O csv -o stock.csv");
    commands::AddBook(*command, parsed.stock.book);
    command->add_option("--month", parsed.stock.month, "The month, 1 to 12")
        ->required()
        ->check(CLI::Range(1, commands::kLastMonth))
        ->type_name("M");
    command
        ->add_option("--warehouse", parsed.stock.warehouseText,
                     "The warehouse's name or dpID; default: all of them together")
        ->check(commands::kUtf8)
        ->type_name("D");
    command->add_option("--product", parsed.stock.productText, "The product's number, name or pdID; default: all")
        ->check(commands::kUtf8)
        ->type_name("P");
    commands::AddFigures(*command, parsed.figures);
}

void AddLog(CLI::App& app, Parsed& parsed) {
    auto* command =
        commands::AddCommand(app, "log", "List what the operators did, newest first",
                             "The book is not changed.\n\n"
                             "Examples:\n  kpbook log shop.kpbook --limit 20\n  kpbook log shop.kpbook -O csv\n"
                             "  kpbook log shop.kpbook --limit 1000 -O json -o log.json");
    commands::AddBook(*command, parsed.log.book);
    command->add_option("--limit", parsed.log.limit, "The largest number of entries; default: all")
        ->check(CLI::Range(1, std::numeric_limits<std::int32_t>::max()))
        ->type_name("N");
    commands::AddColumns(*command, parsed.log.showing);
}

void AddPayroll(CLI::App& app, Parsed& parsed) {
    auto* command = commands::AddCommand(
        app, "payroll", "Show the drivers' pay",
        "The saved sheet of a month, a new sheet, or the sums of the saved sheets per driver. A table ends with the\n"
        "totals of its amounts. The book is not changed.\n\n"
        "Examples:\n  kpbook payroll shop.kpbook --month 3\n  kpbook payroll shop.kpbook --month 4 --new\n"
        "  kpbook payroll shop.kpbook --to-month 6");
    commands::AddBook(*command, parsed.payroll.book);
    auto* month = command->add_option("--month", parsed.payroll.month, "The month of a sheet, 1 to 12")
                      ->check(CLI::Range(1, commands::kLastMonth))
                      ->type_name("M");
    command->add_flag("--new", parsed.payroll.fresh, "Make a new sheet from the work orders, without saving it")
        ->needs(month);
    command->add_option("--to-month", parsed.payroll.toMonth, "The last month to sum; default: all months")
        ->check(CLI::Range(1, commands::kLastMonth))
        ->excludes(month)
        ->type_name("M");
    commands::AddColumns(*command, parsed.payroll.showing);
}

void AddCall(CLI::App& app, Parsed& parsed) {
    const std::string arguments = Message("Arguments:") + "\n" + Translated(input::kArgumentForms);
    const std::string rest = Message(
        "\nPut -- before arguments that begin with a dash and a letter. Values that a method writes back are shown on\n"
        "standard error.\n\n"
        "A batch has one JSON object per line, and each is answered with one line:\n"
        "  {\"method\":NAME,\"args\":[...],\"isSQL\":bool,\"today\":\"2026-11-21\",\"answer\":\"yes\"|\"no\"}\n"
        "  {\"execute\":TEXT}\n\n"
        "Examples:\n  kpbook call shop.kpbook rs余额记录 1 3\n"
        "  kpbook call shop.kpbook Close_DepotBalance 1 3 False date:2004-03-31 progress:\n"
        "  kpbook call shop.kpbook --batch calls.jsonl");
    auto* command = commands::AddCommand(app, "call", "Call a method by name, or many with --batch", arguments + rest);
    commands::AddBook(*command, parsed.call.book);
    command->add_option("METHOD", parsed.call.method, "The method; with --batch the file, standard input by default")
        ->check(commands::kUtf8)
        ->type_name("");
    command->add_option("ARGS", parsed.call.arguments, "Its arguments")->check(commands::kUtf8)->type_name("");
    auto* batch = command->add_flag("--batch", parsed.batch, "Read calls as lines of JSON");
    command
        ->add_flag("--clean", parsed.clean, "Refuse the lines of a batch whose values have quotes that are not doubled")
        ->needs(batch);
    command->add_flag("--raw", parsed.call.raw, "Pass on values with quotes unchanged, which then change the statement")
        ->excludes(batch);
    command
        ->add_flag("--transaction", parsed.call.transaction,
                   "Keep all changes of the call, or none when anything in it failed")
        ->excludes(batch);
}

void AddMethods(CLI::App& app, Parsed& parsed) {
    auto* command = commands::AddCommand(app, "methods", "List the methods, or one with its parameters",
                                         "Examples:\n  kpbook methods\n  kpbook methods Close_DepotBalance\n"
                                         "  kpbook methods -O csv");
    command->add_option("NAME", parsed.methods.name, "The method")->check(commands::kUtf8)->type_name("");
}

struct CommandEntry {
    std::string_view name;
    void (*add)(CLI::App& app, Parsed& parsed);
    int (*run)(const Parsed& parsed);
};

int RunCall(const Parsed& parsed) {
    if (!parsed.batch) return commands::Call(parsed.call, parsed.global);
    return batch::RunBatch({parsed.call.book, parsed.call.method.empty() ? "-" : parsed.call.method, parsed.clean},
                           parsed.global);
}

// In the order of the help text.
constexpr CommandEntry kCommands[] = {
    {"new", [](CLI::App& app, Parsed& parsed) { commands::AddNew(app, parsed.create); },
     [](const Parsed& parsed) { return commands::NewBook(parsed.create.options, parsed.global); }},
    {"opening", [](CLI::App& app, Parsed& parsed) { commands::AddOpening(app, parsed.opening); },
     [](const Parsed& parsed) { return commands::Opening(parsed.opening, parsed.global); }},
    {"info", AddInfo, [](const Parsed& parsed) { return commands::Info(parsed.info, parsed.global); }},
    {"add", [](CLI::App& app, Parsed& parsed) { commands::AddMasterAdd(app, parsed.master); },
     [](const Parsed& parsed) { return commands::AddMasterRow(parsed.master, parsed.global); }},
    {"edit", [](CLI::App& app, Parsed& parsed) { commands::AddMasterEdit(app, parsed.master); },
     [](const Parsed& parsed) { return commands::EditMasterRow(parsed.master, parsed.global); }},
    {"remove", [](CLI::App& app, Parsed& parsed) { commands::AddMasterRemove(app, parsed.master); },
     [](const Parsed& parsed) { return commands::RemoveMasterRow(parsed.master, parsed.global); }},
    {"list", [](CLI::App& app, Parsed& parsed) { commands::AddMasterList(app, parsed.master); },
     [](const Parsed& parsed) { return commands::ListMasterRows(parsed.master, parsed.global); }},
    {"import", [](CLI::App& app, Parsed& parsed) { commands::AddImport(app, parsed.import); },
     [](const Parsed& parsed) { return commands::Import(parsed.import, parsed.global); }},
    {"export", [](CLI::App& app, Parsed& parsed) { commands::AddExport(app, parsed.exported); },
     [](const Parsed& parsed) { return commands::Export(parsed.exported, parsed.global); }},
    {"bill", [](CLI::App& app, Parsed& parsed) { commands::AddBill(app, parsed.bill); },
     [](const Parsed& parsed) { return commands::Bill(parsed.bill.options, parsed.global); }},
    {"call", AddCall, RunCall},
    {"sql", [](CLI::App& app, Parsed& parsed) { commands::AddSql(app, parsed.sql); },
     [](const Parsed& parsed) { return commands::Sql(parsed.sql, parsed.global); }},
    {"shell", [](CLI::App& app, Parsed& parsed) { shell::AddShell(app, parsed.shell); },
     [](const Parsed& parsed) { return shell::Shell(parsed.shell, parsed.global); }},
    {"close", [](CLI::App& app, Parsed& parsed) { commands::AddClose(app, parsed.close); },
     [](const Parsed& parsed) { return commands::Close(parsed.close.options, parsed.global); }},
    {"reopen", [](CLI::App& app, Parsed& parsed) { commands::AddReopen(app, parsed.reopen); },
     [](const Parsed& parsed) { return commands::Reopen(parsed.reopen, parsed.global); }},
    {"check", [](CLI::App& app, Parsed& parsed) { commands::AddCheck(app, parsed.check); },
     [](const Parsed& parsed) { return commands::Check(parsed.check, parsed.global); }},
    {"backup", [](CLI::App& app, Parsed& parsed) { commands::AddBackup(app, parsed.backup); },
     [](const Parsed& parsed) { return commands::Backup(parsed.backup, parsed.global); }},
    {"copy", [](CLI::App& app, Parsed& parsed) { commands::AddCopy(app, parsed.copy); },
     [](const Parsed& parsed) { return commands::Copy(parsed.copy, parsed.global); }},
    {"stock", AddStock, [](const Parsed& parsed) { return commands::Stock(parsed.stock, parsed.global); }},
    {"report", [](CLI::App& app, Parsed& parsed) { commands::AddReport(app, parsed.report); },
     [](const Parsed& parsed) { return commands::Report(parsed.report.options, parsed.global); }},
    {"operators", [](CLI::App& app, Parsed& parsed) { commands::AddOperators(app, parsed.operators); },
     [](const Parsed& parsed) { return commands::Operators(parsed.operators, parsed.global); }},
    {"grant", [](CLI::App& app, Parsed& parsed) { commands::AddGrant(app, parsed.grant); },
     [](const Parsed& parsed) { return commands::Grant(parsed.grant, parsed.global); }},
    {"revoke", [](CLI::App& app, Parsed& parsed) { commands::AddRevoke(app, parsed.grant); },
     [](const Parsed& parsed) { return commands::Revoke(parsed.grant, parsed.global); }},
    {"log", AddLog, [](const Parsed& parsed) { return commands::Log(parsed.log, parsed.global); }},
    {"payroll", AddPayroll, [](const Parsed& parsed) { return commands::Payroll(parsed.payroll, parsed.global); }},
    {"upgrade", [](CLI::App& app, Parsed& parsed) { commands::AddUpgrade(app, parsed.upgrade); },
     [](const Parsed& parsed) { return commands::Upgrade(parsed.upgrade, parsed.global); }},
    {"books", [](CLI::App& app, Parsed& parsed) { commands::AddBooks(app, parsed.books); },
     [](const Parsed& parsed) { return commands::Books(parsed.books, parsed.global); }},
    {"schema", [](CLI::App& app, Parsed& parsed) { commands::AddSchema(app, parsed.schema); },
     [](const Parsed& parsed) { return commands::Schema(parsed.schema, parsed.global); }},
    {"methods", AddMethods, [](const Parsed& parsed) { return commands::Methods(parsed.methods, parsed.global); }},
    {"completion", [](CLI::App& app, Parsed& parsed) { commands::AddCompletion(app, parsed.completion); },
     [](const Parsed& parsed) { return commands::Completion(*parsed.tree, parsed.completion, parsed.global); }},
    {"man", [](CLI::App& app, Parsed& parsed) { commands::AddMan(app, parsed.man); },
     [](const Parsed& parsed) { return commands::Man(*parsed.tree, parsed.man, parsed.global); }},
};

/// Adds only the commands that the words may name: adding all of them takes longer than the statement of a short call.
void AddCommands(CLI::App& app, Parsed& parsed, const std::vector<std::string>& words) {
    // Some show them all.
    const auto needsAll = [](const std::string& word) {
        return word.starts_with("-h") || word.starts_with("--help") || word == "completion" || word == "man";
    };
    const auto isNamed = [&words](const CommandEntry& command) {
        return std::find(words.begin(), words.end(), command.name) != words.end();
    };
    const bool all = std::any_of(words.begin(), words.end(), needsAll) ||
                     std::none_of(std::begin(kCommands), std::end(kCommands), isNamed);
    for (const CommandEntry& command : kCommands) {
        if (all || isNamed(command)) command.add(app, parsed);
    }
}

struct FormatName {
    std::string_view name;
    std::string_view extension;  ///< of files that are written in it; empty: none
    OutputFormat format;
};

constexpr FormatName kFormats[] = {{"table", "", OutputFormat::Table},    {"csv", ".csv", OutputFormat::Csv},
                                   {"json", ".json", OutputFormat::Json}, {"markdown", ".md", OutputFormat::Markdown},
                                   {"html", ".html", OutputFormat::Html}, {"xlsx", ".xlsx", OutputFormat::Xlsx}};

/// The format that -O names, else that of the output file's name.
OutputFormat FormatOf(const std::string& name, bool isGiven, const std::string& path) {
    const auto named = std::ranges::find(kFormats, name, &FormatName::name);
    const std::string extension = text::PathOf(path).extension().string();
    const auto byFile = std::ranges::find_if(kFormats, [&extension](const FormatName& format) {
        return !extension.empty() && SameName(format.extension, extension);
    });
    if (byFile == std::end(kFormats)) return named->format;
    if (isGiven && byFile != named) {
        throw CLI::ValidationError(
            Message("-o {1} is the name of a {2} file, but -O says {3}; change one of them", path, byFile->name, name));
    }
    return byFile->format;
}

/// Converts the options, and checks what depends on more than one of them.
void Complete(const CLI::App& app, Parsed& parsed) {
    auto& global = parsed.global;
    global.format = FormatOf(parsed.format, app.count("-O") > 0, global.outputPath);
    global.today = commands::DateOf(parsed.today);
    global.clock->SetLimit(std::chrono::duration<double>(parsed.timeout));
    global.maxBytes = parsed.maxMegabytes * kMegabyte;
    parsed.close.options.date = commands::DateOf(parsed.close.date);
    if (!parsed.answer.empty()) global.answer = parsed.answer == "yes" ? MessageAnswer::Yes : MessageAnswer::No;
    if (global.format == OutputFormat::Xlsx && global.outputPath.empty()) {
        throw CLI::ValidationError(Message("-O xlsx needs a file: -o FILE"));
    }
    commands::ReadNew(parsed.create);
    const CLI::App& command = *app.get_subcommands().front();
    global.title = command.get_name() == "call" ? parsed.call.method : command.get_name();
    if (command.get_name() == "report") parsed.report.options = commands::ReadReport(command, parsed.report, global);
    if (command.get_name() == "bill") parsed.bill.options = commands::ReadBillWords(command, parsed.bill);
    if (command.get_name() == "stock") parsed.stock.showing = commands::ReadFigures(parsed.figures, global.format);
    if (const auto* kind = parsed.report.options.kind) global.title = kind->name;
    if (app.count("--operator") > 0 && global.operatorName.empty()) {
        throw CLI::ValidationError(Message("--operator needs a name"));
    }
    if (!parsed.operators.action.empty() && parsed.operators.name.empty()) throw CLI::RequiredError("NAME");
    if (command.get_name() == "import") commands::CheckImport(parsed.import);
    if (command.get_name() == "export" && (app.count("-O") > 0 || app.count("-o") > 0)) {
        throw CLI::ValidationError(
            Message("export writes CSV into the folder that it is given; -O and -o do not go with it"));
    }
    if (command.get_name() == "sql") commands::CheckSql(command);
    if (command.get_name() == "schema" && app.count("-O") > 0) {
        throw CLI::ValidationError(Message("schema writes statements; -O does not go with it"));
    }
    if (command.get_name() != "call") return;
    if (!parsed.batch && parsed.call.method.empty()) throw CLI::RequiredError(Message("METHOD or --batch"));
    if (parsed.batch && !parsed.call.arguments.empty()) throw CLI::ExtrasError(parsed.call.arguments);
    if (parsed.batch && (app.count("-O") > 0 || app.count("-o") > 0)) {
        throw CLI::ValidationError(Message("--batch answers in JSON on standard output; -O and -o do not go with it"));
    }
}

std::string UnknownWord(const std::string& word) {
    std::vector<std::string_view> names;
    for (const CommandEntry& command : kCommands) names.push_back(command.name);
    return Message("there is no command or option {1}{2}", word, DidYouMean(word, names));
}

int Show(const std::string& help) {
    output::Output output("");
    output.Write(help);
    output.Close();
    return kSucceeded;
}

/// Before anything is read or run: results must not replace a book.
void CheckTarget(const std::string& target, const std::string& book) {
    if (!target.empty() && IsPartOfBook(target, book)) {
        throw UsageError(Message("{1} belongs to a book; results are not written over it", target));
    }
}

}  // namespace

int RunCommandLine(const std::vector<std::string>& words) {
    Parsed parsed;
    CLI::App app(Message("Works with account books: imports data, calls methods, closes months."), "kpbook");
    app.require_subcommand(1);
    app.allow_windows_style_options(false);
    app.footer(
        Message("Results go to standard output; messages, questions and progress to standard error.\n"
                "Exit code: 0 success, 1 the call failed, 2 wrong usage. For more, see kpbook COMMAND --help.\n\n"
                "Examples:\n  kpbook new shop.kpbook\n  kpbook import shop.kpbook 商品设置 products.csv\n"
                "  kpbook close shop.kpbook --month 1\n  kpbook call shop.kpbook rs余额记录 1 2"));
    app.failure_message([](const CLI::App* asked, const CLI::Error& error) {
        const auto unknown = asked->get_subcommands().empty() ? asked->remaining() : std::vector<std::string>();
        const std::string what =
            unknown.empty() ? commands::TranslatedError(error.what()) : UnknownWord(unknown.front());
        return FailureMark() + (" " + what) + "\n" + Message("For help, see kpbook --help.") + "\n";
    });
    AddGlobalOptions(app, parsed);
    std::vector<std::string> marked = commands::MarkedWords(words);
    AddCommands(app, parsed, marked);
    commands::UnmarkWords(app);
    try {
        app.parse(marked);
        Complete(app, parsed);
    } catch (const CLI::ParseError& error) {
        std::ostringstream help, complaint;
        commands::TranslateHelp(app);
        if (app.exit(error, help, complaint) != 0) {
            TellText(complaint.str());
            return kWrongUsage;
        }
        return RunToEnd([&] { return Show(help.str()); }, *parsed.global.incidents);
    }
    const auto asked = app.get_subcommands().front()->get_name();
    const auto* entry = std::find_if(std::begin(kCommands), std::end(kCommands),
                                     [&asked](const CommandEntry& command) { return command.name == asked; });
    parsed.global.right = commands::RightFor(asked);
    parsed.tree = &app;
    if (asked == "man" || asked == "completion") commands::TranslateHelp(app);
    const auto run = [&] {
        CheckTarget(parsed.global.outputPath, commands::BookOf(commands::AskedCommand(app)));
        if (!parsed.global.operatorName.empty() && !commands::TakesOperator(asked)) {
            throw UsageError(Message("{1} cannot act as an operator", asked));
        }
        return entry->run(parsed);
    };
    return RunToEnd(run, *parsed.global.incidents);
}

}  // namespace kpTables::kpbook
