#include "kpTables/Convert.h"
#include "kpTables/MemoryRecordset.h"
#include "kpbook/Host.h"
#include "kpbook/Workspace.h"
#include "kpbook/commands/Commands.h"
#include "kpbook/commands/ReportLayout.h"
#include "kpbook/commands/ReportView.h"
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

/// An entry keeps its operator's id as text.
Variant OperatorName(const ReportRow& row) {
    const Variant id = row.At("Operator");
    return row.names.OperatorOf(Text(id));
}

ReportLayout LogLayout(const Recordset& rows) {
    const ReportColumn name{.heading = "操作员", .worked = OperatorName};
    ReportLayout layout{.shown = {{.heading = "时间", .column = "logDate"}, name}, .added = {name}};
    for (int i = 0; i < rows.FieldCount(); ++i) {
        const auto& column = rows.FieldAt(i).name;
        if (column == "logID" || column == "Operator" || column == "logDate") continue;
        layout.shown.push_back({.heading = column, .column = column});
    }
    return layout;
}

}  // namespace

int Log(const LogOptions& options, const GlobalOptions& global) {
    Workspace workspace(options.book, std::make_shared<ConsoleHost>(global.today, global.answer), global, Access::Read);
    auto rows = workspace.tables.rsLog();
    if (options.limit) rows = FirstRows(*rows, *options.limit);
    ReportDesk desk(workspace, options.showing, global);
    if (options.showing.raw || desk.isForPrograms) {
        output::WriteRecordset(*rows, global);
        return kSucceeded;
    }
    const auto laidOut = LayOut(*rows, LogLayout(*rows), desk.columns, workspace.tables, desk.names, false);
    output::WriteView({"", {}, laidOut.rows, laidOut.presentation, {}}, global);
    return kSucceeded;
}

}  // namespace kpTables::kpbook::commands
