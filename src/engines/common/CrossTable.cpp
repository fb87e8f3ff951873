#include "engines/common/CrossTable.h"

#include <cmath>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "kpTables/Convert.h"
#include "kpTables/Error.h"

namespace kpTables::engines {

namespace {

using recordset::RowStore;

/// An engine's own statement takes no more columns than this.
constexpr std::size_t kMostColumns = 1600;

/// Nothing for Null, which comes first.
using PivotValue = std::optional<std::int32_t>;

PivotValue PivotAt(const RowStore& cells, std::size_t row, int column) {
    if (cells.IsNull(row, column)) return std::nullopt;
    return CLng(cells.GetValue(row, column));
}

/// Null adds nothing.
void AddUp(Variant& sum, const Variant& value) {
    if (value.IsNull()) return;
    if (sum.IsNull()) {
        sum = value;
    } else if (const auto* amount = value.If<Currency>()) {
        sum = *sum.If<Currency>() + *amount;
    } else if (value.Type() == VarType::Double || sum.Type() == VarType::Double) {
        const double added = CDbl(sum) + CDbl(value);
        if (!std::isfinite(added)) Raise(ErrorNumber::Overflow);
        sum = added;
    } else {
        sum = CLng(CDbl(sum) + CDbl(value));
    }
}

class CrossTable {
public:
    CrossTable(const RowStore& cells, const sql::CellLayout& layout)
        : cells_(cells), layout_(layout), firstCell_(layout.Pivot() + (layout.total ? 1 : 0)) {
        for (std::size_t row = 0; row < cells.Rows(); ++row) columns_.emplace(PivotAt(cells, row, layout.Pivot()), 0);
        int column = firstCell_;
        for (auto& [value, place] : columns_) place = column++;
    }

    std::size_t Columns() const noexcept { return static_cast<std::size_t>(firstCell_) + columns_.size(); }

    std::unique_ptr<RowStore> Rows() {
        auto rows = std::make_unique<RowStore>(Fields());
        for (std::size_t row = 0; row < cells_.Rows(); ++row) {
            if (row > 0 && !IsSameGroup(row - 1, row)) Finish(*rows);
            Take(row);
        }
        if (!values_.empty()) Finish(*rows);
        return rows;
    }

private:
    std::vector<FieldInfo> Fields() const {
        const std::vector<FieldInfo>& read = cells_.Fields();
        std::vector<FieldInfo> fields(read.begin(), read.begin() + layout_.Pivot());
        const VarType type = read[static_cast<std::size_t>(layout_.Cell())].type;
        if (layout_.total) fields.push_back({*layout_.total, type});
        for (const auto& [value, place] : columns_) fields.push_back({value ? std::to_string(*value) : "<>", type});
        return fields;
    }

    bool IsSameGroup(std::size_t a, std::size_t b) const {
        for (int key = layout_.FirstKey(); key < cells_.Columns(); ++key)
            if (!cells_.GetValue(a, key).Is(cells_.GetValue(b, key))) return false;
        return true;
    }

    void Take(std::size_t row) {
        const bool isFirst = values_.empty();
        if (isFirst) values_.assign(Columns(), Variant::Null());
        for (int item = 0; item < layout_.Pivot(); ++item) {
            Variant& value = values_[static_cast<std::size_t>(item)];
            if (layout_.isSum[static_cast<std::size_t>(item)])
                AddUp(value, cells_.GetValue(row, item));
            else if (isFirst)
                value = cells_.GetValue(row, item);
        }
        Variant cell = cells_.GetValue(row, layout_.Cell());
        if (layout_.total) AddUp(values_[static_cast<std::size_t>(layout_.Pivot())], cell);
        values_[static_cast<std::size_t>(columns_.at(PivotAt(cells_, row, layout_.Pivot())))] = std::move(cell);
    }

    void Finish(RowStore& rows) {
        rows.BeginRow();
        for (std::size_t i = 0; i < values_.size(); ++i) rows.PutValue(static_cast<int>(i), values_[i]);
        values_.clear();
    }

    const RowStore& cells_;
    const sql::CellLayout& layout_;
    int firstCell_;
    std::map<PivotValue, int> columns_;
    std::vector<Variant> values_;  ///< of the group that is put together; empty before its first row
};

}  // namespace

std::unique_ptr<RowStore> CrossTableOf(const RowStore& cells, const sql::CellLayout& layout, std::string_view shown) {
    CrossTable table(cells, layout);
    if (table.Columns() > kMostColumns) return nullptr;
    try {
        return table.Rows();
    } catch (const Error& error) {
        throw DatabaseError(static_cast<std::int32_t>(DatabaseErrorNumber::Overflow), error.Description(),
                            std::string(shown));
    }
}

}  // namespace kpTables::engines
