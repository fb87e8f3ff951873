#include "kpbook/output/SheetLibrary.h"

#include <dlfcn.h>

#include <string>

#include "kpTables/text/Message.h"
#include "kpbook/Exit.h"

namespace kpTables::kpbook::output {

namespace {

/// The version that the declarations belong to.
constexpr const char* kFileName = "libxlsxwriter.so." LXW_SOVERSION;

[[noreturn]] void Fail() {
    const char* reason = dlerror();
    throw CommandError(std::string(Message("xlsx cannot be written: ")) + (reason ? reason : kFileName));
}

template <class Function>
void Find(void* library, const char* name, Function& function) {
    void* const found = dlsym(library, name);
    if (!found) Fail();
    function = reinterpret_cast<Function>(found);
}

SheetLibrary Load() {
    void* const library = dlopen(kFileName, RTLD_NOW | RTLD_LOCAL);
    if (!library) Fail();
    SheetLibrary functions{};
    Find(library, "workbook_new_opt", functions.newWorkbook);
    Find(library, "workbook_add_format", functions.addFormat);
    Find(library, "workbook_add_worksheet", functions.addSheet);
    Find(library, "workbook_close", functions.closeWorkbook);
    Find(library, "lxw_workbook_free", functions.freeWorkbook);
    Find(library, "format_set_bold", functions.setBold);
    Find(library, "format_set_num_format", functions.setNumberFormat);
    Find(library, "worksheet_write_string", functions.writeString);
    Find(library, "worksheet_write_number", functions.writeNumber);
    Find(library, "worksheet_write_boolean", functions.writeBoolean);
    Find(library, "worksheet_set_column", functions.setColumn);
    Find(library, "worksheet_freeze_panes", functions.freezePanes);
    Find(library, "lxw_strerror", functions.errorText);
    return functions;
}

}  // namespace

const SheetLibrary& Sheets() {
    static const SheetLibrary library = Load();
    return library;
}

}  // namespace kpTables::kpbook::output
