// Whether a book's file and figures are in order.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "kpTables/Book.h"
#include "kpTables/Host.h"

namespace kpTables::bookkeeping {

/// Something wrong in a book, as far as it has a place.
struct Finding {
    std::optional<std::int32_t> warehouse = {};  ///< dpID
    std::int32_t year = 0;                       ///< 0: none
    std::int32_t month = 0;                      ///< 0: none
    std::optional<std::int32_t> product = {};    ///< pdID
    std::string what = {};
    Variant expected = Variant::Null();
    Variant found = Variant::Null();
    bool damaged = false;  ///< the file itself is damaged; its rows cannot be relied on
};

/// Everything that is wrong, nothing when all is well: the file's integrity; doubled balance rows; the closed months'
/// figures, against each other, the months before and the bills; lines without a header, headers without lines, ids
/// without a master row, products on closed bills without a balance row. Amounts are compared exactly, doubles to a
/// billionth of the figure (of 1,000, if it is less). Changes nothing. Findings are looked at a second time while other
/// programs cannot write, so that none comes from a change halfway through; nothing may be open on the connection.
std::vector<Finding> CheckBook(Book& book);

/// What RemoveDoubledRows found and did.
struct RepairResult {
    std::int64_t doubled = 0;  ///< rows that are equal to another in every column
    std::int64_t removed = 0;  ///< 0 when the host did not agree
};

/// Removes balance rows that are equal to another one in every column, in one transaction, if the host agrees. Rows of
/// one year, month, product and warehouse that differ stay.
RepairResult RemoveDoubledRows(Connection& book, const std::shared_ptr<Host>& host);

}  // namespace kpTables::bookkeeping
