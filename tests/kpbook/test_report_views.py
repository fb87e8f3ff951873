"""report and stock as people read them: names, columns, one valuation, and what is said of months that are open."""

import json
import unittest
from decimal import Decimal

from kpbook_case import BALANCE_HEADER, KpbookCase
from report_case import ReportCase


def columns(done):
    """The values of each column of a JSON answer."""
    found = json.loads(done.stdout)
    names = [column["name"] for column in found["columns"]]
    return {name: [row[place] for row in found["rows"]] for place, name in enumerate(names)}


class NamesTest(ReportCase):
    def test_ids_have_names(self):
        self.assertEqual(
            self.table("costs", "--warehouse", "东库"),
            "成本汇总  东库\n"
            "\n"
            "商品编号  商品名称  计量单位  类别  数量  均价   金额\n"
            "--------  --------  --------  ----  ----  ----  -----\n"
            "C01       水泥      吨        01       5  5.50  27.50\n"
            "C02       螺栓      只        02    0.25  0.20   0.05\n"
            "--------  --------  --------  ----  ----  ----  -----\n"
            "合计                                            27.55\n")
        self.import_text("商品分类", "ClassCode,ClassName\n01,建材\n")
        costs = columns(self.run_kpbook("report", "costs", self.book, "-O", "json"))
        self.assertEqual((costs["pdID"], costs["商品名称"], costs["类别"]), ([1, 2], ["水泥", "螺栓"], ["建材", "02"]))

    def test_rows_without_a_master_row(self):
        self.sql("Delete From 商品设置 Where pdID=2")
        self.sql("Update 出库目录 Set ksID=0, pjID=7 Where BillID=2")
        self.sql("Update 入库目录 Set ksID=9 Where BillID=2")
        self.assertIn("(商品 2)", self.table("costs"))
        self.assertIn("(商品 2)", self.table("balance"))
        self.assertIn("(无客户)", self.table("partners", "--direction", "out"))
        self.assertIn("(供应商 9)", self.table("partners", "--direction", "in"))
        self.assertIn("(项目 7)", self.table("projects"))
        self.sql("Update 出库目录 Set pjID=0 Where BillID=2")
        self.assertIn("(无项目)", self.table("projects"))

    def test_filters_take_names(self):
        for options, expected in ((("--partner", "红星厂"), ["R001", "R003"]), (("--warehouse", "西库"), ["R002"])):
            self.assertEqual([row[0] for row in self.report("bills", "--direction", "in", *options, columns=["单据编号"])],
                             expected)
        self.assertEqual(self.report("bills", "--direction", "out", "--project", "P1", columns=["单据编号"]), [["C001"]])
        done = self.run_kpbook("report", "costs", self.book, "--warehouse", "南库", code=1)
        self.assertIn("南库", done.stderr)
        self.assertEqual(done.stdout, "")


