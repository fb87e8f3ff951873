// The numbers of bills.
#pragma once

#include <cstdint>
#include <string>

#include "kpTables/Connection.h"
#include "kpTables/bookkeeping/StoredBill.h"

namespace kpTables::bookkeeping {

/// The setting (CTables::Get_Option) with the firm's pattern, and the pattern of a book without it. In braces stand
/// 前缀 (RK, CK, JP, XP, JZ, XZ or DB, by the kind of bill), 仓库 (dpID), 年份, 月份, 日子 and 序号, with the least
/// number of digits after a colon if it is not the usual one: 月份, 日子 2, 序号 4. "{前缀}{仓库}-{月份}-{序号}" gives
/// "RK1-03-0001".
inline constexpr const char* kNumberPatternOption = "单据编号格式";
inline constexpr const char* kNumberPattern = "{前缀}{仓库}-{月份}-{序号}";

/// Error 5 when a pattern cannot be read or has no 序号.
void CheckNumberPattern(const std::string& pattern);

/// The next number for a bill of this family, type, warehouse and date by the book's pattern: from the count of the
/// month's bills (CTables::Get_BillNum) on, the first that no bill of the month and type has. A transfer's is free in
/// both families. Call it in the transaction in which the bill is entered.
std::string NextBillNumber(const ConnectionPtr& book, const StoredBill& bill);

/// Whether a bill of this family, month and type has the number; of a transfer's, in either family. except: an id of
/// the family that does not count, and its counterpart in the other family.
bool IsNumberTaken(Connection& book, const StoredBill& bill, std::int32_t except = 0, std::int32_t counterpart = 0);

}  // namespace kpTables::bookkeeping
