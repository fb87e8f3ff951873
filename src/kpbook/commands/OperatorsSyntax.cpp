#include "kpbook/commands/OperatorsSyntax.h"

namespace kpTables::kpbook::commands {

void AddOperators(CLI::App& app, OperatorsOptions& options) {
    auto* command = AddCommand(
        app, "operators", "List and keep the operators, their rights, warehouses and passwords",
        "Without an action, they are listed, and the book is not changed. The actions:\n"
        "  add NAME [仓库=WAREHOUSE] [RIGHT ...|all]   the first operator of a book has all rights; answers the id\n"
        "  edit NAME [姓名=NEW] [仓库=WAREHOUSE]       仓库=0: none\n"
        "  rights NAME [RIGHT[=yes|no] ...|all|none]   without a right: lists them\n"
        "  set-password NAME                           asked for twice, or read as one line of standard input\n"
        "  clear-password NAME\n"
        "  remove NAME                                 one with bills or lines in the log stays\n"
        "  require on|off                              whether every change needs --operator\n"
        "A right is named by its column: 发货单位, 收货单位 and 部件管理 mean 资产处理, 卡片打印 and 资产折旧.\n"
        "docs/operators.md says which command needs which right.\n\n"
        "Examples:\n  kpbook operators shop.kpbook\n  kpbook operators shop.kpbook add 系统操作员\n"
        "  kpbook operators shop.kpbook add 李明 仓库=中心仓库 入库处理 出库处理 库存查询\n"
        "  kpbook operators shop.kpbook rights 李明 月末结帐 出库处理=no\n"
        "  kpbook operators shop.kpbook set-password 李明");
    AddBook(*command, options.book);
    command->add_option("ACTION", options.action, "What to do; default: list them")
        ->check(CLI::IsMember({"add", "edit", "rights", "set-password", "clear-password", "remove", "require"}))
        ->type_name("");
    command->add_option("NAME", options.name, "The operator's name or id")->check(kUtf8)->type_name("");
    command->add_option("WORDS", options.words, "Rights, 姓名= and 仓库=")->check(kUtf8)->type_name("");
}

}  // namespace kpTables::kpbook::commands
