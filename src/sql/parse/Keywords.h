// The words that the dialects keep for themselves.
#pragma once

#include <string_view>

namespace kpTables::sql::parse {

/// Equal without regard to the case of ASCII letters.
bool SameWord(std::string_view a, std::string_view b);

/// Whether a word names nothing unless it stands in brackets. Few words do: books have columns called Table, Index,
/// Date and the like.
bool IsReserved(std::string_view word);

/// Whether a keyword written without a blank before a Chinese name ("Where甲") is split from the name when it stands
/// after the given token, "" for the statement's start. afterOperand says that this token ends an operand, where
/// no name can follow.
bool SplitsFromName(std::string_view keyword, std::string_view previous, bool afterOperand);

/// Whether some token before it would make a name lose its first letters to a keyword.
bool MaySplit(std::string_view name);

}  // namespace kpTables::sql::parse
