// Names, types and expressions in their canonical spelling.
#include <algorithm>
#include <array>

#include "sql/parse/Keywords.h"
#include "sql/parse/Scanner.h"
#include "sql/parse/TextWriter.h"

namespace kpTables::sql::parse {

namespace {

/// Words that are no name in first place: of a list of columns, after TOP n, after CASE.
constexpr std::array<std::string_view, 5> kOpening = {"CONSTRAINT", "PERCENT", "PRIMARY", "UNIQUE", "WHEN"};

bool NeedsBrackets(std::string_view name) {
    if (IsReserved(name) || MaySplit(name)) return true;
    if (std::any_of(kOpening.begin(), kOpening.end(), [name](std::string_view word) { return SameWord(word, name); }))
        return true;
    return !IsBareName(name);
}

Precedence PrecedenceOf(const Expression& e) {
    switch (e.kind) {
        case ExpressionKind::Unary:
            return As<Unary>(e).op == UnaryOperator::Not ? Precedence::Not : Precedence::Sign;
        case ExpressionKind::Binary:
            return InfoOf(As<Binary>(e).op).precedence;
        case ExpressionKind::Like:
        case ExpressionKind::Between:
        case ExpressionKind::InList:
        case ExpressionKind::InQuery:
        case ExpressionKind::Quantified:
        case ExpressionKind::IsNull:
            return Precedence::Comparison;
        default:
            return Precedence::Primary;
    }
}

void WriteLiteral(std::string& out, const Literal& e) {
    switch (e.literal) {
        case LiteralKind::Null:
            out += "NULL";
            return;
        case LiteralKind::Text:
            out += '\'';
            for (char c : e.text) {
                out += c;
                if (c == '\'') out += c;
            }
            out += '\'';
            return;
        case LiteralKind::Date:
            out += '#' + e.text + '#';
            return;
        default:
            out += e.text;
    }
}

void WriteColumn(std::string& out, const Column& e) {
    if (!e.table.empty()) {
        WriteName(out, e.table);
        out += '.';
    }
    WriteName(out, e.name);
}

void WriteStar(std::string& out, const Star& e) {
    if (!e.table.empty()) {
        WriteName(out, e.table);
        out += '.';
    }
    out += '*';
}

void WriteUnary(std::string& out, const Unary& e) {
    if (e.op == UnaryOperator::Not) {
        out += "NOT ";
        WriteExpression(out, *e.operand, Precedence::Not);
        return;
    }
    out += e.op == UnaryOperator::Minus ? '-' : '+';
    // Two signs without a blank would start a comment in one of the dialects. Parentheses could make a text at the
    // nesting limit too deep to be parsed again.
    if (PrecedenceOf(*e.operand) == Precedence::Sign) out += ' ';
    WriteExpression(out, *e.operand, Precedence::Sign);
}

/// A chain may be long: a loop writes it from its first operand on.
void WriteBinary(std::string& out, const Binary& e) {
    std::vector<const Binary*> chain;
    for (const Binary* node = &e; node; node = If<Binary>(node->left.get())) {
        if (!chain.empty() && PrecedenceOf(*node) < PrecedenceOf(*chain.back())) break;
        chain.push_back(node);
    }
    WriteExpression(out, *chain.back()->left, PrecedenceOf(*chain.back()));
    while (!chain.empty()) {
        const Binary& node = *chain.back();
        const OperatorInfo& info = InfoOf(node.op);
        out += ' ';
        out += info.spelling;
        out += ' ';
        WriteExpression(out, *node.right, Tighter(info.precedence));
        chain.pop_back();
    }
}

void WriteOperandOf(std::string& out, const Expression& operand, bool negated, std::string_view predicate) {
    WriteExpression(out, operand, Precedence::Comparison);
    out += negated ? " NOT " : " ";
    out += predicate;
}

void WriteBetween(std::string& out, const Between& e) {
    WriteOperandOf(out, *e.operand, e.negated, "BETWEEN ");
    WriteExpression(out, *e.low, Tighter(Precedence::Comparison));
    out += " AND ";
    WriteExpression(out, *e.high, Tighter(Precedence::Comparison));
}

void WriteCall(std::string& out, const Call& e) {
    out += e.name;
    out += e.distinct ? "(DISTINCT " : "(";
    WriteExpressions(out, e.arguments);
    out += ')';
}

void WriteCast(std::string& out, const Cast& e) {
    if (e.tries) out += "TRY_";
    if (e.style) {
        out += "CONVERT(";
        WriteType(out, e.type);
        out += ", ";
        WriteExpression(out, *e.operand);
        out += ", ";
        WriteExpression(out, *e.style);
    } else {
        out += "CAST(";
        WriteExpression(out, *e.operand);
        out += " AS ";
        WriteType(out, e.type);
    }
    out += ')';
}

void WriteCase(std::string& out, const Case& e) {
    out += "CASE ";
    if (e.operand) {
        WriteExpression(out, *e.operand);
        out += ' ';
    }
    for (const Case::When& when : e.whens) {
        out += "WHEN ";
        WriteExpression(out, *when.condition);
        out += " THEN ";
        WriteExpression(out, *when.result);
        out += ' ';
    }
    if (e.otherwise) {
        out += "ELSE ";
        WriteExpression(out, *e.otherwise);
        out += ' ';
    }
    out += "END";
}

void WriteFrameBound(std::string& out, const FrameBound& bound) {
    using enum FrameBound::Kind;
    if (bound.kind == CurrentRow) {
        out += "CURRENT ROW";
        return;
    }
    const bool counted = bound.kind == Preceding || bound.kind == Following;
    out += counted ? std::to_string(bound.rows) : "UNBOUNDED";
    out += bound.kind == UnboundedPreceding || bound.kind == Preceding ? " PRECEDING" : " FOLLOWING";
}

void WriteWindow(std::string& out, const Window& e) {
    WriteCall(out, *e.call);
    out += " OVER (";
    std::string_view separator;
    if (!e.partitionBy.empty()) {
        out += "PARTITION BY ";
        WriteExpressions(out, e.partitionBy);
        separator = " ";
    }
    if (!e.orderBy.empty()) {
        out += separator;
        WriteOrder(out, e.orderBy);
        separator = " ";
    }
    if (e.frame) {
        out.append(separator).append(e.frame->byRows ? "ROWS" : "RANGE").append(" BETWEEN ");
        WriteFrameBound(out, e.frame->first);
        out += " AND ";
        WriteFrameBound(out, e.frame->last);
    }
    out += ')';
}

void WritePredicate(std::string& out, const Expression& e) {
    switch (e.kind) {
        case ExpressionKind::Like:
            WriteOperandOf(out, *As<Like>(e).operand, As<Like>(e).negated, "LIKE ");
            WriteExpression(out, *As<Like>(e).pattern, Tighter(Precedence::Comparison));
            if (!As<Like>(e).escape) return;
            out += " ESCAPE ";
            return WriteExpression(out, *As<Like>(e).escape, Tighter(Precedence::Comparison));
        case ExpressionKind::Between:
            return WriteBetween(out, As<Between>(e));
        case ExpressionKind::InList:
            WriteOperandOf(out, *As<InList>(e).operand, As<InList>(e).negated, "IN (");
            WriteExpressions(out, As<InList>(e).items);
            out += ')';
            return;
        case ExpressionKind::InQuery:
            WriteOperandOf(out, *As<InQuery>(e).operand, As<InQuery>(e).negated, "IN ");
            return WriteQueryInParentheses(out, *As<InQuery>(e).query);
        case ExpressionKind::Quantified: {
            const auto& test = As<Quantified>(e);
            WriteOperandOf(out, *test.operand, false, InfoOf(test.op).spelling);
            out += test.all ? " ALL " : " ANY ";
            return WriteQueryInParentheses(out, *test.query);
        }
        default:
            WriteExpression(out, *As<IsNull>(e).operand, Precedence::Comparison);
            out += As<IsNull>(e).negated ? " IS NOT NULL" : " IS NULL";
    }
}

void WriteBare(std::string& out, const Expression& e) {
    switch (e.kind) {
        case ExpressionKind::Literal:
            return WriteLiteral(out, As<Literal>(e));
        case ExpressionKind::Column:
            return WriteColumn(out, As<Column>(e));
        case ExpressionKind::Star:
            return WriteStar(out, As<Star>(e));
        case ExpressionKind::Variable:
            out += "@@" + As<Variable>(e).name;
            return;
        case ExpressionKind::Unary:
            return WriteUnary(out, As<Unary>(e));
        case ExpressionKind::Binary:
            return WriteBinary(out, As<Binary>(e));
        case ExpressionKind::Exists:
            out += "EXISTS ";
            return WriteQueryInParentheses(out, *As<Exists>(e).query);
        case ExpressionKind::Subquery:
            return WriteQueryInParentheses(out, *As<Subquery>(e).query);
        case ExpressionKind::Call:
            return WriteCall(out, As<Call>(e));
        case ExpressionKind::Window:
            return WriteWindow(out, As<Window>(e));
        case ExpressionKind::Cast:
            return WriteCast(out, As<Cast>(e));
        case ExpressionKind::Case:
            return WriteCase(out, As<Case>(e));
        default:
            WritePredicate(out, e);
    }
}

}  // namespace

void WriteName(std::string& out, std::string_view name) {
    const bool quoted = NeedsBrackets(name);
    const bool brackets = name.find(']') == std::string_view::npos;  // else it was written in ` signs
    if (quoted) out += brackets ? '[' : '`';
    out += name;
    if (quoted) out += brackets ? ']' : '`';
}

void WriteNames(std::string& out, const std::vector<std::string>& names) {
    for (std::size_t i = 0; i < names.size(); ++i) {
        if (i > 0) out += ", ";
        WriteName(out, names[i]);
    }
}

void WriteAlias(std::string& out, std::string_view alias) {
    if (alias.empty()) return;
    out += " AS ";
    WriteName(out, alias);
}

void WriteExpression(std::string& out, const Expression& e, Precedence loosest) {
    const bool parentheses = PrecedenceOf(e) < loosest;
    if (parentheses) out += '(';
    WriteBare(out, e);
    if (parentheses) out += ')';
}

void WriteExpressions(std::string& out, const std::vector<ExpressionPtr>& list) {
    for (std::size_t i = 0; i < list.size(); ++i) {
        if (i > 0) out += ", ";
        WriteExpression(out, *list[i]);
    }
}

void WriteType(std::string& out, const TypeName& type) {
    switch (type.type) {
        case Type::Long:
            out += type.counter ? "COUNTER" : "LONG";
            return;
        case Type::Short:
            out += "SHORT";
            return;
        case Type::Double:
            out += "DOUBLE";
            return;
        case Type::Currency:
            out += type.cuts ? "BIGINT" : type.precision > 0 ? "DECIMAL" : "CURRENCY";
            if (type.precision > 0 && !type.cuts)
                out += '(' + std::to_string(type.precision) + ',' + std::to_string(type.scale) + ')';
            return;
        case Type::Date:
            out += type.dayOnly ? "DATE" : type.timeOnly ? "TIME" : "DATETIME";
            return;
        case Type::Boolean:
            out += "YESNO";
            return;
        default:
            out += type.memo ? "MEMO" : type.fixed ? "CHAR" : "TEXT";
            if (type.length > 0) out += '(' + std::to_string(type.length) + ')';
    }
}

}  // namespace kpTables::sql::parse
