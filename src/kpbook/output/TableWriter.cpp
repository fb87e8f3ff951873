#include <algorithm>
#include <vector>

#include "kpbook/Interruption.h"
#include "kpbook/Utf8.h"
#include "kpbook/output/CellText.h"
#include "kpbook/output/ColumnTotal.h"
#include "kpbook/output/Output.h"
#include "kpbook/output/RowWriters.h"

namespace kpTables::kpbook::output {

namespace {

struct Column {
    std::string title;
    std::size_t width = 0;
    bool flushRight = false;
};

std::vector<Column> ColumnsOf(const Recordset& recordset) {
    std::vector<Column> columns;
    for (int i = 0; i < recordset.FieldCount(); ++i) {
        const auto& field = recordset.FieldAt(i);
        const std::string title = Printable(field.name);
        columns.push_back({title, DisplayWidth(title), IsNumber(field.type)});
    }
    return columns;
}

/// Writes lines cell by cell; the last column is not padded, so that no line ends in blanks.
class LineWriter {
public:
    LineWriter(const std::vector<Column>& columns, Output& output) : columns_(columns), output_(output) {}

    void Cell(const std::string& text) {
        const auto& column = columns_[next_++];
        const auto padding = std::string(column.width - std::min(DisplayWidth(text), column.width), ' ');
        const bool last = next_ == columns_.size();
        line_ += column.flushRight ? padding + text : last ? text : text + padding;
        if (!last) {
            line_ += "  ";
            return;
        }
        line_.resize(line_.find_last_not_of(' ') + 1);
        line_ += '\n';
        output_.Write(line_);
        line_.clear();
        next_ = 0;
    }

private:
    const std::vector<Column>& columns_;
    Output& output_;
    std::string line_;
    std::size_t next_ = 0;
};

}  // namespace

std::int64_t WriteTable(Recordset& recordset, Output& output, const Presentation& presentation) {
    auto columns = ColumnsOf(recordset);
    TotalsRow totals(recordset, presentation);
    const auto cell = [&](std::size_t column) {
        const int index = static_cast<int>(column);
        return Printable(ShownText(recordset.GetValue(index), presentation.LookOf(index)));
    };
    std::int64_t rows = 0;
    for (; !recordset.Eof(); recordset.MoveNext(), ++rows) {
        ThrowIfInterrupted();
        for (std::size_t i = 0; i < columns.size(); ++i) {
            columns[i].width = std::max(columns[i].width, DisplayWidth(cell(i)));
        }
        totals.Add(recordset);
    }
    const auto total = [&](std::size_t column) {
        return totals.IsShown() ? totals.Cell(static_cast<int>(column)) : std::string();
    };
    for (std::size_t i = 0; i < columns.size(); ++i) {
        columns[i].width = std::max(columns[i].width, DisplayWidth(total(i)));
    }
    LineWriter line(columns, output);
    output.Emphasize(true);
    for (const auto& column : columns) line.Cell(column.title);
    output.Emphasize(false);
    const auto rule = [&] {
        for (const auto& column : columns) line.Cell(std::string(column.width, '-'));
    };
    rule();
    if (rows > 0) recordset.MoveFirst();
    for (; !recordset.Eof(); recordset.MoveNext()) {
        ThrowIfInterrupted();
        for (std::size_t i = 0; i < columns.size(); ++i) line.Cell(cell(i));
    }
    if (totals.IsShown()) {
        rule();
        for (std::size_t i = 0; i < columns.size(); ++i) line.Cell(total(i));
    }
    return rows;
}

}  // namespace kpTables::kpbook::output
