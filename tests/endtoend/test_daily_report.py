"""The daily report on a real book, with figures worked out from its rows."""

import unittest
from datetime import date, timedelta
from decimal import Decimal

from report_book import (BALANCE, BILLS, DIALECTS, IN_ORDER, PRODUCTS, Bill, ReportCase, grouped, insert_bill,
                         insert_line, joined, line, mean, total)

INVOICES = ("普通发票", "增值税发票")


def day(year, month, day_of_month):
    return {"date": f"{year}-{month:02}-{day_of_month:02}"}


class DayRecordsTest(ReportCase):
    COLUMNS = "ClassCode,pdID,商品名称,商品编号,数量,单价,金额,税额,合计"

    def expected(self, kind, keeps):
        """Products that are in the book, by class and code."""
        groups = grouped(((b, r) for b, r in joined(kind) if keeps(b)), lambda bill, row: row.product)
        return [(PRODUCTS[p].class_code, p, PRODUCTS[p].name, PRODUCTS[p].code, total(groups[p], "quantity"),
                 mean(groups[p], "net_price"), total(groups[p], "net"), total(groups[p], "tax"),
                 total(groups[p], "amount")) for p in IN_ORDER if p in groups]

    def test_a_day_of_either_family(self):
        for which, kind in (("入库", "入库"), ("调入", "入库"), ("", "入库"), ("出库", "出库"), ("调出", "出库")):
            for when in ((2003, 2, 10), (2003, 2, 12), (2003, 1, 20), (2003, 2, 11), (2003, 12, 31)):
                expected = self.expected(kind, lambda b: b[1:4] == when)
                self.assert_rows(self.result("rs日报记录", 0, 0, day(*when), which), self.COLUMNS, expected)
        self.assertEqual(self.expected("入库", lambda b: b[1:4] == (2003, 2, 10))[0][1], 4)

    def test_a_time_of_day_is_after_the_day_began(self):
        noon = {"date": "2003-02-12T12:00:00"}
        self.assertEqual(self.values(self.result("rs日报记录", 0, 0, noon, "出库"), "pdID"), [])
        # From the noon of the first day on, so without the first, and up to the day itself.
        expected = self.expected("出库", lambda b: (2003, 2, 1) < b[1:4] <= (2003, 2, 12))
        self.assertTrue(expected)
        self.assert_rows(self.result("rs日报记录", 0, 0, noon, "出库", True), self.COLUMNS, expected)

    def test_columns(self):
        for dialect in DIALECTS:
            types = self.types(self.result("rs日报记录", 0, 0, day(2003, 2, 12), "出库", isSQL=dialect))
            self.assertEqual(list(types), ["ClassCode", "pdID", "商品名称", "商品编号", "规格", "型号", "计量单位",
                                           "进位方法", "最低库存", "最高库存", "数量", "单价", "金额", "税额", "合计"])
            self.assertEqual(list(types.values())[10:], ["Double", "Double", "Currency", "Currency", "Currency"])

    def test_filters_of_warehouse_partner_and_kind(self):
        self.execute(insert_bill("入库", Bill(50, 2003, 2, 10, "调拨单", "", "", 1, 6, 0)),
                     insert_line("入库", line(50, 3, 1, "1", "1")))
        for warehouse, partner in ((1, 0), (2, 0), (0, 6), (2, 6), (-1, -1)):
            for which, kinds in (("购进", INVOICES), ("入库", ("入库单", "增值税发票", "调拨单"))):
                products = {r.product for b, r in joined("入库") if b[1:4] == (2003, 2, 10) and b.bill_kind in kinds
                            and warehouse in (b.warehouse, 0, -1) and partner in (b.partner, 0, -1)}
                if which == "入库" and warehouse != 2:
                    products.add(3)
                found = self.result("rs日报记录", warehouse, partner, day(2003, 2, 10), which)
                self.assertEqual([r[0] for r in self.values(found, "pdID")], [p for p in IN_ORDER if p in products])

    def test_sold_and_transferred(self):
        for dialect in DIALECTS:
            for which, when, kinds in (("销售", (2003, 2, 5), INVOICES), ("销售", (2003, 2, 12), INVOICES),
                                       ("调拨", (2003, 12, 31), ("调拨单",)), ("调拨", (2003, 2, 12), ("调拨单",))):
                expected = self.expected("出库", lambda b: b[1:4] == when and b.bill_kind in kinds)
                found = self.result("rs日报记录", 0, 0, day(*when), which, isSQL=dialect)
                self.assert_rows(found, self.COLUMNS, expected)

    def test_sql_server_reads_the_outbound_tables_whatever_was_asked(self):
        for which in ("入库", "购进", "调入", "出库"):
            kinds = INVOICES if which == "购进" else ("出库单",)
            expected = self.expected("出库", lambda b: b[1:4] == (2003, 2, 12) and b.bill_kind in kinds)
            found = self.result("rs日报记录", 0, 0, day(2003, 2, 12), which, isSQL=True)
            self.assert_rows(found, self.COLUMNS, expected)
        self.assertEqual(self.result("rs日报记录", 0, 0, day(2003, 2, 10), "入库", isSQL=True)["rows"], [])

    def test_the_dialects_agree_on_outbound_days(self):
        for bill in BILLS["出库"]:
            jet, server = (self.result("rs日报记录", 0, 0, day(*bill[1:4]), "出库", isSQL=d) for d in DIALECTS)
            self.assertEqual(jet, server)

    def test_the_month_before_a_day(self):
        for which, kind in (("入库", "入库"), ("出库", "出库")):
            for when in ((2003, 2, 11), (2003, 2, 12), (2003, 2, 13), (2003, 2, 28), (2003, 12, 31)):
                expected = self.expected(kind, lambda b: b[1:3] == when[:2] and b.day < when[2])
                self.assert_rows(self.result("rs日报记录", 0, 0, day(*when), which, True), self.COLUMNS, expected)

    def test_before_the_first_of_a_month_there_is_nothing(self):
        for which in ("入库", "出库"):
            self.assertEqual(self.result("rs日报记录", 0, 0, day(2003, 2, 1), which, True)["rows"], [])

    def test_sql_servers_lower_bound_is_a_number_of_days_and_lies_in_1905(self):
        """2003-2-1 without quotes is 2003 - 2 - 1 = 2000, days from 1900-01-01: bills from then on are all added."""
        bound = date(1900, 1, 1) + timedelta(2003 - 2 - 1)
        self.assertEqual(bound.year, 1905)
        before = bound - timedelta(1)
        extra = [Bill(60, before.year, before.month, before.day, "", "", "", 1, 9, 0),
                 Bill(61, bound.year, bound.month, bound.day, "", "", "", 1, 9, 0)]
        rows = [line(60, 5, 1, "1", "1"), line(61, 3, 1, "2", "2")]
        self.execute(*(insert_bill("出库", b) for b in extra), *(insert_line("出库", r) for r in rows))
        found = self.result("rs日报记录", 0, 0, day(2003, 2, 12), "出库", True, isSQL=True)
        earlier = {r.product for b, r in joined("出库") if b[1:4] < (2003, 2, 12)}
        self.assertEqual([r[0] for r in self.values(found, "pdID")], [p for p in IN_ORDER if p in earlier | {3}])
        # The first of a month, too, is not empty then: 2003 - 2 - 1 again.
        found = self.result("rs日报记录", 0, 0, day(2003, 2, 1), "出库", True, isSQL=True)
        earlier = {r.product for b, r in joined("出库") if b[1:4] < (2003, 2, 1)}
        self.assertEqual([r[0] for r in self.values(found, "pdID")], [p for p in IN_ORDER if p in earlier | {3}])

    def test_sql_server_refuses_a_time_of_day_behind_its_first_date(self):
        noon = {"date": "2003-02-10T12:00:00"}
        refused = self.call("rs日报记录", 0, 0, noon, "出库", True, isSQL=True)
        self.assertIn("CAST(2003-2-1 12:00:00 AS DATETIME)", refused["sent"][0]["text"])
        self.assertNotIn("result", refused)
        self.assertNotEqual(refused["error"]["number"], 0)
        self.assertIn('":"', refused["error"]["description"])


