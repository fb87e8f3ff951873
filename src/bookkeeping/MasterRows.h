// The master rows that a text may mean.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "bookkeeping/MasterTables.h"

namespace kpTables::bookkeeping {

/// A row as a person recognises it.
struct MasterRow {
    std::int32_t id = 0;
    std::string number;
    std::string name;
    std::string extra;  ///< a product's specification and model

    /// "3 (01001 普通硅酸盐水泥)"
    std::string Text() const;
};

/// The only row that a text means; errors as MasterId.
MasterRow FindMaster(const ConnectionPtr& book, MasterKind kind, const std::string& text);

/// The rows whose value in a column equals a text, as the book compares texts. Where the table has no id, all rows are
/// read, and each is numbered by its place.
std::vector<MasterRow> RowsWith(Connection& book, const MasterTable& table, const std::string& column,
                                const std::string& text);

}  // namespace kpTables::bookkeeping
