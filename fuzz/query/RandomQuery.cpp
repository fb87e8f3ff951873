#include "query/RandomQuery.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace kpTables::fuzz::query {

namespace {

struct TableColumn {
    std::string_view name;
    Kind kind;
};

struct Table {
    std::string_view alias;
    std::string_view name;
    std::vector<TableColumn> columns;
};

constexpr auto W = Kind::Whole;
constexpr auto N = Kind::Number;
constexpr auto M = Kind::Money;
constexpr auto T = Kind::Text;
constexpr auto D = Kind::Day;

const std::vector<Table> kTables = {
    {"Lst",
     "入库目录",
     {{"BillID", W},
      {"年份", W},
      {"月份", W},
      {"日子", W},
      {"单据类型", T},
      {"类型", T},
      {"单据编号", T},
      {"dpID", W},
      {"ksID", W},
      {"pjID", W},
      {"录入日期", D},
      {"项目ID", W}}},
    {"Rec",
     "入库记录",
     {{"BillID", W},
      {"pdID", W},
      {"dpID", W},
      {"数量", N},
      {"单价", M},
      {"金额", M},
      {"除税金额", M},
      {"经手人", T},
      {"仓库", W}}},
    {"dp", "仓库设置", {{"dpID", W}, {"仓库名称", T}, {"结帐日期", D}}},
    {"ks", "厂商资料", {{"KSID", W}, {"ClassCode", T}, {"企业名称", T}}},
    {"pj", "项目设置", {{"项目ID", W}, {"项目编号", T}, {"项目名称", T}, {"ksID", W}}},
    {"pd", "商品设置", {{"pdID", W}, {"商品名称", T}, {"商品编号", T}, {"ClassCode", T}, {"默认单价", N}}},
    {"bn",
     "仓库余额表",
     {{"年份", W}, {"月份", W}, {"pdID", W}, {"dpID", W}, {"上期库存数量", N}, {"上期库存金额", M}, {"备注", T}}},
};

struct Relation {
    std::string_view left, leftColumn, right, rightColumn;
};
constexpr Relation kRelations[] = {{"Lst", "BillID", "Rec", "BillID"}, {"Lst", "dpID", "dp", "dpID"},
                                   {"Lst", "ksID", "ks", "KSID"},      {"Lst", "pjID", "pj", "项目ID"},
                                   {"Rec", "pdID", "pd", "pdID"},      {"Rec", "dpID", "dp", "dpID"},
                                   {"bn", "pdID", "pd", "pdID"},       {"bn", "dpID", "dp", "dpID"},
                                   {"bn", "pdID", "Rec", "pdID"},      {"pj", "ksID", "ks", "KSID"}};

const Table& TableOf(std::string_view alias) {
    return *std::find_if(kTables.begin(), kTables.end(), [&](const Table& table) { return table.alias == alias; });
}

Expression ColumnOf(std::string_view table, std::string_view name, Kind kind) {
    return {Node::Column, kind, std::string(name), std::string(table)};
}

Expression Compared(Expression left, std::string_view sign, Expression right) {
    Expression compared{Node::Compare, Kind::Whole, std::string(sign), {}};
    compared.parts = {std::move(left), std::move(right)};
    return compared;
}

Expression Of(Node node, Kind kind, std::vector<Expression> parts) { return {node, kind, {}, {}, std::move(parts)}; }

class Generator {
public:
    explicit Generator(Input& input) : input_(input) {}

    Select Query() {
        Select select = Single(true);
        // Both members of a union have the same kinds of values, here the same texts of other tables.
        if (input_.Below(8) == 7) {
            select.order.clear();
            auto other = std::make_shared<Select>(select);
            other->where = Condition(2);
            if (!select.groups.empty()) other->having = HavingOf();
            constexpr std::array<const char*, 3> kJoins = {"UNION", "INTERSECT", "EXCEPT"};
            select.joins = kJoins[input_.Below(kJoins.size())];
            select.united = std::move(other);
        }
        return select;
    }

private:
    struct Column {
        std::string table, name;
        Kind kind;
    };

    Select Single(bool mayNest) {
        Select select;
        columns_.clear();
        hasBills_ = false;
        select.from = Sources(mayNest);
        switch (input_.Below(4)) {
            case 0:
                Plain(select);
                break;
            case 1:
                Plain(select);
                select.distinct = true;
                break;
            default:
                Grouped(select);
        }
        if (input_.Below(4) != 0) select.where = Condition(2);
        if (mayNest && input_.Flag()) {
            // A constant would be taken for an item's number.
            for (std::size_t i = 0; i < select.items.size(); ++i)
                if (select.items[i].value.node != Node::Constant && input_.Flag())
                    select.order.emplace_back(i, input_.Flag());
        }
        return select;
    }

    // ---- Tables ----

