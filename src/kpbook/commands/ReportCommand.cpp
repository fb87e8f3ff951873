#include <algorithm>
#include <cstdio>

#include "kpTables/MemoryRecordset.h"
#include "kpTables/text/Message.h"
#include "kpbook/Host.h"
#include "kpbook/Terminal.h"
#include "kpbook/Workspace.h"
#include "kpbook/commands/Commands.h"
#include "kpbook/commands/ReportSet.h"
#include "kpbook/commands/ReportView.h"
#include "kpbook/commands/Reports.h"
#include "kpbook/output/Headings.h"
#include "kpbook/output/Output.h"
#include "kpbook/output/ResultWriter.h"

namespace kpTables::kpbook::commands {

namespace {

/// The text in lines that fit a terminal, broken after commas.
std::string Wrapped(const std::string& text, const std::string& indent) {
    constexpr std::size_t kWidth = 100;
    std::string wrapped;
    std::string line = indent;
    for (std::size_t start = 0; start < text.size();) {
        const auto comma = text.find(", ", start);
        const auto end = comma == text.npos ? text.size() : comma + 2;
        if (line.size() + (end - start) > kWidth) {
            wrapped += line.substr(0, line.find_last_not_of(' ') + 1) + "\n";
            line = indent;
        }
        line.append(text, start, end - start);
        start = end;
    }
    return wrapped + line + "\n";
}

int ListReports(const GlobalOptions& global) {
    if (global.format == OutputFormat::Table) {
        output::Output output(global.outputPath);
        for (const auto& kind : ReportKinds()) {
            output.Write(std::string(kind.name) + "  " + std::string(kind.method) + "\n      " +
                         Translated(kind.answers) + "\n" + Wrapped(FilterList(kind), "      "));
        }
        output.Close();
        return kSucceeded;
    }
    MemoryRecordset rows({{output::Heading("report", global.format), VarType::String},
                          {output::Heading("method", global.format), VarType::String},
                          {output::Heading("answers", global.format), VarType::String},
                          {output::Heading("filters", global.format), VarType::String}});
    for (const auto& kind : ReportKinds()) {
        rows.AddNew();
        rows.SetValue(0, kind.name);
        rows.SetValue(1, kind.method);
        rows.SetValue(2, Translated(kind.answers));
        rows.SetValue(3, FilterList(kind));
        rows.Update();
    }
    rows.MoveFirst();
    output::WriteRecordset(rows, global);
    return kSucceeded;
}

std::vector<int> ColumnsNamed(const Recordset& recordset, const std::vector<std::string_view>& names) {
    std::vector<int> columns;
    for (int i = 0; i < recordset.FieldCount(); ++i) {
        if (std::ranges::find(names, recordset.FieldAt(i).name) != names.end()) columns.push_back(i);
    }
    return columns;
}

void TellMonth(const ReportFilters& asked, const ReportFilters& taken) {
    if (taken.month == asked.month) return;
    TellLine(Message("month {1}, the first with balance rows", taken.month));
}

void TellOfDialect(const ReportKind& kind, const ReportFilters& filters, const GlobalOptions& global) {
    const auto note = global.isSQL && kind.sqlNote ? kind.sqlNote(filters) : "";
    if (!note.empty()) TellLine(std::string(note));
}

}  // namespace

int Report(const ReportOptions& options, const GlobalOptions& global) {
    if (options.all) return ReportAll(options, global);
    if (!options.kind) return ListReports(global);
    const ReportKind& kind = *options.kind;
    Workspace workspace(options.book, std::make_shared<ConsoleHost>(global.today, global.answer), global, Access::Read);
    auto filters = options.filters;
    ResolveNames(workspace, filters);
    if (options.showing.raw) {
        const auto rows = kind.run(workspace.tables, filters);
        if (!rows) throw CommandError(Message("{1} returned no recordset", kind.method));
        TellMonth(options.filters, filters);
        TellOfDialect(kind, filters, global);
        output::WriteRecordset(*rows, global, ColumnsNamed(*rows, kind.totalled));
        return kSucceeded;
    }
    ReportDesk desk(workspace, options.showing, global);
    const auto view = ViewOf(desk, kind, filters);
    TellMonth(options.filters, filters);
    TellOfDialect(kind, filters, global);
    output::WriteView(view, global, options.showing.chart ? output::Charts::Drawn : output::Charts::Hidden);
    return kSucceeded;
}

}  // namespace kpTables::kpbook::commands
