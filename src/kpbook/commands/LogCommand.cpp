#include "kpTables/MemoryRecordset.h"
#include "kpbook/Host.h"
#include "kpbook/Workspace.h"
#include "kpbook/commands/Commands.h"
#include "kpbook/output/ResultWriter.h"

namespace kpTables::kpbook::commands {

namespace {

RecordsetPtr FirstRows(Recordset& rows, std::int32_t limit) {
    std::vector<FieldInfo> fields;
    for (int i = 0; i < rows.FieldCount(); ++i) fields.push_back(rows.FieldAt(i));
    auto first = std::make_shared<MemoryRecordset>(fields);
    for (; !rows.Eof() && first->RecordCount() < limit; rows.MoveNext()) {
        first->AddNew();
        for (int i = 0; i < rows.FieldCount(); ++i) first->SetValue(i, rows.GetValue(i));
        first->Update();
    }
    if (first->RecordCount() > 0) first->MoveFirst();
    return first;
}

}  // namespace

int Log(const LogOptions& options, const GlobalOptions& global) {
    Workspace workspace(options.book, std::make_shared<ConsoleHost>(global.today, global.answer), global, Access::Read);
    auto rows = workspace.tables.rsLog();
    if (options.limit) rows = FirstRows(*rows, *options.limit);
    output::WriteRecordset(*rows, global);
    return kSucceeded;
}

}  // namespace kpTables::kpbook::commands
