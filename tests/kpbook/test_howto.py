"""The how-to pages: every command of their consoles does what the page shows, with the files that the page shows.

A block marked csv gives a file's name and encoding; in a block marked console, lines that begin with $ are commands and the others
what they say.
"""

import csv
import os
import pathlib
import re
import subprocess
import unittest
from decimal import Decimal

from kpbook_case import KPBOOK, KpbookCase

DOCS = pathlib.Path(__file__).resolve().parents[2] / "docs"
BLOCK = re.compile(r"^```(csv|console)([^\n]*)\n(.*?)^```$", re.MULTILINE | re.DOTALL)


class HowToTest(KpbookCase):
    def run_page(self, name):
        environment = {**os.environ, "PATH": f"{pathlib.Path(KPBOOK).parent}:{os.environ['PATH']}"}
        if name.endswith(".zh.md"):
            environment.pop("LC_MESSAGES")
            environment["LANG"] = "zh_CN.UTF-8"
        commands = 0
        for kind, mark, text in BLOCK.findall((DOCS / name).read_text("utf-8")):
            if kind == "csv":
                file, encoding, *_ = [*mark.split(), "utf-8"]
                (self.folder / file).write_bytes(text.encode(encoding))
                continue
            for command, said in re.findall(r"^\$ ([^\n]*)\n((?:(?!\$ )[^\n]*\n)*)", text, re.MULTILINE):
                done = subprocess.run(command, shell=True, cwd=self.folder, env=environment, stdout=subprocess.PIPE,
                                      stderr=subprocess.STDOUT, timeout=60)
                self.assertEqual(done.stdout.decode(), said, command)
                self.assertIn(done.returncode, (0, 1), command)
                self.assertEqual(done.returncode != 0, "\nkpbook: " in "\n" + said, command)
                commands += 1
        return commands

    def test_spreadsheet(self):
        self.assertEqual(self.run_page("howto-spreadsheet.md"), 12)
        self.assertIn("01001,", (self.folder / "prices" / "商品设置.csv").read_text("utf-8"))
        for name in ("shop.kpbook", "copy.kpbook"):
            done = self.run_kpbook("export", self.folder / name, "商品设置", "-")
            # The number, unit and price of each, as the page's files say.
            found = [line.split(",") for line in done.stdout.replace("水泥,袋装", "水泥").splitlines()]
            place = [found[0].index(column) for column in ("商品编号", "计量单位", "默认单价", "最低库存")]
            self.assertEqual([[row[at] for at in place] for row in found[1:]],
                             [["01001", "吨", "305", "25"], ["01002", "袋", "14.8", "0"], ["02001", "吨", "3050", "0"],
                              ["03001", "\\N", "8.5", "0"]])

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


if __name__ == "__main__":
    unittest.main()
