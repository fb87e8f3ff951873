// Functions whose answers cannot be repeated.
#include <utility>

#include "sql/bind/Conversions.h"
#include "sql/bind/Functions.h"
#include "sql/bind/Query.h"

namespace kpTables::sql::bind {

namespace {

TermPtr Unrepeatable(Context& context, std::string_view function, Terms arguments, Type type) {
    context.KeepAsWritten();
    auto call = std::make_shared<CallTerm>(function, std::move(arguments), type);
    call->constant = false;
    return call;
}

// One answer for all rows.
TermPtr Once(TermPtr value) {
    const Type type = value->type;
    Select select;
    select.items.push_back({std::move(value), "once"});
    return std::make_shared<ScalarQuery>(std::make_shared<Query>(QueryOf(std::move(select), QueryUse::Value)), type);
}

// As in Jet, Rnd answers anew for every row only where its argument is a row's.
TermPtr Rnd(Context& context, Terms arguments) {
    for (TermPtr& argument : arguments) argument = AsNumber(context, std::move(argument));
    const bool perRow = !arguments.empty() && !arguments.front()->constant;
    TermPtr number = Unrepeatable(context, "rnd", std::move(arguments), Type::Double);
    return perRow ? number : Once(std::move(number));
}

// The functions of the table have one signature.
// NOLINTNEXTLINE(performance-unnecessary-value-param)
TermPtr Rand(Context& context, Terms) { return Once(Unrepeatable(context, "rnd", {}, Type::Double)); }

// NOLINTNEXTLINE(performance-unnecessary-value-param)
TermPtr NewId(Context& context, Terms) { return Unrepeatable(context, "newid", {}, Type::Text); }

constexpr SpecialFunction kRandomFunctions[] = {
    {"newid", 0, 0, NewId},
    {"rand", 0, 0, Rand},
    {"rnd", 0, 1, Rnd},
};

}  // namespace

std::span<const SpecialFunction> RandomFunctions() { return kRandomFunctions; }

}  // namespace kpTables::sql::bind
