// What happened, in order: statements, edits of rows, calls of the host's objects.
#pragma once

#include <memory>
#include <string>
#include <vector>

namespace kpTables::test {

using Journal = std::vector<std::string>;
using JournalPtr = std::shared_ptr<Journal>;

}  // namespace kpTables::test
