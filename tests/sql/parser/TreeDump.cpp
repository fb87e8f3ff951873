#include "TreeDump.h"

#include <array>
#include <string_view>

namespace kpTables::sql::parse {

namespace {

constexpr std::array<std::string_view, 6> kLiteralKinds = {"null", "boolean", "integer", "decimal", "text", "date"};
constexpr std::array<std::string_view, 3> kUnary = {"minus", "plus", "not"};
constexpr std::array<std::string_view, 19> kBinary = {"power",  "times", "over", "div", "mod", "plus", "minus",
                                                      "concat", "eq",    "ne",   "lt",  "le",  "gt",   "ge",
                                                      "and",    "or",    "xor",  "eqv", "imp"};
constexpr std::array<std::string_view, 4> kSetOperations = {" distinct", " all", " intersect", " except"};
constexpr std::array<std::string_view, 4> kJoins = {"inner", "left", "right", "full"};

std::string DumpQuery(const Query& query);

std::string Node(std::string_view name) { return "(" + std::string(name); }

std::string Quoted(const std::string& text) { return " <" + text + ">"; }

std::string Maybe(const ExpressionPtr& e) { return e ? " " + Dump(*e) : " -"; }

std::string List(const std::vector<ExpressionPtr>& list) {
    std::string out = " [";
    for (const ExpressionPtr& e : list) out += Dump(*e);
    return out + "]";
}

std::string Names(const std::vector<std::string>& names) {
    std::string out = " [";
    for (const std::string& name : names) out += Quoted(name);
    return out + "]";
}

std::string TypeText(const TypeName& type) {
    return " type:" + std::to_string(static_cast<int>(type.type)) + ":" + std::to_string(type.length) +
           (type.counter ? ":counter" : "") + (type.memo ? ":memo" : "") + (type.fixed ? ":fixed" : "") +
           (type.precision > 0 ? ":" + std::to_string(type.precision) + "," + std::to_string(type.scale) : "") +
           (type.cuts ? ":cuts" : "") + (type.dayOnly ? ":day" : "") + (type.timeOnly ? ":time" : "");
}

std::string Order(const std::vector<OrderItem>& order) {
    std::string out;
    for (const OrderItem& item : order) out += (item.descending ? " desc" : " asc") + Maybe(item.expression);
    return out;
}

std::string DumpWindow(const Window& e) {
    std::string out = Node("window") + " " + Dump(*e.call) + List(e.partitionBy) + Order(e.orderBy);
    if (!e.frame) return out;
    const auto bound = [](const FrameBound& each) {
        return " " + std::to_string(static_cast<int>(each.kind)) + ":" + std::to_string(each.rows);
    };
    return out + (e.frame->byRows ? " rows" : " range") + bound(e.frame->first) + bound(e.frame->last);
}

std::string DumpCase(const Case& e) {
    std::string out = Node("case") + Maybe(e.operand);
    for (const Case::When& when : e.whens) out += " when" + Maybe(when.condition) + Maybe(when.result);
    return out + " else" + Maybe(e.otherwise);
}

std::string DumpPredicate(const Expression& e) {
    switch (e.kind) {
        case ExpressionKind::Like:
            return Node(As<Like>(e).negated ? "notlike" : "like") + Maybe(As<Like>(e).operand) +
                   Maybe(As<Like>(e).pattern) + (As<Like>(e).escape ? Maybe(As<Like>(e).escape) : std::string());
        case ExpressionKind::Between:
            return Node(As<Between>(e).negated ? "notbetween" : "between") + Maybe(As<Between>(e).operand) +
                   Maybe(As<Between>(e).low) + Maybe(As<Between>(e).high);
        case ExpressionKind::InList:
            return Node(As<InList>(e).negated ? "notin" : "in") + Maybe(As<InList>(e).operand) +
                   List(As<InList>(e).items);
        case ExpressionKind::InQuery:
            return Node(As<InQuery>(e).negated ? "notinquery" : "inquery") + Maybe(As<InQuery>(e).operand) +
                   DumpQuery(*As<InQuery>(e).query);
        case ExpressionKind::Quantified:
            return Node(As<Quantified>(e).all ? "all " : "any ") +
                   std::string(kBinary[static_cast<std::size_t>(As<Quantified>(e).op)]) +
                   Maybe(As<Quantified>(e).operand) + DumpQuery(*As<Quantified>(e).query);
        default:
            return Node(As<IsNull>(e).negated ? "isnotnull" : "isnull") + Maybe(As<IsNull>(e).operand);
    }
}

std::string DumpOpen(const Expression& e) {
    switch (e.kind) {
        case ExpressionKind::Literal:
            return Node(kLiteralKinds[static_cast<std::size_t>(As<Literal>(e).literal)]) + Quoted(As<Literal>(e).text);
        case ExpressionKind::Column:
            return Node("column") + Quoted(As<Column>(e).table) + Quoted(As<Column>(e).name);
        case ExpressionKind::Star:
            return Node("star") + Quoted(As<Star>(e).table);
        case ExpressionKind::Variable:
            return Node("variable") + Quoted(As<Variable>(e).name);
        case ExpressionKind::Unary:
            return Node(kUnary[static_cast<std::size_t>(As<Unary>(e).op)]) + Maybe(As<Unary>(e).operand);
        case ExpressionKind::Binary:
            return Node(kBinary[static_cast<std::size_t>(As<Binary>(e).op)]) + Maybe(As<Binary>(e).left) +
                   Maybe(As<Binary>(e).right);
        case ExpressionKind::Exists:
            return Node("exists") + DumpQuery(*As<Exists>(e).query);
        case ExpressionKind::Subquery:
            return Node("subquery") + DumpQuery(*As<Subquery>(e).query);
        case ExpressionKind::Call:
            return Node(As<Call>(e).distinct ? "calldistinct" : "call") + Quoted(As<Call>(e).name) +
                   List(As<Call>(e).arguments);
        case ExpressionKind::Window:
            return DumpWindow(As<Window>(e));
        case ExpressionKind::Cast:
            return Node(As<Cast>(e).tries ? "trycast" : "cast") + Maybe(As<Cast>(e).operand) +
                   TypeText(As<Cast>(e).type) + (As<Cast>(e).style ? Maybe(As<Cast>(e).style) : std::string());
        case ExpressionKind::Case:
            return DumpCase(As<Case>(e));
        default:
            return DumpPredicate(e);
    }
}

std::string DumpTable(const TableExpression& table) {
    if (table.kind == TableKind::Named) {
        const auto& named = static_cast<const NamedTable&>(table);
        return Node("table") + Quoted(named.name) + Quoted(named.alias) + ")";
    }
    if (table.kind == TableKind::Derived) {
        const auto& derived = static_cast<const DerivedTable&>(table);
        return Node("derived") + DumpQuery(*derived.query) + Quoted(derived.alias) + ")";
    }
    const auto& joined = static_cast<const JoinedTable&>(table);
    return Node(kJoins[static_cast<std::size_t>(joined.join)]) + DumpTable(*joined.left) + DumpTable(*joined.right) +
           Maybe(joined.on) + ")";
}

std::string DumpCore(const SelectCore& core) {
    const char* const name = core.distinct ? "selectdistinct" : core.distinctRow ? "selectdistinctrow" : "select";
    std::string out = Node(name) + (core.percent ? " percent" : core.withTies ? " ties" : " top") + Maybe(core.top);
    for (const SelectItem& item : core.items) out += " item" + Maybe(item.expression) + Quoted(item.alias);
    for (const TablePtr& table : core.from) out += " from" + DumpTable(*table);
    return out + " where" + Maybe(core.where) + " group" + List(core.groupBy) + " having" + Maybe(core.having) + ")";
}

std::string DumpQuery(const Query& query) {
    std::string out = Node("query");
    for (const Query::Member& member : query.members) {
        out += kSetOperations[static_cast<std::size_t>(member.operation)];
        out += member.core ? DumpCore(*member.core) : DumpQuery(*member.nested);
    }
    out += Order(query.orderBy);
    if (query.skip) out += " skip" + Maybe(query.skip) + " fetch" + Maybe(query.fetch);
    return out + ")";
}

std::string Tables(const std::vector<TablePtr>& tables) {
    std::string out;
    for (const TablePtr& table : tables) out += " from" + DumpTable(*table);
    return out;
}

std::string DumpInsert(const InsertStatement& s) {
    std::string out = Node("insert") + Quoted(s.table) + Names(s.columns);
    for (const std::vector<ExpressionPtr>& row : s.rows) out += List(row);
    return out + (s.query ? DumpQuery(*s.query) : "");
}

std::string DumpUpdate(const UpdateStatement& s) {
    std::string out = Node("update") + Quoted(s.table) + Quoted(s.alias) + (s.top ? Maybe(s.top) : std::string());
    for (const UpdateStatement::Assignment& a : s.assignments)
        out += " set" + Quoted(a.table) + Quoted(a.column) + Maybe(a.value);
    return out + Tables(s.from) + " where" + Maybe(s.where);
}

std::string DumpDefinition(const ColumnDefinition& column) {
    return Node("define") + Quoted(column.name) + TypeText(column.type) + (column.notNull ? " notnull" : "") +
           (column.primaryKey ? " primary" : "") + (column.unique ? " unique" : "") +
           (column.source.empty() ? "" : " as" + Quoted(column.source)) + Maybe(column.defaultValue) + ")";
}

std::string DumpCreateTable(const CreateTableStatement& s) {
    std::string out = Node("createtable") + Quoted(s.table);
    for (const ColumnDefinition& column : s.columns) out += DumpDefinition(column);
    out += " primary" + Names(s.primaryKey);
    for (const std::vector<std::string>& key : s.uniqueKeys) out += " unique" + Names(key);
    return out;
}

std::string DumpCreateIndex(const CreateIndexStatement& s) {
    std::string out = Node(s.unique ? "createuniqueindex" : "createindex") + Quoted(s.index) + Quoted(s.table);
    for (const CreateIndexStatement::Key& key : s.keys) out += (key.descending ? " desc" : " asc") + Quoted(key.column);
    return out;
}

std::string DumpTransform(const TransformStatement& s) {
    return Node("transform") + Maybe(s.aggregate.expression) + Quoted(s.aggregate.alias) + DumpQuery(*s.query) +
           Maybe(s.pivot) + List(s.values);
}

std::string DumpOpen(const Statement& s) {
    switch (s.kind) {
        case StatementKind::Select:
            return Node("statement") + DumpQuery(*static_cast<const SelectStatement&>(s).query);
        case StatementKind::SelectInto: {
            const auto& into = static_cast<const SelectIntoStatement&>(s);
            return Node("into") + Quoted(into.table) + DumpQuery(*into.query);
        }
        case StatementKind::Transform:
            return DumpTransform(static_cast<const TransformStatement&>(s));
        case StatementKind::Insert:
            return DumpInsert(static_cast<const InsertStatement&>(s));
        case StatementKind::Update:
            return DumpUpdate(static_cast<const UpdateStatement&>(s));
        case StatementKind::Delete: {
            const auto& d = static_cast<const DeleteStatement&>(s);
            return Node(d.truncates ? "truncate" : "delete") + Quoted(d.table) + Quoted(d.alias) + Tables(d.from) +
                   (d.top ? Maybe(d.top) : std::string()) + Maybe(d.where);
        }
        case StatementKind::CreateTable:
            return DumpCreateTable(static_cast<const CreateTableStatement&>(s));
        case StatementKind::CreateIndex:
            return DumpCreateIndex(static_cast<const CreateIndexStatement&>(s));
        case StatementKind::DropTable:
            return Node(static_cast<const DropTableStatement&>(s).ifExists ? "droptableifexists" : "droptable") +
                   Quoted(static_cast<const DropTableStatement&>(s).table);
        case StatementKind::DropIndex: {
            const auto& d = static_cast<const DropIndexStatement&>(s);
            return Node("dropindex") + Quoted(d.index) + Quoted(d.table);
        }
        case StatementKind::AddColumn: {
            const auto& a = static_cast<const AddColumnStatement&>(s);
            std::string out = Node("addcolumn") + Quoted(a.table);
            for (const ColumnDefinition& column : a.columns) out += DumpDefinition(column);
            return out;
        }
        case StatementKind::AlterColumn: {
            const auto& a = static_cast<const AlterColumnStatement&>(s);
            return Node("altercolumn") + Quoted(a.table) + DumpDefinition(a.column);
        }
        case StatementKind::DropColumn: {
            const auto& d = static_cast<const DropColumnStatement&>(s);
            return Node("dropcolumn") + Quoted(d.table) + Names(d.columns);
        }
        case StatementKind::Session: {
            const auto& session = static_cast<const SessionStatement&>(s);
            return Node("session") + " " + std::to_string(static_cast<int>(session.action)) + Quoted(session.words);
        }
    }
    return {};
}

}  // namespace

std::string Dump(const Expression& expression) { return DumpOpen(expression) + ")"; }

std::string Dump(const Statement& statement) {
    std::string with;
    for (const CommonTable& table : statement.with)
        with += Node("with") + Quoted(table.name) + Names(table.columns) + DumpQuery(*table.query) + ")";
    return with + DumpOpen(statement) + ")";
}

}  // namespace kpTables::sql::parse
