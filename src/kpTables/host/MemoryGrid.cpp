#include "kpTables/MemoryGrid.h"

#include <algorithm>
#include <utility>

#include "kpTables/Convert.h"
#include "kpTables/Error.h"

namespace kpTables {
namespace {

/// An index from 0 to count - 1 as a position in a vector.
std::size_t Checked(std::int32_t index, std::size_t count) {
    if (index < 0 || static_cast<std::size_t>(index) >= count) Raise(ErrorNumber::SubscriptOutOfRange);
    return static_cast<std::size_t>(index);
}

std::size_t Counted(std::int32_t count) {
    if (count < 0) Raise(ErrorNumber::SubscriptOutOfRange);
    return static_cast<std::size_t>(count);
}

}  // namespace

MemoryGrid::MemoryGrid(std::int32_t fixedRows)
    : fixedRows_(static_cast<std::int32_t>(Counted(fixedRows))), rows_(fixedRows_) {}

void MemoryGrid::AddColumn(const Column& column) {
    SetCols(Cols() + 1);
    Strip& added = columns_.back();
    added.key = column.key;
    added.hidden = column.hidden;
    added.width = column.width;
    if (fixedRows_ > 0) added.cells.front() = column.title;
}

MemoryGrid::Column MemoryGrid::ColumnAt(std::int32_t col) const {
    const Strip& strip = At(col);
    return {strip.key, fixedRows_ > 0 ? TextMatrix(0, col) : std::string(), strip.hidden, strip.width};
}

void MemoryGrid::AddRow(const std::vector<Variant>& cells) {
    if (cells.size() > columns_.size()) Raise(ErrorNumber::SubscriptOutOfRange);
    ++rows_;
    for (std::size_t i = 0; i < columns_.size(); ++i)
        columns_[i].cells.push_back(i < cells.size() ? cells[i] : Variant());
}

const Variant& MemoryGrid::Cell(std::int32_t row, std::int32_t col) const {
    const auto& cells = At(col).cells;
    return cells[Checked(row, cells.size())];
}

std::int32_t MemoryGrid::Cols() const { return static_cast<std::int32_t>(columns_.size()); }

void MemoryGrid::SetCols(std::int32_t count) {
    columns_.resize(Counted(count), Strip{{}, false, 0, std::vector<Variant>(Counted(rows_))});
}

std::int32_t MemoryGrid::Rows() const { return rows_; }

std::int32_t MemoryGrid::FixedRows() const { return fixedRows_; }

std::string MemoryGrid::ColKey(std::int32_t col) const { return At(col).key; }

void MemoryGrid::SetColKey(std::int32_t col, const std::string& key) { At(col).key = key; }

std::int32_t MemoryGrid::ColIndex(std::string_view key) const {
    const auto found = std::find_if(columns_.begin(), columns_.end(),
                                    [key](const Strip& strip) { return !strip.key.empty() && strip.key == key; });
    return found == columns_.end() ? -1 : static_cast<std::int32_t>(found - columns_.begin());
}

void MemoryGrid::SetColPosition(std::int32_t col, std::int32_t position) {
    const auto from = columns_.begin() + static_cast<std::ptrdiff_t>(Checked(col, columns_.size()));
    const auto to = columns_.begin() + static_cast<std::ptrdiff_t>(Checked(position, columns_.size()));
    if (from < to)
        std::rotate(from, from + 1, to + 1);
    else
        std::rotate(to, from, from + 1);
}

bool MemoryGrid::ColHidden(std::int32_t col) const { return At(col).hidden; }

void MemoryGrid::SetColHidden(std::int32_t col, bool hidden) { At(col).hidden = hidden; }

double MemoryGrid::ColWidth(std::int32_t col) const { return At(col).width; }

void MemoryGrid::SetColWidth(std::int32_t col, double width) { At(col).width = width; }

std::string MemoryGrid::TextMatrix(std::int32_t row, std::int32_t col) const { return Text(Cell(row, col)); }

void MemoryGrid::SetTextMatrix(std::int32_t row, std::int32_t col, const std::string& text) { At(row, col) = text; }

double MemoryGrid::ValueMatrix(std::int32_t row, std::int32_t col) const {
    const Variant& cell = Cell(row, col);
    return IsNumeric(cell) ? CDbl(cell) : 0;
}

const MemoryGrid::Strip& MemoryGrid::At(std::int32_t col) const { return columns_[Checked(col, columns_.size())]; }

MemoryGrid::Strip& MemoryGrid::At(std::int32_t col) { return columns_[Checked(col, columns_.size())]; }

Variant& MemoryGrid::At(std::int32_t row, std::int32_t col) {
    auto& cells = At(col).cells;
    return cells[Checked(row, cells.size())];
}

}  // namespace kpTables
