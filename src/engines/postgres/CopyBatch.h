// New rows with the same columns, as COPY takes them in binary form.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "engines/common/RowWriter.h"
#include "engines/postgres/Parameters.h"
#include "engines/postgres/ServerType.h"

namespace kpTables::engines::postgres {

class CopyBatch {
public:
    CopyBatch() = default;
    /// columns: the elements of all columns of the table, of which the set is given.
    CopyBatch(engines::ColumnSet set, const std::vector<ServerType>& columns);

    const engines::ColumnSet& Set() const noexcept { return set_; }
    bool Empty() const noexcept { return starts_.empty(); }
    std::size_t Rows() const noexcept { return starts_.size(); }
    /// Enough for one COPY.
    bool IsFull() const noexcept;

    /// Adds a row, or nothing when a value does not fit its column.
    void Add(engines::WrittenValues values);

    /// Some rows, without what COPY wants around them.
    std::string_view Slice(std::size_t first, std::size_t count) const;
    /// A row as the parameters of an INSERT of arrays.
    Parameters ParametersOf(std::size_t row) const;

private:
    engines::ColumnSet set_;
    std::vector<ServerType> elements_;  ///< of the columns in the set
    std::string bytes_;
    std::vector<std::size_t> starts_;
};

}  // namespace kpTables::engines::postgres
