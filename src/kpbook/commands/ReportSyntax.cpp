#include "kpbook/commands/ReportSyntax.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <iterator>

#include "kpTables/Error.h"
#include "kpTables/text/Message.h"
#include "kpbook/Suggestion.h"
#include "kpbook/commands/Reports.h"

namespace kpTables::kpbook::commands {

namespace {

/// Bills have no time of day, so a time would include or exclude the last day's bills arbitrarily.
const CLI::Validator kDay(
    [](std::string& text) {
        const auto date = DateOf(text);
        return date && !date->HasTime() ? std::string() : Message("'{1}' is no day", text);
    },
    "");

void AddText(CLI::App& command, const std::string& option, std::string& text, const std::string& what,
             const std::string& type) {
    command.add_option(option, text, what)->check(kUtf8)->type_name(type);
}

void AddDay(CLI::App& command, const std::string& option, std::string& text, const std::string& what) {
    command.add_option(option, text, what)->check(kDay)->type_name("DATE");
}

void AddFilters(CLI::App& command, ReportWords& words) {
    auto& filters = words.options.filters;
    command.add_option("--direction", words.direction, "in, out or cost: inbound, outbound or cost bills")
        ->check(CLI::IsMember({"in", "out", "cost", "入库", "出库", "成本"}))
        ->type_name("WAY");
    AddDay(command, "--from", words.from, "The first day");
    AddDay(command, "--to", words.to, "The last day");
    AddText(command, "--from-number", filters.fromNumber, "The lowest bill number", "N");
    AddText(command, "--to-number", filters.toNumber, "The highest bill number", "N");
    AddText(command, "--warehouse", filters.warehouseText,
            "The warehouse's name or dpID; default: all of them together", "D");
    AddText(command, "--partner", filters.partnerText, "The supplier's (in) or customer's (out) name or KSID", "K");
    AddText(command, "--project", filters.projectText, "The project's number, name or 项目ID", "P");
    AddText(command, "--type", filters.type, "The 类型 of the bills; 购进 or 调拨 for products", "T");
    AddText(command, "--handler", filters.handler, "The 经手人 of the lines", "TEXT");
    AddText(command, "--counterpart", filters.counterpart, "The 交接人 of the lines", "TEXT");
    AddText(command, "--packing", filters.packing, "The 包装 of the lines", "TEXT");
    AddText(command, "--min-quantity", words.minQuantity, "The least quantity of a bill", "Q");
    AddText(command, "--max-quantity", words.maxQuantity, "The greatest quantity of a bill", "Q");
    AddText(command, "--min-amount", words.minAmount, "The least net amount of a bill", "A");
    AddText(command, "--max-amount", words.maxAmount, "The greatest net amount of a bill", "A");
    AddMonth(command, "--month", filters.month, "The month, 1 to 12");
    AddMonth(command, "--from-month", filters.fromMonth, "The first month");
    AddMonth(command, "--to-month", filters.toMonth, "The last month");
    AddDay(command, "--date", words.date, "The day");
    command.add_flag("--before", filters.before, "The days of the month before --date, instead of that day");
    command.add_option("--measure", words.measure, "What the months add up: amount or quantity")
        ->check(CLI::IsMember({"amount", "quantity", "金额", "数量"}))
        ->type_name("WHAT");
}

/// Options that are no filters.
constexpr const char* kShowing[] = {"--list", "--cost", "--no-cost", "--raw", "--wide", "--chart"};

/// The names of the given filters.
std::vector<std::string> GivenFilters(const CLI::App& command) {
    std::vector<std::string> given;
    for (const CLI::Option* option : command.get_options()) {
        const std::string name = option->get_name();
        if (option->count() == 0 || option->get_positional() ||
            std::ranges::find(kShowing, name) != std::end(kShowing)) {
            continue;
        }
        // The methods take an empty text for a filter that was not given.
        if (option->results().front().empty()) throw CLI::ValidationError(Message("{1} is empty", name));
        given.push_back(name);
    }
    return given;
}

std::string InChinese(const std::string& word) {
    if (word == "in") return "入库";
    if (word == "out") return "出库";
    if (word == "cost") return "成本";
    if (word == "amount") return "金额";
    if (word == "quantity") return "数量";
    return word;
}

[[noreturn]] void RefuseBound(const std::string& option, const std::string& text, const std::string& why) {
    throw CLI::ValidationError(Message("{1}: '{2}' {3}", option, text, why));
}

/// The methods take 0 for a bound that was not given.
template <class T>
T Bounding(const std::string& option, const std::string& text, T bound) {
    if (bound == T()) RefuseBound(option, text, Message("sets no bound"));
    return bound;
}

std::optional<Currency> AmountOf(const std::string& option, const std::string& text) {
    if (text.empty()) return std::nullopt;
    try {
        return Bounding(option, text, Currency::FromDecimalText(text));
    } catch (const Error&) {
        RefuseBound(option, text, Message("is no amount"));
    }
}

std::optional<double> QuantityOf(const std::string& option, const std::string& text) {
    if (text.empty()) return std::nullopt;
    double quantity = 0;
    const char* const end = text.data() + text.size();
    const auto read = std::from_chars(text.data(), end, quantity);
    if (read.ec != std::errc() || read.ptr != end || !std::isfinite(quantity)) {
        RefuseBound(option, text, Message("is no quantity"));
    }
    return Bounding(option, text, quantity);
}

void CheckValuation(const ReportOptions& options) {
    if (!options.showing.atCost) return;
    const std::string report = "report " + std::string(options.kind->name);
    if (!options.kind->valued)
        throw CLI::ValidationError(Message("{1} takes no --cost; balance, daily and stock do", report));
    if (options.showing.raw)
        throw CLI::ValidationError(Message("{1} --raw shows the method's figures; it takes no --cost", report));
}

/// The set of a month takes few filters: its reports have different ones.
void CheckSet(const ReportWords& words, const std::vector<std::string>& given, const GlobalOptions& global) {
    for (const auto& option : given) {
        if (option != "--month" && option != "--warehouse") {
            throw CLI::ValidationError(
                Message("report all takes no {1}; it takes --month M and --warehouse D", option));
        }
    }
    const auto& figures = words.figures.showing;
    if (figures.raw || figures.chart) throw CLI::ValidationError(Message("report all takes neither --raw nor --chart"));
    if (global.format != OutputFormat::Table && global.format != OutputFormat::Html) {
        throw CLI::ValidationError(Message("report all writes pages of HTML; it takes no other -O"));
    }
    if (global.outputPath.empty()) throw CLI::ValidationError(Message("report all needs a folder: -o DIR"));
    if (words.options.book.empty()) throw CLI::RequiredError("BOOK");
}

}  // namespace

void AddColumns(CLI::App& command, Showing& showing) {
    auto* raw = command.add_flag("--raw", showing.raw, "The method's own columns, order and figures");
    command.add_flag("--wide", showing.wide, "All columns")->excludes(raw);
}

void AddFigures(CLI::App& command, FigureWords& words) {
    auto* cost = command.add_flag("--cost", words.cost, "Take outbound amounts from the cost bills");
    command
        .add_flag("--no-cost", words.noCost,
                  "Take them from the outbound bills; default: the book's setting 出库计价, else as it was closed")
        ->excludes(cost);
    AddColumns(command, words.showing);
    command.add_flag("--chart", words.showing.chart, "Draw bars below a table in a terminal");
}

Showing ReadFigures(const FigureWords& words, OutputFormat format) {
    Showing showing = words.showing;
    if (words.cost || words.noCost) showing.atCost = words.cost;
    if (showing.chart && showing.raw) throw CLI::ValidationError(Message("--raw takes no --chart"));
    if (showing.chart && format != OutputFormat::Table && format != OutputFormat::Html) {
        throw CLI::ValidationError(Message("--chart goes with tables; a page (-O html) has charts of its own"));
    }
    return showing;
}

CLI::App* AddReport(CLI::App& app, ReportWords& words) {
    auto* command = AddCommand(
        app, "report", "Show a report",
        "The reports are bills, balance, products, partners, costs, daily, day and projects; kpbook report --list\n"
        "describes each with its filters. A table ends with the totals of its amounts, and of quantities where the\n"
        "report itself adds up different products. Tables show the columns that people read; --wide, csv and json have\n"
        "all of them, and all digits. A page (-O html) has charts. The book is not changed.\n"
        "kpbook report all BOOK -o DIR writes all reports of a month as pages with an index.\n\n"
        "Examples:\n  kpbook report balance shop.kpbook --month 3 --warehouse 中心仓库\n"
        "  kpbook report all shop.kpbook --month 3 -o pages\n"
        "  kpbook report daily shop.kpbook --month 3 --cost --chart\n"
        "  kpbook report bills shop.kpbook --direction out --month 3 --min-amount 1000\n"
        "  kpbook report day shop.kpbook --direction in --date 2004-03-15 --before -O csv");
    command->add_option("NAME", words.name, "The report")->check(kUtf8)->type_name("");
    command->add_option("BOOK", words.options.book, "The book's file")->type_name("");
    command->add_flag("--list", words.list, "List the reports with their methods and filters");
    AddFilters(*command, words);
    AddFigures(*command, words.figures);
    return command;
}

ReportOptions ReadReport(const CLI::App& command, ReportWords words, const GlobalOptions& global) {
    auto& filters = words.options.filters;
    const auto given = GivenFilters(command);
    if (words.list) {
        if (!given.empty() || !words.name.empty())
            throw CLI::ValidationError(Message("report --list takes nothing else"));
        return {};
    }
    words.options.showing = ReadFigures(words.figures, global.format);
    if (words.name == "all") {
        CheckSet(words, given, global);
        words.options.all = true;
        return words.options;
    }
    if (words.name.empty()) throw CLI::RequiredError("NAME or --list");
    words.options.kind = FindReport(words.name);
    if (!words.options.kind) {
        std::vector<std::string_view> names;
        for (const ReportKind& kind : ReportKinds()) names.push_back(kind.name);
        throw CLI::ValidationError(Message("there is no report {1}{2}; kpbook report --list shows the reports",
                                           words.name, DidYouMean(words.name, names)));
    }
    filters.from = DateOf(words.from);
    filters.to = DateOf(words.to);
    filters.date = DateOf(words.date);
    filters.direction = InChinese(words.direction);
    filters.measure = InChinese(words.measure);
    filters.minQuantity = QuantityOf("--min-quantity", words.minQuantity);
    filters.maxQuantity = QuantityOf("--max-quantity", words.maxQuantity);
    filters.minAmount = AmountOf("--min-amount", words.minAmount);
    filters.maxAmount = AmountOf("--max-amount", words.maxAmount);
    if (const auto fault = UsageFault(*words.options.kind, given, filters); !fault.empty()) {
        throw CLI::ValidationError(fault);
    }
    CheckValuation(words.options);
    if (words.options.book.empty()) throw CLI::RequiredError("BOOK");
    return words.options;
}

}  // namespace kpTables::kpbook::commands
