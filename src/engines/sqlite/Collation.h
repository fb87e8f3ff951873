// The order of text in a book: without regard to case, trailing blanks ignored, Chinese in pinyin order.
#pragma once

#include <compare>
#include <string_view>

struct sqlite3;

namespace kpTables {
struct TextOrder;
}

namespace kpTables::sqlite {

/// Negative, 0 or positive. Any bytes will do; what is no UTF-8 counts as replacement characters. Symbols come first,
/// then digits, letters and Chinese characters.
int CompareBookText(std::string_view left, std::string_view right) noexcept;

/// The same order for what is found in a recordset.
extern const TextOrder kBookTexts;

/// Makes the collation of the translated texts known to a connection.
void RegisterCollation(sqlite3* database);

}  // namespace kpTables::sqlite
