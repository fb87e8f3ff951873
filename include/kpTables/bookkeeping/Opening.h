// The opening stock of a book's first month.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "kpTables/Connection.h"
#include "kpTables/Currency.h"

namespace kpTables::bookkeeping {

/// The stock of a product in a warehouse when the first month begins.
struct OpeningRow {
    std::string warehouse;  ///< number, name or id, as MasterId takes them
    std::string product;
    double quantity = 0;
    Currency amount;
};

/// Why a row cannot be entered.
struct OpeningFault {
    std::size_t row = 0;  ///< its place, from 0
    std::string column;   ///< 仓库, 商品编号, 数量 or 金额; "": the whole row
    std::string reason;
};

struct OpeningResult {
    std::int32_t year = 0;  ///< of the first month
    std::int16_t month = 0;
    std::int32_t added = 0;                 ///< balance rows
    std::int32_t changed = 0;               ///< balance rows that were there and got the opening stock given now
    std::vector<OpeningFault> faults = {};  ///< of all rows, in their order; when there is one, nothing was entered
};

enum class OpeningPurpose { Enter, Check };

/// Puts opening stock into the balance rows of the first month, that of 建帐日期, in one transaction: the opening
/// stock, its price, and the same as the closing stock of a month without movements. A product that has a row gets the
/// new figures, one that is not named keeps its own. A row is bad when its warehouse or product is not found, its month
/// is closed in the warehouse, the product stands twice for it, a figure is below 0, or it has an amount without a
/// quantity. Check finds the faults and enters nothing. Error 5 when the book has balance rows before the first month.
OpeningResult EnterOpening(const ConnectionPtr& book, const std::vector<OpeningRow>& rows,
                           OpeningPurpose purpose = OpeningPurpose::Enter);

}  // namespace kpTables::bookkeeping
