#include <algorithm>
#include <cstdio>

#include "kpTables/MemoryRecordset.h"
#include "kpbook/Host.h"
#include "kpbook/Workspace.h"
#include "kpbook/commands/Commands.h"
#include "kpbook/commands/Reports.h"
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
                         std::string(kind.answers) + "\n" + Wrapped(FilterList(kind), "      "));
        }
        output.Close();
        return kSucceeded;
    }
    MemoryRecordset rows({{"report", VarType::String},
                          {"method", VarType::String},
                          {"answers", VarType::String},
                          {"filters", VarType::String}});
    for (const auto& kind : ReportKinds()) {
        rows.AddNew();
        rows.SetValue(0, kind.name);
        rows.SetValue(1, kind.method);
        rows.SetValue(2, kind.answers);
        rows.SetValue(3, FilterList(kind));
        rows.Update();
    }
    rows.MoveFirst();
    output::WriteRecordset(rows, global);
    return kSucceeded;
}

/// An unknown id would give an empty report, which looks like a valid one.
void CheckIds(Workspace& workspace, const ReportFilters& filters) {
    const auto check = [&](const std::optional<std::int32_t>& id, const std::string& table, const std::string& key,
                           const std::string& what) {
        if (!id) return;
        const auto number = std::to_string(*id);
        NameOf(workspace, "Select " + key + " From " + table + " Where " + key + "=" + number, what + " " + number);
    };
    const bool inbound = filters.direction == "入库";
    check(filters.warehouse, "仓库设置", "dpID", "warehouse");
    check(filters.partner, inbound ? "厂商资料" : "客户资料", "KSID", inbound ? "supplier" : "customer");
    check(filters.project, "项目设置", "项目ID", "project");
}

std::vector<int> ColumnsNamed(const Recordset& recordset, const std::vector<std::string_view>& names) {
    std::vector<int> columns;
    for (int i = 0; i < recordset.FieldCount(); ++i) {
        if (std::ranges::find(names, recordset.FieldAt(i).name) != names.end()) columns.push_back(i);
    }
    return columns;
}

}  // namespace

int Report(const ReportOptions& options, const GlobalOptions& global) {
    if (!options.kind) return ListReports(global);
    const ReportKind& kind = *options.kind;
    Workspace workspace(options.book, std::make_shared<ConsoleHost>(global.today, global.answer), global, Access::Read);
    CheckIds(workspace, options.filters);
    auto filters = options.filters;
    const auto rows = kind.run(workspace.tables, filters);
    if (!rows) throw CommandError(std::string(kind.method) + " returned no recordset");
    if (filters.month != options.filters.month) {
        std::fprintf(stderr, "month %d, the first with balance rows\n", static_cast<int>(filters.month));
    }
    if (const auto note = global.isSQL && kind.sqlNote ? kind.sqlNote(filters) : ""; !note.empty()) {
        std::fprintf(stderr, "%s\n", std::string(note).c_str());
    }
    output::WriteRecordset(*rows, global, ColumnsNamed(*rows, kind.totalled));
    return kSucceeded;
}

}  // namespace kpTables::kpbook::commands
