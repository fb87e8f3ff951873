"""Beginning a book: new for a firm, opening stock, the next year, copies."""

import csv
import io
import random
import unittest
from decimal import Decimal

from kpbook_case import KPBOOK, KpbookCase

PRODUCTS = "商品编号,商品名称\n01001,水泥\n01002,螺栓\n01003,油漆\n01004,砂子\n01005,钢筋\n"
HEADER = "仓库,商品编号,数量,金额\n"


class FirmCase(KpbookCase):
    def setUp(self):
        super().setUp()
        self.copy_of("firm", self.make_firm)

    def make_firm(self):
        self.run_kpbook("new", self.book, "--company", "测试商行", "--year", 2026, "--month", 1,
                        "--warehouse", "中心仓库", "--warehouse", "O'Hara 库")
        self.import_text("商品设置", PRODUCTS)

    def opening(self, content, code=0):
        return self.run_kpbook("opening", self.book, self.write("stock.csv", content), code=code).stderr

    def stock(self, book=None, columns="上期库存数量,上期库存金额"):
        done = self.run_kpbook("sql", book or self.book, f"Select dpID,pdID,{columns} From 仓库余额表 Order by dpID,pdID",
                               "-O", "csv")
        return [tuple(row) for row in csv.reader(io.StringIO(done.stdout))][1:]

    def enter_bills(self, bills):
        """bills: (kind, month, warehouse, product, quantity, amount) of a line each."""
        lines = []
        for number, (kind, month, warehouse, product, quantity, amount) in enumerate(bills, 1):
            lines.append({"execute": f"Insert Into {kind}目录 (BillID,年份,月份,日子,dpID) Values ({number},2026,{month},5,{warehouse})"})
            lines.append({"execute": f"Insert Into {kind}记录 (BillID,pdID,dpID,数量,除税单价,除税金额) Values "
                                     f"({number},{product},{warehouse},{quantity},1,{amount})"})
        for answer in self.batch({"begin": True}, *lines, {"commit": True}):
            self.assertNotIn("error", answer)


class NewFirmTest(FirmCase):
    def test_book_answers_firm_year_and_month(self):
        asked = ("单位名称", "帐簿年份", "当前月份", "建帐月份", "建帐日期")
        answers = [a["result"] for a in self.batch(*({"method": "Get_AccInfo", "args": [item]} for item in asked))]
        self.assertEqual(answers, ["测试商行", 2026, 1, 1, {"date": "2026-01-01"}])
        self.assertEqual(self.rows("Select dpID,仓库名称 From 仓库设置 Order by dpID"), [[1, "中心仓库"], [2, "O'Hara 库"]])

    def test_year_and_month_default_to_todays(self):
        book = self.folder / "b"
        done = self.run_kpbook("new", book, "--company", "甲", "--today", "2024-05-17", "--dialect", "sql")
        self.assertEqual(done.stderr, f"{book}: 31 tables made, 甲 begins 2024-5 with 0 warehouses\n")
        self.assertEqual(self.run_kpbook("call", book, "Get_AccInfo", "建帐月份").stdout, "5\n")
        self.run_kpbook("sql", book, "Select TableName From Header")

    def test_wrong_usage(self):
        for words in (("--year", 2026), ("--company", "甲", "--month", 13), ("--company", "甲", "--year", 1999),
                      ("--company", "甲", "--bare"), ("--from", self.book, "--company", "甲"),
                      ("--from", self.book, "--dialect", "sql"), ("--from", self.book, "--bare")):
            self.run_kpbook("new", self.folder / "b", *words, code=2)
        self.assertEqual(list(self.folder.iterdir()), [self.book])

    def test_refused_warehouses_make_no_book(self):
        for names in (("东库", "东库"), ("全部仓库",), (" ",)):
            words = [word for name in names for word in ("--warehouse", name)]
            self.run_kpbook("new", self.folder / "b", "--company", "甲", *words, code=1)
        self.assertEqual(list(self.folder.iterdir()), [self.book])

    def test_closing_without_opening_stock(self):
        for title, options in (("plain", []), ("firm", ["--company", "甲", "--year", 2026, "--month", 1])):
            self.book = self.folder / title
            self.run_kpbook("new", self.book, *options)
            self.sql("Insert Into 仓库设置 (仓库名称) Values ('东库')")
            self.sql("Insert Into 商品设置 (商品名称) Values ('水泥')")
            self.enter_bills([("入库", 1, 1, 1, "5", "50.0001"), ("出库", 1, 1, 1, "2", "30")])
            done = self.run_kpbook("close", self.book, "--month", 1)
            self.assertEqual(done.stderr, "东库 2026-1: 1 product closed\n")
            self.assertEqual(self.stock(), [("1", "1", "0", "0"), ("1", "1", "3", "20.0001")])


