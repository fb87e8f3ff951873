#include "kpbook/output/BillPage.h"

#include "kpbook/output/HtmlText.h"

namespace kpTables::kpbook::output {

namespace {

constexpr const char* kStyle = R"(
@page { size: A4 landscape; margin: 12mm }
* { box-sizing: border-box }
body { font-family: "Noto Sans CJK SC", "Source Han Sans SC", "Microsoft YaHei", "PingFang SC", "SimSun", sans-serif;
  font-size: 11pt; color: #000; background: #fff; max-width: 270mm; margin: 8mm auto; padding: 0 4mm }
header { text-align: center }
header p { margin: 0; font-size: 13pt }
h1 { margin: 1mm 0 4mm; font-size: 19pt; letter-spacing: .5em; text-indent: .5em }
dl { display: grid; grid-template-columns: repeat(3, 1fr); gap: 1mm 6mm; margin: 0 0 3mm }
dl div { display: flex; min-width: 0 }
dt { flex: none }
dt::after { content: "："}
dd { margin: 0; overflow-wrap: anywhere }
table { width: 100%; border-collapse: collapse }
th, td { border: 1px solid #000; padding: 1mm 1.5mm; text-align: left; overflow-wrap: anywhere }
th { text-align: center; font-weight: 600 }
.n { text-align: right; white-space: nowrap; font-variant-numeric: tabular-nums }
thead { display: table-header-group }
tr { break-inside: avoid }
footer { display: flex; justify-content: space-between; gap: 8mm; margin-top: 5mm; break-inside: avoid }
@media print { body { margin: 0 auto; padding: 0 } }
)";

std::string CellsOf(const BillPage& page, const std::vector<std::string>& texts) {
    std::string html = "<tr>";
    for (std::size_t i = 0; i < texts.size(); ++i) {
        html += (page.columns[i].second ? "<td class=\"n\">" : "<td>") + HtmlText(texts[i]) + "</td>";
    }
    return html + "</tr>\n";
}

std::string TableOf(const BillPage& page) {
    std::string html = "<table>\n<thead><tr>";
    for (const auto& column : page.columns) html += "<th>" + HtmlText(column.first) + "</th>";
    html += "</tr></thead>\n<tbody>\n";
    for (const auto& row : page.rows) html += CellsOf(page, row);
    html += CellsOf(page, page.totals);
    if (!page.capitals.empty()) {
        html += "<tr><td colspan=\"" + std::to_string(page.columns.size()) + "\">金额合计（大写）：" +
                HtmlText(page.capitals) + "　（小写）：¥" + HtmlText(page.figures) + "</td></tr>\n";
    }
    return html + "</tbody>\n</table>\n";
}

}  // namespace

std::string BillHtml(const BillPage& page) {
    std::string html = "<!DOCTYPE html>\n<html lang=\"zh-CN\">\n<head>\n<meta charset=\"utf-8\">\n<title>" +
                       HtmlText(page.title) + "</title>\n<style>" + kStyle + "</style>\n</head>\n<body>\n<header><p>" +
                       HtmlText(page.company) + "</p><h1>" + HtmlText(page.title) + "</h1></header>\n<dl>\n";
    for (const auto& [label, text] : page.fields) {
        html += "<div><dt>" + HtmlText(label) + "</dt><dd>" + HtmlText(text) + "</dd></div>\n";
    }
    html += "</dl>\n" + TableOf(page) + "<footer>\n";
    for (const auto& [label, name] : page.signers) {
        html += "<span>" + HtmlText(label) + "：" + HtmlText(name) + "</span>\n";
    }
    return html + "</footer>\n</body>\n</html>\n";
}

}  // namespace kpTables::kpbook::output
