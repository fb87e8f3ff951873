"""The daily report on the sample year: a day, and the month's days before it."""

import datetime
import unittest

from sample_book import SampleCase, date_of, grouped, mean, total

COLUMNS = ("ClassCode pdID 商品名称 商品编号 规格 型号 计量单位 进位方法 最低库存 最高库存 数量 单价:Double 金额 税额 合计:Currency")
INVOICES = ("普通发票", "增值税发票")
KINDS = {"调拨": ("调拨单",), "购进": INVOICES, "销售": INVOICES}
DAYS = ("2003-01-16", "2003-03-12", "2003-03-31", "2003-07-01", "2003-12-31")
SCOPES = ((0, 0), (1, 0), (3, 0), (0, 7), (1, 999))


class DailyReportTest(SampleCase):
    def expected(self, family, first, last, warehouse, partner, which):
        """The products of the bills from the first day to the last, both counting."""
        bills = {header["BillID"] for header in self.book.tables[family + "目录"]
                 if first <= date_of(header) <= last and warehouse in (0, header["dpID"]) and partner in (0, header["ksID"])
                 and header["单据类型"] in KINDS.get(which, [header["单据类型"]])}
        lines = [line for line in self.book.tables[family + "记录"]
                 if line["BillID"] in bills and line["pdID"] in self.book.master["商品"]]
        rows = []
        for product, own in grouped(lines, lambda line: line["pdID"]).items():
            master = self.book.master["商品"][product]
            rows.append([*(master[c] for c in COLUMNS.split()[:10]), total(own, "数量"), mean(own, "除税单价"),
                         *(total(own, c) for c in ("除税金额", "税额", "金额"))])
        return rows

    def compare(self, is_sql, date, total_of_month, scope, which):
        day = datetime.date.fromisoformat(date)
        first, last = day, day
        if total_of_month:
            last = day - datetime.timedelta(1)
            # SQL Server reads the first day, which stands without quotes, as a difference: so many days from 1900.
            first = (datetime.date(1900, 1, 1) + datetime.timedelta(day.year - day.month - 1) if is_sql else day.replace(day=1))
        family = "入库" if which in "入库、购进、调入" and not is_sql else "出库"
        rows = self.expected(family, first.isoformat(), last.isoformat(), *scope, which)
        found = self.result("rs日报记录", *scope, {"date": date}, which, total_of_month, isSQL=is_sql)
        with self.subTest(is_sql=is_sql, date=date, total=total_of_month, scope=scope, which=which):
            self.check(found, COLUMNS, rows, "pdID", order=lambda row: (row[0], row[3]), empty=not rows)
        return len(rows)

    def test_every_family(self):
        compared = {"Jet": 0, "SQL Server": 0}
        for dialect in compared:
            for date in DAYS:
                for total_of_month in (False, True):
                    for which in ("入库", "购进", "调入", "出库", "销售", "调拨"):
                        for scope in SCOPES:
                            compared[dialect] += self.compare(dialect == "SQL Server", date, total_of_month, scope, which)
        self.assertGreater(compared["Jet"], 3000)
        self.assertGreater(compared["SQL Server"], 3000)

    def test_the_dialects_agree_on_an_outbound_day(self):
        for date in DAYS:
            for which in ("出库", "销售", "调拨"):
                self.both("rs日报记录", 0, 0, {"date": date}, which, False)
                self.both("rs日报记录", 1, 0, {"date": date}, which)

    def test_the_dialects_agree_on_the_days_of_january(self):
        self.assertGreater(len(self.both("rs日报记录", 0, 0, {"date": "2003-01-20"}, "出库", True)["rows"]), 50)

    def test_before_the_first_of_a_month_there_is_nothing(self):
        self.assertEqual(self.compare(False, "2003-07-01", True, (0, 0), "出库"), 0)


if __name__ == "__main__":
    unittest.main()
