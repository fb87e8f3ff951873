#include "kpbook/Interruption.h"
#include "kpbook/Utf8.h"
#include "kpbook/output/CellText.h"
#include "kpbook/output/ColumnTotal.h"
#include "kpbook/output/JsonText.h"
#include "kpbook/output/Output.h"
#include "kpbook/output/RowWriters.h"

namespace kpTables::kpbook::output {

namespace {

constexpr const char* kNull = "\\N";

std::string CsvField(const std::string& text) {
    if (text.find_first_of(",\"\r\n") == text.npos) return text;
    std::string quoted = "\"";
    for (const char character : text) {
        if (character == '"') quoted += '"';
        quoted += character;
    }
    return quoted + '"';
}

std::string MarkdownCell(const std::string& text) {
    std::string escaped;
    for (const char character : ReplaceInvalidUtf8(text)) {
        if (character == '\n') {
            escaped += "<br>";
        } else if (character != '\r') {
            if (character == '|' || character == '\\') escaped += '\\';
            escaped += character;
        }
    }
    return escaped;
}

/// Writes a line for the titles, one for each row and one for the totals. textOf converts a column's value, lineOf
/// formats a cell.
template <class TextOf, class LineOf>
std::int64_t WriteLines(Recordset& recordset, Output& output, const Presentation& presentation, TextOf textOf,
                        LineOf lineOf) {
    const int count = recordset.FieldCount();
    TotalsRow totals(recordset, presentation);
    const auto line = [&](auto textAt) {
        std::string text;
        for (int i = 0; i < count; ++i) text += lineOf(textAt(i), i, i + 1 == count);
        output.Write(text);
    };
    line([&](int i) { return recordset.FieldAt(i).name; });
    std::int64_t rows = 0;
    for (; !recordset.Eof(); recordset.MoveNext(), ++rows) {
        ThrowIfInterrupted();
        line([&](int i) { return textOf(recordset.GetValue(i), i); });
        totals.Add(recordset);
    }
    if (totals.IsShown()) line([&](int i) { return totals.Cell(i); });
    return rows;
}

}  // namespace

std::int64_t WriteCsv(Recordset& recordset, Output& output) {
    // A line with a single empty field would be read as an empty line.
    const bool single = recordset.FieldCount() == 1;
    const auto textOf = [](const Variant& value, int) { return CellText(value); };
    return WriteLines(recordset, output, {}, textOf, [single](const std::string& text, int, bool last) {
        return (single && text.empty() ? "\"\"" : CsvField(text)) + (last ? '\n' : ',');
    });
}

std::int64_t WriteTableCsv(Recordset& recordset, Output& output, const std::vector<bool>& marked) {
    const int count = recordset.FieldCount();
    std::string line;
    const auto field = [&](const std::string& text, int column) {
        line += count == 1 && text.empty() ? "\"\"" : text;
        line += column + 1 == count ? '\n' : ',';
    };
    for (int i = 0; i < count; ++i) field(CsvField(recordset.FieldAt(i).name), i);
    std::int64_t rows = 0;
    for (; !recordset.Eof(); recordset.MoveNext(), ++rows) {
        ThrowIfInterrupted();
        for (int i = 0; i < count; ++i) {
            const Variant value = recordset.GetValue(i);
            const std::string text = CellText(value);
            if (value.IsNull()) {
                field(marked[static_cast<std::size_t>(i)] ? kNull : "", i);
            } else {
                field(text == kNull ? '"' + text + '"' : CsvField(text), i);
            }
        }
        output.Write(line);
        line.clear();
    }
    if (rows == 0) output.Write(line);
    return rows;
}

std::int64_t WriteMarkdown(Recordset& recordset, Output& output, const Presentation& presentation) {
    std::string rule = "|";
    for (int i = 0; i < recordset.FieldCount(); ++i) {
        rule += IsNumber(recordset.FieldAt(i).type) ? " ---: |" : " --- |";
    }
    rule += '\n';
    bool isTitle = true;
    const auto textOf = [&](const Variant& value, int column) { return ShownText(value, presentation.LookOf(column)); };
    return WriteLines(recordset, output, presentation, textOf, [&](const std::string& text, int column, bool last) {
        std::string cell = (column == 0 ? "| " : " ") + MarkdownCell(text) + " |";
        if (last) {
            cell += '\n';
            if (isTitle) cell += rule;
            isTitle = false;
        }
        return cell;
    });
}

std::int64_t WriteJson(Recordset& recordset, Output& output) {
    std::string text = "{\"columns\":";
    AppendJsonColumns(text, recordset);
    text += ",\"rows\":[";
    std::int64_t rows = 0;
    for (; !recordset.Eof(); recordset.MoveNext(), ++rows) {
        ThrowIfInterrupted();
        text += rows > 0 ? ",\n" : "\n";
        AppendJsonRow(text, recordset);
        output.Write(text);
        text.clear();
    }
    output.Write(text + "\n]}\n");
    return rows;
}

}  // namespace kpTables::kpbook::output
