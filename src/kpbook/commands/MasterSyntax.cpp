#include "kpbook/commands/MasterSyntax.h"

#include "kpTables/text/Message.h"

namespace kpTables::kpbook::commands {

namespace {

constexpr const char* kKinds = Translatable(
    "KIND is warehouse, supplier, customer, product, project, employee, payment or class (or 仓库, 厂商, 客户, 商品, 项目,\n"
    "雇员, 收付款方式, 分类); of a class, 种类= says what it classes: supplier, customer, project, department or product\n"
    "(厂商, 客户, 项目, 部门, 商品). ");

void AddKind(CLI::App& command, MasterOptions& options) {
    AddBook(command, options.book);
    command.add_option("KIND", options.kind, "The kind of master row")->required()->check(kUtf8)->type_name("");
}

void AddWhich(CLI::App& command, MasterOptions& options) {
    command.add_option("WHICH", options.which, "The row's number, code, name or id")
        ->required()
        ->check(kUtf8)
        ->type_name("");
}

CLI::Option* AddValues(CLI::App& command, MasterOptions& options, const std::string& what) {
    return command.add_option("COLUMN=VALUE", options.values, what)->check(kUtf8)->type_name("");
}

}  // namespace

void AddMasterAdd(CLI::App& app, MasterOptions& options) {
    auto* command = AddCommand(
        app, "add", "Add a warehouse, supplier, customer, product, project, employee, class or payment method",
        std::string(Translated(kKinds)) +
            Message(
                "The new id is answered. Columns are\n"
                "those of the table; kpbook list shows them. Where a column keeps an id or a class code, its name does, too.\n"
                "A name or a number that another row has is refused.\n\n"
                "Examples:\n  kpbook add shop.kpbook warehouse 仓库名称=中心仓库\n"
                "  kpbook add shop.kpbook class 种类=商品 ClassCode=01 ClassName=水泥\n"
                "  kpbook add shop.kpbook product 商品编号=01001 商品名称=普通硅酸盐水泥 规格=425# 计量单位=吨 ClassCode=水泥\n"
                "  kpbook add shop.kpbook customer 企业名称=杭州宏图建材有限公司 单位名称=杭州宏图"));
    AddKind(*command, options);
    AddValues(*command, options, "The columns and their values")->required();
}

void AddMasterEdit(CLI::App& app, MasterOptions& options) {
    auto* command =
        AddCommand(app, "edit", "Change a master row",
                   std::string(Translated(kKinds)) +
                       Message("The rules are those of add. The\n"
                               "code of a class that rows use stays.\n\n"
                               "Examples:\n  kpbook edit shop.kpbook product 01001 默认单价=320 增值税率=0.13\n"
                               "  kpbook edit shop.kpbook customer 杭州宏图 单位名称=宏图\n"
                               "  kpbook edit shop.kpbook class 01 种类=商品 ClassName=水泥制品"));
    AddKind(*command, options);
    AddWhich(*command, options);
    AddValues(*command, options, "The columns and their new values")->required();
}

void AddMasterRemove(CLI::App& app, MasterOptions& options) {
    auto* command = AddCommand(
        app, "remove", "Remove a master row that nothing uses",
        std::string(Translated(kKinds)) +
            Message("A row that bills, balance rows,\n"
                    "operators or other master rows use stays; the message says which tables and how many rows.\n\n"
                    "Examples:\n  kpbook remove shop.kpbook product 01001\n"
                    "  kpbook remove shop.kpbook customer 杭州宏图\n  kpbook remove shop.kpbook class 01 种类=商品"));
    AddKind(*command, options);
    AddWhich(*command, options);
    AddValues(*command, options, "Of a class: 种类=");
}

void AddMasterList(CLI::App& app, MasterOptions& options) {
    auto* command =
        AddCommand(app, "list", "List the master rows of a kind",
                   std::string(Translated(kKinds)) +
                       Message("Without it, all classes are\n"
                               "listed. The book is not changed.\n\n"
                               "Examples:\n  kpbook list shop.kpbook product -O csv\n"
                               "  kpbook list shop.kpbook class\n  kpbook list shop.kpbook class 种类=商品"));
    AddKind(*command, options);
    AddValues(*command, options, "Of classes: 种类=");
}

}  // namespace kpTables::kpbook::commands
