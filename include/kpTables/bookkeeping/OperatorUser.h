// An operator of the book as a user of the server that keeps it.
#pragma once

#include <cstdint>

#include "kpTables/Book.h"

namespace kpTables::bookkeeping {

/// What the server lets an operator do, by the operator's rights: the changes that the right is for, the lines of the
/// log, and the own password. All tables can be read, of 操作员 the own row; with 系统设置 everything can be changed
/// and read. Error 5 when the book has no such operator. The user's name is the operator's, without a password.
BookUser UserOf(const BookPtr& book, std::int32_t operatorId);

}  // namespace kpTables::bookkeeping
