#include "kpTables/bookkeeping/Masters.h"

#include "bookkeeping/MasterRows.h"
#include "kpTables/Error.h"

namespace kpTables::bookkeeping {

std::int32_t MasterId(const ConnectionPtr& book, MasterKind kind, const std::string& text) {
    return FindMaster(book, kind, text).id;
}

std::string ClassCodeOf(const ConnectionPtr& book, MasterKind kind, const std::string& text) {
    if (!IsClass(kind)) Raise(ErrorNumber::InvalidCall, std::string(TableOf(kind).noun) + " rows are no classes");
    return FindMaster(book, kind, text).number;
}

}  // namespace kpTables::bookkeeping
