// The functions of both dialects.
#pragma once

#include <span>
#include <string_view>

#include "sql/bind/Context.h"
#include "sql/bind/Term.h"

namespace kpTables::sql::bind {

/// SqlError Unsupported for an unknown function, Syntax for a wrong number of arguments.
TermPtr BindCall(const sql::Call& call, const Place& place);

/// CASE operand WHEN condition THEN result ... ELSE the last result END; a null operand: the searched form; no more
/// results than conditions: no ELSE. The results get one type.
TermPtr BindChoice(Context& context, TermPtr operand, Terms conditions, Terms results);

bool IsAggregate(std::string_view function);
/// SqlError when an aggregate is not allowed there or is nested in another.
TermPtr BindAggregate(const sql::Call& call, const Place& place);

/// A ranking function, LAG and the like, or an aggregate over a window. SqlError where no window function may stand.
TermPtr BindWindow(const sql::Window& window, const Place& place);

/// The bound function or aggregate over the window.
TermPtr OverWindow(TermPtr function, const sql::Window& window, const Place& place);

/// A function whose translation depends on its arguments' types.
struct SpecialFunction {
    std::string_view name;  ///< in lower case
    std::size_t least;      ///< number of arguments
    std::size_t most;
    TermPtr (*bind)(Context& context, Terms arguments);
};

/// Those that stand in a file of their own.
std::span<const SpecialFunction> ServerFunctions();
std::span<const SpecialFunction> TypeFunctions();
std::span<const SpecialFunction> RandomFunctions();

/// The function of that name, ignoring case, or nullptr.
const SpecialFunction* FindSpecialFunction(std::string_view name);

}  // namespace kpTables::sql::bind
