// The style and the script of a page.
#pragma once

namespace kpTables::kpbook::output {

/// What is wider than the window scrolls in its own box, so that the page itself never does.
inline constexpr const char* kPageStyle = R"(
*{box-sizing:border-box}
body{margin:0 auto;padding:1rem;max-width:84rem;color:#1d2733;background:#fff;line-height:1.5;
font-family:system-ui,"PingFang SC","Microsoft YaHei","Noto Sans CJK SC","Noto Sans SC","WenQuanYi Micro Hei",sans-serif}
h1{font-size:1.35rem;margin:.6rem 0}
a{color:#235a8f}
nav{font-size:.9rem}
section+section{margin-top:2rem}
.note{margin:.3rem 0;padding:.35rem .7rem;border-left:4px solid #d9822b;background:#fdf5ea;overflow-wrap:anywhere}
.wide{overflow-x:auto;max-width:100%}
figure{margin:1rem 0;padding:.6rem;border:1px solid #dfe5eb;border-radius:6px}
figcaption{font-weight:600;margin-bottom:.3rem}
svg{display:block;width:100%;min-width:42rem;height:auto}
svg text{font-size:12px;fill:#3b4755}
svg line{stroke:#e3e8ed}
.legend{margin:.2rem 0;font-size:.85rem}
.legend span{display:inline-block;margin-right:1rem}
.legend i{display:inline-block;width:.8em;height:.8em;margin-right:.35em;border-radius:2px}
table{border-collapse:collapse;width:100%;font-size:.9rem;font-variant-numeric:tabular-nums}
th,td{padding:.3rem .55rem;border-bottom:1px solid #e3e8ed;text-align:left;white-space:nowrap}
th{background:#f2f5f8;border-bottom:2px solid #c3ccd6}
th button{all:unset;cursor:pointer;font-weight:600}
th button:focus-visible{outline:2px solid #235a8f}
th[aria-sort=ascending] button::after{content:" ▲"}
th[aria-sort=descending] button::after{content:" ▼"}
.n{text-align:right}
tbody tr:nth-child(even){background:#fafbfc}
tfoot td{font-weight:600;border-top:2px solid #c3ccd6}
.index li{margin:.35rem 0}
.index span{color:#5b6775;font-size:.9rem;margin-left:.5rem}
@media print{body{padding:0;max-width:none}nav{display:none}.wide{overflow:visible}figure,tr{break-inside:avoid}
table{font-size:8pt}thead{display:table-header-group}svg{min-width:0}
*{-webkit-print-color-adjust:exact;print-color-adjust:exact}}
)";

/// A click on a title sorts its column, another one the other way round; numbers by size, empty cells last.
inline constexpr const char* kPageScript = R"(
document.querySelectorAll("th button").forEach(function (button) {
  button.addEventListener("click", function () {
    var th = button.parentNode, table = th.closest("table"), body = table.tBodies[0];
    var column = th.cellIndex, isNumber = th.classList.contains("n");
    var sign = th.getAttribute("aria-sort") === "ascending" ? -1 : 1;
    table.querySelectorAll("th").forEach(function (each) { each.removeAttribute("aria-sort"); });
    th.setAttribute("aria-sort", sign === 1 ? "ascending" : "descending");
    function key(row) { return row.cells[column].textContent; }
    Array.from(body.rows).map(function (row, place) { return [key(row), place, row]; }).sort(function (a, b) {
      if (a[0] === "" || b[0] === "") return (a[0] === "") - (b[0] === "") || a[1] - b[1];
      var order = isNumber ? parseFloat(a[0].replace(/,/g, "")) - parseFloat(b[0].replace(/,/g, ""))
                           : a[0].localeCompare(b[0], "zh-CN");
      return sign * order || a[1] - b[1];
    }).forEach(function (each) { body.appendChild(each[2]); });
  });
});
)";

}  // namespace kpTables::kpbook::output
