"""check: silence for a book in order, and a line for each thing that is not."""

import json
import unittest

from kpbook_case import BALANCE_HEADER, TradingCase


class CheckTest(TradingCase):
    def findings(self, *options):
        """What check finds, as rows of warehouse, month, product, what, expected and found."""
        done = self.run_kpbook("check", self.book, "-O", "json", *options, code=1)
        table = json.loads(done.stdout)
        self.assertEqual([column["name"] for column in table["columns"]],
                         ["仓库", "年份", "月份", "pdID", "商品", "what", "expected", "found"])
        return [(row[0], row[2], row[3], *row[5:]) for row in table["rows"]]

    def assert_silent(self):
        done = self.run_kpbook("check", self.book)
        self.assertEqual((done.stdout, done.stderr), ("", ""))

    def close(self, *months, options=()):
        for month in months:
            self.run_kpbook("close", self.book, "--month", month, *options)

    def change(self, assignment, condition):
        self.sql(f"Update 仓库余额表 Set {assignment} Where {condition}")

    def test_silent(self):
        self.assert_silent()
        self.close(1)
        self.assert_silent()
        self.close(2, 3)
        self.assert_silent()

    def test_silent_with_costs(self):
        self.import_text("成本目录", "CostID,年份,月份,日子,dpID\n1,2004,1,31,1\n")
        self.import_text("成本记录", "CostID,pdID,单价,数量,金额\n1,1,6,5,30\n")
        self.close(1, 2, options=["--cost"])
        self.assert_silent()

    def test_figures_of_a_row(self):
        self.close(1)
        self.change("本期库存金额=49", "dpID=1 And 月份=1 And pdID=1")
        self.assertEqual(self.findings(), [
            ("东库", 1, 1, "本期库存金额 is not opening + inbound - outbound", "48", "49"),
            ("东库", 1, 1, "本期库存单价 is not amount / quantity", "4.454545454545454", "4.363636363636363"),
            ("东库", 2, 1, "上期库存金额 is not the last month's closing stock", "49", "48")])

    def test_quantity(self):
        self.close(1, 2)
        self.change("本期库存数量=101,本期库存单价=25.0/101", "dpID=1 And 月份=1 And pdID=2")
        self.assertEqual([(f[1], f[3].split()[0], f[4], f[5]) for f in self.findings()],
                         [(1, "本期库存数量", "100", "101"), (2, "上期库存单价", "0.24752475247524752", "0.25"),
                          (2, "上期库存数量", "101", "100")])

    def test_totals(self):
        self.close(1, 2)
        self.change("累计出库金额=41", "dpID=1 And 月份=2 And pdID=1")
        self.assertEqual(self.findings(), [
            ("东库", 2, 1, "累计出库金额 is not the last month's and this month's together", "40", "41"),
            ("东库", 2, 1, "累计出库金额 is not what the bills add up to", "40", "41")])

    def test_bill_entered_after_the_closing(self):
        self.close(1)
        self.sql("Insert Into 入库记录 (BillID,pdID,dpID,数量,除税单价,除税金额) Values (2,2,1,10,0.5,5)")
        self.assertEqual(self.findings(), [
            ("东库", 1, 2, "本期入库单价 is not what the bills add up to", "0.5", "0"),
            ("东库", 1, 2, "本期入库数量 is not what the bills add up to", "10", "0"),
            ("东库", 1, 2, "本期入库金额 is not what the bills add up to", "5", "0"),
            ("东库", 1, 2, "累计入库数量 is not what the bills add up to", "10", "0"),
            ("东库", 1, 2, "累计入库金额 is not what the bills add up to", "5", "0")])

    def test_open_month_is_not_compared(self):
        self.close(1)
        self.sql("Insert Into 入库目录 (BillID,年份,月份,日子,dpID) Values (9,2004,2,28,1)")
        self.sql("Insert Into 入库记录 (BillID,pdID,dpID,数量,除税单价,除税金额) Values (9,2,1,10,0.5,5)")
        self.assert_silent()

    def test_product_without_a_row(self):
        self.add_line_without_balance()
        self.assert_silent()  # the closing asks about it
        self.close(1, options=["--answer", "no"])
        self.assertEqual(self.findings(),
                         [("东库", 1, 3, "入库记录: no balance row in a closed month", None, "1 line")])

    def test_row_not_carried_in(self):
        self.close(1)
        self.sql("Delete From 仓库余额表 Where dpID=1 And 月份=2 And pdID=2")
        self.assertEqual(self.findings(), [("东库", 2, 2, "was not carried in: there is no row", None, None)])

    def test_parts_of_bills(self):
        self.sql("Delete From 出库目录")
        self.sql("Insert Into 入库目录 (BillID,年份,月份,日子,dpID) Values (9,2004,2,28,1)")
        self.sql("Insert Into 成本记录 (CostID,pdID) Values (4,2)")
        self.assertEqual(self.findings(), [
            (None, None, 2, "成本记录: lines without a header", None, "CostID 4, 1 line"),
            ("东库", None, 1, "出库记录: lines without a header", None, "BillID 1, 1 line"),
            ("东库", 2, None, "入库目录: a header without lines", None, "BillID 9")])

    def test_ids(self):
        self.sql("Delete From 商品设置 Where pdID=2")
        self.sql("Update 入库目录 Set ksID=5,pjID=6 Where BillID=2")
        self.sql("Update 出库记录 Set dpID=7")
        self.assertEqual(self.findings(), [
            (None, None, None, "入库目录.ksID has no row in 厂商资料", None, "ksID 5, 1 row"),
            (None, None, None, "入库目录.pjID has no row in 项目设置", None, "pjID 6, 1 row"),
            (None, None, 2, "仓库余额表.pdID has no row in 商品设置", None, "pdID 2, 1 row"),
            ("7", None, None, "出库记录.dpID has no row in 仓库设置", None, "dpID 7, 1 row")])

    def test_doubled_rows(self):
        self.call("Close_DepotBalance", 1, 1, False, {"date": "2004-01-31"})
        self.call("Close_DepotBalance", 1, 1, False, {"date": "2004-01-31"})
        doubled = [("东库", 2, product, "仓库余额表: more than one row", "1", "2") for product in (1, 2)]
        self.assertEqual(self.findings(), doubled)
        done = self.run_kpbook("check", self.book, "--repair", code=1)
        self.assertIn("仓库余额表 has 2 doubled rows that are equal in every column; remove them?", done.stderr)
        done = self.run_kpbook("check", self.book, "--repair", "--answer", "no", code=1)
        self.assertIn("仓库余额表: nothing removed\n", done.stderr)
        self.assertEqual(self.findings(), doubled)
        done = self.run_kpbook("check", self.book, "--repair", "--answer", "yes")
        self.assertIn("仓库余额表: 2 doubled rows removed\n", done.stderr)
        self.assert_silent()
        self.assertEqual(self.balance(1, 2), {1: [11.0, "48", 0.0, "0", 0.0, "0", 11.0, "48"],
                                              2: [100.0, "25", 0.0, "0", 0.0, "0", 100.0, "25"]})
        self.assertEqual(self.rows("Select Distinct 备注 From 仓库余额表 Where 月份=2"), [["2004-1-31"]])

    def test_doubled_rows_that_differ_stay(self):
        self.import_text("仓库余额表", BALANCE_HEADER + "2004,1,1,2,5,3,15\n2004,1,1,2,5,3,16\n")
        done = self.run_kpbook("check", self.book, "--repair", "--answer", "yes", "-O", "csv", code=1)
        self.assertIn("仓库余额表: 1 doubled row removed\n", done.stderr)
        self.assertEqual(done.stdout, "仓库,年份,月份,pdID,商品,what,expected,found\n"
                                      "西库,2004,1,1,水泥,仓库余额表: more than one row,1,2\n")
        self.assertEqual(self.rows("Select 上期库存金额 From 仓库余额表 Where dpID=2 Order by 上期库存金额"), [["15"], ["16"]])

    def test_damaged_file(self):
        size = self.book.stat().st_size
        with open(self.book, "r+b") as book:
            for page in range(4096 * 6, size, 4096):
                book.seek(page)
                book.write(b"\xff" * 64)
        done = self.run_kpbook("check", self.book, code=1)
        self.assertNotEqual(done.stdout + done.stderr, "")

    def test_all_months_of_a_year(self):
        for month in range(2, 13):
            self.sql(f"Insert Into 出库目录 (BillID,年份,月份,日子,dpID) Values ({month},2004,{month},28,1)")
            self.sql("Insert Into 出库记录 (BillID,pdID,dpID,数量,除税单价,除税金额) "
                     f"Values ({month},2,1,0.1,0.3,0.0333)")
        self.close(1, options=["--through", "12"])
        self.assert_silent()
        self.assertEqual(self.rows("Select 本期库存金额,累计出库金额 From 仓库余额表 Where dpID=1 And 月份=12 And pdID=2"),
                         [["24.6337", "0.3663"]])


if __name__ == "__main__":
    unittest.main()
