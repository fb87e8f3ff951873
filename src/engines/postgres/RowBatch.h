// Rows that are written in one round trip.
#pragma once

#include <cstddef>
#include <cstdint>
#include <unordered_set>
#include <utility>
#include <vector>

#include "engines/common/RowWriter.h"
#include "engines/postgres/BinaryArray.h"
#include "engines/postgres/Parameters.h"

namespace kpTables::engines::postgres {

class RowBatch {
public:
    enum class Kind {
        Insert,          ///< the server gives the rows their ids
        InsertNumbered,  ///< the rows have theirs
        Change,
        ChangeVersion,  ///< of rows that still have the version that they were read in
    };
    /// Rows of which the same columns are given: one statement.
    struct Group {
        engines::ColumnSet set;
        std::vector<BinaryArray> arrays;  ///< ids and versions, if the kind has them, and the values
        std::size_t rows = 0;
    };
    /// Where a row stands.
    struct Place {
        std::size_t group;
        std::size_t row;
    };

    RowBatch() = default;
    /// columns: the elements of all columns of the table.
    RowBatch(Kind kind, const std::vector<ServerType>& columns) noexcept : kind_(kind), columns_(&columns) {}

    Kind GetKind() const noexcept { return kind_; }
    bool Empty() const noexcept { return rows_.empty(); }
    std::size_t Rows() const noexcept { return rows_.size(); }
    const std::vector<Group>& Groups() const noexcept { return groups_; }
    /// In the order in which they were added.
    const Place& PlaceOf(std::size_t row) const noexcept { return rows_[row]; }
    bool Has(std::int64_t id) const { return ids_.contains(id); }
    /// Enough for one message.
    bool IsFull() const noexcept;

    /// Adds a row, or nothing when a value does not fit its column. row: for what its id and version are needed.
    void Add(const engines::RowKey& row, const engines::ColumnSet& set, engines::WrittenValues values);

    /// Some rows of a group as a statement's parameters.
    static Parameters ParametersOf(const Group& group, std::size_t first, std::size_t count);

private:
    Group& GroupOf(const engines::ColumnSet& set);

    Kind kind_ = Kind::Insert;
    const std::vector<ServerType>* columns_ = nullptr;
    std::vector<Group> groups_;
    std::vector<Place> rows_;
    std::unordered_set<std::int64_t> ids_;
    std::size_t bytes_ = 0;
};

}  // namespace kpTables::engines::postgres