class ColumnsTest(ReportCase):
    def test_a_sum_of_prices_is_no_price(self):
        # In: 4.5 for 29 (net 24.8766) from one supplier, 2 for 16 (net 14) from the other.
        partners = columns(self.run_kpbook("report", "partners", self.book, "--direction", "in", "-O", "json"))
        self.assertNotIn("单价", partners)
        self.assertEqual([round(price, 9) for price in partners["均价"]], [round(29 / 4.5, 9), 8.0])
        # Cement: 4 for 24 and 2 for 14, tax 4 and 2; bolts 0.5 for 0.8766, tax 0.1234.
        products = columns(self.run_kpbook("report", "products", self.book, "--direction", "in", "-O", "json"))
        self.assertNotIn("除税单价", products)
        self.assertEqual([round(price, 9) for price in products["除税均价"]], [round(38 / 6, 9), 1.7532])
        self.assertEqual(products["价税合计"], ["44", "1"])
        self.assertEqual([round(price, 9) for price in products["均价"]], [round(44 / 6, 9), 2.0])

    def test_raw_columns_are_the_methods(self):
        calls = {"partners": ("rs单位汇总", [0, 0, "厂商"]), "products": ("rs商品汇总", ["入库", 0, 0, 0, 0, ""]),
                 "bills": ("rs单据列表", ["入库", *[{"empty": True}] * 7, 0, *[{"empty": True}] * 12])}
        for report, (method, arguments) in calls.items():
            answer = self.call(method, *arguments)["result"]
            raw = json.loads(self.run_kpbook("report", report, self.book, "--direction", "in", "--raw", "-O", "json").stdout)
            self.assertEqual(raw, answer, report)

    def test_a_bill_list_for_people(self):
        self.assertEqual(
            self.table("bills", "--direction", "in", "--type", "购货", "--to", "2004-3-31"),
            "入库单列表  至 2004-03-31  购货\n"
            "\n"
            "日期        单据编号  单据类型  类型  仓库  供应商  数量  除税金额  税额  价税合计\n"
            "----------  --------  --------  ----  ----  ------  ----  --------  ----  --------\n"
            "2004-03-05  R001      普通发票  购货  东库  红星厂   4.5     24.88  4.12     29.00\n"
            "----------  --------  --------  ----  ----  ------  ----  --------  ----  --------\n"
            "合计                                                 4.5     24.88  4.12     29.00\n")

    def test_wide_has_the_methods_columns_too(self):
        wide = self.table("bills", "--direction", "in", "--wide").splitlines()[2].split()
        self.assertEqual(wide, ["年份", "月份", "日子", "单据类型", "类型", "单据编号", "数量", "金额", "税额", "合计", "BillID",
                                "录入员", "录入日期", "审核员", "审核日期", "说明", "仓库名称", "企业名称", "项目名称", "项目编号",
                                "日期"])
        csv = self.run_kpbook("report", "bills", self.book, "--direction", "in", "-O", "csv").stdout
        self.assertEqual(csv.splitlines()[0].split(","), wide)
        self.assertIn("24.8766", csv)

    def test_large_amounts_have_separators(self):
        self.sql("Update 出库记录 Set 除税金额=1234567.8951, 金额=1234567.8951 Where BillID=2")
        table = self.table("partners", "--direction", "out")
        self.assertIn(" 1,234,608.80 ", table)
        csv = self.run_kpbook("report", "partners", self.book, "--direction", "out", "-O", "csv").stdout
        self.assertIn(",1234608.7951,", csv)

    def test_wrong_usage(self):
        for options, expected in (
                (("costs", "--cost"), "report costs takes no --cost"),
                (("daily", "--month", 3, "--cost", "--raw"), "takes no --cost"),
                (("daily", "--month", 3, "--cost", "--no-cost"), "--no-cost"),
                (("costs", "--raw", "--wide"), "--wide"),
                (("costs", "--raw", "--chart"), "--raw takes no --chart"),
                (("costs", "--chart", "-O", "csv"), "--chart goes with tables")):
            done = self.run_kpbook("report", options[0], self.book, *options[1:], code=2)
            self.assertIn(expected, done.stderr, options)
            self.assertEqual(done.stdout, "")