class AskingTest(KpbookCase):
    def test_terminal_is_asked_for_what_is_missing(self):
        text, code = self.on_terminal("new", self.book, "--today", "2026-02-03", asks=b": ",
                                      answers=["测试商行", "year", "1999", "", "4", "东库", "西库", ""])
        self.assertEqual(code, 0)
        self.assertEqual((text.count("Year [2026]: "), text.count("First month, 1 to 12 [2]: ")), (3, 1))
        self.assertIn("测试商行 begins 2026-4 with 2 warehouses", text)
        self.assertEqual(self.rows("Select 仓库名称 From 仓库设置 Order by dpID"), [["东库"], ["西库"]])


class OpeningTest(FirmCase):
    def test_stock_is_entered_exactly_and_replaced(self):
        done = self.opening("金额,商品编号,数量,仓库\n100.0001,01001,10,中心仓库\n900000000000000.1234,螺栓,0.7,2\n0,3,5,O'Hara 库\n")
        self.assertEqual(done, "opening stock of 2026-1: 3 rows added, 0 changed\n")
        first = [("1", "1", "10", "100.0001"), ("2", "2", "0.7", "900000000000000.1234"), ("2", "3", "5", "0")]
        self.assertEqual(self.stock(), first)
        self.assertEqual(self.stock(columns="本期库存数量,本期库存金额"), first)
        self.assertEqual(self.rows("Select 上期库存单价,年份,月份 From 仓库余额表 Where pdID=1"), [[10.00001, 2026, 1]])
        done = self.run_kpbook("opening", self.book, "-", text=HEADER + "中心仓库,水泥,4,1\n中心仓库,01004,1,2.5\n")
        self.assertEqual(done.stderr, "opening stock of 2026-1: 1 row added, 1 changed\n")
        self.assertEqual(self.stock(), [("1", "1", "4", "1"), ("1", "4", "1", "2.5"), *first[1:]])

    def test_every_bad_row_is_told(self):
        path = self.folder / "stock.csv"
        told = self.opening(HEADER + "中心仓库,01001,1,1\n北库,01009,1,0.00001\n中心仓库,水泥,3x,1\n中心仓库,01002,1\n"
                                     "O'Hara 库,01003,-1,1\n中心仓库,,1,\n", code=1)
        self.assertEqual(told.splitlines(), [
            f"{path}: line 3, column 金额: '0.00001' has more than four decimals",
            f"{path}: line 3, column 仓库: the book has no warehouse 北库",
            f"{path}: line 3, column 商品编号: the book has no product 01009",
            f"{path}: line 4, column 数量: '3x' is no number",
            f"{path}: line 4: the product 水泥 stands twice for 中心仓库",
            f"{path}: line 5: too few fields: 3 instead of 4",
            f"{path}: line 6, column 数量: is below 0",
            f"{path}: line 7, column 金额: is empty",
            f"{path}: line 7, column 商品编号: is empty",
            f"kpbook: {path}: 5 bad rows, nothing was entered"])
        self.assertEqual(self.stock(), [])

    def test_wrong_header(self):
        self.assertIn("line 1: wrong header; there is no column 数; missing: 数量\n",
                      self.opening("仓库,商品编号,数,金额\n", code=1))
        self.assertIn("no header line", self.opening("", code=1))
        self.assertIn("cannot be opened", self.run_kpbook("opening", self.book, self.folder / "none", code=1).stderr)

    def test_closed_month_is_refused(self):
        self.opening(HEADER + "中心仓库,01001,1,1\n")
        self.run_kpbook("close", self.book, "--month", 1)
        before = self.stock()
        self.assertIn("line 2: month 1 of 中心仓库 is closed\n", self.opening(HEADER + "中心仓库,01001,2,2\n", code=1))
        self.assertEqual(self.stock(), before)


    def test_operator_needs_the_right_and_is_logged(self):
        for name, right in (("王", -1), ("李", 0)):
            self.sql(f"Insert Into 操作员 (姓名,系统设置) Values ('{name}',{right})")
        path = self.write("stock.csv", HEADER + "中心仓库,01001,1,1\n")
        self.assertIn("系统设置", self.run_kpbook("opening", self.book, path, "--operator", "李", code=1).stderr)
        self.run_kpbook("opening", self.book, path, "--operator", "王")
        self.assertEqual(self.rows("Select Operator,内容 From Log"),
                         [["1", "opening stock of 2026-1: 1 row added, 0 changed"]])


