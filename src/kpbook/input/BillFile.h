// Bills from a file or from words, as rows of texts.
#pragma once

#include <string>
#include <vector>

#include "kpTables/bookkeeping/BillSheet.h"

namespace kpTables::kpbook::input {

/// Reads a file ("-": standard input): CSV in any encoding, a workbook (xlsx) or JSON, by its content. In the first two
/// the first line names the columns, and a row's number is its line. JSON: an array of objects, whose keys are the
/// columns; an object with an array of objects under 明细 is one bill with a row for each of them. A row's number is
/// its place. A CommandError says what is malformed.
std::vector<bookkeeping::SheetRow> ReadBillFile(const std::string& path);

/// One row from "商品=01001,数量=5,单价=12.5". A CommandError when it is written otherwise.
bookkeeping::SheetRow ReadLineWord(const std::string& word, std::int64_t row);

}  // namespace kpTables::kpbook::input
