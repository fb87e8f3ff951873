#include "kpTables/bookkeeping/Masters.h"

#include "bookkeeping/MasterRows.h"
#include "kpTables/Error.h"
#include "kpTables/text/Message.h"

namespace kpTables::bookkeeping {

std::int32_t MasterId(const ConnectionPtr& book, MasterKind kind, const std::string& text) {
    return FindMaster(book, kind, text).id;
}

std::string ClassCodeOf(const ConnectionPtr& book, MasterKind kind, const std::string& text) {
    if (!IsClass(kind))
        Raise(ErrorNumber::InvalidCall, Message("{1} rows are no classes", Translated(TableOf(kind).noun)));
    return FindMaster(book, kind, text).number;
}

}  // namespace kpTables::bookkeeping
