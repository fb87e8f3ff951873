// Adding, changing, removing and listing master rows.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "kpTables/bookkeeping/Masters.h"

namespace kpTables::bookkeeping {

/// A column of a master table by its name, and what to store in it. A text is read by the column's type: a number, an
/// amount, True or False; in a column of ids or class codes it may be any word that MasterId takes ("KSID",
/// "杭州宏图"), and 0 or "" stands for none.
struct ColumnValue {
    std::string column;
    Variant value;
};
using ColumnValues = std::vector<ColumnValue>;

// Each of these changes a book wholly or not at all, and raises error 5 with one sentence when it refuses.

/// Adds a row and answers its id (see MasterId for rows without one). Refuses unknown columns (with the nearest and all
/// of them), the id, values that do not fit, masters that do not exist, a missing name or product number, and a name or
/// number that another row of the kind has; products may share a name when their 规格 or 型号 differ, and short codes.
/// A partner's 单位名称 and 企业名称 are the same when only one is given.
std::int32_t AddMaster(const ConnectionPtr& book, MasterKind kind, const ColumnValues& values);
/// Changes the row that a text means, with AddMaster's rules. The code of a class that rows use is not changed.
void EditMaster(const ConnectionPtr& book, MasterKind kind, const std::string& which, const ColumnValues& values);
/// Removes the row that a text means. Refuses one that bills, balance rows, operators or other masters use, and says
/// which tables and how many rows.
void RemoveMaster(const ConnectionPtr& book, MasterKind kind, const std::string& which);
/// All rows with all columns: classes and partners by class, the others by number or id.
RecordsetPtr ListMasters(const ConnectionPtr& book, MasterKind kind);

/// "3 (01001 水泥)": how messages show the row that a text means. Errors as MasterId.
std::string MasterText(const ConnectionPtr& book, MasterKind kind, const std::string& which);
/// The table that keeps the rows of a kind.
const char* MasterTableName(MasterKind kind);
/// The right that an operator needs to change rows of a kind.
const char* RightToChange(MasterKind kind);

/// A kind by its word: warehouse or 仓库, supplier or 厂商, customer, product, project, employee, payment, and
/// supplier-class or 厂商分类, ...; nothing for another word.
std::optional<MasterKind> MasterKindOf(std::string_view word);
/// The kind of a class by what it classes: supplier or 厂商, customer, project, department or 部门, product.
std::optional<MasterKind> ClassKindOf(std::string_view word);
/// The words of all kinds of classes, for messages: "supplier (厂商), ..."
std::string ClassKindWords();
/// The only kind of class in which a text means a row; errors as MasterId, the candidates with their kinds.
MasterKind ClassKindWith(const ConnectionPtr& book, const std::string& which);

}  // namespace kpTables::bookkeeping
