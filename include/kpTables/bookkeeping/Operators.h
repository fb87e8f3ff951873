// The operators of a book: adding, renaming and removing them, their rights and warehouses.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "kpTables/Connection.h"

namespace kpTables::bookkeeping {

// Each change is made wholly or not at all; what is refused is error 5 with one sentence. While the book demands an
// operator (OperatorRequired), none of them takes the right 系统设置 from the last one who has it.

/// The id of the operator with a name, or else with an id. Error 5 when there is none, or several have the name.
std::int32_t OperatorId(const ConnectionPtr& book, const std::string& text);

/// The rights that operators of the book can have, by their columns, in the table's order.
std::vector<std::string> AllRights(const ConnectionPtr& book);

/// A right by its column, or by one of the three names that the component keeps in other columns (发货单位 in 资产处理,
/// 收货单位 in 卡片打印, 部件管理 in 资产折旧), and whether it is given or taken.
struct RightChange {
    std::string right;
    bool given = true;
};

/// Adds an operator without a password and answers the id. The first of a book gets all rights. A name that is blank,
/// or that another operator has, is refused.
std::int32_t AddOperator(const ConnectionPtr& book, const std::string& name);
void RenameOperator(const ConnectionPtr& book, std::int32_t id, const std::string& name);
/// warehouse: the dpID of the managed warehouse, 0 for none.
void SetManagedWarehouse(const ConnectionPtr& book, std::int32_t id, std::int32_t warehouse);
/// Gives and takes rights in the order given. An unknown one is refused with the nearest and all of them.
void ChangeRights(const ConnectionPtr& book, std::int32_t id, const std::vector<RightChange>& changes);
/// Takes all rights.
void ClearRights(const ConnectionPtr& book, std::int32_t id);
void SetPassword(const ConnectionPtr& book, std::int32_t id, const std::string& password);
void ClearPassword(const ConnectionPtr& book, std::int32_t id);
/// Removes an operator. One with lines in the log, or who has entered or audited a bill, is refused: take the rights
/// instead.
void RemoveOperator(const ConnectionPtr& book, std::int32_t id);

}  // namespace kpTables::bookkeeping
