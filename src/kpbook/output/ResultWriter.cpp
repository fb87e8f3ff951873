#include "kpbook/output/ResultWriter.h"

#include "kpTables/text/Message.h"
#include "kpbook/HostObjects.h"
#include "kpbook/Terminal.h"
#include "kpbook/output/CellText.h"
#include "kpbook/output/HtmlPage.h"
#include "kpbook/output/JsonText.h"
#include "kpbook/output/Output.h"
#include "kpbook/output/RowWriters.h"
#include "kpbook/output/View.h"

namespace kpTables::kpbook::output {

namespace {

std::int64_t WriteRows(Recordset& recordset, OutputFormat format, Output& output,
                       const Presentation& presentation = {}) {
    switch (format) {
        case OutputFormat::Csv:
            return WriteCsv(recordset, output);
        case OutputFormat::Json:
            return WriteJson(recordset, output);
        case OutputFormat::Markdown:
            return WriteMarkdown(recordset, output, presentation);
        default:
            return WriteTable(recordset, output, presentation);
    }
}

void TellCount(std::int64_t count) { TellLine(CountedMessage(count, "{1} row", "{1} rows")); }

/// A recordset that the caller keeps.
RecordsetPtr Borrowed(Recordset& recordset) { return {RecordsetPtr(), &recordset}; }

std::int64_t WriteRows(Recordset& recordset, const GlobalOptions& global, const Presentation& presentation = {}) {
    if (global.format == OutputFormat::Xlsx) {
        return WriteXlsx({{global.title, Borrowed(recordset), presentation.totalled}}, global.outputPath);
    }
    Output output(global.outputPath);
    const auto count = global.format == OutputFormat::Html
                           ? WriteHtml({{"", {}, Borrowed(recordset), presentation, {}}}, output)
                           : WriteRows(recordset, global.format, output, presentation);
    output.Close();
    return count;
}

void WriteHeading(const View& view, OutputFormat format, Output& output) {
    const bool isMarkdown = format == OutputFormat::Markdown;
    if (!view.title.empty()) output.Write((isMarkdown ? "## " : "") + view.title + (isMarkdown ? "\n\n" : "\n"));
    for (const auto& note : view.notes) output.Write((isMarkdown ? "> " : "") + note + (isMarkdown ? "\n\n" : "\n"));
    if (!isMarkdown && !(view.title.empty() && view.notes.empty())) output.Write("\n");
}

void WriteForPeople(const View& view, const GlobalOptions& global, Charts charts) {
    Output output(global.outputPath);
    std::int64_t count = 0;
    if (global.format == OutputFormat::Html) {
        count = WriteHtml({view}, output);
    } else {
        WriteHeading(view, global.format, output);
        count = WriteRows(*view.rows, global.format, output, view.presentation);
    }
    if (charts == Charts::Drawn && global.format == OutputFormat::Table) {
        for (const auto& chart : view.charts) WriteTerminalChart(chart, output);
    }
    output.Close();
    TellCount(count);
}

void WriteLine(const std::string& text, const GlobalOptions& global) {
    Output output(global.outputPath);
    output.Write(text);
    output.Write("\n");
    output.Close();
}

}  // namespace

void WriteRecordset(Recordset& recordset, const GlobalOptions& global, const std::vector<int>& totalled) {
    TellCount(WriteRows(recordset, global, totalled));
}

void WriteView(const View& view, const GlobalOptions& global, Charts charts) {
    const auto format = global.format;
    if (format == OutputFormat::Table || format == OutputFormat::Markdown || format == OutputFormat::Html) {
        WriteForPeople(view, global, charts);
        return;
    }
    for (const auto& note : view.notes) TellLine(note);
    TellCount(WriteRows(*view.rows, global, view.presentation));
}

void WriteSections(const std::vector<Section>& sections, const GlobalOptions& global) {
    if (global.format == OutputFormat::Xlsx) {
        WriteXlsx(sections, global.outputPath);
        return;
    }
    if (global.format == OutputFormat::Html) {
        std::vector<View> views;
        for (const Section& section : sections) views.push_back({section.title, {}, section.rows, {}, {}});
        Output output(global.outputPath);
        WriteHtml(views, output);
        output.Close();
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
        if (!*object) TellLine(Message("no recordset"));
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
