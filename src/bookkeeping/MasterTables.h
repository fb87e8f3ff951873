// The tables of the master rows, and which of their columns people know a row by.
#pragma once

#include <span>
#include <string>

#include "kpTables/bookkeeping/Masters.h"

namespace kpTables::bookkeeping {

struct MasterTable {
    MasterKind kind;
    const char* noun;    ///< "warehouse", to be translated
    const char* plural;  ///< "warehouses"
    const char* table;
    const char* id;                      ///< "" when the rows have none
    const char* number;                  ///< "" when the rows have none
    const char* name;                    ///< the name that lists show
    std::span<const char* const> known;  ///< number, codes and names, in the order in which they are looked up
};

const MasterTable& TableOf(MasterKind kind);

inline bool IsClass(MasterKind kind) { return kind >= MasterKind::SupplierClass; }

}  // namespace kpTables::bookkeeping
