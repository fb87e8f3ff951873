// The search conditions and orders that a recordset takes.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "kpTables/MemoryRecordset.h"
#include "recordset/RowStore.h"

namespace kpTables::recordset {

enum class Comparison { Equal, NotEqual, Less, LessOrEqual, Greater, GreaterOrEqual, Like };

/// The parts of "column op value".
struct CriteriaText {
    std::string column;
    Comparison comparison = Comparison::Equal;
    Variant value;  ///< a Double, a Date, a text or a Boolean, as written

    /// Error 3001 when the text is not such a condition.
    static CriteriaText Parse(std::string_view text);
};

/// A condition on one column.
class Criteria {
public:
    /// The value is converted to the column's type, else error 3001.
    Criteria(int column, const FieldInfo& field, const CriteriaText& text, const TextOrder& texts);

    int Column() const noexcept { return column_; }
    bool IsEquality() const noexcept { return comparison_ == Comparison::Equal; }
    /// A Null cell meets no condition.
    bool Matches(const RowStore& rows, std::size_t row) const;
    /// Equal for the value and every cell that equals it; nothing where the order of texts has no key.
    std::optional<std::uint64_t> Key() const noexcept;
    std::optional<std::uint64_t> KeyOf(const RowStore& rows, std::size_t row) const noexcept;

private:
    bool MatchesText(std::string_view cell) const;

    int column_;
    const TextOrder* texts_;
    Comparison comparison_;
    bool isText_ = false;
    double number_ = 0;
    std::string text_;
};

struct SortColumn {
    std::string name;
    bool descending = false;
};

/// Reads "column [ASC|DESC], ..."; error 3001 when the text is no such list.
std::vector<SortColumn> ParseSort(std::string_view text);

}  // namespace kpTables::recordset
