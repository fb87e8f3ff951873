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

/// The rows that a text may mean, as MasterId says; none when nothing is found. Error 5 for a blank text.
std::vector<MasterRow> MatchingRows(const ConnectionPtr& book, MasterKind kind, const std::string& text);
/// The only one of them; errors as MasterId.
MasterRow FindMaster(const ConnectionPtr& book, MasterKind kind, const std::string& text);

/// The rows that meet a condition, by id. Where the table has no id, all rows are read, and each is numbered by its
/// place.
std::vector<MasterRow> RowsWhere(Connection& book, const MasterTable& table, const std::string& condition);
/// The rows whose value in a column equals a text, as the book compares texts.
std::vector<MasterRow> RowsWith(Connection& book, const MasterTable& table, const std::string& column,
                                const std::string& text);
/// The condition that only this row meets; rows without an id are known by their number, or else their name.
std::string ConditionOf(const MasterTable& table, const MasterRow& row);

}  // namespace kpTables::bookkeeping
