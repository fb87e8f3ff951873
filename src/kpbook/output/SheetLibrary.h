// The library that writes workbooks, loaded when the first one is written: loading it and the cryptography that it
// depends on takes longer than a short call.
#pragma once

#include <xlsxwriter.h>

namespace kpTables::kpbook::output {

struct SheetLibrary {
    decltype(&workbook_new_opt) newWorkbook;
    decltype(&workbook_add_format) addFormat;
    decltype(&workbook_add_worksheet) addSheet;
    decltype(&workbook_close) closeWorkbook;
    decltype(&lxw_workbook_free) freeWorkbook;
    decltype(&format_set_bold) setBold;
    decltype(&format_set_num_format) setNumberFormat;
    decltype(&worksheet_write_string) writeString;
    decltype(&worksheet_write_number) writeNumber;
    decltype(&worksheet_write_boolean) writeBoolean;
    decltype(&worksheet_set_column) setColumn;
    decltype(&worksheet_freeze_panes) freezePanes;
    decltype(&lxw_strerror) errorText;
};

/// A CommandError says why the library cannot be loaded.
const SheetLibrary& Sheets();

}  // namespace kpTables::kpbook::output