class ValuationTest(KpbookCase):
    """Two warehouses; all bills are made with one amount for sale and another for cost."""

    IN = {(1, 5): (1, "38.5"), (1, 3): (2, "12.0001"), (2, 9): (1, "7")}  # (month, day): (warehouse, net)
    OUT = {(1, 28): (1, "40"), (1, 2): (2, "9.9999"), (2, 1): (1, "5.55")}
    COST = {(1, 31): (1, "27.25"), (1, 30): (2, "8.0004"), (2, 28): (1, "4.4")}
    OPENING = {1: Decimal("100"), 2: Decimal("50.5")}

    def setUp(self):
        super().setUp()
        self.copy_of("valuation", self.make_valuation_book)

    def make_valuation_book(self):
        self.new_book()
        self.import_text("仓库设置", "dpID,仓库名称\n1,东库\n2,西库\n")
        self.import_text("商品设置", "pdID,商品名称\n1,水泥\n")
        self.import_text("仓库余额表", BALANCE_HEADER + "".join(
            f"2004,1,1,{warehouse},1,{amount},{amount}\n" for warehouse, amount in self.OPENING.items()))
        for kind, bills in (("入库", self.IN), ("出库", self.OUT)):
            lists = lines = ""
            for bill, ((month, day), (warehouse, net)) in enumerate(bills.items(), 1):
                lists += f"{bill},2004,{month},{day},{kind}单,{warehouse}\n"
                lines += f"{bill},1,{warehouse},1,{net},{net}\n"
            self.import_text(kind + "目录", "BillID,年份,月份,日子,单据类型,dpID\n" + lists)
            self.import_text(kind + "记录", "BillID,pdID,dpID,数量,除税单价,除税金额\n" + lines)
        self.import_text("成本目录", "CostID,年份,月份,日子,dpID\n" + "".join(
            f"{bill},2004,{month},{day},{place[0]}\n" for bill, ((month, day), place) in enumerate(self.COST.items(), 1)))
        self.import_text("成本记录", "CostID,pdID,数量,金额\n" + "".join(
            f"{bill},1,1,{place[1]}\n" for bill, place in enumerate(self.COST.values(), 1)))

    def january(self, out, warehouses=(1, 2)):
        """The closing stock, worked out from the bills."""
        total = sum(self.OPENING[warehouse] for warehouse in warehouses)
        for sign, bills in ((1, self.IN), (-1, out)):
            total += sum(sign * Decimal(net) for (month, _), (warehouse, net) in bills.items()
                         if month == 1 and warehouse in warehouses)
        return total

    def closing_stocks(self, *options):
        """The closing amounts of the daily list, the balance and the stock figures."""
        options = ("--month", 1, *options, "-O", "json")
        daily = columns(self.run_kpbook("report", "daily", self.book, *options))["库存金额"][-1]
        balance = columns(self.run_kpbook("report", "balance", self.book, *options))["本期库存金额"]
        stock = columns(self.run_kpbook("stock", self.book, *options))["本期库存金额"]
        return [Decimal(str(daily)), sum(map(Decimal, balance)), sum(map(Decimal, stock))]

    def close(self, *options):
        self.run_kpbook("close", self.book, "--month", 1, *options)

    def test_one_valuation_everywhere(self):
        at_cost, at_sale = self.january(self.COST), self.january(self.OUT)
        self.assertNotEqual(at_cost, at_sale)
        self.close("--cost")
        self.assertEqual(self.closing_stocks(), [at_cost] * 3, "as it was closed")
        self.assertEqual(self.closing_stocks("--cost"), [at_cost] * 3)
        self.assertEqual(self.closing_stocks("--no-cost"), [at_sale] * 3)
        self.assertEqual(self.closing_stocks("--no-cost", "--warehouse", "西库"), [self.january(self.OUT, (2,))] * 3)
        self.call("Update_Option", "出库计价", "出库")
        self.assertEqual(self.closing_stocks(), [at_sale] * 3, "as the book's setting says")
        self.assertEqual(self.closing_stocks("--cost"), [at_cost] * 3)

    def test_books_closed_at_sale(self):
        at_cost, at_sale = self.january(self.COST), self.january(self.OUT)
        self.close()
        self.assertEqual(self.closing_stocks(), [at_sale] * 3)
        self.assertEqual(self.closing_stocks("--cost"), [at_cost] * 3)
        self.call("Update_Option", "出库计价", "成本")
        self.assertEqual(self.closing_stocks(), [at_cost] * 3)

        def stored():
            return sum(Decimal(row[0]) for row in self.rows("Select 本期库存金额 From 仓库余额表 Where 月份=1"))
        self.assertEqual(stored(), at_sale)
        self.close("--again")
        self.assertEqual(stored(), at_cost, "a closing goes by the setting")
        self.close("--again", "--no-cost")
        self.assertEqual(stored(), at_sale)
        for command in (("report", "daily"), ("report", "balance"), ("stock",)):
            heading = self.run_kpbook(*command, self.book, "--month", 1).stdout.splitlines()[0]
            self.assertTrue(heading.endswith("  2004年1月  全部仓库  出库按成本单计价"), heading)

    def test_a_setting_that_is_none(self):
        self.call("Update_Option", "出库计价", "随便")
        done = self.run_kpbook("stock", self.book, "--month", 1, code=1)
        self.assertIn("出库计价 is 随便; it can be 成本 or 出库", done.stderr)
        self.assertEqual(done.stdout, "")

    def test_days_at_cost(self):
        days = columns(self.run_kpbook("report", "daily", self.book, "--month", 1, "--cost", "-O", "json"))
        self.assertEqual(days["日子"], [2, 3, 5, 28, 30, 31])
        self.assertEqual(days["出库金额"], [0, 0, 0, 0, 8.0004, 27.25])
        self.assertEqual(days["期初金额"], [150.5, 150.5, 162.5001, 201.0001, 201.0001, 192.9997])
        self.assertEqual(days["库存金额"], [150.5, 162.5001, 201.0001, 201.0001, 192.9997, 165.7497])

    def test_months_that_are_open_say_so(self):
        def above(command, month, *options):
            done = self.run_kpbook(*command, self.book, "--month", month, *options)
            return done.stdout.splitlines()[1], done
        for command in (("report", "daily"), ("report", "balance"), ("stock",)):
            self.assertIn("1月未结帐 (not closed)：东库、西库；", above(command, 1)[0])
            self.assertIn("2月未到 (not reached)：东库、西库；", above(command, 2)[0])
            # Formats for programs contain rows alone.
            done = self.run_kpbook(*command, self.book, "--month", 1, "-O", "csv")
            self.assertIn("1月未结帐 (not closed)", done.stderr)
            self.assertNotIn("未结帐", done.stdout)
        self.run_kpbook("close", self.book, "--month", 1, "--warehouse", 1)
        self.assertIn("1月未结帐 (not closed)：西库；", above(("stock",), 1)[0])
        self.assertEqual(above(("stock",), 1, "--warehouse", 1)[0], "")
        self.assertIn("2月未结帐 (not closed)：东库；", above(("stock",), 2)[0])


if __name__ == "__main__":
    unittest.main()
