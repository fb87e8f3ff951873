// Ranking functions, LAG and the like, and aggregates over a window.
#include <array>
#include <string>
#include <utility>

#include "kpTables/text/Message.h"
#include "sql/Names.h"
#include "sql/SqlError.h"
#include "sql/bind/Conversions.h"
#include "sql/bind/Functions.h"

namespace kpTables::sql::bind {

namespace {

struct WindowFunction {
    std::string_view name;
    std::size_t least;  ///< number of arguments
    std::size_t most;
    bool ranks;  ///< answers a number of its own, not a value of the rows
    bool framed;
};

constexpr std::array<WindowFunction, 8> kWindowFunctions = {{
    {"row_number", 0, 0, true, false},
    {"rank", 0, 0, true, false},
    {"dense_rank", 0, 0, true, false},
    {"ntile", 1, 1, true, false},
    {"lag", 1, 3, false, false},
    {"lead", 1, 3, false, false},
    {"first_value", 1, 1, false, true},
    {"last_value", 1, 1, false, true},
}};

const WindowFunction* FindWindowFunction(std::string_view name) {
    for (const WindowFunction& known : kWindowFunctions)
        if (SameName(known.name, name)) return &known;
    return nullptr;
}

[[noreturn]] void RefuseWindow(ErrorKind kind, const sql::Window& window, const std::string& why) {
    throw SqlError(kind, Message("{1} ('{2}')", why, window.call->name), window.offset);
}

bool IsWindowAggregate(std::string_view name) {
    for (const std::string_view known : {"count", "sum", "avg", "min", "max"})
        if (SameName(known, name)) return true;
    return false;
}

void CheckFrame(const sql::Window& window) {
    if (!window.frame) return;
    using enum FrameBound::Kind;
    const auto& [byRows, first, last] = *window.frame;
    if (window.orderBy.empty())
        RefuseWindow(ErrorKind::Syntax, window, Message("a frame needs an ORDER BY in the window"));
    if (first.kind == UnboundedFollowing || last.kind == UnboundedPreceding || first.kind > last.kind)
        RefuseWindow(ErrorKind::Syntax, window, Message("the frame ends before it begins"));
    const auto counts = [](const FrameBound& bound) { return bound.kind == Preceding || bound.kind == Following; };
    if (!byRows && (counts(first) || counts(last)))
        RefuseWindow(ErrorKind::Unsupported, window, Message("RANGE with a number of rows is not supported"));
}

/// The surroundings of what is computed before the window.
Place BeforeWindow(const Place& place) {
    Place inner = place;
    inner.windowed = nullptr;
    inner.window = nullptr;
    return inner;
}

TermPtr BindFunctionOf(const sql::Window& window, const WindowFunction& function, const Place& place) {
    const sql::Call& call = *window.call;
    if (call.arguments.size() < function.least || call.arguments.size() > function.most)
        RefuseWindow(ErrorKind::Syntax, window, Message("wrong number of arguments"));
    if (window.orderBy.empty()) RefuseWindow(ErrorKind::Syntax, window, Message("the window needs an ORDER BY"));
    if (window.frame && !function.framed)
        RefuseWindow(ErrorKind::Syntax, window, Message("the function takes no frame"));
    Terms arguments;
    for (const auto& argument : call.arguments) arguments.push_back(BindExpression(*argument, BeforeWindow(place)));
    const std::size_t number = function.ranks ? 0 : 1;
    if (!function.ranks) arguments[0] = AsValue(place.context, std::move(arguments[0]));
    if (arguments.size() > number)
        arguments[number] = Converted(place.context, std::move(arguments[number]), Type::Long);
    constexpr std::size_t kDefault = 2;
    if (arguments.size() > kDefault)
        arguments[kDefault] = Converted(place.context, std::move(arguments[kDefault]), arguments[0]->type);
    const Type type = function.ranks ? Type::Long : arguments[0]->type;
    return Call(function.name, std::move(arguments), type);
}

}  // namespace

TermPtr OverWindow(TermPtr function, const sql::Window& window, const Place& place) {
    const Place inner = BeforeWindow(place);
    const Type type = function->type;
    Terms parts;
    parts.push_back(std::move(function));
    for (const auto& key : window.partitionBy)
        parts.push_back(Collated(AsValue(place.context, BindExpression(*key, inner))));
    std::vector<bool> descending;
    for (const auto& key : window.orderBy) {
        parts.push_back(Collated(AsValue(place.context, BindExpression(*key.expression, inner))));
        descending.push_back(key.descending);
    }
    auto term = std::make_shared<WindowTerm>(type, std::move(parts), window.partitionBy.size(), std::move(descending),
                                             window.frame);
    term->offset = window.offset;
    return term;
}

TermPtr BindWindow(const sql::Window& window, const Place& place) {
    if (!place.windowed)
        RefuseWindow(ErrorKind::Syntax, window,
                     Message("a window function stands in the select list or in ORDER BY only"));
    *place.windowed = true;
    CheckFrame(window);
    const sql::Call& call = *window.call;
    if (IsAggregate(call.name)) {
        if (call.distinct || !IsWindowAggregate(call.name))
            RefuseWindow(ErrorKind::Unsupported, window, Message("the aggregate over a window is not supported"));
        Place over = place;
        over.window = &window;
        return BindAggregate(call, over);
    }
    const WindowFunction* function = FindWindowFunction(call.name);
    if (!function) RefuseWindow(ErrorKind::Unsupported, window, Message("undefined window function"));
    return OverWindow(BindFunctionOf(window, *function, place), window, place);
}

}  // namespace kpTables::sql::bind
