// The functions whose text depends on their arguments' types.
#pragma once

#include <string_view>
#include <vector>

#include "sql/sqlite/Session.h"
#include "sql/sqlite/Term.h"

namespace kpTables::sql {

struct SpecialFunction {
    std::string_view name;  ///< in lower case
    std::size_t least;      ///< number of arguments
    std::size_t most;
    Term (*make)(Session& session, std::vector<Term> arguments);
};

/// The function of that name, letters without regard to case, or nullptr.
const SpecialFunction* FindSpecialFunction(std::string_view name);

}  // namespace kpTables::sql
