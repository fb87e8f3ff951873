// Reads the rows of a workbook's sheet.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "kpbook/input/RowReader.h"
#include "kpbook/input/Workbook.h"
#include "kpbook/input/XmlParser.h"
#include "kpbook/input/ZipArchive.h"

namespace kpTables::kpbook::input {

/// Cells are texts as import reads them: numbers with the fifteen digits that a sheet shows, dates as 2004-03-07, True
/// and False. A row has as many fields as the first, and more if there is something beyond; rows without a cell are
/// skipped. A CommandError that begins with the file's name says what is damaged.
class XlsxReader : public RowReader {
public:
    /// bytes: of the file. name: for messages. sheet: its name; empty: the first.
    XlsxReader(std::string bytes, const std::string& name, const std::string& sheet);

    bool Next() override;
    std::int64_t Line() const override { return line_; }
    std::size_t FieldCount() const override { return cells_.size(); }
    std::string_view Field(std::size_t index) const override { return cells_[index]; }
    bool IsQuoted(std::size_t) const override { return false; }
    const std::string& Problem() const override { return problem_; }

private:
    void Start(std::string_view name, const XmlAttributes& attributes);
    void End(std::string_view name);
    void StartCell(const XmlAttributes& attributes);
    void EndCell();
    /// The text of a cell whose value is a number.
    std::string NumberText(const std::string& value) const;
    /// Removes empty cells from the end, or adds some, to the width of the first row.
    void SetWidth();

    std::string name_;
    ZipArchive archive_;
    Workbook workbook_;
    std::unique_ptr<XmlParser> parser_;

    std::vector<std::string> cells_;
    std::size_t width_ = 0;  ///< of the first row
    std::int64_t line_ = 0;
    std::string problem_;

    // The cell that is being read.
    std::size_t column_ = 0;
    std::string type_;
    bool isDate_ = false;
    std::string value_;
    bool inValue_ = false;
    bool inPhonetic_ = false;
    bool rowIsRead_ = false;
};

}  // namespace kpTables::kpbook::input
