// The reserved words of the dialects.
#pragma once

#include <string_view>

namespace kpTables::sql::parse {

/// Equal without regard to the case of ASCII letters.
bool SameWord(std::string_view a, std::string_view b);

/// Whether a word is a name only in brackets. Few words are reserved so: books have columns called Table, Index, Date
/// and the like.
bool IsReserved(std::string_view word);

/// Whether a keyword written without a blank before a Chinese name ("Where甲") is split from the name when it stands
/// after the given token, "" for the statement's start. afterOperand says that this token ends an operand, where
/// no name can follow.
bool SplitsFromName(std::string_view keyword, std::string_view previous, bool afterOperand);

/// Whether, after some token, a keyword would be split from the name's beginning.
bool MaySplit(std::string_view name);

}  // namespace kpTables::sql::parse
