"""A firm's year by the commands alone, without a statement of SQL: 12 products and 2 warehouses, bills of every kind, closings at
cost, reports in every form and the next year, beside figures worked out in exact decimals."""

import csv
import io
import random
import unittest
from collections import defaultdict
from decimal import Decimal

from kpbook_case import KpbookCase

WAREHOUSES = ("主库", "分店")
PRODUCTS = [f"P{number:02}" for number in range(1, 13)]
MONTHS = (1, 2, 3)
BILL_COLUMNS = ("单据", "日期", "仓库", "单位", "类型", "商品编号", "数量", "单价", "税率")


def text_of(columns, rows):
    out = io.StringIO()
    writer = csv.writer(out)
    writer.writerow(columns)
    writer.writerows(rows)
    return out.getvalue()


class Firm:
    """Draws a firm's bills, and knows what they come to."""

    def __init__(self, seed):
        self.random = random.Random(seed)
        self.opening = {(w, p): (1000, Decimal(self.random.randrange(100, 90000))) for w in WAREHOUSES for p in PRODUCTS}
        # By month, then warehouse and product: quantity and amount that came in and went out, and what cost bills say.
        self.came, self.went, self.cost = ({month: defaultdict(lambda: [0, Decimal(0)]) for month in MONTHS} for _ in range(3))
        self.files = {month: {"in": [], "out": [], "transfer": [], "cost": []} for month in MONTHS}
        for month in MONTHS:
            self.draw(month)

    def draw(self, month):
        for bill in range(1, 6):
            self.bill(month, "in", bill, "江南水泥厂", self.came)
            self.bill(month, "out", bill, "杭州宏图", self.went)
        for bill in (1, 2):
            day = self.day(month)
            for product in self.random.sample(PRODUCTS, 2):
                quantity, price = self.random.randrange(1, 20), self.price()
                self.files[month]["transfer"].append([bill, day, *WAREHOUSES, product, quantity, price])
                self.add(self.went[month][WAREHOUSES[0], product], quantity, price)
                self.add(self.came[month][WAREHOUSES[1], product], quantity, price)
        # Not all that went out has a cost bill.
        for bill, warehouse in enumerate(WAREHOUSES, 1):
            for product in self.random.sample(PRODUCTS, 5):
                quantity, price = self.random.randrange(1, 20), self.price()
                self.files[month]["cost"].append([bill, f"2026-{month}-28", warehouse, product, quantity, price])
                self.add(self.cost[month][warehouse, product], quantity, price)

    def bill(self, month, way, number, partner, moved):
        day, warehouse = self.day(month), self.random.choice(WAREHOUSES)
        kind = self.random.choice(("增值税发票", "普通发票", "入库单" if way == "in" else "出库单"))
        for product in self.random.sample(PRODUCTS, 3):
            quantity, price = self.random.randrange(1, 20), self.price()
            self.files[month][way].append([number, day, warehouse, partner, kind, product, quantity, price, 13])
            self.add(moved[month][warehouse, product], quantity, price)

    def day(self, month):
        return f"2026-{month}-{self.random.randrange(1, 29)}"

    def price(self):
        return Decimal(self.random.randrange(1, 100000)) / 10000

    @staticmethod
    def add(figures, quantity, price):
        figures[0] += quantity
        figures[1] += quantity * price

    def stock(self, last):
        """(warehouse, product) -> quantity and amount at a month's end, closed at cost."""
        found = dict(self.opening)
        for month in MONTHS[:last]:
            for key, (quantity, amount) in found.items():
                outbound = (self.cost if key in self.cost[month] else self.went)[month][key][1]
                came, went = self.came[month][key], self.went[month][key]
                found[key] = (quantity + came[0] - went[0], amount + came[1] - outbound)
        return found

    def by_product(self, last):
        sums = defaultdict(lambda: [0, Decimal(0)])
        for (_, product), (quantity, amount) in self.stock(last).items():
            sums[product][0] += quantity
            sums[product][1] += amount
        return {product: tuple(figures) for product, figures in sums.items()}