class YearTest(FirmCase):
    def test_a_years_life(self):
        chance = random.Random(13)
        stock = {}

        def figures(most):
            return Decimal(chance.randrange(1, most)) / 1000, Decimal(chance.randrange(1, 10**9)) / 10000

        rows = ""
        for warehouse, name in ((1, "中心仓库"), (2, "O'Hara 库")):
            for product in (1, 2, 3):
                quantity, amount = figures(10**6)
                stock[warehouse, product] = [quantity, amount]
                rows += f"{name},0100{product},{quantity},{amount}\n"
        self.opening(HEADER + rows)
        bills = []
        for month in range(1, 13):
            for _ in range(6):
                kind = chance.choice(("入库", "出库"))
                warehouse, product = chance.choice((1, 2)), chance.randrange(1, 6)
                quantity, amount = figures(10**5)
                bills.append((kind, month, warehouse, product, quantity, amount))
                sign = 1 if kind == "入库" else -1
                held = stock.setdefault((warehouse, product), [Decimal(0), Decimal(0)])
                held[0] += sign * quantity
                held[1] += sign * amount
        self.enter_bills(bills)
        following = self.folder / "2027.kpbook"
        self.run_kpbook("close", self.book, "--month", 1, "--through", 11, "--answer", "yes")
        done = self.run_kpbook("new", following, "--from", self.book, code=1)
        self.assertEqual(done.stderr, "kpbook: month 12 is open in 中心仓库, O'Hara 库; close it first\n")
        self.assertFalse(following.exists())
        self.run_kpbook("close", self.book, "--month", 12, "--answer", "yes")
        done = self.run_kpbook("new", following, "--from", self.book)
        self.assertEqual(done.stderr, f"{following}: 2027 begins with {len(stock)} rows of opening stock\n")

        opening = {(int(d), int(p)): (Decimal(q), Decimal(a)) for d, p, q, a in self.stock(following)}
        self.assertEqual(opening.keys(), stock.keys())
        for key, (quantity, amount) in stock.items():
            self.assertEqual(opening[key][1], amount, key)
            self.assertAlmostEqual(opening[key][0], quantity, 9, key)
        closing = self.rows("Select 本期库存单价,本期库存数量,本期库存金额 From 仓库余额表 Where 月份=12 Order by dpID,pdID")
        self.book = following
        self.assertEqual(self.rows("Select 上期库存单价,上期库存数量,上期库存金额 From 仓库余额表 Order by dpID,pdID"), closing)
        self.assertEqual(self.rows("Select Distinct 年份,月份 From 仓库余额表"), [[2027, 1]])
        for item, value in (("单位名称", "测试商行"), ("帐簿年份", "2027"), ("当前月份", "1"), ("建帐月份", "1")):
            self.assertEqual(self.run_kpbook("call", following, "Get_AccInfo", item).stdout, value + "\n")
        self.assertEqual(self.run_kpbook("check", following).stdout, "")
        self.run_kpbook("close", following, "--month", 1)

    def test_existing_file_is_left_as_it_is(self):
        letter = self.write("letter", "my letter")
        self.run_kpbook("new", letter, "--from", self.book, code=1)
        self.assertEqual(letter.read_text(), "my letter")


class CopyTest(FirmCase):
    def test_copy_is_whole_and_never_replaces(self):
        self.opening(HEADER + "中心仓库,01001,1,1\n")
        target = self.folder / "copy.kpbook"
        self.run_kpbook("copy", self.book, target.as_uri())
        self.assertEqual(self.stock(target), self.stock())
        self.opening(HEADER + "中心仓库,01001,2,2\n")
        self.assertIn("exists already", self.run_kpbook("copy", self.book, target, code=1).stderr)
        self.assertEqual(self.stock(target), [("1", "1", "1", "1")])
        self.run_kpbook("copy", self.book, self.book, code=1)
        self.assertEqual(self.stock(), [("1", "1", "2", "2")])

    def test_copy_to_another_kind_of_place(self):
        done = self.run_kpbook("copy", self.book, "oracle://host/shop", code=1)
        self.assertIn("there is no engine for 'oracle:'", done.stderr)
        self.assertIn("would be gone at once", self.run_kpbook("copy", self.book, "memory:", code=2).stderr)


if __name__ == "__main__":
    unittest.main()