class MonthDaysTest(ReportCase):
    COLUMNS = "日子,期初数量,期初金额,入库数量,入库金额,出库数量,出库金额,库存数量,库存金额"

    def movements(self, kind, month, warehouse):
        rows = [(b, r) for b, r in joined(kind) if b.month == month and warehouse in (b.warehouse, 0)]
        return {d: (total(group, "quantity"), total(group, "net"))
                for d, group in sorted(grouped(rows, lambda bill, row: bill.day).items())}

    def expected(self, month, warehouse):
        inbound, outbound = (self.movements(kind, month, warehouse) for kind in ("入库", "出库"))
        opening = [b[4:] for b in BALANCE if b[1] == month and warehouse in (b[3], 0)]
        quantity, amount = (sum((b[i] for b in opening), Decimal(0)) for i in (1, 2))
        rows = []
        for each in [*inbound, *(d for d in outbound if d not in inbound)]:
            came, went = (side.get(each, (Decimal(0), Decimal(0))) for side in (inbound, outbound))
            closing = quantity + came[0] - went[0], amount + came[1] - went[1]
            rows.append((each, quantity, amount, *came, *went, *closing))
            quantity, amount = closing
        return rows

    def test_every_month_of_each_warehouse_and_of_all(self):
        for month in (1, 2, 3, 12):
            for warehouse in (0, 1, 2):
                for dialect in DIALECTS:
                    with self.subTest(month=month, warehouse=warehouse, isSQL=dialect):
                        found = self.result("rs日报列表", month, warehouse, isSQL=dialect)
                        self.assert_rows(found, self.COLUMNS, self.expected(month, warehouse))
        self.assertEqual(len(self.expected(2, 0)), 3)

    def test_a_month_of_all_years_with_its_early_outbound_day_last(self):
        found = self.result("rs日报列表", 2, 0)
        # The 12th: in 2004 came goods, in 2002 and 2003 some went.
        self.assertEqual([row[0] for row in self.values(found, "日子")], [10, 12, 5])
        self.assertEqual(self.types(found), {"日子": "Long", **{n: "Double" for n in self.COLUMNS.split(",")[1:]}})

    def test_a_month_without_bills_or_lines_has_no_days(self):
        self.execute(insert_bill("入库", Bill(70, 2003, 7, 1, "", "", "", 1, 0, 0)))
        for month in (0, -1, 7, 11):
            found = self.result("rs日报列表", month, 0)
            self.assertEqual((found["rows"], len(found["columns"])), ([], 9))

    def test_a_negative_warehouse_means_all(self):
        self.assertEqual(self.result("rs日报列表", 2, -1), self.result("rs日报列表", 2, 0))

    def test_null_figures_count_0(self):
        self.execute("Update 入库记录 Set 数量=Null,除税金额=Null Where BillID=4",
                     "Insert into 仓库余额表 (年份,月份,pdID,dpID,上期库存数量,上期库存金额) Values (2003,3,1,1,Null,Null)")
        self.assert_rows(self.result("rs日报列表", 3, 0), self.COLUMNS, [(31, 0, 0, 0, 0, 0, 0, 0, 0)])


if __name__ == "__main__":
    unittest.main()
