"""The reports on the balance of the sample year, closed month by month, against a closing calculated beside it."""

import unittest
from decimal import Decimal

from closing_year import AMOUNT, FIGURES, Year
from sample_book import PRODUCT, SampleCase, grouped, total

REPORT = ("上期库存单价 上期库存数量 上期库存金额 本期入库单价 本期入库数量 本期入库金额 累计入库数量 累计入库金额 "
          "本期出库单价 本期出库数量 本期出库金额 累计出库数量 累计出库金额 本期库存单价 本期库存数量 本期库存金额")
DAY = "日子:Long " + " ".join(f"{what}{figure}:Double" for what in ("期初", "入库", "出库", "库存") for figure in ("数量", "金额"))


class BalanceCase(SampleCase):
    year = None

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        if BalanceCase.year is not None:
            return
        BalanceCase.year = Year(cls.book.folder)
        for month in range(1, 13):
            cls.book.run("close", cls.book.path, "--month", month, "--cost", "--answer", "yes", "--date", "2003-12-31")
            cls.year.repair(month)
            for warehouse in cls.year.depots:
                cls.year.close(warehouse, month, True)
        for row in cls.year.rows:
            row.update({figure: Decimal(row[figure].numerator) / row[figure].denominator for figure in FIGURES})

    def sums(self, rows):
        """A row of the report: unit prices averaged, all else summed."""
        return [total(rows, figure) / (len(rows) if figure.endswith("单价") else 1) for figure in REPORT.split()]


class BalanceReportTest(BalanceCase):
    def test_the_calculation_covers_the_report(self):
        self.assertEqual(sorted(REPORT.split()), sorted(FIGURES))
        self.assertEqual(len(AMOUNT), 6)

    def test_months(self):
        for descending in (False, True):
            months = sorted({(row["年份"], row["月份"]) for row in self.year.rows}, reverse=descending)
            self.assertEqual(self.both("rs月份列表", descending)["rows"], [list(month) for month in months])

    def test_products_of_a_month(self):
        compared = 0
        for month in range(1, 13):
            for warehouse in (0, 1, 2, 3, 4):
                groups = grouped([row for row in self.year.rows if row["月份"] == month and warehouse in (0, row["dpID"])],
                                 lambda row: row["pdID"])
                rows = [[product, *self.sums(own), *self.book.named("商品", product, PRODUCT)] for product, own in groups.items()]
                with self.subTest(month=month, warehouse=warehouse):
                    # A product without a row of its own has no class; Null stands before all texts.
                    self.check(self.both("rs余额记录", warehouse, month), f"pdID {REPORT} {PRODUCT}", rows, "pdID",
                               order=lambda row: row[-1] or "")
                compared += len(rows)
        self.assertGreater(compared, 9000)

    def test_month_0_is_the_first(self):
        answer = self.book.call("rs余额记录", 2, 0)
        self.assertEqual((answer["args"], answer["result"]), ([2, 1], self.result("rs余额记录", 2, 1)))

    def test_months_of_a_product(self):
        for product in (1, 3, 34, 90, 157, 226, 327, 9001):
            for warehouse in (0, 1, 2, 3, 4):
                groups = grouped([row for row in self.year.rows if row["pdID"] == product and warehouse in (0, row["dpID"])],
                                 lambda row: (row["年份"], row["月份"]))
                rows = [[product, *key, *self.sums(own)] for key, own in groups.items()]
                with self.subTest(product=product, warehouse=warehouse):
                    self.check(self.both("rs期初记录", warehouse, product), f"pdID 年份 月份 {REPORT}", rows, "月份",
                               order=lambda row: (row[1], row[2]), empty=not rows)
        self.check(self.both("rs期初记录", 0, 9999), f"pdID 年份 月份 {REPORT}", [], "月份", empty=True)

    def test_openings(self):
        for month in (1, 7, 12):
            for warehouse in (1, 3):
                rows = [[row["pdID"], row["上期库存数量"], row["上期库存金额"]] for row in self.year.rows
                        if (row["月份"], row["dpID"]) == (month, warehouse)]
                self.check(self.both("rs仓库余额表期初", month, warehouse), "pdID 数量 金额", rows, "pdID", order=lambda row: row[0])
        found = self.both("rs仓库余额表期初", 0, 0, True)["rows"]
        self.assertEqual([row[0] for row in found], sorted(row["pdID"] for row in self.year.rows))
        self.assertEqual(sorted((row[0], Decimal(row[2])) for row in found),
                         sorted((row["pdID"], row["上期库存金额"]) for row in self.year.rows))
        groups = grouped([row for row in self.year.rows if row["dpID"] == 2], lambda row: row["pdID"])
        rows = [[product, total(own, "上期库存数量"), total(own, "上期库存金额")] for product, own in groups.items()]
        self.check(self.both("rs仓库余额表期初", 0, 2, True), "pdID 数量 金额", rows, "pdID", order=lambda row: row[0])


class DaysTest(BalanceCase):
    """A month's days: those with inbound lines first, then those with outbound lines alone, the stock running through both."""

    def moved(self, family, month, warehouse):
        lines = [(header["日子"], line) for header, line in self.book.lines(family)
                 if header["月份"] == month and warehouse in (0, header["dpID"])]
        return {day: [total([line for _, line in pairs], column) for column in ("数量", "除税金额")]
                for day, pairs in grouped(lines, lambda pair: pair[0]).items()}

    def expected(self, month, warehouse):
        inbound, outbound = self.moved("入库", month, warehouse), self.moved("出库", month, warehouse)
        opening = [row for row in self.year.rows if row["月份"] == month and warehouse in (0, row["dpID"])]
        stock = [sum(row[figure] for row in opening) for figure in ("上期库存数量", "上期库存金额")]
        rows = []
        for day in [*sorted(inbound), *sorted(set(outbound) - set(inbound))]:
            come, gone = inbound.get(day, [0, 0]), outbound.get(day, [0, 0])
            left = [stock[i] + come[i] - gone[i] for i in (0, 1)]
            rows.append([day, *stock, *come, *gone, *left])
            stock = left
        return rows

    def test_every_month_and_warehouse(self):
        compared = 0
        for month in range(1, 13):
            for warehouse in (0, 1, 2, 3, 4, 5):
                with self.subTest(month=month, warehouse=warehouse):
                    rows = self.expected(month, warehouse)
                    found = self.both("rs日报列表", month, warehouse)
                    self.assertEqual([row[0] for row in found["rows"]], [row[0] for row in rows])
                    self.check(found, DAY, rows, "日子", empty=warehouse == 5)
                compared += len(rows)
        self.assertGreater(compared, 700)

    def test_days_of_outbound_lines_alone_come_last(self):
        days = [row[0] for row in self.result("rs日报列表", 1, 0)["rows"]]
        inbound = [header["日子"] for header in self.book.tables["入库目录"] if header["月份"] == 1]
        self.assertIn(5, days)  # the bill of another year
        self.assertGreater(days.index(5), days.index(max(inbound)))


if __name__ == "__main__":
    unittest.main()
