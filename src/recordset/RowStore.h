// Compact storage of a query's rows.
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

#include "kpTables/Recordset.h"

namespace kpTables::recordset {

/// The columns of results, shared by results with the same ones.
using FieldsPtr = std::shared_ptr<const std::vector<FieldInfo>>;
inline FieldsPtr ShareFields(std::vector<FieldInfo> fields) {
    return std::make_shared<const std::vector<FieldInfo>>(std::move(fields));
}

/// Raised by a store that has reached its limit.
struct StoreFull {
    std::size_t limit;  ///< in bytes
};

/// Rows of cells: nine bytes a cell, and a text's bytes with four bytes for its length. A cell keeps the type of its
/// value, so a column may hold other types than its own.
class RowStore {
public:
    explicit RowStore(FieldsPtr fields);
    explicit RowStore(std::vector<FieldInfo> fields);

    const std::vector<FieldInfo>& Fields() const noexcept { return *fields_; }
    int Columns() const noexcept { return static_cast<int>(fields_->size()); }
    std::size_t Rows() const noexcept { return rows_; }
    /// Bytes of memory held.
    std::size_t Bytes() const noexcept;
    void Reserve(std::size_t rows);
    /// From now on, raises StoreFull rather than hold more than about so many bytes; later, if given, is asked once for
    /// a larger limit when this one is passed.
    void Limit(std::size_t bytes, std::size_t (*later)() = nullptr) noexcept {
        limit_ = bytes;
        laterLimit_ = later;
    }

    // Writing. The Put functions fill cells of the row that BeginRow or EditRow chose.
    /// Appends a row of Nulls.
    void BeginRow();
    /// Takes the row that BeginRow appended away again.
    void DropLastRow() noexcept;
    void EditRow(std::size_t row);
    void PutNull(int column);
    void PutBoolean(int column, bool value);
    /// A whole number: an Integer or a Long by the column's type and its size, a Double where it fits neither; in a
    /// Boolean, Double or Currency column that type.
    void PutLong(int column, std::int64_t value);
    void PutDouble(int column, double value);
    void PutCurrency(int column, std::int64_t scaled);
    void PutDate(int column, double serial);
    /// UTF-8; copied.
    void PutText(int column, std::string_view text);
    /// Any value but an object or an array (error 13); Empty is stored as Null.
    void PutValue(int column, const Variant& value);

    // Rearranging, in place.
    /// order: the present number of the row that comes at each place.
    void Arrange(std::vector<std::uint32_t> order);
    void DropLastColumns(int count);

    // Reading.
    Variant GetValue(std::size_t row, int column) const;
    /// Never Empty.
    VarType TypeAt(std::size_t row, int column) const noexcept;
    bool IsNull(std::size_t row, int column) const noexcept { return TypeAt(row, column) == VarType::Null; }
    /// Numbers, Currency, dates (their serial) and Booleans (-1 and 0) as a Double; 0 for anything else.
    double NumberAt(std::size_t row, int column) const noexcept;
    /// The text, valid as long as the store; empty for anything else.
    std::string_view TextAt(std::size_t row, int column) const noexcept;

private:
    struct Block {
        std::vector<std::uint64_t> payload;  // number, or address of a text's record in the arena
        std::vector<std::uint8_t> types;
    };

    std::size_t CellIndex(std::size_t row, int column) const noexcept {
        return (row & rowMask_) * fields_->size() + static_cast<std::size_t>(column);
    }
    const Block& BlockOf(std::size_t row) const noexcept { return blocks_[row >> rowShift_]; }
    std::uint64_t* PayloadOf(std::size_t row) noexcept {
        return blocks_[row >> rowShift_].payload.data() + CellIndex(row, 0);
    }
    std::uint8_t* TypesOf(std::size_t row) noexcept {
        return blocks_[row >> rowShift_].types.data() + CellIndex(row, 0);
    }
    void Put(int column, VarType type, std::uint64_t payload);
    void AddBlock();
    char* Allocate(std::size_t bytes);
    void RequireRoomFor(std::size_t bytes);

    FieldsPtr fields_;
    std::vector<Block> blocks_;
    unsigned rowShift_ = 0;  // rows of a block, as a power of two
    std::size_t rowMask_ = 0;
    std::size_t rows_ = 0;
    std::size_t current_ = 0;
    std::size_t limit_ = std::numeric_limits<std::size_t>::max();
    std::size_t (*laterLimit_)() = nullptr;

    std::vector<std::unique_ptr<char[]>> arena_;
    std::size_t arenaBytes_ = 0;
    std::size_t nextArenaSize_ = 1024;
    char* arenaAt_ = nullptr;
    std::size_t arenaLeft_ = 0;
};

}  // namespace kpTables::recordset
