// Bills read from rows of texts, as a file or a form has them.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "kpTables/bookkeeping/BillEntry.h"

namespace kpTables::bookkeeping {

/// A row is a line of a bill: the texts by their column. An empty text counts as not given.
struct SheetRow {
    std::int64_t row = 0;  ///< for messages
    std::map<std::string, std::string> cells = {};
};

struct SheetOptions {
    EntryKind kind = EntryKind::Inbound;
    bool gross = false;                                ///< 单价 and 金额 include tax
    std::map<std::string, std::string> defaults = {};  ///< by column, for rows that do not give it
    Date today = {};                                   ///< the date of bills without one
    std::string clerk = {};                            ///< 录入员 of the bills
};

/// The columns that a sheet may have.
///
/// Of the bill: 单据 (rows with the same are one bill), 单据编号, 日期, 仓库 (a transfer: 调出仓库, 调入仓库), 单位,
/// 项目, 类型, 单据类型, 说明. Of the line: 商品编号 (or 商品), 数量, 单价, 金额, 除税单价, 含税单价, 除税金额, 税额,
/// 价税合计, 税率, 经手人, 交接人, 包装, 货位, 期限. Masters are named by id, number or name. Without 单据,
/// neighbouring rows whose bill's columns agree are one bill. A later row of a bill may leave the bill's columns empty,
/// but not change them.
std::vector<std::string> SheetColumns(EntryKind kind);

/// Reads bills without entering them. faults gets what is wrong with rows; a bill with a fault is left out.
std::vector<NewBill> ReadBillSheet(const ConnectionPtr& book, const std::vector<SheetRow>& rows,
                                   const SheetOptions& options, std::vector<BillFault>& faults);

/// Reads and enters bills in one transaction, as EnterBills does; BillsRefused has the faults of rows too.
std::vector<EnteredBill> EnterBillSheet(const ConnectionPtr& book, const std::vector<SheetRow>& rows,
                                        const SheetOptions& sheet, const EntryOptions& options);

/// The lines of one bill, for BillChanges::lines, with the columns of the line only. Raises BillsRefused.
std::vector<NewBillLine> ReadSheetLines(const ConnectionPtr& book, const std::vector<SheetRow>& rows,
                                        const SheetOptions& options);

}  // namespace kpTables::bookkeeping