    Source Leaf(const Table& table) {
        for (const TableColumn& column : table.columns)
            columns_.push_back({std::string(table.alias), std::string(column.name), column.kind});
        hasBills_ = hasBills_ || table.alias == "Lst";
        Source source;
        source.table = table.name;
        source.alias = table.alias;
        return source;
    }

    bool Has(std::string_view alias) const {
        return std::any_of(columns_.begin(), columns_.end(), [&](const Column& c) { return c.table == alias; });
    }

    Source Joined(Source known, Source added, Expression on) {
        constexpr std::string_view kJoins[] = {"INNER", "LEFT", "RIGHT"};
        Source joined;
        joined.join = kJoins[input_.Below(3)];
        if (input_.Flag()) std::swap(known, added);
        joined.left = std::make_shared<Source>(std::move(known));
        joined.right = std::make_shared<Source>(std::move(added));
        joined.on = std::move(on);
        return joined;
    }

    Source Sources(bool mayNest) {
        // The inner query first: it has columns of its own.
        std::shared_ptr<Select> inner;
        if (mayNest && input_.Below(8) == 0) inner = Derived();
        columns_.clear();
        hasBills_ = false;
        Source from = Leaf(kTables[input_.Below(kTables.size())]);
        for (std::size_t left = input_.Below(5); left > 0; --left) {
            std::vector<Relation> possible;
            for (const Relation& each : kRelations)
                if (Has(each.left) != Has(each.right)) possible.push_back(each);
            if (possible.empty()) break;
            const Relation& relation = possible[input_.Below(possible.size())];
            const std::string_view added = Has(relation.left) ? relation.right : relation.left;
            Source leaf = Leaf(TableOf(added));
            from = Joined(std::move(from), std::move(leaf),
                          Compared(ColumnOf(relation.left, relation.leftColumn, W), "=",
                                   ColumnOf(relation.right, relation.rightColumn, W)));
        }
        if (inner) {
            Source leaf;
            leaf.alias = "S";
            leaf.query = inner;
            Expression on = Compared(AnyColumn(W), "=", ColumnOf("S", inner->items[0].alias, W));
            for (const Item& item : inner->items) columns_.push_back({"S", item.alias, item.value.kind});
            from = Joined(std::move(from), std::move(leaf), std::move(on));
        }
        return from;
    }

    /// Sums by an id.
    std::shared_ptr<Select> Derived() {
        auto select = std::make_shared<Select>();
        select->from = Sources(false);
        Expression key = AnyColumn(W);
        select->items = {{key, "k"}, {Aggregate(), "v"}};
        select->groups = {std::move(key)};
        if (input_.Flag()) select->where = Condition(1);
        return select;
    }

    // ---- Lists ----

    void Plain(Select& select) {
        for (std::size_t count = 1 + input_.Below(4); count > 0; --count) Add(select, Value(AnyKind(), 1));
    }

    void Grouped(Select& select) {
        for (std::size_t count = input_.Below(5); count > 0; --count) {
            const Column& column = columns_[input_.Byte() % columns_.size()];
            Expression key = ColumnOf(column.table, column.name, column.kind);
            select.groups.push_back(key);
            if (input_.Below(4) != 0) Add(select, std::move(key));
        }
        for (std::size_t count = 1 + input_.Below(3); count > 0; --count) Add(select, Aggregate());
        if (!select.groups.empty() && input_.Below(4) == 0) select.having = HavingOf();
    }

    static void Add(Select& select, Expression value) {
        select.items.push_back({std::move(value), "c" + std::to_string(select.items.size())});
    }

    Expression HavingOf() {
        Expression aggregate = Aggregate();
        Expression constant = Constant(aggregate.kind);
        return Compared(std::move(aggregate), Sign(), std::move(constant));
    }

    Expression Aggregate() {
        switch (input_.Below(8)) {
            case 0:
                return Of(Node::CountRows, W, {});
            case 1:
                return Of(Node::Count, W, {Value(AnyKind(), 0)});
            case 2: {
                const Kind kind = AnyKind();
                return Of(input_.Flag() ? Node::Least : Node::Greatest, kind, {Value(kind, 0)});
            }
            default: {
                constexpr Kind kSummed[] = {N, M, M, W};
                const Kind kind = kSummed[input_.Below(4)];
                return Of(Node::Sum, kind, {Value(kind, input_.Below(4) == 0 ? 1 : 0)});
            }
        }
    }

    // ---- Values ----

    Kind AnyKind() { return static_cast<Kind>(input_.Below(5)); }

    bool HasKind(Kind kind) const {
        return std::any_of(columns_.begin(), columns_.end(), [&](const Column& c) { return c.kind == kind; });
    }

    Expression AnyColumn(Kind kind) {
        std::vector<const Column*> found;
        for (const Column& column : columns_)
            if (column.kind == kind) found.push_back(&column);
        const Column& column = *found[input_.Byte() % found.size()];
        return ColumnOf(column.table, column.name, kind);
    }

