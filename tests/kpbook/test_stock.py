"""stock: a month's figures of the products."""

import json
import unittest

from kpbook_case import TradingCase


class StockTest(TradingCase):
    """Each row: product, name; opening quantity, price, amount; in; out; stock. Amounts are worked out by hand.

    Cost bills: cement goes out of warehouse 1 at 27.5 for 5 pieces, 5.5 each.
    """

    COLUMNS = ["pdID", "商品名称", "上期库存数量", "上期库存单价", "上期库存金额", "本期入库数量", "本期入库单价", "本期入库金额",
               "本期出库数量", "本期出库单价", "本期出库金额", "本期库存数量", "本期库存单价", "本期库存金额"]
    # 13 at 65 (both warehouses), in 6 at 38: 6.3333; out 5 at 40; 14 are left at 63: 4.5.
    CEMENT = [1, "水泥", 13.0, 5.0, "65", "6", "6.3333", "38", "5", "8", "40", 14.0, 4.5, "63"]
    # 10 at 50, in 6 at 38, out 5 at 40: 11 at 48.
    CEMENT_EAST = [1, "水泥", 10.0, 5.0, "50", "6", "6.3333", "38", "5", "8", "40", 11.0, 48 / 11, "48"]
    CEMENT_WEST = [1, "水泥", 3.0, 5.0, "15", "0", "0", "0", "0", "0", "0", 3.0, 5.0, "15"]
    # Out 5 at 27.5: 11 are left at 60.5.
    CEMENT_EAST_COST = [1, "水泥", 10.0, 5.0, "50", "6", "6.3333", "38", "5", "5.5", "27.5", 11.0, 5.5, "60.5"]
    BOLTS = [2, "螺栓", 100.0, 0.25, "25", "0", "0", "0", "0", "0", "0", 100.0, 0.25, "25"]
    PAINT = [3, "油漆", 0.0, 0.0, "0", "0", "0", "0", "0", "0", "0", 0.0, 0.0, "0"]

    def stock(self, *options):
        found = json.loads(self.run_kpbook("stock", self.book, *options, "-O", "json").stdout)
        self.assertEqual([column["name"] for column in found["columns"]], self.COLUMNS)
        return found["rows"]

    def add_cost_bills(self):
        self.import_text("成本目录", "CostID,年份,月份,日子,dpID\n1,2004,1,31,1\n2,2004,2,28,1\n")
        self.import_text("成本记录", "CostID,pdID,数量,金额\n1,1,5,27.5\n2,1,1,900\n")

    def test_all_products(self):
        for options, expected in (
                (("--month", 1), [self.CEMENT, self.BOLTS]),
                (("--month", 1, "--warehouse", 1), [self.CEMENT_EAST, self.BOLTS]),
                (("--month", 1, "--warehouse", 2), [self.CEMENT_WEST]),
                (("--month", 2), [])):
            self.assertEqual(self.stock(*options), expected, options)

    def test_one_product(self):
        for options, expected in (
                (("--month", 1, "--product", 1), self.CEMENT),
                (("--month", 1, "--warehouse", 1, "--product", 1), self.CEMENT_EAST),
                (("--month", 1, "--warehouse", 2, "--product", 1), self.CEMENT_WEST),
                (("--month", 1, "--product", 2), self.BOLTS),
                (("--month", 1, "--product", 3), self.PAINT)):
            self.assertEqual(self.stock(*options), [expected], options)

    def test_table_has_totals_and_two_decimals(self):
        # 90 = 65 + 25, in 38, out 40: 88 are left.
        self.assertEqual(
            self.run_kpbook("stock", self.book, "--month", 1).stdout,
            "库存表  2004年1月  全部仓库  出库按出库单计价\n"
            "1月未结帐 (not closed)：东库、西库；数字来自已录入的单据\n"
            "\n"
            "商品名称  上期库存数量  上期库存金额  本期入库数量  本期入库金额  本期出库数量  本期出库金额  本期库存数量  本期库存金额  库存均价\n"
            "--------  ------------  ------------  ------------  ------------  ------------  ------------  ------------  ------------  --------\n"
            "水泥                13         65.00             6         38.00             5         40.00            14         63.00      4.50\n"
            "螺栓               100         25.00             0          0.00             0          0.00           100         25.00      0.25\n"
            "--------  ------------  ------------  ------------  ------------  ------------  ------------  ------------  ------------  --------\n"
            "合计                           90.00                       38.00                       40.00                       88.00\n")
        raw = self.run_kpbook("stock", self.book, "--month", 1, "--raw").stdout
        self.assertTrue(raw.startswith("pdID  商品名称  上期库存数量  上期库存单价"), raw)
        self.assertNotIn("合计", raw)

    def test_names(self):
        self.assertEqual(self.stock("--month", 1, "--warehouse", "东库", "--product", "水泥"), [self.CEMENT_EAST])
        done = self.run_kpbook("stock", self.book, "--month", 1, "--warehouse", "库", code=1)
        self.assertIn("东库", done.stderr)

    def test_cost_bills(self):
        self.add_cost_bills()
        east = ("--month", 1, "--warehouse", 1)
        self.assertEqual(self.stock(*east, "--cost"), [self.CEMENT_EAST_COST, self.BOLTS])
        self.assertEqual(self.stock(*east, "--cost", "--product", 1), [self.CEMENT_EAST_COST])
        self.assertEqual(self.stock(*east), [self.CEMENT_EAST, self.BOLTS])

    def test_fractions_of_ten_thousandths(self):
        # A quantity counts in a movement to four places, half to even; its price is of the quantity as it stands.
        self.import_text("入库记录", "BillID,pdID,数量,除税金额\n1,3,0.09375,3\n")
        self.import_text("出库记录", "BillID,pdID,数量,除税金额\n1,3,0.03125,0\n")
        expected = [3, "油漆", 0.0, 0.0, "0", "0.0938", "32", "3", "0.0312", "0", "0", 0.0626, 3 / 0.0626, "3"]
        self.assertEqual(self.stock("--month", 1, "--product", 3), [expected])
        self.assertEqual(self.stock("--month", 1), [self.CEMENT, self.BOLTS, expected])

    def test_lines_without_product_or_figures(self):
        self.import_text("入库记录", "BillID,pdID,数量,除税金额\n1,,1,1\n1,77,2,5\n")
        self.sql("Insert Into 入库记录 (BillID,pdID,数量,除税金额) Values (1,3,Null,Null)")
        self.assertEqual(self.stock("--month", 1), [
            self.CEMENT, self.BOLTS, self.PAINT,
            [77, "", 0.0, 0.0, "0", "2", "2.5", "5", "0", "0", "0", 2.0, 2.5, "5"]])

    def test_statements_do_not_grow_with_the_products(self):
        self.add_cost_bills()
        def statements(*options):
            done = self.run_kpbook("stock", self.book, "--month", 1, "--warehouse", 1, "--cost", "--trace", *options)
            return sum(line.startswith("execute: ") for line in done.stderr.splitlines())
        few, raw = statements(), statements("--raw")
        lines = "".join(f"1,{product},1,1\n" for product in range(100, 130))
        self.import_text("入库记录", "BillID,pdID,数量,除税金额\n" + lines)
        self.assertEqual((statements(), statements("--raw")), (few, raw))

    def test_unknown_warehouse_or_product(self):
        for options, expected in ((("--warehouse", 9), "the book has no warehouse 9"),
                                  (("--product", 9), "the book has no product 9"),
                                  (("--product", 0), "the book has no product 0")):
            done = self.run_kpbook("stock", self.book, "--month", 1, *options, code=1)
            self.assertEqual((done.stdout, done.stderr), ("", f"kpbook: {expected}\n"))

    def test_months_that_are_none(self):
        for month in ("0", "13", "-1", "x", "1.5"):
            self.run_kpbook("stock", self.book, "--month", month, code=2)
        self.run_kpbook("stock", self.book, code=2)

    def test_a_figure_that_does_not_fit_is_an_error(self):
        self.sql("Insert Into 入库记录 (BillID,pdID,数量,除税金额) Values (1,3,1e200,1)")
        done = self.run_kpbook("stock", self.book, "--month", 1, code=1)
        self.assertEqual(done.stdout, "")
        self.assertIn("Overflow", done.stderr)

    def test_book_does_not_change(self):
        before = self.book.read_bytes()
        self.stock("--month", 1)
        self.stock("--month", 1, "--product", 1)
        self.assertEqual(self.book.read_bytes(), before)


if __name__ == "__main__":
    unittest.main()
