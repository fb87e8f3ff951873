#include <algorithm>
#include <array>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "kpTables/text/Message.h"
#include "kpbook/Exit.h"
#include "kpbook/Interruption.h"
#include "kpbook/Names.h"
#include "kpbook/Utf8.h"
#include "kpbook/output/CellText.h"
#include "kpbook/output/ColumnTotal.h"
#include "kpbook/output/Output.h"
#include "kpbook/output/ReplacementFile.h"
#include "kpbook/output/RowWriters.h"
#include "kpbook/output/SheetLibrary.h"
#include "platform/Process.h"

namespace kpTables::kpbook::output {

namespace {

/// The formats of a row's cells, by what they hold.
struct Formats {
    lxw_format* other;  ///< null: none
    lxw_format* money;
    lxw_format* date;
    lxw_format* dateTime;
};

struct SheetFormats {
    lxw_format* title;
    Formats rows;
    Formats totals;
};

lxw_format* AddFormat(lxw_workbook* workbook, const char* pattern, bool bold) {
    lxw_format* format = Sheets().addFormat(workbook);
    if (pattern) Sheets().setNumberFormat(format, pattern);
    if (bold) Sheets().setBold(format);
    return format;
}

SheetFormats AddFormats(lxw_workbook* workbook) {
    const auto formats = [workbook](bool bold) {
        return Formats{bold ? AddFormat(workbook, nullptr, true) : nullptr, AddFormat(workbook, "#,##0.00", bold),
                       AddFormat(workbook, "yyyy-mm-dd", bold), AddFormat(workbook, "yyyy-mm-dd hh:mm:ss", bold)};
    };
    return {AddFormat(workbook, nullptr, true), formats(false), formats(true)};
}

/// For a workbook that is abandoned; closing one frees it.
struct FreeWorkbook {
    void operator()(lxw_workbook* workbook) const noexcept { Sheets().freeWorkbook(workbook); }
};

/// Day 61 is 1900-03-01; before it, a sheet's calendar has one day too many.
constexpr double kFirstSheetDay = 61;
/// The largest amount, in ten-thousandths, of 15 digits, the precision of a sheet's numbers.
constexpr std::int64_t kLargestSheetMoney = 999'999'999'999'999;

lxw_error WriteText(lxw_worksheet* sheet, lxw_row_t row, lxw_col_t column, const std::string& text,
                    lxw_format* format) {
    return Sheets().writeString(sheet, row, column, ReplaceInvalidUtf8(text).c_str(), format);
}

lxw_error WriteCell(lxw_worksheet* sheet, lxw_row_t row, lxw_col_t column, const Variant& value,
                    const Formats& formats) {
    switch (value.Type()) {
        case VarType::Empty:
        case VarType::Null:
            return LXW_NO_ERROR;
        case VarType::Boolean:
            return Sheets().writeBoolean(sheet, row, column, *value.If<bool>(), formats.other);
        case VarType::Integer:
            return Sheets().writeNumber(sheet, row, column, *value.If<std::int16_t>(), formats.other);
        case VarType::Long:
            return Sheets().writeNumber(sheet, row, column, *value.If<std::int32_t>(), formats.other);
        case VarType::Double:
            if (!std::isfinite(*value.If<double>())) break;
            return Sheets().writeNumber(sheet, row, column, *value.If<double>(), formats.other);
        case VarType::Currency:
            if (std::llabs(value.If<Currency>()->Scaled()) <= kLargestSheetMoney) {
                return Sheets().writeNumber(sheet, row, column, value.If<Currency>()->ToDouble(), formats.money);
            }
            break;
        case VarType::Date:
            if (const Date date = *value.If<Date>(); date.Serial() >= kFirstSheetDay) {
                return Sheets().writeNumber(sheet, row, column, date.Serial(),
                                            date.HasTime() ? formats.dateTime : formats.date);
            }
            break;
        default:
            break;
    }
    return WriteText(sheet, row, column, CellText(value), formats.other);
}

void Check(lxw_error error, const std::string& path) {
    if (error != LXW_NO_ERROR)
        throw CommandError(Message("{1}: cannot be written: {2}", path, Sheets().errorText(error)));
}

/// Columns that a cell's text takes in its number format.
std::size_t CellWidth(const Variant& value) {
    const std::size_t width = DisplayWidth(ShownText(value));
    if (value.Type() != VarType::Currency) return width;
    const auto digits = std::to_string(value.If<Currency>()->Scaled() / Currency::kScale).size();
    return digits + digits / 3 + 3;
}

/// The widths of a sheet's columns, by their widest cells.
class ColumnWidths {
public:
    explicit ColumnWidths(std::size_t columns) : widths_(columns, kNarrowest) {}

