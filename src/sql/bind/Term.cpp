#include "sql/bind/Term.h"

#include <algorithm>

#include "sql/bind/Query.h"

namespace kpTables::sql::bind {

namespace {

template <class Node>
std::shared_ptr<Node> Placed(std::shared_ptr<Node> node, std::size_t offset) {
    node->offset = offset;
    return node;
}

bool SameNode(const Term& a, const Term& b) {
    if (a.kind != b.kind || a.type != b.type || a.operands.size() != b.operands.size()) return false;
    switch (a.kind) {
        case TermKind::Parameter: {
            const auto& x = As<ParameterTerm>(a);
            const auto& y = As<ParameterTerm>(b);
            return x.literal == y.literal && x.text == y.text && x.binding == y.binding && x.negative == y.negative &&
                   x.pair == y.pair;
        }
        case TermKind::Constant:
            return As<ConstantTerm>(a).constantKind == As<ConstantTerm>(b).constantKind &&
                   As<ConstantTerm>(a).text == As<ConstantTerm>(b).text;
        case TermKind::Column:
            return As<ColumnTerm>(a).SameAs(As<ColumnTerm>(b));
        case TermKind::RowId:
            return As<RowIdTerm>(a).source == As<RowIdTerm>(b).source;
        case TermKind::Arithmetic:
            return As<Arithmetic>(a).op == As<Arithmetic>(b).op;
        case TermKind::Concatenation:
            return As<Concatenation>(a).nulls == As<Concatenation>(b).nulls;
        case TermKind::Comparison:
            return As<Comparison>(a).op == As<Comparison>(b).op;
        case TermKind::RowComparison:
            return As<RowComparison>(a).op == As<RowComparison>(b).op;
        case TermKind::Between:
            return As<BetweenTerm>(a).negated == As<BetweenTerm>(b).negated;
        case TermKind::InList:
            return As<InListTerm>(a).negated == As<InListTerm>(b).negated;
        case TermKind::Logic:
            return As<Logic>(a).op == As<Logic>(b).op;
        case TermKind::Call:
            return As<CallTerm>(a).name == As<CallTerm>(b).name;
        case TermKind::Aggregate: {
            const auto& x = As<Aggregate>(a);
            const auto& y = As<Aggregate>(b);
            return x.function == y.function && x.distinct == y.distinct && x.allRows == y.allRows &&
                   x.filtered == y.filtered;
        }
        case TermKind::Case:
            return As<CaseTerm>(a).hasOperand == As<CaseTerm>(b).hasOperand &&
                   As<CaseTerm>(a).hasElse == As<CaseTerm>(b).hasElse;
        case TermKind::Conversion:
            return As<Conversion>(a).rounded == As<Conversion>(b).rounded;
        case TermKind::Literal:
        case TermKind::Window:
        case TermKind::InQuery:
        case TermKind::Exists:
        case TermKind::ScalarQuery:
            return false;
        default:
            return true;
    }
}

}  // namespace

Term::Term(TermKind k, Type t, Terms parts)
    : kind(k),
      type(t),
      constant(std::all_of(parts.begin(), parts.end(), [](const TermPtr& part) { return part->constant; })),
      offset(parts.empty() ? 0 : parts.front()->offset),
      operands(std::move(parts)) {}

Term::~Term() {
    if (operands.empty()) return;
    TermPtr next = std::move(operands.front());
    while (next && next.use_count() == 1 && !next->operands.empty()) {
        // The term is not shared, so its first operand may be moved out of it.
        // NOLINTNEXTLINE(cppcoreguidelines-pro-type-const-cast)
        TermPtr inner = std::move(const_cast<Term&>(*next).operands.front());
        next = std::move(inner);
    }
}

ColumnTerm::ColumnTerm(std::shared_ptr<const Source> s, std::size_t c)
    : TermOf(s->columns[c].type, {}), source(std::move(s)), column(c) {
    constant = false;
}

RowIdTerm::RowIdTerm(std::shared_ptr<const Source> s) : TermOf(Type::Long, {}), source(std::move(s)) {
    constant = false;
}

Arithmetic::Arithmetic(ArithmeticOperator o, TermPtr left, TermPtr right, Type t)
    : TermOf(t, {std::move(left), std::move(right)}), op(o) {}

Concatenation::Concatenation(Nulls n, TermPtr left, TermPtr right)
    : TermOf(Type::Text, {std::move(left), std::move(right)}), nulls(n) {}

Negation::Negation(TermPtr operand, Type t) : TermOf(t, {std::move(operand)}) {}

ComparisonOperator Mirrored(ComparisonOperator op) {
    switch (op) {
        case ComparisonOperator::Less:
            return ComparisonOperator::Greater;
        case ComparisonOperator::LessEqual:
            return ComparisonOperator::GreaterEqual;
        case ComparisonOperator::Greater:
            return ComparisonOperator::Less;
        case ComparisonOperator::GreaterEqual:
            return ComparisonOperator::LessEqual;
        default:
            return op;
    }
}

Comparison::Comparison(ComparisonOperator o, TermPtr left, TermPtr right)
    : TermOf(Type::Boolean, {std::move(left), std::move(right)}), op(o) {
    predicate = true;
}

RowComparison::RowComparison(ComparisonOperator o, Terms leftThenRight)
    : TermOf(Type::Boolean, std::move(leftThenRight)), op(o) {
    predicate = true;
}

BetweenTerm::BetweenTerm(TermPtr operand, TermPtr low, TermPtr high, bool no)
    : TermOf(Type::Boolean, {std::move(operand), std::move(low), std::move(high)}), negated(no) {
    predicate = true;
}

InListTerm::InListTerm(TermPtr operand, Terms items, bool no) : TermOf(Type::Boolean, std::move(items)), negated(no) {
    constant = constant && operand->constant;
    offset = operand->offset;
    operands.insert(operands.begin(), std::move(operand));
    predicate = true;
}

InQueryTerm::InQueryTerm(TermPtr operand, std::shared_ptr<Query> q, bool no)
    : TermOf(Type::Boolean, {std::move(operand)}), negated(no), query(std::move(q)) {
    predicate = true;
    constant = false;
}

ExistsTerm::ExistsTerm(std::shared_ptr<Query> q) : TermOf(Type::Boolean, {}), query(std::move(q)) {
    predicate = true;
    constant = false;
}

ScalarQuery::ScalarQuery(std::shared_ptr<Query> q, Type t) : TermOf(t, {}), query(std::move(q)) { constant = false; }

Logic::Logic(LogicOperator o, Terms conditions) : TermOf(Type::Boolean, std::move(conditions)), op(o) {
    predicate = true;
}

NotTerm::NotTerm(TermPtr condition) : TermOf(Type::Boolean, {std::move(condition)}) { predicate = true; }

CallTerm::CallTerm(std::string_view n, Terms arguments, Type t) : TermOf(t, std::move(arguments)), name(n) {}

Aggregate::Aggregate(AggregateFunction f, TermPtr argument, TermPtr filter, Type t)
    : TermOf(t, {}), function(f), allRows(!argument), filtered(filter != nullptr) {
    if (argument) operands.push_back(std::move(argument));
    if (filter) operands.push_back(std::move(filter));
    constant = false;
}

WindowTerm::WindowTerm(Type t, Terms parts, std::size_t partition, std::vector<bool> directions,
                       const std::optional<sql::Window::Frame>& rows)
    : TermOf(t, std::move(parts)), partitionKeys(partition), descending(std::move(directions)), frame(rows) {
    constant = false;
}

CaseTerm::CaseTerm(Terms parts, bool operand, bool otherwise, Type t)
    : TermOf(t, std::move(parts)), hasOperand(operand), hasElse(otherwise) {}

DateOfParts::DateOfParts(TermPtr year, TermPtr month, TermPtr day)
    : TermOf(Type::Date, {std::move(year), std::move(month), std::move(day)}) {}

Conversion::Conversion(TermPtr operand, Type t) : TermOf(t, {std::move(operand)}) {}

RangeCheck::RangeCheck(const TermPtr& operand) : TermOf(operand->type, {operand}) {}

PredicateValue::PredicateValue(const TermPtr& operand) : TermOf(operand->type, {operand}) {}

Collation::Collation(const TermPtr& operand) : TermOf(operand->type, {operand}) {}

Likely::Likely(const TermPtr& operand) : TermOf(operand->type, {operand}) { predicate = true; }

TermPtr NullConstant(std::size_t offset) {
    return Placed(std::make_shared<ConstantTerm>(ConstantKind::Null, "NULL", Type::Null), offset);
}

TermPtr NumberConstant(std::string text, Type type) {
    return std::make_shared<ConstantTerm>(ConstantKind::Number, std::move(text), type);
}

TermPtr TextConstant(std::string_view text, std::size_t offset) {
    return Placed(std::make_shared<ConstantTerm>(ConstantKind::Text, std::string(text), Type::Text), offset);
}

TermPtr TruthConstant(bool value, std::size_t offset) {
    return Placed(std::make_shared<ConstantTerm>(ConstantKind::Truth, value ? "1" : "0", Type::Boolean), offset);
}

TermPtr FlagConstant(bool value, std::size_t offset) {
    return Placed(std::make_shared<ConstantTerm>(ConstantKind::Boolean, value ? "-1" : "0", Type::Boolean), offset);
}

TermPtr Call(std::string_view name, Terms arguments, Type type) {
    return std::make_shared<CallTerm>(name, std::move(arguments), type);
}

TermPtr Compare(ComparisonOperator op, TermPtr left, TermPtr right) {
    return std::make_shared<Comparison>(op, std::move(left), std::move(right));
}

TermPtr ColumnOf(std::shared_ptr<const Source> source, std::size_t column, std::size_t offset) {
    return Placed(std::make_shared<ColumnTerm>(std::move(source), column), offset);
}

TermPtr At(const TermPtr& term, std::size_t offset) { return Placed(term->Clone(), offset); }

TermPtr WithOperands(const Term& term, Terms operands) {
    auto copy = term.Clone();
    copy->operands = std::move(operands);
    return copy;
}

const ConstantTerm* KnownTruth(const Term& term) {
    const auto* constant = If<ConstantTerm>(&term);
    const bool known =
        constant && (constant->constantKind == ConstantKind::Boolean || constant->constantKind == ConstantKind::Truth);
    return known ? constant : nullptr;
}

bool IsTrue(const Term& term) {
    const auto* known = KnownTruth(term);
    return known && known->text != "0";
}

bool IsWhole(Type type) noexcept { return type == Type::Boolean || type == Type::Short || type == Type::Long; }

bool IsNumeric(Type type) noexcept { return IsWhole(type) || type == Type::Double || type == Type::Currency; }

bool IsWidening(Type from, Type to) noexcept {
    if (to == Type::Double) return IsWhole(from);
    if (to == Type::Long) return from == Type::Boolean || from == Type::Short;
    return to == Type::Short && from == Type::Boolean;
}

const ColumnTerm* StoredColumn(const Term& term) {
    const Term* inner = &term;
    while (inner->kind == TermKind::Conversion && IsWidening(inner->operands.front()->type, inner->type))
        inner = inner->operands.front().get();
    const auto* column = If<ColumnTerm>(inner);
    return column && column->source->table ? column : nullptr;
}

bool SameTerm(const Term& a, const Term& b) {
    std::vector<std::pair<const Term*, const Term*>> open{{&a, &b}};
    while (!open.empty()) {
        const auto [x, y] = open.back();
        open.pop_back();
        if (x == y) continue;
        if (!SameNode(*x, *y)) return false;
        for (std::size_t i = 0; i < x->operands.size(); ++i)
            open.emplace_back(x->operands[i].get(), y->operands[i].get());
    }
    return true;
}

}  // namespace kpTables::sql::bind
