// Expressions of both dialects to terms.
#pragma once

#include <string>

#include "sql/sqlite/Scope.h"
#include "sql/sqlite/Session.h"
#include "sql/sqlite/Term.h"

namespace kpTables::sql {

/// Where an expression stands.
struct ExpressionContext {
    Session& session;
    const Scope& scope;
    /// Why an aggregate may not stand here, nullptr when it may.
    const char* aggregateRefusal = nullptr;
    /// The condition of the rows that aggregates look at, "" for all.
    std::string aggregateFilter = {};
};

/// SqlError for an unknown name, a function that is not known and operands that do not go together. The term of a
/// literal is not yet bound: see SettledTerm.
Term TranslateExpression(const Expression& expression, const ExpressionContext& context);

/// A whole condition; one that is always true has its truth set.
Term TranslateCondition(const Expression& expression, const ExpressionContext& context);

}  // namespace kpTables::sql
