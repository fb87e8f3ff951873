"""Tests of the sample book: sample_test.py KPSAMPLE"""

import csv
import datetime
import pathlib
import subprocess
import sys
import tempfile
import unittest
from collections import defaultdict
from decimal import ROUND_HALF_EVEN, Decimal

KPSAMPLE = sys.argv.pop(1)
YEAR = 2003
HOLIDAYS = ([datetime.date(YEAR, 1, 1)] +
            [datetime.date(YEAR, month, day) for month in (2, 5, 10) for day in range(1, 8)])
# Columns that may be empty in some rows: bills that are not audited yet, bills without a remark.
MAY_BE_EMPTY = {"审核员", "审核日期", "说明"}


def to_ten_thousandth(value):
    return value.quantize(Decimal("0.0001"), ROUND_HALF_EVEN)


class Sample(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        scratch = tempfile.TemporaryDirectory()
        cls.addClassCleanup(scratch.cleanup)
        cls.folder = pathlib.Path(scratch.name) / "first"
        cls.second = pathlib.Path(scratch.name) / "second"
        for folder in (cls.folder, cls.second):
            subprocess.run([KPSAMPLE, str(folder)], check=True)
        cls.tables = {path.stem: cls.read(path) for path in cls.folder.glob("*.csv")}

    @staticmethod
    def read(path):
        with open(path, encoding="utf-8", newline="") as file:
            return list(csv.DictReader(file, strict=True))

    def bills(self):
        for family in ("入库", "出库"):
            lines = defaultdict(list)
            for line in self.tables[family + "记录"]:
                lines[line["BillID"]].append(line)
            for header in self.tables[family + "目录"]:
                yield family, header, lines[header["BillID"]]

    @staticmethod
    def date(header):
        return datetime.date(int(header["年份"]), int(header["月份"]), int(header["日子"]))

    def test_same_bytes_twice(self):
        names = sorted(path.name for path in self.folder.iterdir())
        self.assertEqual(names, sorted(path.name for path in self.second.iterdir()))
        for name in names:
            self.assertEqual((self.folder / name).read_bytes(), (self.second / name).read_bytes(), name)

    def test_enough_of_everything(self):
        at_least = {"仓库设置": 4, "商品设置": 300, "商品分类": 10, "厂商资料": 60, "客户资料": 120, "项目设置": 12,
                    "入库目录": 1100, "出库目录": 1500, "成本目录": 12, "成本记录": 1000, "雇员资料": 20, "操作员": 5,
                    "部门分类": 5, "收付款方式": 3, "系统选项": 15, "AccInfo": 1, "仓库余额表": 400, "派遣目录": 300,
                    "派遣记录": 500, "工资表": 60, "仓库盘点表": 500, "Log": 100}
        for table, count in at_least.items():
            self.assertGreaterEqual(len(self.tables[table]), count, table)
        self.assertGreaterEqual(len(self.tables["入库记录"]) + len(self.tables["出库记录"]), 10000)

    def test_no_column_is_empty(self):
        for table, rows in self.tables.items():
            for column in rows[0]:
                filled = sum(1 for row in rows if row[column] != "")
                self.assertGreaterEqual(filled, 0.8 * len(rows) if column in MAY_BE_EMPTY else len(rows),
                                        f"{table}.{column}")

    def test_every_row_has_the_headers_fields(self):
        for table, rows in self.tables.items():
            for row in rows:
                self.assertNotIn(None, row, table)
                self.assertNotIn(None, row.values(), table)

    def test_ids_count_from_one(self):
        for table, key in (("入库目录", "BillID"), ("出库目录", "BillID"), ("成本目录", "CostID"), ("商品设置", "pdID"),
                           ("厂商资料", "KSID"), ("客户资料", "KSID"), ("项目设置", "项目ID"), ("派遣目录", "BillID")):
            ids = [int(row[key]) for row in self.tables[table]]
            self.assertEqual(ids, list(range(1, len(ids) + 1)), table)

    def test_every_reference_has_its_row(self):
        known = {name: {row[key] for row in self.tables[table]} for name, table, key in (
            ("pdID", "商品设置", "pdID"), ("dpID", "仓库设置", "dpID"), ("厂商", "厂商资料", "KSID"),
            ("客户", "客户资料", "KSID"), ("项目", "项目设置", "项目ID"))}
        for family, header, lines in self.bills():
            self.assertIn(header["dpID"], known["dpID"])
            if header["单据类型"] == "调拨单":
                self.assertEqual(header["ksID"], "0")
            else:
                self.assertIn(header["ksID"], known["厂商" if family == "入库" else "客户"])
            self.assertIn(header["pjID"], known["项目"] | {"0"})
            self.assertTrue(lines, header)
            for line in lines:
                self.assertIn(line["pdID"], known["pdID"])
                self.assertEqual(line["dpID"], header["dpID"])
                self.assertEqual(line["仓库"], header["dpID"])
            self.assertEqual(len(lines), len({line["pdID"] for line in lines}), header)
        for product in self.tables["商品设置"]:
            maker = self.tables["厂商资料"][int(product["KSID"]) - 1]
            self.assertEqual(product["生产厂家"], maker["企业名称"])
        for project in self.tables["项目设置"]:
            self.assertIn(project["ksID"], known["客户"])

    def test_line_figures_agree(self):
        rates = {"增值税发票": {17}, "普通发票": {6}, "调拨单": {0}, "入库单": {6, 17}, "出库单": {6, 17}}
        for _, header, lines in self.bills():
            for line in lines:
                price, quantity = Decimal(line["单价"]), Decimal(line["数量"])
                net_price, net, tax = (Decimal(line[name]) for name in ("除税单价", "除税金额", "税额"))
                self.assertGreater(quantity, 0)
                self.assertGreater(net_price, 0)
                self.assertEqual(net, to_ten_thousandth(net_price * quantity), line)
                self.assertEqual(Decimal(line["金额"]), net + tax, line)
                fitting = {rate for rate in rates[header["单据类型"]]
                           if tax == to_ten_thousandth(net * rate / 100)
                           and net_price == to_ten_thousandth(price * 100 / (100 + rate))}
                self.assertEqual(len(fitting), 1, line)

    def test_opening_amounts_agree(self):
        seen = set()
        for row in self.tables["仓库余额表"]:
            self.assertEqual((row["年份"], row["月份"]), (str(YEAR), "1"))
            price, quantity, amount = (Decimal(row["上期库存" + name]) for name in ("单价", "数量", "金额"))
            self.assertGreater(quantity, 0)
            self.assertEqual(amount, to_ten_thousandth(price * quantity), row)
            for name in ("单价", "数量", "金额"):
                self.assertEqual(row["本期库存" + name], row["上期库存" + name])
            seen.add((row["pdID"], row["dpID"]))
        self.assertEqual(len(seen), len(self.tables["仓库余额表"]))

    def test_stock_never_falls_below_zero(self):
        stock = {(row["pdID"], row["dpID"]): Decimal(row["上期库存数量"]) for row in self.tables["仓库余额表"]}
        moves = defaultdict(lambda: defaultdict(Decimal))
        for family, header, lines in self.bills():
            for line in lines:
                moved = Decimal(line["数量"])
                moves[self.date(header)][line["pdID"], line["dpID"]] += moved if family == "入库" else -moved
        for day in sorted(moves):
            for shelf, moved in moves[day].items():
                stock[shelf] = stock.get(shelf, Decimal(0)) + moved
                self.assertGreaterEqual(stock[shelf], 0, (day, shelf))

    def test_dates_are_working_days_in_order(self):
        last = {}
        for family, header, _ in self.bills():
            day = self.date(header)
            self.assertEqual(day.year, YEAR)
            self.assertLess(day.weekday(), 5, day)
            self.assertNotIn(day, HOLIDAYS)
            self.assertEqual(header["录入日期"], day.isoformat())
            self.assertLessEqual(last.get(family, day), day)
            last[family] = day
            self.assertEqual(header["审核员"] == "", header["审核日期"] == "")
            if header["审核日期"]:
                audited = datetime.date.fromisoformat(header["审核日期"])
                self.assertLess(audited.weekday(), 5)
                self.assertLessEqual(day, audited)
        for header in self.tables["成本目录"] + self.tables["派遣目录"]:
            self.assertLess(self.date(header).weekday(), 5)

    def test_every_month_has_bills_of_every_warehouse(self):
        found = defaultdict(int)
        for family, header, _ in self.bills():
            found[family, header["月份"], header["dpID"]] += 1
        for family in ("入库", "出库"):
            for month in range(1, 13):
                for depot in range(1, 5):
                    self.assertGreater(found[family, str(month), str(depot)], 0, (family, month, depot))

    def test_spring_festival_is_quiet(self):
        bills = defaultdict(int)
        for _, header, _ in self.bills():
            bills[int(header["月份"])] += 1
        self.assertEqual(min(bills, key=bills.get), 2)
        self.assertLess(bills[2] * 2, bills[11])

    def test_bill_numbers(self):
        seen = set()
        prefixes = {("入库", "入库单"): "RK", ("入库", "普通发票"): "JP", ("入库", "增值税发票"): "JZ", ("入库", "调拨单"): "DB",
                    ("出库", "出库单"): "CK", ("出库", "普通发票"): "XP", ("出库", "增值税发票"): "XZ", ("出库", "调拨单"): "DB"}
        for family, header, _ in self.bills():
            prefix, month, count = header["单据编号"].split("-")
            self.assertEqual(prefix[:2], prefixes[family, header["单据类型"]])
            self.assertEqual(int(month), int(header["月份"]))
            self.assertEqual(len(count), 4)
            if (family, header["单据类型"]) != ("入库", "调拨单"):
                self.assertEqual(prefix[2:], header["dpID"])
            key = (family, header["单据类型"], header["单据编号"])
            self.assertNotIn(key, seen)
            seen.add(key)

    def test_transfers_are_pairs(self):
        halves = {"入库": {}, "出库": {}}
        for family, header, lines in self.bills():
            if header["单据类型"] == "调拨单":
                halves[family][header["月份"], header["单据编号"]] = (header, lines)
        self.assertGreaterEqual(len(halves["出库"]), 60)
        self.assertEqual(halves["入库"].keys(), halves["出库"].keys())
        for key, (out, out_lines) in halves["出库"].items():
            into, into_lines = halves["入库"][key]
            self.assertNotEqual(out["dpID"], into["dpID"])
            self.assertEqual(out["日子"], into["日子"])
            goods = ("pdID", "数量", "单价", "除税金额", "税额", "金额")
            self.assertEqual([[line[name] for name in goods] for line in out_lines],
                             [[line[name] for name in goods] for line in into_lines])
            self.assertEqual({line["税额"] for line in out_lines}, {"0"})

    def test_new_products_have_no_balance_row(self):
        known = {row["pdID"] for row in self.tables["仓库余额表"]}
        first = {}
        depots = defaultdict(set)
        for _, header, lines in self.bills():
            for line in lines:
                first[line["pdID"]] = min(first.get(line["pdID"], 13), int(header["月份"]))
                depots[line["pdID"]].add(line["dpID"])
        new = {product: month for product, month in first.items() if product not in known}
        self.assertEqual(sorted(new.values()), [2, 2, 2, 3, 3, 3])
        for product in new:
            # A second warehouse would get no row: the repair asks by product only.
            self.assertEqual(len(depots[product]), 1)

    def test_every_moved_product_of_a_warehouse_has_an_opening_row(self):
        opened = {(row["pdID"], row["dpID"]) for row in self.tables["仓库余额表"]}
        known = {product for product, _ in opened}
        for _, _, lines in self.bills():
            for line in lines:
                if line["pdID"] in known:
                    self.assertIn((line["pdID"], line["dpID"]), opened)

    def test_cost_bills_cover_what_was_issued(self):
        where = {row["CostID"]: (row["月份"], row["dpID"]) for row in self.tables["成本目录"]}
        self.assertEqual(set(where.values()), {(str(m), str(d)) for m in range(1, 10) for d in range(1, 5)})
        issued = defaultdict(Decimal)
        for family, header, lines in self.bills():
            for line in lines:
                if family == "出库" and int(header["月份"]) <= 9:
                    issued[header["月份"], line["dpID"], line["pdID"]] += Decimal(line["数量"])
        costed = {}
        for line in self.tables["成本记录"]:
            key = (*where[line["CostID"]], line["pdID"])
            self.assertNotIn(key, costed)
            costed[key] = Decimal(line["数量"])
            exact = Decimal(line["单价"]) * Decimal(line["数量"])
            # Sold out: the amount is the rest of the value, the price its rounded average.
            self.assertLessEqual(abs(Decimal(line["金额"]) - exact), Decimal(line["数量"]) * Decimal("0.00005") + Decimal("0.0001"))
        self.assertEqual(costed, dict(issued))

    def test_bar_codes(self):
        codes = [row["商品条码"] for row in self.tables["商品设置"]]
        self.assertEqual(len(codes), len(set(codes)))
        for code in codes:
            self.assertRegex(code, r"^69[0-5][0-9]{10}$")
            digits = [int(digit) for digit in code]
            self.assertEqual((sum(digits[0:12:2]) + 3 * sum(digits[1:12:2]) + digits[12]) % 10, 0, code)

    def test_products_can_be_told_apart(self):
        for column in ("商品编号", "输入简码"):
            values = [row[column] for row in self.tables["商品设置"]]
            self.assertEqual(len(values), len(set(values)), column)
        for row in self.tables["商品设置"]:
            self.assertRegex(row["输入简码"], r"^[A-Z]{2,12}[0-9]{2}$")
            self.assertLess(Decimal(row["购进单价"]), Decimal(row["默认单价"]))
            self.assertLess(Decimal(row["最低库存"]), Decimal(row["最高库存"]))
            self.assertEqual([row[rate] for rate in ("普通税率", "增值税率", "普购税率", "增购税率")], ["6", "17", "6", "17"])
            self.assertIn(row["ClassCode"], {each["ClassCode"] for each in self.tables["商品分类"]})

    def test_partners_can_be_told_apart(self):
        for table, classes in (("厂商资料", "厂商分类"), ("客户资料", "客户分类")):
            for column in ("企业名称", "单位名称"):
                names = [row[column] for row in self.tables[table]]
                self.assertEqual(len(names), len(set(names)), f"{table}.{column}")
            self.assertEqual({row["ClassCode"] for row in self.tables[table]},
                             {row["ClassCode"] for row in self.tables[classes]})

    def test_work_orders_and_pay_agree(self):
        freight = defaultdict(Decimal)
        for line in self.tables["派遣记录"]:
            freight[line["BillID"]] += Decimal(line["金额"])
        income = defaultdict(Decimal)
        for order in self.tables["派遣目录"]:
            self.assertEqual(Decimal(order["货款"]), freight[order["BillID"]])
            income[order["月份"], order["司机"]] += Decimal(order["货款"])
        self.assertEqual(income, {(row["月份"], row["姓名"]): Decimal(row["总收入"]) for row in self.tables["工资表"]})
        costs = ("油费", "外加油费", "过路费", "装卸费", "折旧", "保险", "利润", "税金", "养路费", "装卸工资", "费用1", "费用2",
                 "费用3")
        for row in self.tables["工资表"]:
            figure = {name: Decimal(text) for name, text in row.items() if name not in ("姓名", "Flag", "备注")}
            self.assertEqual(figure["总费用"], sum(figure[name] for name in costs))
            self.assertEqual(figure["应付"], figure["总收入"] - figure["总费用"] + figure["其它1"] + figure["其它2"] + figure["其它3"])
            self.assertEqual(figure["实发工资"], figure["应付"] - figure["所得税"] - figure["电话费"] - figure["扣款1"] -
                             figure["扣款2"] - figure["扣款3"])

    def test_wrong_usage(self):
        for arguments in ([], ["a", "b"], ["--help"]):
            done = subprocess.run([KPSAMPLE, *arguments], capture_output=True, text=True)
            self.assertEqual(done.returncode, 2)
            self.assertIn("usage: kpsample FOLDER", done.stderr)

    def test_a_file_in_the_way(self):
        with tempfile.NamedTemporaryFile() as file:
            done = subprocess.run([KPSAMPLE, file.name], capture_output=True, text=True)
            self.assertEqual(done.returncode, 1)
            self.assertIn("kpsample: ", done.stderr)


if __name__ == "__main__":
    unittest.main()
