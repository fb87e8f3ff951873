// What a text does, by its first word: texts are sent unread.
#pragma once

#include <string_view>

namespace kpTables::engines::odbc {

enum class StatementUse {
    Read,    ///< Select, Transform, With, Values
    Change,  ///< Insert, Update, Delete, Merge: rows
    Other,   ///< anything else, which may change tables too
};

StatementUse UseOf(std::string_view text) noexcept;

}  // namespace kpTables::engines::odbc
