#include "sql/sqlite/Conversion.h"

#include <utility>

#include "sql/SqlError.h"

namespace kpTables::sql {

namespace {

constexpr std::string_view kUnit = "10000";
constexpr std::string_view kRealUnit = "10000.0";

Type BoundType(Binding binding, const Literal& literal) {
    switch (binding) {
        case Binding::Short:
            return Type::Short;
        case Binding::Long:
            return Type::Long;
        case Binding::Number:
            return literal.literal == LiteralKind::Integer ? Type::Long : Type::Double;
        case Binding::Currency:
        case Binding::CurrencyBound:
            return Type::Currency;
        case Binding::Boolean:
            return Type::Boolean;
        case Binding::Date:
        case Binding::ServerDate:
            return Type::Date;
        case Binding::DateYear:
        case Binding::DateMonth:
            return Type::Short;
        case Binding::DateDay:
            return Type::Double;
        case Binding::Text:
            return Type::Text;
    }
    return Type::Unknown;
}

bool IsMoney(Binding binding) { return binding == Binding::Currency || binding == Binding::CurrencyBound; }

bool TakesMinus(Binding binding) { return binding == Binding::Number || IsMoney(binding); }

Binding NaturalBinding(const Term& term) {
    if (term.serverDate) return Binding::ServerDate;
    if (term.type == Type::Date) return Binding::Date;
    return term.literal->literal == LiteralKind::Text ? Binding::Text : Binding::Number;
}

Binding StoredBinding(Type type) {
    switch (type) {
        case Type::Boolean:
            return Binding::Boolean;
        case Type::Short:
            return Binding::Short;
        case Type::Long:
            return Binding::Long;
        case Type::Currency:
            return Binding::Currency;
        case Type::Date:
            return Binding::Date;
        case Type::Text:
            return Binding::Text;
        default:
            return Binding::Number;
    }
}

// Currency in units, any other number as it is.
Term Units(Term term) {
    if (term.type != Type::Currency) return term;
    return OperatorTerm(std::move(term), "/", ConstantTerm(std::string(kRealUnit), Type::Double),
                        Precedence::Multiplicative, Type::Double);
}

Term NumberOf(Term term) {
    if (term.type == Type::Date) return FunctionTerm("kp_date_number", {term}, Type::Double);
    return Units(std::move(term));
}

Term ToWhole(Term term, Type type) {
    const bool fits = term.type == Type::Boolean || (term.type == Type::Short && type == Type::Long);
    if (fits) {
        term.type = type;
        return term;
    }
    return FunctionTerm(type == Type::Short ? "kp_to_short" : "kp_to_long", {NumberOf(std::move(term))}, type);
}

Term ToCurrency(Term term) {
    if (IsWhole(term.type))
        return OperatorTerm(std::move(term), "*", ConstantTerm(std::string(kUnit), Type::Long),
                            Precedence::Multiplicative, Type::Currency);
    return FunctionTerm("kp_to_currency", {NumberOf(std::move(term))}, Type::Currency);
}

Term ToBoolean(Term term) {
    if (!IsNumeric(term.type)) return FunctionTerm("kp_to_boolean", {NumberOf(std::move(term))}, Type::Boolean);
    Term test = TestTerm(std::move(term), "<>", ConstantTerm("0", Type::Long), Precedence::Equality);
    test.text = "-(" + test.text + ")";
    test.precedence = Precedence::Unary;
    test.predicate = false;
    return test;
}

Term ToDouble(Term term) {
    if (IsWhole(term.type)) {
        term.type = Type::Double;
        return term;
    }
    if (term.type == Type::Currency || term.type == Type::Date) return NumberOf(std::move(term));
    return FunctionTerm("kp_to_double", {term}, Type::Double);
}

}  // namespace

bool IsWhole(Type type) noexcept { return type == Type::Boolean || type == Type::Short || type == Type::Long; }

bool IsNumeric(Type type) noexcept { return IsWhole(type) || type == Type::Double || type == Type::Currency; }

void RaiseMismatch(const Term& term, const std::string& detail) {
    throw SqlError(ErrorKind::TypeMismatch, detail.empty() ? "data type mismatch" : "data type mismatch: " + detail,
                   term.offset);
}

Term BoundTerm(Session& session, const Term& pending, Binding binding) {
    const Literal& literal = *pending.literal;
    Term term = ConstantTerm({}, BoundType(binding, literal), pending.offset);
    if (pending.negative && !TakesMinus(binding))
        return ConvertedTerm(session, SettledTerm(session, pending), BoundType(binding, literal));
    const bool inside = pending.negative && IsMoney(binding);
    const bool before = pending.negative && !inside;
    term.text = (before ? "-" : "") + session.Parameter(literal, binding, inside);
    if (before) term.precedence = Precedence::Unary;
    return term;
}

Term SettledTerm(Session& session, Term term) {
    if (!term.literal) return term;
    return BoundTerm(session, term, NaturalBinding(term));
}

Term ValueTerm(Session& session, Term term) {
    term = SettledTerm(session, std::move(term));
    if (!term.predicate) return term;
    if (term.truth) return ConstantTerm(*term.truth ? "-1" : "0", Type::Boolean, term.offset);
    term.text = "-(" + term.text + ")";
    term.precedence = Precedence::Unary;
    term.predicate = false;
    return term;
}

Term PredicateTerm(Session& session, Term term) {
    term = SettledTerm(session, std::move(term));
    if (!IsNumeric(term.type) && term.type != Type::Null && term.type != Type::Unknown) RaiseMismatch(term);
    return term;
}

Term RealTerm(Session& session, Term term) {
    if (term.literal && term.literal->literal != LiteralKind::Date && term.type != Type::Date)
        return BoundTerm(session, term, Binding::Number);
    term = ValueTerm(session, std::move(term));
    if (term.type == Type::Text) return FunctionTerm("kp_to_double", {term}, Type::Double);
    return NumberOf(std::move(term));
}

Term TextTerm(Session& session, Term term) {
    if (term.literal && term.type != Type::Date) return BoundTerm(session, term, Binding::Text);
    term = ValueTerm(session, std::move(term));
    switch (term.type) {
        case Type::Short:
        case Type::Long:
            term.text += " AS TEXT";
            return FunctionTerm("CAST", {term}, Type::Text);
        case Type::Boolean:
            return FunctionTerm("kp_text_boolean", {term}, Type::Text);
        case Type::Currency:
            return FunctionTerm("kp_text_currency", {term}, Type::Text);
        case Type::Date:
            return FunctionTerm("kp_text_date", {term}, Type::Text);
        case Type::Double:
        case Type::Unknown:
            return FunctionTerm("kp_text_double", {term}, Type::Text);
        case Type::Null:
        case Type::Text:
            break;
    }
    return term;
}

Term ConvertedTerm(Session& session, Term term, Type type) {
    if (term.literal && !(term.negative && !TakesMinus(StoredBinding(type))) && !term.serverDate) {
        const bool date = term.type == Type::Date;
        if (!date || type == Type::Date) return BoundTerm(session, term, StoredBinding(type));
    }
    if (type == Type::Text) return TextTerm(session, std::move(term));
    term = ValueTerm(session, std::move(term));
    if (term.type == type || term.type == Type::Null || type == Type::Unknown || type == Type::Null) return term;
    switch (type) {
        case Type::Short:
        case Type::Long:
            return ToWhole(std::move(term), type);
        case Type::Double:
            return ToDouble(std::move(term));
        case Type::Currency:
            return ToCurrency(std::move(term));
        case Type::Boolean:
            return ToBoolean(std::move(term));
        case Type::Date:
            return FunctionTerm("kp_to_date", {NumberOf(std::move(term))}, Type::Date);
        default:
            RaiseMismatch(term);
    }
}

Term StoredTerm(Session& session, Term term, Type type) {
    const bool computed = !term.literal && !term.column && !term.predicate;
    if (computed && term.type == Type::Long && type == Type::Long) return FunctionTerm("kp_to_long", {term}, type);
    // The engine's functions answer what fits; its operators do not ask.
    const bool mayRunOver = computed && term.precedence != Precedence::Primary;
    if (mayRunOver && term.type == Type::Double && type == Type::Double)
        return FunctionTerm("kp_to_double", {term}, type);
    const bool money = term.type == Type::Currency || term.type == Type::Long;
    term = ConvertedTerm(session, std::move(term), type);
    if (mayRunOver && money && type == Type::Currency) return FunctionTerm("kp_cur_fit", {term}, type);
    return term;
}

Type CommonType(Type a, Type b) {
    if (a == b || b == Type::Null) return a;
    if (a == Type::Null) return b;
    if (a == Type::Unknown || b == Type::Unknown) return Type::Unknown;
    if (a == Type::Text || b == Type::Text) return Type::Text;
    if (a == Type::Date || b == Type::Date) return Type::Date;
    if (a == Type::Double || b == Type::Double) return Type::Double;
    if (a == Type::Currency || b == Type::Currency) return Type::Currency;
    return Type::Long;
}

Type CommonType(const std::vector<Term>& terms) {
    Type common = Type::Null;
    for (const auto& term : terms) common = CommonType(common, term.type);
    return common;
}

}  // namespace kpTables::sql