    void Add(lxw_col_t column, std::size_t width) { widths_[column] = std::clamp(width, widths_[column], kWidest); }
    void Set(lxw_worksheet* sheet, const std::string& path) const {
        constexpr double kMargin = 2;
        lxw_col_t column = 0;
        for (const std::size_t width : widths_) {
            Check(Sheets().setColumn(sheet, column, column, static_cast<double>(width) + kMargin, nullptr), path);
            ++column;
        }
    }

private:
    static constexpr std::size_t kNarrowest = 6;
    static constexpr std::size_t kWidest = 60;
    std::vector<std::size_t> widths_;
};

std::int64_t WriteSheet(lxw_worksheet* sheet, const Section& section, const SheetFormats& formats,
                        const std::string& path) {
    Recordset& recordset = *section.rows;
    const auto count = static_cast<lxw_col_t>(recordset.FieldCount());
    ColumnWidths widths(count);
    TotalsRow totals(recordset, section.totalled);
    lxw_row_t row = 0;
    const auto write = [&](lxw_col_t column, const Variant& value, const Formats& cells) {
        Check(WriteCell(sheet, row, column, value, cells), path);
        widths.Add(column, CellWidth(value));
    };
    Sheets().freezePanes(sheet, 1, 0);
    for (lxw_col_t i = 0; i < count; ++i) {
        Check(WriteText(sheet, row, i, recordset.FieldAt(i).name, formats.title), path);
        widths.Add(i, DisplayWidth(recordset.FieldAt(i).name));
    }
    for (; !recordset.Eof(); recordset.MoveNext()) {
        ThrowIfInterrupted();
        ++row;
        for (lxw_col_t i = 0; i < count; ++i) write(i, recordset.GetValue(i), formats.rows);
        totals.Add(recordset);
    }
    const lxw_row_t rows = row;
    if (totals.IsShown()) {
        ++row;
        for (lxw_col_t i = 0; i < count; ++i) write(i, totals.Value(i), formats.totals);
    }
    widths.Set(sheet, path);
    return rows;
}

/// A title as a sheet may be named: without some characters, at most 31 long, and not History, which Excel keeps for
/// itself.
std::string SheetName(const std::string& title) {
    constexpr std::size_t kLongest = 31;
    std::string name;
    for (std::size_t at = 0; at < title.size();) {
        const std::string character = title.substr(at, text::CharacterSize(title, at));
        if (text::Utf16Length(name + character) > kLongest) break;
        name += std::string_view("[]:*?/\\'").find(character) == std::string_view::npos ? character : "_";
        at += character.size();
    }
    return SameName(name, "History") ? name + "_" : name;
}

}  // namespace

namespace {

/// The library writes through null pointers when memory runs out. It keeps no more than a row, so that this is far more
/// than it needs.
void RequireMemory() {
    constexpr std::size_t kReserve = 64U << 20U;
    // Volatile, for otherwise the compiler leaves out both calls.
    void* const volatile reserve = std::malloc(kReserve);
    if (!reserve) throw CommandError(Message("there is not enough memory to write a workbook; csv needs less"));
    std::free(reserve);
}

void RequireFit(const Section& section) {
    constexpr std::int32_t kMostRows = 1'048'574;  // between the titles and the totals
    constexpr int kMostColumns = 16'384;
    if (section.rows->RecordCount() <= kMostRows && section.rows->FieldCount() <= kMostColumns) return;
    throw CommandError(Message("a workbook's sheet holds at most {1} rows and {2} columns; csv holds any number",
                               kMostRows, kMostColumns));
}

/// Rows are kept in temporary files, whose errors the library does not look at.
void CheckRowsAreKept(const lxw_worksheet& sheet) {
    std::FILE* const file = sheet.optimize_tmpfile;
    if (!file || (std::fflush(file) == 0 && std::ferror(file) == 0)) return;
    throw CommandError(Message("the rows of a workbook cannot be kept in a temporary file: {1}", SystemMessage(errno)));
}

std::int64_t WriteWorkbook(const std::vector<Section>& sections, const std::string& path, const std::string& shown) {
    lxw_workbook_options options{};
    options.constant_memory = LXW_TRUE;
    const auto openFailed = [&] { return CommandError(Message("{1}: cannot be written", shown)); };
    std::unique_ptr<lxw_workbook, FreeWorkbook> workbook(Sheets().newWorkbook(path.c_str(), &options));
    if (!workbook) throw openFailed();
    const SheetFormats formats = AddFormats(workbook.get());
    std::int64_t rows = 0;
    for (const Section& section : sections) {
        const std::string name = SheetName(section.title);
        lxw_worksheet* const sheet = Sheets().addSheet(workbook.get(), name.empty() ? nullptr : name.c_str());
        if (!sheet) throw openFailed();
        rows += WriteSheet(sheet, section, formats, shown);
        CheckRowsAreKept(*sheet);
        RequireMemory();
    }
    Check(Sheets().closeWorkbook(workbook.release()), shown);
    return rows;
}

/// A pipe or a device takes a workbook only as a copy, for writing one goes back in it.
void CopyTo(const std::string& path, std::FILE& workbook) {
    Output output(path);
    std::array<char, 1 << 16> piece{};
    std::rewind(&workbook);
    for (std::size_t size = 0; (size = std::fread(piece.data(), 1, piece.size(), &workbook)) > 0;) {
        output.Write({piece.data(), size});
    }
    output.Close();
}

}  // namespace

std::int64_t WriteXlsx(const std::vector<Section>& sections, const std::string& path) {
    for (const Section& section : sections) RequireFit(section);
    Sheets();
    RequireMemory();
    if (platform::IsReplaceable(path)) {
        ReplacementFile draft(path);
        const auto rows = WriteWorkbook(sections, draft.Path(), path);
        draft.Keep();
        return rows;
    }
    const platform::TemporaryFile file;
    if (!file.File()) throw CommandError(Message("no temporary file can be made: {1}", SystemMessage(errno)));
    const auto rows = WriteWorkbook(sections, file.Path(), path);
    CopyTo(path, *file.File());
    return rows;
}

}  // namespace kpTables::kpbook::output
