#include "kpbook/output/ResultWriter.h"

#include <cstdio>

#include "kpbook/HostObjects.h"
#include "kpbook/output/CellText.h"
#include "kpbook/output/JsonText.h"
#include "kpbook/output/Output.h"
#include "kpbook/output/RowWriters.h"

namespace kpTables::kpbook::output {

namespace {

std::int64_t WriteRows(Recordset& recordset, OutputFormat format, Output& output,
                       const std::vector<int>& totalled = {}) {
    switch (format) {
        case OutputFormat::Csv:
            return WriteCsv(recordset, output);
        case OutputFormat::Json:
            return WriteJson(recordset, output);
        case OutputFormat::Markdown:
            return WriteMarkdown(recordset, output, totalled);
        default:
            return WriteTable(recordset, output, totalled);
    }
}

std::int64_t WriteRows(Recordset& recordset, const GlobalOptions& global, const std::vector<int>& totalled = {}) {
    if (global.format == OutputFormat::Xlsx) {
        // A section that does not own its rows.
        return WriteXlsx({{global.title, RecordsetPtr(RecordsetPtr(), &recordset), totalled}}, global.outputPath);
    }
    Output output(global.outputPath);
    const auto count = WriteRows(recordset, global.format, output, totalled);
    output.Close();
    return count;
}

void WriteLine(const std::string& text, const GlobalOptions& global) {
    Output output(global.outputPath);
    output.Write(text);
    output.Write("\n");
    output.Close();
}

}  // namespace

void WriteRecordset(Recordset& recordset, const GlobalOptions& global, const std::vector<int>& totalled) {
    const auto count = WriteRows(recordset, global, totalled);
    std::fprintf(stderr, count == 1 ? "%lld row\n" : "%lld rows\n", static_cast<long long>(count));
}

void WriteSections(const std::vector<Section>& sections, const GlobalOptions& global) {
    if (global.format == OutputFormat::Xlsx) {
        WriteXlsx(sections, global.outputPath);
        return;
    }
    const bool isJson = global.format == OutputFormat::Json;
    Output output(global.outputPath);
    for (const Section& section : sections) {
        const bool isFirst = &section == &sections.front();
        if (isJson) {
            std::string name = isFirst ? "{" : ",";
            AppendJsonString(name, section.title);
            output.Write(name + ":");
        } else {
            const char* mark = global.format == OutputFormat::Markdown ? "## " : "";
            const char* gap = global.format == OutputFormat::Markdown ? "\n\n" : "\n";
            output.Write((isFirst ? "" : "\n") + (mark + section.title) + gap);
        }
        WriteRows(*section.rows, global.format, output);
    }
    if (isJson) output.Write("}\n");
    output.Close();
}

void WriteResult(const std::string& method, const Variant& result, const GlobalOptions& global) {
    if (const auto* object = result.If<ObjectPtr>()) {
        if (auto* recordset = dynamic_cast<Recordset*>(object->get())) return WriteRecordset(*recordset, global);
        if (!*object) std::fprintf(stderr, "no recordset\n");
    }
    if (global.format == OutputFormat::Json) {
        std::string text;
        AppendJsonValue(text, result);
        WriteLine(text, global);
    } else if (result.IsEmpty() || result.Type() == VarType::Object) {
        return;
    } else if (global.format == OutputFormat::Table) {
        WriteLine(CellText(result), global);
    } else {
        RowArgument row({{method, result}});
        WriteRows(row, global);
    }
}

}  // namespace kpTables::kpbook::output
