#include "sql/bind/Conversions.h"

#include <utility>

#include "kpTables/text/Message.h"
#include "sql/SqlError.h"

namespace kpTables::sql::bind {

namespace {

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

Binding NaturalBinding(const LiteralTerm& term) {
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

TermPtr ConversionOf(TermPtr term, Type type) { return std::make_shared<Conversion>(std::move(term), type); }

// An operator's result may overflow its type; a function checks its own result.
bool MayRunOver(const Term& term) {
    switch (term.kind) {
        case TermKind::Arithmetic:
        case TermKind::Negation:
        case TermKind::Concatenation:
            return true;
        case TermKind::Conversion: {
            const Type from = term.operands.front()->type;
            const bool scales =
                term.type == Type::Currency ? IsWhole(from) : term.type == Type::Double && from == Type::Currency;
            return scales || (IsWidening(from, term.type) && MayRunOver(*term.operands.front()));
        }
        default:
            return false;
    }
}

}  // namespace

void RaiseMismatch(const Term& term, const std::string& detail) {
    throw SqlError(ErrorKind::TypeMismatch,
                   detail.empty() ? Message("data type mismatch") : Message("data type mismatch: {1}", detail),
                   term.offset);
}

namespace {

// A literal inside a domain function's text is none of the statement's own literals, which become parameters: it is
// printed as a constant.
TermPtr WrittenConstant(const LiteralTerm& pending, Type type) {
    const Literal& literal = *pending.literal;
    const bool number = literal.literal == LiteralKind::Integer || literal.literal == LiteralKind::Decimal;
    const Type own = literal.literal == LiteralKind::Integer ? Type::Long : Type::Double;
    TermPtr value = number ? NumberConstant(literal.text, own) : TextConstant(literal.text, pending.offset);
    if (pending.negative) value = std::make_shared<Negation>(value, own);
    if (literal.literal == LiteralKind::Date) value = ConversionOf(std::move(value), Type::Date);
    return value->type == type ? value : ConversionOf(std::move(value), type);
}

}  // namespace

TermPtr Bound(Context& context, const LiteralTerm& pending, Binding binding) {
    const Literal& literal = *pending.literal;
    const Type type = BoundType(binding, literal);
    if (literal.ordinal < 0) return WrittenConstant(pending, type);
    if (pending.negative && !TakesMinus(binding)) return Converted(context, Settled(context, pending.Clone()), type);
    auto parameter = context.Parameter(literal, binding, type);
    parameter->offset = pending.offset;
    parameter->negative = pending.negative && IsMoney(binding);
    if (!pending.negative || parameter->negative) return parameter;
    return std::make_shared<Negation>(std::move(parameter), type);
}

TermPtr Settled(Context& context, const TermPtr& term) {
    const auto* literal = If<LiteralTerm>(term);
    return literal ? Bound(context, *literal, NaturalBinding(*literal)) : term;
}

TermPtr AsValue(Context& context, TermPtr term) {
    term = Settled(context, term);
    if (!term->predicate) return term;
    if (const auto* known = KnownTruth(*term)) return FlagConstant(IsTrue(*known), term->offset);
    return std::make_shared<PredicateValue>(term);
}

TermPtr AsCondition(Context& context, TermPtr term) {
    term = Settled(context, term);
    if (!IsNumeric(term->type) && term->type != Type::Null && term->type != Type::Unknown) RaiseMismatch(*term);
    return term;
}

TermPtr AsNumber(Context& context, TermPtr term) {
    const auto* literal = If<LiteralTerm>(term);
    if (literal && literal->literal->literal != LiteralKind::Date && term->type != Type::Date)
        return Bound(context, *literal, Binding::Number);
    term = AsValue(context, std::move(term));
    const bool changes = term->type == Type::Text || term->type == Type::Date || term->type == Type::Currency;
    return changes ? ConversionOf(std::move(term), Type::Double) : term;
}

TermPtr AsText(Context& context, TermPtr term) {
    const auto* literal = If<LiteralTerm>(term);
    if (literal && term->type != Type::Date) return Bound(context, *literal, Binding::Text);
    term = AsValue(context, std::move(term));
    const bool isText = term->type == Type::Null || term->type == Type::Text;
    return isText ? term : ConversionOf(std::move(term), Type::Text);
}

TermPtr Converted(Context& context, TermPtr term, Type type) {
    if (const auto* literal = If<LiteralTerm>(term)) {
        const bool binds = !(literal->negative && !TakesMinus(StoredBinding(type))) && !literal->serverDate;
        if (binds && (term->type != Type::Date || type == Type::Date))
            return Bound(context, *literal, StoredBinding(type));
    }
    if (type == Type::Text) return AsText(context, std::move(term));
    term = AsValue(context, std::move(term));
    if (term->type == type || term->type == Type::Null || type == Type::Unknown || type == Type::Null) return term;
    return ConversionOf(std::move(term), type);
}

TermPtr AsStored(Context& context, TermPtr term, Type type) {
    const bool computed = term->kind != TermKind::Literal && !StoredColumn(*term) && !term->predicate;
    const auto checked = [](const TermPtr& value) { return std::make_shared<RangeCheck>(value); };
    if (computed && term->type == Type::Long && type == Type::Long) return checked(term);
    const bool mayRunOver = computed && MayRunOver(*term);
    if (mayRunOver && term->type == Type::Double && type == Type::Double) return checked(term);
    const bool money = term->type == Type::Currency || term->type == Type::Long;
    term = Converted(context, std::move(term), type);
    return mayRunOver && money && type == Type::Currency ? checked(term) : term;
}

TermPtr Collated(TermPtr term) {
    if (term->type != Type::Text || StoredColumn(*term) || term->kind == TermKind::Collation) return term;
    return std::make_shared<Collation>(term);
}

TermPtr Retyped(TermPtr term, Type type) { return term->type == type ? term : ConversionOf(std::move(term), type); }

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

Type CommonType(const Terms& terms) {
    Type common = Type::Null;
    for (const auto& term : terms) common = CommonType(common, term->type);
    return common;
}

}  // namespace kpTables::sql::bind
