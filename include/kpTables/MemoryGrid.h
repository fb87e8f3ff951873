// A grid held in memory, for hosts without a control of their own.
#pragma once

#include <vector>

#include "kpTables/Grid.h"

namespace kpTables {

/// Its cells are Variants. A row or column out of range is error 9; so is a negative count.
class MemoryGrid : public Grid {
public:
    struct Column {
        std::string key;
        std::string title;  ///< the text of row 0; without header rows there is none
        bool hidden = false;
        double width = 0;
    };

    /// A grid without columns.
    explicit MemoryGrid(std::int32_t fixedRows = 1);

    /// Adds a column at the end, empty below its title.
    void AddColumn(const Column& column);
    Column ColumnAt(std::int32_t col) const;
    /// Adds a row at the end; cells that are not given are empty. More cells than columns are error 9.
    void AddRow(const std::vector<Variant>& cells);
    const Variant& Cell(std::int32_t row, std::int32_t col) const;

    std::int32_t Cols() const override;
    void SetCols(std::int32_t count) override;
    std::int32_t Rows() const override;
    std::int32_t FixedRows() const override;
    std::string ColKey(std::int32_t col) const override;
    void SetColKey(std::int32_t col, const std::string& key) override;
    std::int32_t ColIndex(std::string_view key) const override;
    void SetColPosition(std::int32_t col, std::int32_t position) override;
    bool ColHidden(std::int32_t col) const override;
    void SetColHidden(std::int32_t col, bool hidden) override;
    double ColWidth(std::int32_t col) const override;
    void SetColWidth(std::int32_t col, double width) override;
    std::string TextMatrix(std::int32_t row, std::int32_t col) const override;
    void SetTextMatrix(std::int32_t row, std::int32_t col, const std::string& text) override;
    double ValueMatrix(std::int32_t row, std::int32_t col) const override;

private:
    struct Strip {
        std::string key;
        bool hidden = false;
        double width = 0;
        std::vector<Variant> cells;  ///< one a row
    };
    const Strip& At(std::int32_t col) const;
    Strip& At(std::int32_t col);
    Variant& At(std::int32_t row, std::int32_t col);

    std::vector<Strip> columns_;
    std::int32_t fixedRows_;
    std::int32_t rows_;
};

}  // namespace kpTables
