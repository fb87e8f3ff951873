// The book of a firm's next year.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "kpTables/Book.h"
#include "kpTables/bookkeeping/BookCopy.h"

namespace kpTables::bookkeeping {

struct NextYear {
    std::int32_t year = 0;
    std::int32_t openingRows = 0;              ///< balance rows of month 1
    std::vector<std::string> ownTables = {};   ///< tables that the schema does not have; they stay behind
    std::vector<std::string> ownColumns = {};  ///< "T.C"; of tables that come along, and so do these columns
};

/// Fills a book with empty tables from that of the year before, which is only read. Along come, with their ids, all
/// master data with the classes and the payment methods, options and the book's information, operators, layouts and
/// saved reports. 建帐日期 and 当前日期 are January 1st of the next year, the warehouses are open, and the closing
/// stock of month 12 (price, quantity, amount) is the opening stock of month 1. A row without stock comes along only
/// when the product moved during the year. Bills, earlier months and the log stay behind. All or nothing. Error 5 when
/// a warehouse with rows or bills is not closed through month 12 (all are named), and when month 12 has doubled rows.
NextYear BeginNextYear(Book& from, const BookPtr& next);

}  // namespace kpTables::bookkeeping
