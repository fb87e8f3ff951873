#include "sql/bind/SystemTables.h"

#include <array>
#include <string>
#include <utility>

#include "kpTables/text/Message.h"
#include "sql/Names.h"
#include "sql/SqlError.h"
#include "sql/bind/Conversions.h"

namespace kpTables::sql::bind {

namespace {

struct ListColumn {
    std::string_view name;
    Type type;
};

constexpr std::array<ListColumn, 2> kTableColumns = {{{"table_name", Type::Text}, {"table_id", Type::Long}}};
enum TablesColumn { kTableName, kTableId };

constexpr std::array<ListColumn, 6> kColumnColumns = {{{"table_name", Type::Text},
                                                       {"column_name", Type::Text},
                                                       {"position", Type::Long},
                                                       {"nullable", Type::Text},
                                                       {"type", Type::Text},
                                                       {"length", Type::Long}}};

/// A column of a system table: one of its list, or the same text in every row.
struct SystemColumn {
    std::string_view name;
    int column = -1;
    std::string_view text = {};
};

struct SystemTableOf {
    std::string_view name;
    BookList list;
    std::array<SystemColumn, 8> columns;  ///< the rest has no name
};

constexpr std::array<SystemTableOf, 7> kSystemTables = {{
    {"sysobjects", BookList::Tables, {{{"name", kTableName}, {"id", kTableId}, {"xtype", -1, "U"}, {"type", -1, "U"}}}},
    {"sys.sysobjects",
     BookList::Tables,
     {{{"name", kTableName}, {"id", kTableId}, {"xtype", -1, "U"}, {"type", -1, "U"}}}},
    {"sys.objects", BookList::Tables, {{{"name", kTableName}, {"object_id", kTableId}, {"type", -1, "U"}}}},
    {"sys.tables", BookList::Tables, {{{"name", kTableName}, {"object_id", kTableId}, {"type", -1, "U"}}}},
    {"INFORMATION_SCHEMA.TABLES",
     BookList::Tables,
     {{{"TABLE_SCHEMA", -1, "dbo"}, {"TABLE_NAME", kTableName}, {"TABLE_TYPE", -1, "BASE TABLE"}}}},
    {"INFORMATION_SCHEMA.COLUMNS",
     BookList::Columns,
     {{{"TABLE_SCHEMA", -1, "dbo"},
       {"TABLE_NAME", 0},
       {"COLUMN_NAME", 1},
       {"ORDINAL_POSITION", 2},
       {"IS_NULLABLE", 3},
       {"DATA_TYPE", 4},
       {"CHARACTER_MAXIMUM_LENGTH", 5}}}},
    {"MSysObjects", BookList::Tables, {{{"Name", kTableName}, {"Id", kTableId}, {"Type", -2}, {"Flags", -3}}}},
}};

// MSysObjects has numbers: 1 is a table, 0 one that users see.
TermPtr ValueOf(const SystemColumn& column, const SourcePtr& list) {
    constexpr int kOne = -2;
    constexpr int kZero = -3;
    if (column.column >= 0) return ColumnOf(list, static_cast<std::size_t>(column.column));
    if (column.column == kOne) return NumberConstant("1", Type::Long);
    if (column.column == kZero) return NumberConstant("0", Type::Long);
    return TextConstant(column.text);
}

// "dbo.[table]" without what is not its name.
std::string BareName(std::string_view name) {
    std::string bare;
    for (const char c : name)
        if (c != '[' && c != ']') bare += c;
    constexpr std::string_view kSchema = "dbo.";
    if (SameName(std::string_view(bare).substr(0, kSchema.size()), kSchema)) bare.erase(0, kSchema.size());
    return bare;
}

const Literal& RequireText(Context& context, const TermPtr& argument) {
    const auto* literal = If<LiteralTerm>(argument);
    if (!literal || literal->literal->literal != LiteralKind::Text)
        throw SqlError(ErrorKind::Syntax, Message("OBJECT_ID takes a name in quotes"), argument->offset);
    context.Fix(*literal->literal);
    return *literal->literal;
}

}  // namespace

SourcePtr Context::ListOf(BookList list) {
    const bool tables = list == BookList::Tables;
    // With a "]", which no name in brackets can contain.
    const std::string label = tables ? "tables]" : "columns]";
    QueryPtr query;
    for (const CommonQuery& known : lists_)
        if (known.name == label) query = known.query;
    if (!query) {
        Select select;
        const auto add = [&](const ListColumn& column) {
            auto value = std::make_shared<CallTerm>("book_list", Terms(), column.type);
            value->constant = false;
            select.items.push_back({std::move(value), std::string(column.name)});
        };
        for (const ListColumn& column : kTableColumns)
            if (tables) add(column);
        for (const ListColumn& column : kColumnColumns)
            if (!tables) add(column);
        query = std::make_shared<Query>(QueryOf(std::move(select), QueryUse::Table));
        lists_.push_back({label, query, list});
    }
    SourcePtr source = SourceOf(query);
    source->common = label;
    return source;
}

QueryPtr SystemTable(Context& context, std::string_view name) {
    for (const SystemTableOf& table : kSystemTables) {
        if (!SameName(table.name, name)) continue;
        context.KeepAsWritten();
        const SourcePtr list = context.ListOf(table.list);
        Select select;
        for (const SystemColumn& column : table.columns)
            if (!column.name.empty()) select.items.push_back({ValueOf(column, list), std::string(column.name)});
        select.from.push_back(TableOf(list));
        return std::make_shared<Query>(QueryOf(std::move(select), QueryUse::Table));
    }
    return nullptr;
}

TermPtr ObjectId(Context& context, Terms arguments) {
    const std::string name = BareName(RequireText(context, arguments[0]).text);
    if (arguments.size() > 1 && !SameName(RequireText(context, arguments[1]).text, "U")) return NullConstant();
    context.KeepAsWritten();
    const SourcePtr list = context.ListOf(BookList::Tables);
    Select select;
    select.items.push_back({ColumnOf(list, kTableId), "id"});
    select.where = Compare(ComparisonOperator::Equal, Collated(ColumnOf(list, kTableName)), TextConstant(name));
    select.from.push_back(TableOf(list));
    return std::make_shared<ScalarQuery>(std::make_shared<Query>(QueryOf(std::move(select), QueryUse::Value)),
                                         Type::Long);
}

}  // namespace kpTables::sql::bind