class FirmTest(KpbookCase):
    def csv_of(self, *words):
        return list(csv.DictReader(io.StringIO(self.run_kpbook(*words, "-O", "csv").stdout)))

    def figures(self, part, *words):
        """Product -> quantity and amount of a part of the stock, in a report."""
        return {row["商品名称"].removeprefix("商品"): (int(row[part + "数量"]), Decimal(row[part + "金额"])) for row in self.csv_of(*words)}

    def begin(self, firm):
        words = [word for name in WAREHOUSES for word in ("--warehouse", name)]
        self.run_kpbook("new", self.book, "--company", "江城五金行", "--year", 2026, "--month", 1, *words)
        products = text_of(("商品编号", "商品名称", "计量单位"), [(number, f"商品{number}", "只") for number in PRODUCTS])
        self.import_text("商品设置", products)
        self.run_kpbook("add", self.book, "supplier", "企业名称=江南水泥厂")
        self.run_kpbook("add", self.book, "customer", "企业名称=杭州宏图")
        rows = [(*key, *figures) for key, figures in firm.opening.items()]
        self.run_kpbook("opening", self.book, self.write("opening.csv", text_of(("仓库", "商品编号", "数量", "金额"), rows)))

    def enter(self, firm, month):
        columns = {"in": BILL_COLUMNS, "out": BILL_COLUMNS, "cost": ("单据", "日期", "仓库", "商品编号", "数量", "单价"),
                   "transfer": ("单据", "日期", "调出仓库", "调入仓库", "商品编号", "数量", "单价")}
        for kind, rows in firm.files[month].items():
            self.run_kpbook("bill", "add", self.book, kind, self.write(f"{kind}.csv", text_of(columns[kind], rows)))

    def check_reports(self, firm, month):
        """The balance, the stock and the days at cost say the same, before and after the closing of a month."""
        expected = firm.by_product(month)
        self.assertEqual(self.figures("本期库存", "stock", self.book, "--month", month, "--cost"), expected)
        days = self.csv_of("report", "daily", self.book, "--month", month, "--cost")
        self.assertEqual(Decimal(days[-1]["库存金额"]), sum(amount for _, amount in expected.values()))

    def test_three_months_and_the_next_year(self):
        firm = Firm(20260101)
        self.begin(firm)
        for month in MONTHS:
            self.enter(firm, month)
            self.check_reports(firm, month)
            self.run_kpbook("close", self.book, "--month", month, "--cost", "--answer", "yes")
            self.check_reports(firm, month)
            self.assertEqual(self.figures("本期库存", "report", "balance", self.book, "--month", month, "--cost"),
                             firm.by_product(month))
        self.run_kpbook("check", self.book)
        # What the firm closed with is what its reports show without being told.
        self.assertEqual(self.figures("本期库存", "stock", self.book, "--month", 2), firm.by_product(2))
        self.run_kpbook("report", "balance", self.book, "--month", 3, "-o", self.folder / "balance.xlsx")
        self.assertEqual((self.folder / "balance.xlsx").read_bytes()[:2], b"PK")
        self.run_kpbook("report", "all", self.book, "--month", 3, "-o", self.folder / "pages")
        self.assertIn("商品P07", (self.folder / "pages" / "balance.html").read_text("utf-8"))
        self.run_kpbook("close", self.book, "--month", 4, "--through", 12)
        following = self.folder / "2027.kpbook"
        self.run_kpbook("new", following, "--from", self.book)
        for warehouse in WAREHOUSES:
            self.assertEqual(self.figures("上期库存", "stock", following, "--month", 1, "--warehouse", warehouse),
                             {product: figures for (place, product), figures in firm.stock(3).items() if place == warehouse})


if __name__ == "__main__":
    unittest.main()
