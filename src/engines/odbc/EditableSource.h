// Which sources of a recordset can be edited: rows of one table, with columns unchanged.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "kpTables/Connection.h"

namespace kpTables::engines::odbc {

struct EditableSource {
    std::string table;        ///< as the text writes it, without quotes
    bool wholeTable = false;  ///< all of its rows
};

/// The table of a Select whose rows can be edited; nothing for a text that joins, groups or computes, and for one that
/// the front end cannot read.
std::optional<EditableSource> SourceOfText(std::string_view select, SqlDialect dialect);

}  // namespace kpTables::engines::odbc
