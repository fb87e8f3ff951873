// A bill as a page to be printed.
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace kpTables::kpbook::output {

/// The texts of a page, as they are to stand on it.
struct BillPage {
    std::string company;
    std::string title;                                         ///< "入库单"
    std::vector<std::pair<std::string, std::string>> fields;   ///< above the lines: label and text
    std::vector<std::pair<std::string, bool>> columns;         ///< heading, and whether it is a number
    std::vector<std::vector<std::string>> rows;                ///< one text a column
    std::vector<std::string> totals;                           ///< one text a column; "" where there is none
    std::string capitals;                                      ///< the amount in capital figures; "": none
    std::string figures;                                       ///< the same amount in digits
    std::vector<std::pair<std::string, std::string>> signers;  ///< below the lines: label and name
};

/// One HTML page that needs nothing else, for the screen and for A4 paper.
std::string BillHtml(const BillPage& page);

}  // namespace kpTables::kpbook::output
