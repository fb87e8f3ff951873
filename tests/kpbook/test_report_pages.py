"""Reports as pages: one file with its charts, a month's set with an index, and how a browser shows them."""

import html.parser
import json
import os
import re
import shutil
import subprocess
import unittest

from report_case import ReportCase

BROWSER = shutil.which("chromium")


class Page(html.parser.HTMLParser):
    """What a page contains: cells by row, headings, links, and addresses that it would fetch."""

    VOID = ("meta", "br", "line", "rect")

    def __init__(self, text):
        super().__init__()
        self.open, self.rows, self.links, self.fetched, self.texts = [], [], [], [], {}
        self.feed(text)
        assert not self.open, self.open

    def handle_starttag(self, tag, attributes):
        attributes = dict(attributes)
        self.fetched += [attributes[name] for name in ("src", "data", "srcset") if name in attributes]
        if tag == "link":
            self.fetched.append(attributes.get("href"))
        if tag == "a":
            self.links.append(attributes["href"])
        if tag == "tr":
            self.rows.append([])
        if tag in ("td", "th"):
            self.rows[-1].append("")
        if tag not in ("meta", "br"):
            self.open.append(tag)

    def handle_startendtag(self, tag, attributes):
        assert tag == "line", tag

    def handle_endtag(self, tag):
        assert self.open.pop() == tag, tag

    def handle_data(self, data):
        tag = self.open[-1] if self.open else ""
        self.texts[tag] = self.texts.get(tag, "") + data
        if "table" in self.open and ("td" in self.open or "th" in self.open):
            self.rows[-1][-1] += data


class PageTest(ReportCase):
    def page(self, *words):
        return Page(self.run_kpbook(*words, "-O", "html").stdout)

    def test_a_report(self):
        self.sql("Update 商品设置 Set 商品名称='<b>水泥</b> & \"A\"' Where pdID=1")
        page = self.page("report", "costs", self.book)
        self.assertEqual(page.rows, [["商品编号", "商品名称", "计量单位", "类别", "数量", "均价", "金额"],
                                     ["C01", '<b>水泥</b> & "A"', "吨", "01", "5", "5.50", "27.50"],
                                     ["C02", "螺栓", "只", "02", "0.25", "0.20", "0.05"],
                                     ["合计", "", "", "", "", "", "27.55"]])
        self.assertEqual((page.texts["h1"], page.fetched), ("成本汇总", []))

    def test_charts(self):
        for words, titles in ((("daily", "--month", 3), ["每日入库和出库金额", "每日库存金额"]),
                              (("balance", "--month", 3), ["各仓库月末库存金额", "库存金额最大的商品"]),
                              (("projects",), ["各项目逐月"]),
                              (("partners", "--direction", "in"), ["价税合计最大的供应商"]),
                              (("bills", "--direction", "in", "--wide"), ["每日除税金额"])):
            text = self.run_kpbook("report", words[0], self.book, *words[1:], "-O", "html").stdout
            self.assertEqual(re.findall("<figcaption>(.*?)</figcaption>", text), titles)
        daily = self.run_kpbook("report", "daily", self.book, "--month", 3, "-O", "html").stdout
        for tip in ("5 入库金额: 24.88", "10 出库金额: 40.90", "20 入库金额: 14.00", "10: 73.98"):
            self.assertIn(f"<title>{tip}</title>", daily)

    def test_bars_in_a_terminal(self):
        table = self.run_kpbook("report", "partners", self.book, "--direction", "in", "--chart").stdout
        self.assertTrue(table.endswith("\n价税合计最大的供应商\n红星厂  " + "█" * 40 + " 29.00\nO'Neil  " + "█" * 22 + "▏ 16.00\n"),
                        table)
        self.assertNotIn("█", self.run_kpbook("report", "partners", self.book, "--direction", "in").stdout)

    def test_other_commands_make_pages_too(self):
        page = self.page("sql", self.book, "Select dpID,仓库名称 From 仓库设置 Order by dpID")
        self.assertEqual(page.rows, [["dpID", "仓库名称"], ["1", "东库"], ["2", "西库"]])
        self.assertIn("仓库设置", str(self.page("info", self.book).rows))


