#include "kpbook/commands/BillSyntax.h"

#include "kpTables/text/Message.h"

#include <algorithm>

namespace kpTables::kpbook::commands {

namespace {

using bookkeeping::EntryKind;

struct HeaderWord {
    const char* option;
    const char* column;
    const char* what;
    const char* type;
};
constexpr HeaderWord kHeaderWords[] = {
    {"--date", "日期", Translatable("The bill's date; default of a new bill: today"), "DATE"},
    {"--warehouse", "仓库", Translatable("The warehouse, by name or id; of a transfer, where the goods come from"),
     "W"},
    {"--to-warehouse", "调入仓库", Translatable("Where the goods of a transfer go"), "W"},
    {"--partner", "单位", Translatable("The supplier (in) or customer (out), by name or id"), "K"},
    {"--project", "项目", Translatable("The project, by name, number or id"), "P"},
    {"--type", "类型", Translatable("入库单, 出库单, 普通发票 or 增值税发票, or a type of the firm's own"), "T"},
    {"--number", "单据编号", Translatable("The bill's number; default: the next by the firm's pattern"), "N"},
    {"--remarks", "说明", Translatable("Remarks"), "TEXT"},
};

/// The column that a type belongs to: the kinds of bills have their own.
const char* TypeColumnOf(const std::string& type) { return bookkeeping::IsEnteredType(type) ? "单据类型" : "类型"; }

CLI::App* AddAction(CLI::App& bill, const std::string& name, const std::string& what, const std::string& footer,
                    BillWords& words, bool withTransfers) {
    auto* action = AddCommand(bill, name, what, footer);
    AddBook(*action, words.options.book);
    const char* kinds = withTransfers ? Translatable("in, out, cost or transfer")
                                      : Translatable("in, out or cost; a transfer: either of its halves");
    auto* kind = action->add_option("KIND", words.kind, kinds)->required()->type_name("");
    if (withTransfers) {
        kind->check(CLI::IsMember({"in", "out", "cost", "transfer", "入库", "出库", "成本", "调拨"}));
    } else {
        kind->check(CLI::IsMember({"in", "out", "cost", "入库", "出库", "成本"}));
    }
    return action;
}

void AddWhich(CLI::App& action, BillWords& words) {
    action.add_option("BILL", words.options.which, "The bill's number or id; id:N is always an id")
        ->required()
        ->check(kUtf8)
        ->type_name("");
    AddMonth(action, "--month", words.options.month, "The month of the number, where several bills have it");
}

void AddHeaderOptions(CLI::App& action, BillWords& words) {
    for (const HeaderWord& word : kHeaderWords) {
        auto* option = action.add_option(word.option, words.header[word.column], word.what)->type_name(word.type);
        option->check(std::string(word.option) == "--date" ? kDate : kUtf8);
    }
}

void AddLineOptions(CLI::App& action, BillWords& words) {
    auto& options = words.options;
    action
        .add_option("--line", options.lines, "A line, such as 商品=01001,数量=5,单价=12.5; may be given several times")
        ->check(kUtf8)
        ->allow_extra_args(false)
        ->type_name("LINE");
    action.add_flag("--gross", options.gross, "单价 and 金额 include tax");
    action.add_flag("--red", options.red, "Allow negative quantities: goods that come back (红字)");
}

void AddAllowNegative(CLI::App& action, BillWords& words) {
    action.add_flag("--allow-negative", words.options.allowNegative, "Let stock go below zero");
}

void AddAdd(CLI::App& bill, BillWords& words) {
    auto* action = AddAction(
        bill, "add", "Enter bills, all or none",
        "FILE is CSV or xlsx with the names of the columns in its first line, or JSON: an array of objects with these keys,\n"
        "and under 明细 an array of a bill's lines. Rows with the same 单据 are one bill. Columns: 单据, 日期, 仓库 (transfer:\n"
        "调出仓库, 调入仓库), 单位, 项目, 类型, 单据编号, 说明, 商品编号, 数量, 单价 (without tax; with --gross: with tax),\n"
        "税率 (percent; default: the product's), 金额, 除税单价, 含税单价, 除税金额, 税额, 价税合计, 经手人, 交接人, 包装, 货位,\n"
        "期限. The options are the defaults of the columns. Net, tax and gross are worked out from what is given; numbers\n"
        "follow the setting 单据编号格式. Without FILE and --line, the bill is asked for at the terminal.\n\n"
        "Examples:\n  kpbook bill add shop.kpbook in purchases.csv\n"
        "  kpbook bill add shop.kpbook out --warehouse 中心仓库 --partner 杭州宏图 --line 商品=01001,数量=5,单价=420\n"
        "  kpbook bill add shop.kpbook transfer --warehouse 中心仓库 --to-warehouse 门店 --line 商品=01001,数量=2",
        words, true);
    action->add_option("FILE", words.options.file, "CSV, xlsx or JSON, - for standard input")->type_name("");
    AddHeaderOptions(*action, words);
    AddLineOptions(*action, words);
    AddAllowNegative(*action, words);
}

void AddEdit(CLI::App& bill, BillWords& words) {
    auto* action = AddAction(
        bill, "edit", "Change a bill that is not audited, in an open month",
        "Only what is given changes. Lines are replaced together, by those of --line or of a file. Both halves of a\n"
        "transfer keep the same date, number, remarks and lines.\n\n"
        "Examples:\n  kpbook bill edit shop.kpbook in RK1-01-0003 单位=杭州宏图 说明=自提\n"
        "  kpbook bill edit shop.kpbook out CK1-01-0001 --line 商品=01001,数量=4,单价=420\n"
        "  kpbook bill edit shop.kpbook in id:2 --lines lines.csv --gross",
        words, false);
    AddWhich(*action, words);
    action->add_option("CHANGES", words.changes, "Fields as COLUMN=VALUE, such as 说明=自提")
        ->check(kUtf8)
        ->type_name("");
    AddHeaderOptions(*action, words);
    AddLineOptions(*action, words);
    action->add_option("--lines", words.options.file, "The file with the new lines, - for standard input")
        ->excludes("--line")
        ->type_name("FILE");
    AddAllowNegative(*action, words);
}

void AddRemove(CLI::App& bill, BillWords& words) {
    auto* action = AddAction(bill, "remove", "Remove a bill with its lines; both halves of a transfer",
                             "A bill of a closed month and an audited one are refused.\n\n"
                             "Examples:\n  kpbook bill remove shop.kpbook in RK1-01-0003\n"
                             "  kpbook bill remove shop.kpbook out CK1-01-0001 --month 1\n"
                             "  kpbook bill remove shop.kpbook cost 1",
                             words, false);
    AddWhich(*action, words);
    AddAllowNegative(*action, words);
}

void AddAudit(CLI::App& bill, BillWords& words) {
    auto* action = AddAction(bill, "audit", "Note who has audited a bill, and when",
                             "An audited bill can neither be changed nor removed until the audit is taken back.\n\n"
                             "Examples:\n  kpbook bill audit shop.kpbook in RK1-01-0003 --auditor 李明\n"
                             "  kpbook bill audit shop.kpbook out CK1-01-0001 --operator 李明 --date 2026-1-31\n"
                             "  kpbook bill audit shop.kpbook in RK1-01-0003 --undo",
                             words, false);
    AddWhich(*action, words);
    auto* auditor = action
                        ->add_option("--auditor", words.options.auditor,
                                     "Who audits; default: the operator, the book's 财务主管, or the user")
                        ->check(kUtf8)
                        ->type_name("NAME");
    auto* date = action->add_option("--date", words.auditDate, "The date of the audit; default: today")
                     ->check(kDate)
                     ->type_name("DATE");
    action->add_flag("--undo", words.options.undo, "Take the audit back")->excludes(auditor)->excludes(date);
}

void AddShow(CLI::App& bill, BillWords& words) {
    AddWhich(*AddAction(bill, "show", "Show a bill with its lines",
                        "Examples:\n  kpbook bill show shop.kpbook in RK1-01-0003\n"
                        "  kpbook bill show shop.kpbook out CK1-01-0001 -O json\n"
                        "  kpbook bill show shop.kpbook cost 1",
                        words, false),
             words);
}

void AddPrint(CLI::App& bill, BillWords& words) {
    AddWhich(*AddAction(bill, "print", "Write a bill as a page: HTML, or PDF with -o FILE.pdf",
                        "The page has Chinese headings and the amount in capital figures. A PDF needs Chromium.\n\n"
                        "Examples:\n  kpbook bill print shop.kpbook in RK1-01-0003 -o bill.html\n"
                        "  kpbook bill print shop.kpbook out CK1-01-0001 -o bill.pdf\n"
                        "  kpbook bill print shop.kpbook cost 1 > bill.html",
                        words, false),
             words);
}

EntryKind KindOf(const std::string& word) {
    if (word == "in" || word == "入库") return EntryKind::Inbound;
    if (word == "cost" || word == "成本") return EntryKind::Cost;
    return word == "transfer" || word == "调拨" ? EntryKind::Transfer : EntryKind::Outbound;
}

bool IsGiven(const CLI::App& action, const char* option) {
    const auto* found = action.get_option_no_throw(option);
    return found && found->count() > 0;
}

/// Takes "说明=自提" as --remarks 自提 is taken.
void AddChange(BillOptions& options, const std::string& change) {
    const auto equals = change.find('=');
    const std::string column = change.substr(0, equals);
    const bool isHeader = column == "单据类型" || std::ranges::any_of(kHeaderWords, [&](const HeaderWord& word) {
                              return column == word.column && column != "调入仓库";
                          });
    if (equals == std::string::npos || !isHeader) {
        throw CLI::ValidationError(Message(
            "'{1}' is no change: COLUMN=VALUE with 日期, 仓库, 单位, 项目, 类型, 单据类型, 单据编号 or 说明; lines are replaced by --line or --lines",
            change));
    }
    const std::string text = change.substr(equals + 1);
    options.header[column == "类型" ? TypeColumnOf(text) : column] = text;
}

}  // namespace

void AddBill(CLI::App& app, BillWords& words) {
    auto* bill = AddCommand(app, "bill", "Enter, change, audit, show and print bills",
                            "Examples:\n  kpbook bill add shop.kpbook in purchases.csv\n"
                            "  kpbook bill show shop.kpbook in RK1-01-0003\n"
                            "  kpbook bill print shop.kpbook out CK1-01-0001 -o bill.html");
    bill->require_subcommand(1);
    AddAdd(*bill, words);
    AddEdit(*bill, words);
    AddRemove(*bill, words);
    AddAudit(*bill, words);
    AddShow(*bill, words);
    AddPrint(*bill, words);
}

BillOptions ReadBillWords(const CLI::App& command, BillWords words) {
    const CLI::App& action = *command.get_subcommands().front();
    BillOptions& options = words.options;
    options.action = action.get_name();
    options.kind = KindOf(words.kind);
    options.date = DateOf(words.auditDate);
    const bool isTransfer = options.kind == EntryKind::Transfer;
    for (const HeaderWord& word : kHeaderWords) {
        if (!IsGiven(action, word.option) || options.action == "audit") continue;
        const std::string& text = words.header[word.column];
        std::string column = word.column;
        if (isTransfer && column == "仓库") column = "调出仓库";
        if (!isTransfer && column == "调入仓库") throw CLI::ValidationError(Message("--to-warehouse is for transfers"));
        if (column == "类型") column = TypeColumnOf(text);
        options.header[column] = text;
    }
    for (const std::string& change : words.changes) AddChange(options, change);
    if (options.action == "add" && !options.file.empty() && !options.lines.empty()) {
        throw CLI::ValidationError(Message("a FILE and --line do not go together"));
    }
    if (options.kind == EntryKind::Cost && options.gross) throw CLI::ValidationError(Message("cost bills have no tax"));
    return options;
}

}  // namespace kpTables::kpbook::commands
