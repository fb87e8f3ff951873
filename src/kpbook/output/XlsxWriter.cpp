#include <array>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "kpbook/Exit.h"
#include "kpbook/Interruption.h"
#include "kpbook/Utf8.h"
#include "kpbook/output/CellText.h"
#include "kpbook/output/DraftFile.h"
#include "kpbook/output/Output.h"
#include "kpbook/output/RowWriters.h"
#include "kpbook/output/SheetLibrary.h"

namespace kpTables::kpbook::output {

namespace {

struct Formats {
    lxw_format* title;
    lxw_format* money;
    lxw_format* date;
    lxw_format* dateTime;
};

lxw_format* NumberFormat(lxw_workbook* workbook, const char* pattern) {
    lxw_format* format = Sheets().addFormat(workbook);
    Sheets().setNumberFormat(format, pattern);
    return format;
}

Formats AddFormats(lxw_workbook* workbook) {
    const Formats formats{Sheets().addFormat(workbook), NumberFormat(workbook, "0.0000"),
                          NumberFormat(workbook, "yyyy-mm-dd"), NumberFormat(workbook, "yyyy-mm-dd hh:mm:ss")};
    Sheets().setBold(formats.title);
    return formats;
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
            return Sheets().writeBoolean(sheet, row, column, *value.If<bool>(), nullptr);
        case VarType::Integer:
            return Sheets().writeNumber(sheet, row, column, *value.If<std::int16_t>(), nullptr);
        case VarType::Long:
            return Sheets().writeNumber(sheet, row, column, *value.If<std::int32_t>(), nullptr);
        case VarType::Double:
            if (!std::isfinite(*value.If<double>())) break;
            return Sheets().writeNumber(sheet, row, column, *value.If<double>(), nullptr);
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
    return WriteText(sheet, row, column, CellText(value), nullptr);
}

void Check(lxw_error error, const std::string& path) {
    if (error != LXW_NO_ERROR) throw CommandError(path + ": cannot be written: " + Sheets().errorText(error));
}

std::int64_t WriteSheet(lxw_worksheet* sheet, Recordset& recordset, const Formats& formats, const std::string& path) {
    const auto count = static_cast<lxw_col_t>(recordset.FieldCount());
    for (lxw_col_t i = 0; i < count; ++i) {
        Check(WriteText(sheet, 0, i, recordset.FieldAt(i).name, formats.title), path);
    }
    lxw_row_t rows = 0;
    for (; !recordset.Eof(); recordset.MoveNext()) {
        ThrowIfInterrupted();
        ++rows;
        for (lxw_col_t i = 0; i < count; ++i) Check(WriteCell(sheet, rows, i, recordset.GetValue(i), formats), path);
    }
    return rows;
}

}  // namespace

namespace {

/// The library writes through null pointers when memory runs out. It keeps no more than a row, so that this is far more
/// than it needs.
void RequireMemory() {
    constexpr std::size_t kReserve = 64U << 20U;
    const std::unique_ptr<void, decltype(&std::free)> reserve(std::malloc(kReserve), &std::free);
    if (!reserve) throw CommandError("there is not enough memory to write a workbook; csv needs less");
}

void RequireFit(const Section& section) {
    constexpr std::int32_t kMostRows = 1'048'575;  // below the titles
    constexpr int kMostColumns = 16'384;
    if (section.rows->RecordCount() <= kMostRows && section.rows->FieldCount() <= kMostColumns) return;
    throw CommandError("a workbook's sheet holds at most " + std::to_string(kMostRows) + " rows and " +
                       std::to_string(kMostColumns) + " columns; csv holds any number");
}

/// Rows are kept in temporary files, whose errors the library does not look at.
void CheckRowsAreKept(const lxw_worksheet& sheet) {
    std::FILE* const file = sheet.optimize_tmpfile;
    if (!file || (std::fflush(file) == 0 && std::ferror(file) == 0)) return;
    throw CommandError("the rows of a workbook cannot be kept in a temporary file: " +
                       std::string(std::strerror(errno)));
}

std::int64_t WriteWorkbook(const std::vector<Section>& sections, const std::string& path, const std::string& shown) {
    lxw_workbook_options options{};
    options.constant_memory = LXW_TRUE;
    const auto openFailed = [&] { return CommandError(shown + ": cannot be written"); };
    std::unique_ptr<lxw_workbook, FreeWorkbook> workbook(Sheets().newWorkbook(path.c_str(), &options));
    if (!workbook) throw openFailed();
    const Formats formats = AddFormats(workbook.get());
    std::int64_t rows = 0;
    for (const Section& section : sections) {
        const char* title = section.title.empty() ? nullptr : section.title.c_str();
        lxw_worksheet* const sheet = Sheets().addSheet(workbook.get(), title);
        if (!sheet) throw openFailed();
        rows += WriteSheet(sheet, *section.rows, formats, shown);
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

struct CloseFile {
    void operator()(std::FILE* file) const noexcept { std::fclose(file); }
};

}  // namespace

std::int64_t WriteXlsx(const std::vector<Section>& sections, const std::string& path) {
    for (const Section& section : sections) RequireFit(section);
    Sheets();
    RequireMemory();
    if (IsReplaceable(path)) {
        DraftFile draft(path);
        const auto rows = WriteWorkbook(sections, draft.Path(), path);
        draft.Keep();
        return rows;
    }
    const std::unique_ptr<std::FILE, CloseFile> file(std::tmpfile());
    if (!file) throw CommandError("no temporary file can be made: " + std::string(std::strerror(errno)));
    const auto rows = WriteWorkbook(sections, "/proc/self/fd/" + std::to_string(fileno(file.get())), path);
    CopyTo(path, *file);
    return rows;
}

std::int64_t WriteXlsx(Recordset& recordset, const std::string& path) {
    // An untitled section that does not own its rows.
    return WriteXlsx({{"", RecordsetPtr(RecordsetPtr(), &recordset)}}, path);
}

}  // namespace kpTables::kpbook::output
