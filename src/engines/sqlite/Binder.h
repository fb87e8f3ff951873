// The literals of a statement's text as the values of its parameters.
#pragma once

#include <string_view>
#include <vector>

#include "Database.h"
#include "sql/Tree.h"
#include "sql/Translation.h"

namespace kpTables::sqlite {

/// Binds every parameter from the literals of text. The literals must live until the statement has run. Raises SqlError
/// (TypeMismatch, Overflow) naming the literal that does not convert.
void BindLiterals(PreparedStatement& statement, const std::vector<sql::Parameter>& parameters,
                  const std::vector<sql::LiteralValue>& literals, std::string_view text);

}  // namespace kpTables::sqlite
