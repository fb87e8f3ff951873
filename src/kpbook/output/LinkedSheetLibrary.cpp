#include "kpbook/output/SheetLibrary.h"

namespace kpTables::kpbook::output {

// Where programs bring their libraries along, this one is a part of kpbook.
const SheetLibrary& Sheets() {
    static const SheetLibrary library{
        .newWorkbook = workbook_new_opt,
        .addFormat = workbook_add_format,
        .addSheet = workbook_add_worksheet,
        .closeWorkbook = workbook_close,
        .freeWorkbook = lxw_workbook_free,
        .setBold = format_set_bold,
        .setNumberFormat = format_set_num_format,
        .writeString = worksheet_write_string,
        .writeNumber = worksheet_write_number,
        .writeBoolean = worksheet_write_boolean,
        .setColumn = worksheet_set_column,
        .freezePanes = worksheet_freeze_panes,
        .errorText = lxw_strerror,
    };
    return library;
}

}  // namespace kpTables::kpbook::output