    Expression Constant(Kind kind) {
        constexpr std::string_view kWholes[] = {"1", "2", "3", "0", "2004", "-1", "12", "7"};
        constexpr std::string_view kNumbers[] = {"1.5", "0", "2.25", "10", "-0.25"};
        constexpr std::string_view kTexts[] = {"a", "采购", "水泥", "A2", "张三", "01", ""};
        constexpr std::string_view kDays[] = {"2004-03-07", "2004-03-17", "2004-01-01",
                                              "2003-12-31", "2004-12-31", "2004-03-17 12:00:00"};
        std::string_view text;
        switch (kind) {
            case W:
                text = kWholes[input_.Below(std::size(kWholes))];
                break;
            case Kind::Text:
                text = kTexts[input_.Below(std::size(kTexts))];
                break;
            case Kind::Day:
                text = kDays[input_.Below(std::size(kDays))];
                break;
            default:
                text = kNumbers[input_.Below(std::size(kNumbers))];
        }
        return {Node::Constant, kind, std::string(text), {}};
    }

    Expression Value(Kind kind, int depth) {
        if (kind == Kind::Day && hasBills_ && input_.Flag()) return {Node::BillDay, Kind::Day, {}, "Lst"};
        const std::size_t choice = input_.Below(8);
        if (depth > 0 && choice == 0) {
            return Of(Node::Choice, kind, {Condition(0), Value(kind, depth - 1), Value(kind, depth - 1)});
        }
        if (depth > 0 && choice < 3) {
            if (kind == Kind::Text) return Of(Node::Join, kind, {Value(kind, depth - 1), Value(kind, depth - 1)});
            if (kind != Kind::Day) {
                const Node node = choice == 1 ? Node::Add : Node::Subtract;
                return Of(node, kind, {Value(kind, depth - 1), Value(kind, depth - 1)});
            }
        }
        return HasKind(kind) && choice != 7 ? AnyColumn(kind) : Constant(kind);
    }

    std::string_view Sign() {
        constexpr std::string_view kSigns[] = {"=", "<>", "<", "<=", ">", ">="};
        return kSigns[input_.Below(std::size(kSigns))];
    }

    Expression Condition(int depth) {
        const std::size_t choice = input_.Below(depth > 0 ? 14 : 7);
        const Kind kind = AnyKind();
        switch (choice) {
            case 0:
            case 1:
            case 2:
            case 3:
                return Comparison(kind, depth);
            case 4:
                return Of(Node::Between, W, {Value(kind, 0), Constant(kind), Constant(kind)});
            case 5:
                return Of(Node::InList, W, {Value(kind, 0), Constant(kind), Constant(kind), Constant(kind)});
            case 6:
                return Of(Node::IsNull, W, {Value(kind, 0)});
            case 7:
            case 8:
            case 9:
                return Of(Node::And, W, {Condition(depth - 1), Condition(depth - 1)});
            case 10:
                return Of(Node::Or, W, {Condition(depth - 1), Condition(depth - 1)});
            case 11:
                return Of(Node::Not, W, {Condition(depth - 1)});
            default:
                return Subquery(choice == 12);
        }
    }

    Expression Comparison(Kind kind, int depth) {
        Expression left = Value(kind, depth);
        Expression right = input_.Below(4) == 0 ? Value(kind, 0) : Constant(kind);
        return Compared(std::move(left), Sign(), std::move(right));
    }

    /// The lines of a bill, the products or the warehouses, looked up for a row by one of its ids.
    Expression Subquery(bool exists) {
        constexpr Relation kInner[] = {{"入库记录", "BillID", "R", ""},
                                       {"入库记录", "pdID", "R", ""},
                                       {"商品设置", "pdID", "R", ""},
                                       {"仓库设置", "dpID", "R", ""},
                                       {"入库目录", "BillID", "R", ""}};
        const Relation& relation = kInner[input_.Below(std::size(kInner))];
        Expression outer = AnyColumn(W);
        Expression inner = ColumnOf("R", relation.leftColumn, W);
        auto select = std::make_shared<Select>();
        select->from.table = relation.left;
        select->from.alias = "R";
        select->items = {{inner, "k"}};
        Expression found = Of(exists ? Node::Exists : Node::InQuery, W, {});
        found.query = select;
        if (exists) {
            select->where = Compared(std::move(inner), "=", std::move(outer));
        } else {
            if (input_.Flag()) select->where = Compared(std::move(inner), Sign(), Constant(W));
            found.parts = {std::move(outer)};
        }
        return found;
    }

    Input& input_;
    std::vector<Column> columns_;
    bool hasBills_ = false;
};

}  // namespace

Select RandomQuery(Input& input) { return Generator(input).Query(); }

}  // namespace kpTables::fuzz::query
