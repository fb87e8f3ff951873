#include "kpbook/output/SheetLibrary.h"

#include <string>

#include "kpTables/text/Message.h"
#include "kpbook/Exit.h"
#include "platform/SharedLibrary.h"

namespace kpTables::kpbook::output {

namespace {

/// The version that the declarations belong to.
constexpr const char* kFileName = "libxlsxwriter.so." LXW_SOVERSION;

SheetLibrary Load() {
    platform::SharedLibrary file(kFileName);
    SheetLibrary functions{};
    file.Find(functions.newWorkbook, "workbook_new_opt");
    file.Find(functions.addFormat, "workbook_add_format");
    file.Find(functions.addSheet, "workbook_add_worksheet");
    file.Find(functions.closeWorkbook, "workbook_close");
    file.Find(functions.freeWorkbook, "lxw_workbook_free");
    file.Find(functions.setBold, "format_set_bold");
    file.Find(functions.setNumberFormat, "format_set_num_format");
    file.Find(functions.writeString, "worksheet_write_string");
    file.Find(functions.writeNumber, "worksheet_write_number");
    file.Find(functions.writeBoolean, "worksheet_write_boolean");
    file.Find(functions.setColumn, "worksheet_set_column");
    file.Find(functions.freezePanes, "worksheet_freeze_panes");
    file.Find(functions.errorText, "lxw_strerror");
    if (!file.Fault().empty()) throw CommandError(Message("xlsx cannot be written: ") + file.Fault());
    return functions;
}

}  // namespace

const SheetLibrary& Sheets() {
    static const SheetLibrary library = Load();
    return library;
}

}  // namespace kpTables::kpbook::output
