#include "com/HostControl.h"

#include "kpTables/Convert.h"

namespace kpTables::com {

std::int32_t HostGrid::Cols() const { return CLng(Members().Get("cols")); }

void HostGrid::SetCols(std::int32_t count) { Members().Put("cols", {count}); }

std::int32_t HostGrid::Rows() const { return CLng(Members().Get("Rows")); }

std::int32_t HostGrid::FixedRows() const { return CLng(Members().Get("FixedRows")); }

std::string HostGrid::ColKey(std::int32_t col) const { return Text(Members().Get("colkey", {col})); }

void HostGrid::SetColKey(std::int32_t col, const std::string& key) { Members().Put("colkey", {col, key}); }

std::int32_t HostGrid::ColIndex(std::string_view key) const { return CLng(Members().Get("ColIndex", {key})); }

void HostGrid::SetColPosition(std::int32_t col, std::int32_t position) {
    Members().Put("ColPosition", {col, position});
}

bool HostGrid::ColHidden(std::int32_t col) const { return CBool(Members().Get("ColHidden", {col})); }

void HostGrid::SetColHidden(std::int32_t col, bool hidden) { Members().Put("ColHidden", {col, hidden}); }

double HostGrid::ColWidth(std::int32_t col) const { return CDbl(Members().Get("colwidth", {col})); }

void HostGrid::SetColWidth(std::int32_t col, double width) { Members().Put("colwidth", {col, width}); }

std::string HostGrid::TextMatrix(std::int32_t row, std::int32_t col) const {
    return Text(Members().Get("TextMatrix", {row, col}));
}

void HostGrid::SetTextMatrix(std::int32_t row, std::int32_t col, const std::string& text) {
    Members().Put("TextMatrix", {row, col, text});
}

double HostGrid::ValueMatrix(std::int32_t row, std::int32_t col) const {
    return CDbl(Members().Get("ValueMatrix", {row, col}));
}

void HostProgressBar::SetVisible(bool visible) { Members().Put("Visible", {visible}); }

void HostProgressBar::SetValue(double value) { Members().Put("Value", {value}); }

}  // namespace kpTables::com
