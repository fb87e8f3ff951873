// The host's grid, as the column layouts and the pay sheet use it.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "kpTables/Variant.h"

namespace kpTables {

/// A grid control of the host, by the control's own member names. Rows and columns are numbered from 0, header rows
/// included; row 0 holds the columns' titles. A member that fails raises an Error.
class Grid : public Object {
public:
    virtual std::int32_t Cols() const = 0;
    /// Adds columns at the end, or removes the last ones.
    virtual void SetCols(std::int32_t count) = 0;
    virtual std::int32_t Rows() const = 0;
    /// How many of the rows are header rows.
    virtual std::int32_t FixedRows() const = 0;

    /// "" for a column without a key.
    virtual std::string ColKey(std::int32_t col) const = 0;
    virtual void SetColKey(std::int32_t col, const std::string& key) = 0;
    /// The column with a key; below 0 when there is none.
    virtual std::int32_t ColIndex(std::string_view key) const = 0;
    /// Moves a column to a position; the columns between shift.
    virtual void SetColPosition(std::int32_t col, std::int32_t position) = 0;
    virtual bool ColHidden(std::int32_t col) const = 0;
    virtual void SetColHidden(std::int32_t col, bool hidden) = 0;
    /// In the grid's own units.
    virtual double ColWidth(std::int32_t col) const = 0;
    virtual void SetColWidth(std::int32_t col, double width) = 0;

    /// A cell's text.
    virtual std::string TextMatrix(std::int32_t row, std::int32_t col) const = 0;
    virtual void SetTextMatrix(std::int32_t row, std::int32_t col, const std::string& text) = 0;
    /// A cell's value as a number; 0 when it is none.
    virtual double ValueMatrix(std::int32_t row, std::int32_t col) const = 0;
};
using GridPtr = std::shared_ptr<Grid>;

}  // namespace kpTables