class SetTest(ReportCase):
    FILES = ["balance.html", "bills-in.html", "bills-out.html", "daily.html", "index.html", "partners-in.html",
             "partners-out.html", "products-cost.html", "products-in.html", "products-out.html", "projects-amount.html",
             "projects-quantity.html", "stock.html"]

    def test_the_months_set(self):
        before = self.book.read_bytes()
        folder = self.folder / "all" / "pages"
        done = self.run_kpbook("report", "all", self.book, "--month", 3, "-o", folder)
        self.assertEqual(done.stdout, f"{folder}/index.html\n")
        self.assertEqual(sorted(os.listdir(folder)), self.FILES)
        index = Page((folder / "index.html").read_text())
        self.assertEqual(sorted(index.links), [name for name in self.FILES if name != "index.html"])
        self.assertIn("3月未结帐", index.texts["p"])
        for name in self.FILES:
            page = Page((folder / name).read_text())
            self.assertEqual(page.fetched, [], name)
            self.assertTrue(name == "index.html" or page.links == ["index.html"], name)
        self.assertEqual(Page((folder / "bills-in.html").read_text()).rows[-1][-3:], ["38.88", "6.12", "45.00"])
        self.assertEqual(Page((folder / "stock.html").read_text()).texts["h1"], "库存表  2004年3月  全部仓库  出库按出库单计价")
        self.assertEqual(self.book.read_bytes(), before)

    def test_the_last_month_is_the_default(self):
        folder = self.folder / "pages"
        self.run_kpbook("report", "all", self.book, "-o", folder, "--warehouse", "东库", "--cost")
        self.assertEqual(Page((folder / "daily.html").read_text()).texts["h1"], "库存日报表  2004年4月  东库  出库按成本单计价")

    def test_refusals(self):
        pages = self.folder / "pages"
        for words, code, expected in (
                ((), 2, "report all needs a folder: -o DIR"), (("-o", pages, "--direction", "in"), 2, "takes no --direction"),
                (("-o", pages, "--raw"), 2, "neither --raw nor --chart"), (("-o", pages, "-O", "csv"), 2, "pages of HTML"),
                (("-o", self.write("file", "x")), 1, "the folder cannot be made"), (("-o", self.book), 2, "belongs to a book")):
            done = self.run_kpbook("report", "all", self.book, *words, code=code)
            self.assertIn(expected, done.stderr)
            self.assertEqual((done.stdout, pages.exists()), ("", False))
        pages.mkdir()
        shutil.copy(self.book, pages / "daily.html")
        done = self.run_kpbook("report", "all", self.book, "-o", pages, code=2)
        self.assertIn("daily.html belongs to a book", done.stderr)
        self.assertEqual((pages / "daily.html").read_bytes(), self.book.read_bytes())

    def test_an_empty_book(self):
        self.run_kpbook("new", self.folder / "empty.kpbook", "--bare")
        done = self.run_kpbook("report", "all", self.folder / "empty.kpbook", "-o", self.folder / "pages", code=1)
        self.assertIn("neither balance rows nor bills", done.stderr)


PROBE = """<!DOCTYPE html><meta charset="utf-8"><body><script>
const pages = PAGES, widths = [390, 1200], found = {};
let waiting = pages.length * widths.length;
function pixels(text) {
  const canvas = document.createElement("canvas"), pen = canvas.getContext("2d");
  pen.font = "20px sans-serif";
  pen.fillText(text, 0, 20);
  return pen.getImageData(0, 0, 40, 30).data.join();
}
for (const page of pages) for (const width of widths) {
  const frame = document.createElement("iframe");
  frame.style.width = width + "px";
  frame.style.border = "0";
  frame.onload = () => {
    const inside = frame.contentDocument, root = inside.documentElement, sorted = [];
    for (const button of [...inside.querySelectorAll("th button")].slice(-1)) for (let click = 0; click < 2; ++click) {
      button.click();
      sorted.push([...inside.querySelectorAll("tbody tr")].map(row => row.lastElementChild.textContent));
    }
    found[page + " " + width] = {overflow: root.scrollWidth - root.clientWidth, width: root.clientWidth, sorted,
                                 charset: inside.characterSet, title: inside.title, bars: inside.querySelectorAll("rect").length};
    if (--waiting === 0) document.body.textContent = JSON.stringify({pages: found, hasChinese: pixels("库") !== pixels("存")});
  };
  frame.src = page;
  document.body.append(frame);
}
</script>"""


@unittest.skipUnless(BROWSER, "chromium is not installed")
class BrowserTest(ReportCase):
    def test_pages_fit_show_chinese_and_sort(self):
        folder = self.folder / "pages"
        self.run_kpbook("report", "all", self.book, "--month", 3, "-o", folder)
        (folder / "probe.html").write_text(PROBE.replace("PAGES", json.dumps(SetTest.FILES)))
        done = subprocess.run([BROWSER, "--headless", "--no-sandbox", "--disable-gpu", "--allow-file-access-from-files",
                               f"--user-data-dir={self.folder}/profile", "--virtual-time-budget=20000", "--dump-dom",
                               f"file://{folder}/probe.html"], capture_output=True, text=True, timeout=100)
        body = html.unescape(re.search("<body[^>]*>(.*)</body>", done.stdout, re.S).group(1))
        found = json.loads(body)
        self.assertEqual(len(found["pages"]), 2 * len(SetTest.FILES))
        for name, page in found["pages"].items():
            self.assertLessEqual(page["overflow"], 0, name)
            # A scroll bar takes some of the width.
            self.assertAlmostEqual(page["width"], int(name.split()[1]), delta=20, msg=name)
            self.assertEqual(page["charset"], "UTF-8", name)
            self.assertRegex(page["title"], "[\u4e00-\u9fff]", name)
        stock = found["pages"]["stock.html 390"]
        # The average prices of stock: cement 63 for 14, bolts 24.9766 for 100.25.
        self.assertEqual(stock["sorted"], [["0.2491", "4.50"], ["4.50", "0.2491"]])
        self.assertGreater(stock["bars"], 3)
        if not found["hasChinese"]:
            self.skipTest("no font of this machine has Chinese characters")


if __name__ == "__main__":
    unittest.main()
