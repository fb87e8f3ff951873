#include "kpbook/output/HtmlPage.h"

#include "kpbook/Interruption.h"
#include "kpbook/output/CellText.h"
#include "kpbook/output/ColumnTotal.h"
#include "kpbook/output/HtmlParts.h"
#include "kpbook/output/HtmlText.h"
#include "kpbook/output/Output.h"

namespace kpTables::kpbook::output {

namespace {

void BeginPage(const std::string& title, Output& output) {
    output.Write(
        "<!DOCTYPE html>\n<html lang=\"zh-CN\">\n<head>\n<meta charset=\"utf-8\">\n"
        "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
        "<meta name=\"color-scheme\" content=\"light\">\n<title>" +
        HtmlText(title.empty() ? "kpbook" : title) + "</title>\n<style>" + kPageStyle + "</style>\n</head>\n<body>\n");
}

void EndPage(Output& output) { output.Write("<script>" + std::string(kPageScript) + "</script>\n</body>\n</html>\n"); }

std::string NotesOf(const std::vector<std::string>& notes) {
    std::string html;
    for (const auto& note : notes) html += "<p class=\"note\">" + HtmlText(note) + "</p>\n";
    return html;
}

/// A row of cells; numbers are aligned right. textOf answers a cell's text by column.
template <class TextOf>
std::string Row(const Recordset& rows, TextOf textOf) {
    std::string html = "<tr>";
    for (int i = 0; i < rows.FieldCount(); ++i) {
        html += (IsNumber(rows.FieldAt(i).type) ? "<td class=\"n\">" : "<td>") + HtmlText(textOf(i)) + "</td>";
    }
    return html + "</tr>\n";
}

std::string Titles(const Recordset& rows) {
    std::string html = "<tr>";
    for (int i = 0; i < rows.FieldCount(); ++i) {
        html += std::string(IsNumber(rows.FieldAt(i).type) ? "<th class=\"n\"" : "<th") +
                " scope=\"col\"><button type=\"button\">" + HtmlText(rows.FieldAt(i).name) + "</button></th>";
    }
    return html + "</tr>\n";
}

std::int64_t WriteTableOf(const View& view, Output& output) {
    Recordset& rows = *view.rows;
    const Presentation& presentation = view.presentation;
    TotalsRow totals(rows, presentation);
    output.Write("<div class=\"wide\"><table>\n<thead>" + Titles(rows) + "</thead>\n<tbody>\n");
    std::int64_t count = 0;
    for (; !rows.Eof(); rows.MoveNext(), ++count) {
        ThrowIfInterrupted();
        totals.Add(rows);
        output.Write(Row(rows, [&](int i) { return ShownText(rows.GetValue(i), presentation.LookOf(i)); }));
    }
    output.Write("</tbody>\n");
    if (totals.IsShown()) output.Write("<tfoot>" + Row(rows, [&](int i) { return totals.Cell(i); }) + "</tfoot>\n");
    output.Write("</table></div>\n");
    if (count == 0) output.Write("<p class=\"note\">没有记录。</p>\n");
    return count;
}

}  // namespace

std::int64_t WriteHtml(const std::vector<View>& views, Output& output, const PageLink& home) {
    BeginPage(views.front().title, output);
    if (!home.file.empty()) {
        output.Write("<nav><a href=\"" + HtmlText(home.file) + "\">" + HtmlText(home.text) + "</a></nav>\n");
    }
    std::int64_t count = 0;
    for (const View& view : views) {
        output.Write("<section>\n");
        if (!view.title.empty()) output.Write("<h1>" + HtmlText(view.title) + "</h1>\n");
        output.Write(NotesOf(view.notes));
        for (const Chart& chart : view.charts) output.Write(SvgChart(chart));
        count += WriteTableOf(view, output);
        output.Write("</section>\n");
    }
    EndPage(output);
    return count;
}

void WriteHtmlIndex(const std::string& title, const std::vector<std::string>& notes, const std::vector<PageLink>& pages,
                    Output& output) {
    BeginPage(title, output);
    std::string html = "<h1>" + HtmlText(title) + "</h1>\n" + NotesOf(notes) + "<ul class=\"index\">\n";
    for (const PageLink& page : pages) {
        html += "<li><a href=\"" + HtmlText(page.file) + "\">" + HtmlText(page.text) + "</a> <span>" +
                HtmlText(page.what) + "</span></li>\n";
    }
    output.Write(html + "</ul>\n");
    EndPage(output);
}

}  // namespace kpTables::kpbook::output
