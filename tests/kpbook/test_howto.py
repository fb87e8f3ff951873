"""The how-to pages do what they show, and their figures are those of a calculation of its own. A Chinese page has the commands
of the English one, and answers in Chinese.
"""

import csv
import re
import unittest
from decimal import Decimal

from page_case import BLOCK, DOCS, PageCase


class HowToTest(PageCase):
    def check_spreadsheet(self, page):
        self.assertEqual(self.run_page(page), 12)
        self.assertIn("01001,", (self.folder / "prices" / "商品设置.csv").read_text("utf-8"))
        for name in ("shop.kpbook", "copy.kpbook"):
            done = self.run_kpbook("export", self.folder / name, "商品设置", "-")
            # The number, unit and price of each, as the page's files say.
            found = [line.split(",") for line in done.stdout.replace("水泥,袋装", "水泥").splitlines()]
            place = [found[0].index(column) for column in ("商品编号", "计量单位", "默认单价", "最低库存")]
            self.assertEqual([[row[at] for at in place] for row in found[1:]],
                             [["01001", "吨", "305", "25"], ["01002", "袋", "14.8", "0"], ["02001", "吨", "3050", "0"],
                              ["03001", "\\N", "8.5", "0"]])

    def test_spreadsheet(self):
        self.check_spreadsheet("howto-spreadsheet.md")

    def test_spreadsheet_in_chinese(self):
        self.check_spreadsheet("howto-spreadsheet.zh.md")

    def read_rows(self, name):
        return list(csv.DictReader((self.folder / name).read_text("utf-8").splitlines()))

    def closing_stock(self):
        """Quantity and amount of each warehouse's products: opening, purchases, the transfer at its cost, and costs of what went out."""
        stock = {}

        def move(warehouse, product, quantity, amount):
            had = stock.get((warehouse, product), (Decimal(0), Decimal(0)))
            stock[warehouse, product] = (had[0] + quantity, had[1] + amount)

        for row in self.read_rows("opening.csv"):
            move(row["仓库"], row["商品编号"], Decimal(row["数量"]), Decimal(row["金额"]))
        for row in self.read_rows("purchases.csv"):
            move(row["仓库"], row["商品编号"], Decimal(row["数量"]), Decimal(row["数量"]) * Decimal(row["单价"]))
        # 400 at the average of 3,000 for 11,100 and 1,500 for 5,520; the cost bill holds what it takes from the first warehouse.
        price = (Decimal(16620) / 4500).quantize(Decimal("0.0001"))
        move("门店", "02001", Decimal(400), 400 * price)
        for row in self.read_rows("costs.csv"):
            move(row["仓库"], row["商品编号"], -Decimal(row["数量"]), -Decimal(row["数量"]) * Decimal(row["单价"]))
        return stock

    def check_first_month(self, page):
        self.assertEqual(self.run_page(page), 26)
        expected = self.closing_stock()
        for book, figures in (("firm.kpbook", "本期库存数量,本期库存金额 From 仓库余额表 As B"),
                              ("2027.kpbook", "上期库存数量,上期库存金额 From 仓库余额表 As B")):
            self.book = self.folder / book
            rows = self.rows(f"Select 仓库名称,商品编号,{figures},仓库设置 As D,商品设置 As P "
                             "Where B.dpID=D.dpID And B.pdID=P.pdID And B.月份=1")
            self.assertEqual({(row[0], row[1]): (Decimal(str(row[2])), Decimal(row[3])) for row in rows}, expected, book)
        self.assertEqual(expected["中心仓库", "01001"], (140, 44548))
        self.assertTrue((self.folder / "pages" / "index.html").exists())
        self.assertIn("叁万贰仟伍佰贰拾元壹角伍分", (self.folder / "bill.html").read_text("utf-8"))

    def test_first_month(self):
        self.check_first_month("first-month.md")

    def test_first_month_in_chinese(self):
        self.check_first_month("first-month.zh.md")

    def figures(self, book, month, columns):
        """(warehouse, product) -> the columns' exact values, of a month's balance rows."""
        self.book = self.folder / book
        rows = self.rows(f"Select 仓库名称,商品编号,{columns} From 仓库余额表 As B,仓库设置 As D,商品设置 As P "
                         f"Where B.dpID=D.dpID And B.pdID=P.pdID And B.月份={month}")
        return {(row[0], row[1]): tuple(Decimal(str(value)) for value in row[2:]) for row in rows}

    def check_corrections(self, page):
        self.assertEqual(self.run_page(page), 35)
        # January: 80 at 319 came in after the last correction, 60 and the corrected 9 went out at 319.40; February: 50 at 320
        # came in and 70 went out at 319.57.
        january = 120 + 80 - 60 - 9, Decimal(38400) + 80 * 319 - 69 * Decimal("319.4")
        february = january[0] + 50 - 70, january[1] + 50 * 320 - 70 * Decimal("319.57")
        closing = "本期库存数量,本期库存金额"
        self.assertEqual(self.figures("firm.kpbook", 1, closing), {("中心仓库", "01001"): january})
        self.assertEqual(self.figures("firm.kpbook", 2, closing), {("中心仓库", "01001"): february})
        self.assertEqual(self.figures("firm.kpbook", 3, "上期库存数量,上期库存金额"), {("中心仓库", "01001"): february})
        # Of March's bills, the red one takes 50 back at 320 and the other brings them at 316.
        march = self.rows("Select Sum(数量),Sum(除税金额) From 入库记录 As R,入库目录 As L Where L.BillID=R.BillID And 月份=3")
        self.assertEqual([[Decimal(str(value)) for value in row] for row in march], [[0, 50 * (316 - 320)]])
        self.assertEqual(len(self.rows("Select BillID From 出库目录")), 3)

    def test_corrections(self):
        self.check_corrections("howto-correct-a-bill.md")

    def test_corrections_in_chinese(self):
        self.check_corrections("howto-correct-a-bill.zh.md")

    def check_years_end(self, page):
        self.assertEqual(self.run_page(page), 28)
        cement = 120 + 80 - 110 + 60, Decimal(38400) + 80 * Decimal("315.5") - 110 * Decimal("318.2") + 60 * Decimal("322.5")
        expected = {("中心仓库", "01001"): cement, ("门店", "01001"): (15, 4770), ("门店", "02001"): (0, 0)}
        self.assertEqual(self.figures("2026.kpbook", 12, "本期库存数量,本期库存金额"), expected)
        self.assertEqual(self.figures("2027.kpbook", 1, "上期库存数量,上期库存金额"), expected)
        self.assertEqual(self.rows("Select 仓库名称 From 仓库设置 Where 结帐标志"), [])
        self.assertEqual(self.rows("Select BillID From 入库目录"), [])

    def test_years_end(self):
        self.check_years_end("howto-years-end.md")

    def test_years_end_in_chinese(self):
        self.check_years_end("howto-years-end.zh.md")

    def check_backup(self, page):
        self.assertEqual(self.run_page(page), 24)
        # The newest backup has the bill of 20 tons; the one of 99 is only in the book that was put aside.
        sold = {}
        for book in ("backups/firm.kpbook.1", "backups/firm.kpbook", "firm.kpbook", "again.kpbook", "aside/firm.kpbook"):
            self.book = self.folder / book
            sold[book] = [row[0] for row in self.rows("Select 数量 From 出库记录")]
        self.assertEqual(sold, {"backups/firm.kpbook.1": [], "backups/firm.kpbook": [20], "firm.kpbook": [20],
                                "again.kpbook": [20], "aside/firm.kpbook": [20, 99]})

    def test_backup(self):
        self.check_backup("howto-backup.md")

    def test_backup_in_chinese(self):
        self.check_backup("howto-backup.zh.md")

    def test_pages_show_the_same_in_both_languages(self):
        def shown(page):
            """The files and the commands, without what these say."""
            return [text if kind == "csv" else re.findall(r"^\$ .*", text, re.MULTILINE)
                    for kind, _, text in BLOCK.findall(page.read_text("utf-8"))]

        for page in DOCS.glob("*.zh.md"):
            self.assertEqual(shown(page), shown(page.with_name(page.name.replace(".zh.", "."))), page.name)


if __name__ == "__main__":
    unittest.main()
