"""Summaries and lists on a real book, with figures worked out from its rows."""

import unittest

from report_book import (BALANCE, BILLS, COST_LINES, COSTS, CUSTOMERS, DIALECTS, IN_ORDER, LINES, LOST, PRODUCTS,
                         STOCKTAKING, SUPPLIERS, Bill, ReportCase, grouped, insert_bill, joined, mean, total)

ALL = range(1, 13)
# Begin, end and the months let in: a side below 1 is open.
OPEN_BELOW_1 = [(1, 2, (1, 2)), (2, 2, (2,)), (3, 1, ()), (0, 2, (1, 2)), (-1, 2, (1, 2)), (2, 0, range(2, 13)),
                (2, -1, range(2, 13)), (0, 0, ALL), (-1, -1, ALL), (-1, 0, ALL), (12, 12, (12,))]
# Begin, end and the months let in: only 0 is an open side, a negative month opens both.
OPEN_AT_0 = [(1, 2, (1, 2)), (2, 2, (2,)), (3, 1, ()), (0, 2, (1, 2)), (-1, 2, ALL), (2, 0, range(2, 13)),
             (2, -1, ALL), (0, 0, ALL), (-1, -1, ALL), (-1, 0, ALL), (-1, 5, ALL), (12, 12, (12,))]


class BillDatesTest(ReportCase):
    def expected(self):
        return [[f"{y}-{m:02}-{d:02}"] for y, m, d in sorted({b[1:4] for kind in BILLS for b in BILLS[kind]})]

    def test_dates_of_both_directions_once_each_in_order(self):
        for dialect in DIALECTS:
            found = self.result("rs单据日期列表", isSQL=dialect)
            self.assertEqual(found["rows"], self.expected())
            self.assertEqual(found["columns"], [{"name": "日期", "type": "Date"}])
        self.assertIn(["2003-02-05"], self.expected())

    def test_days_are_ordered_as_dates_not_as_texts(self):
        for bill, month in ((91, 9), (92, 10)):
            self.execute(insert_bill("出库", Bill(bill, 2003, month, 9, "", "", "", 1, 0, 0)))
        for dialect in DIALECTS:
            rows = self.result("rs单据日期列表", isSQL=dialect)["rows"]
            self.assertLess(rows.index(["2003-09-09"]), rows.index(["2003-10-09"]))
            self.assertEqual(rows, sorted(rows))

    def test_sql_server_asks_twice(self):
        sent = [s["text"] for s in self.call("rs单据日期列表", isSQL=True)["sent"]]
        self.assertEqual(len(sent), 2)
        self.assertEqual(sent[0], sent[1].replace(" AS 日期", ""))
        self.assertEqual(len(self.call("rs单据日期列表")["sent"]), 1)


class ProductListTest(ReportCase):
    def ids(self, *arguments, **others):
        return [row[0] for row in self.values(self.result("rs商品列表", *arguments, **others), "pdID")]

    def in_order(self, products):
        return [product for product in IN_ORDER if product in products]

    def test_every_source_in_every_period(self):
        costs = {cost.id: cost for cost in COSTS}
        sources = {
            "盘点": [(month, product) for product, month, _ in STOCKTAKING],
            "仓库": [(month, product) for _, month, product, *_ in BALANCE],
            "入库": [(bill.month, row.product) for bill, row in joined("入库")],
            "出库": [(bill.month, row.product) for bill, row in joined("出库")],
            "成本": [(costs[row.bill].month, row.product) for row in COST_LINES],
        }
        for source, rows in sources.items():
            for begin, end, months in OPEN_AT_0:
                with self.subTest(source=source, begin=begin, end=end):
                    expected = self.in_order({product for month, product in rows if month in months})
                    self.assertEqual(self.ids(0, 0, begin, end, source), expected)

    def test_whole_product_rows(self):
        found = self.result("rs商品列表", 0, 0, 0, 0, "入库")
        whole = self.batch({"execute": "Select * From 商品设置"})[0]["result"]
        self.assertEqual(found["columns"], whole["columns"])
        self.assert_rows(found, "pdID,商品名称,商品编号,ClassCode", [PRODUCTS[p] for p in (4, 2, 3, 1)])

    def test_codes_of_a_class_are_in_pinyin_order(self):
        self.execute("Insert into 仓库盘点表 (pdID,月份,dpID) Values (2,2,1)",
                     "Insert into 仓库盘点表 (pdID,月份,dpID) Values (3,2,1)")
        found = self.result("rs商品列表", 0, 0, 0, 0, "盘点")
        self.assert_rows(found, "ClassCode,商品编号",
                         [("01", "Z9"), ("02", "钢-1"), ("02", "石-1"), ("02", "水-1"), ("03", "A1")])

    def test_warehouse_and_partner_are_those_of_the_header(self):
        for kind in ("入库", "出库"):
            for warehouse, partner in ((1, 0), (2, 0), (0, 5), (0, 9), (1, 9), (2, 6), (3, 0), (-1, -1)):
                expected = self.in_order({row.product for bill, row in joined(kind)
                                          if warehouse in (bill.warehouse, 0, -1) and partner in (bill.partner, 0, -1)})
                self.assertEqual(self.ids(warehouse, partner, 0, 0, kind), expected)
        self.assertEqual(self.ids(2, 5, 0, 0, "盘点"), [4])
        self.assertEqual(self.ids(2, 5, 0, 0, "仓库"), [1])
        self.assertEqual(self.ids(2, 5, 0, 0, "成本"), [1])

    def test_a_range_reads_the_number_one_bound_the_code(self):
        for kind, number, code in (("入库", "R", "N"), ("出库", "C", "M")):
            cases = [
                ((f"{number}2", f"{number}3"), lambda b: f"{number}2" <= b.number <= f"{number}3"),
                ((f"{code}4",), lambda b: b.code >= f"{code}4"),
                (("", f"{code}3"), lambda b: b.code <= f"{code}3"),
                ((f"{number}0",), lambda b: b.code >= f"{number}0"),
            ]
            for bounds, keeps in cases:
                expected = self.in_order({row.product for bill, row in joined(kind) if keeps(bill)})
                self.assertEqual(self.ids(0, 0, 0, 0, kind, *bounds), expected)

    def test_an_unknown_source_is_refused(self):
        for source in ("调拨", "", "入库 "):
            answer = self.call("rs商品列表", 0, 0, 0, 0, source)
            self.assertNotIn("result", answer)
            self.assertNotEqual(answer["error"]["number"], 0)
            self.assertIn("IN", answer["error"]["description"])


class ProductRecordsTest(ReportCase):
    def test_a_products_balance_by_year_and_month(self):
        names = "pdID,年份,月份,上期库存单价,上期库存数量,上期库存金额,本期库存单价,本期库存数量,本期库存金额"
        for warehouse in (0, -1, 1, 2, 3):
            months = {}
            for year, month, product, depot, *figures in BALANCE:
                if product == 1 and warehouse in (depot, 0, -1):
                    months.setdefault((year, month), []).append(figures)
            expected = []
            for key, rows in sorted(months.items()):
                price, quantity, amount = (sum(column) for column in zip(*rows))
                price /= len(rows)
                expected.append((1, *key, price, quantity, amount, 2 * price, 2 * quantity, 2 * amount))
            found = self.result("rs期初记录", warehouse, 1)
            self.assert_rows(found, names, expected)
        self.assertEqual(len(self.result("rs期初记录", 0, 1)["rows"]), 3)
        self.assertEqual(self.result("rs期初记录", 0, 3)["rows"], [])

    def test_cost_bills_of_a_product_by_month_and_bill(self):
        costs = {cost.id: cost for cost in COSTS}
        for warehouse in (0, -1, 1, 2, 3):
            rows = [(costs[row.bill], row) for row in COST_LINES
                    if row.product == 1 and warehouse in (costs[row.bill].warehouse, 0, -1)]
            rows.sort(key=lambda pair: (pair[0].month, pair[0].id))
            self.assert_rows(self.result("rs成本记录", warehouse, 1), "CostID,月份,dpID,pdID,数量,单价,金额",
                             [(c.id, c.month, c.warehouse, 1, r.quantity, r.price, r.amount) for c, r in rows])
        self.assertEqual(self.result("rs成本记录", 0, 3)["rows"], [])


class ProductSumsTest(ReportCase):
    COLUMNS = "pdID,商品名称,商品编号,ClassCode,数量,单价,金额,税额,除税单价,合计"

    def expected(self, rows):
        return [(product, *(PRODUCTS[product][1:] if product in PRODUCTS else (None, None, None)),
                 total(group, "quantity"), mean(group, "price"), total(group, "net"), total(group, "tax"),
                 total(group, "net_price"), total(group, "net"))
                for product, group in grouped(rows, lambda bill, row: row.product).items()]

    def test_every_period(self):
        for kind in ("入库", "出库"):
            for begin, end, months in OPEN_BELOW_1:
                rows = [pair for pair in joined(kind) if pair[0].month in months]
                found = self.result("rs商品汇总", kind, begin, end, 0, 0, "")
                self.assert_same_rows(found, self.COLUMNS, self.expected(rows))

    def test_a_single_month_in_parentheses_and_no_filter_no_where(self):
        sent = self.call("rs商品汇总", "入库", 3, 3, 0, 0, "")["sent"][0]["text"]
        self.assertIn(" Where  (Lst.月份=3) GROUP BY ", sent)
        self.assertNotIn("Where", self.call("rs商品汇总", "入库", 0, 0, 0, 0, "")["sent"][0]["text"])

    def test_warehouse_partner_and_kind(self):
        kinds = {"购进": ("普通发票", "增值税发票"), "调拨": ("调拨单",)}
        for kind in ("入库", "出库"):
            for warehouse, partner, kept in ((1, 0, ""), (2, 0, ""), (0, 5, ""), (0, 9, ""), (0, 0, "购进"),
                                             (0, 0, "调拨"), (2, 6, "购进"), (1, 9, "购进"), (-1, -1, "销售")):
                rows = [(bill, row) for bill, row in joined(kind)
                        if warehouse in (bill.warehouse, 0, -1) and partner in (bill.partner, 0, -1)
                        and bill.bill_kind in kinds.get(kept, (bill.bill_kind,))]
                found = self.result("rs商品汇总", kind, 0, 0, warehouse, partner, kept)
                self.assert_same_rows(found, self.COLUMNS, self.expected(rows))

    def test_a_product_in_two_warehouses_is_one_row(self):
        found = self.result("rs商品汇总", "入库", 2, 2, 0, 0, "")
        self.assertEqual([row for row in self.values(found, "pdID", "数量") if row[0] == 1], [(1, 31.25)])

    def test_a_line_without_its_product_counts_on_bills_but_not_on_cost_bills(self):
        for kind in ("入库", "出库"):
            found = self.result("rs商品汇总", kind, 0, 0, 0, 0, "")
            self.assertIn((LOST, None), self.values(found, "pdID", "商品名称"))
        self.assertNotIn((LOST,), self.values(self.result("rs商品汇总", "成本", 0, 0, 0, 0, ""), "pdID"))
        self.assertIn((LOST,), self.values(self.result("rs成本汇总", 0, 0, 0), "pdID"))

    def test_types(self):
        types = self.types(self.result("rs商品汇总", "入库", 0, 0, 0, 0, ""))
        self.assertEqual(list(types), ["pdID", "数量", "单价", "金额", "税额", "除税单价", "合计", "商品名称", "商品编号",
                                       "规格", "型号", "计量单位", "进位方法", "最低库存", "最高库存", "ClassCode"])
        self.assertEqual([types[n] for n in ("数量", "单价", "金额", "税额", "除税单价", "合计")],
                         ["Double", "Double", "Currency", "Currency", "Currency", "Currency"])


class CostSumsTest(ReportCase):
    def expected(self, months, warehouse=0):
        costs = {cost.id: cost for cost in COSTS}
        rows = [(costs[row.bill], row) for row in COST_LINES
                if costs[row.bill].month in months and warehouse in (costs[row.bill].warehouse, 0, -1)]
        return [(product, mean(group, "price"), total(group, "quantity"), total(group, "amount"))
                for product, group in grouped(rows, lambda cost, row: row.product).items()]

    def test_every_period(self):
        for begin, end, months in OPEN_AT_0:
            found = self.result("rs成本汇总", begin, end, 0)
            self.assert_same_rows(found, "pdID,单价,数量,金额", self.expected(months))
        self.assertEqual(self.types(found), {"pdID": "Long", "单价": "Double", "数量": "Double", "金额": "Currency"})

    def test_warehouse(self):
        for begin, end, months, warehouse in ((0, 0, ALL, 1), (-1, 5, ALL, 2), (2, 2, (2,), 1), (0, 0, ALL, 3)):
            self.assert_same_rows(self.result("rs成本汇总", begin, end, warehouse), "pdID,单价,数量,金额",
                                  self.expected(months, warehouse))

    def test_the_product_sums_of_cost_bills_read_a_negative_month_as_open(self):
        for begin, end, months in OPEN_BELOW_1:
            found = self.result("rs商品汇总", "成本", begin, end, 0, 5, "购进")
            self.assert_same_rows(found, "pdID,单价,数量,金额", [r for r in self.expected(months) if r[0] != LOST])
        self.assertNotIn("税额", self.types(found))


class PartnerSumsTest(ReportCase):
    def test_every_period_of_both_families(self):
        for which, kind, partners in (("厂商", "入库", SUPPLIERS), ("客户", "出库", CUSTOMERS), ("", "出库", CUSTOMERS)):
            for begin, end, months in OPEN_AT_0:
                rows = [pair for pair in joined(kind) if pair[0].month in months]
                expected = [
                    (partner, *reversed(partners.get(partner, (None, None))), total(group, "quantity"),
                     mean(group, "net_price"), total(group, "net"), total(group, "price"), total(group, "amount"),
                     total(group, "tax")) for partner, group in grouped(rows, lambda bill, row: bill.partner).items()]
                found = self.result("rs单位汇总", begin, end, which)
                self.assert_same_rows(found, "ksID,ClassCode,企业名称,数量,除税单价,除税金额,单价,金额,税额", expected)
        self.assertEqual(list(self.types(found).values()), ["Long", "String", "String", "Double", "Double", "Currency",
                                                            "Currency", "Currency", "Currency"])


class ExtendedListTest(ReportCase):
    def test_inbound_values_of_a_month_and_a_warehouse_in_pinyin_order(self):
        pinyin = [None, "阿明", "李四", "王五", "张三"]
        for month, warehouse in ((0, 0), (-1, -1), (1, 0), (2, 0), (2, 1), (0, 2), (12, 0)):
            used = {row.handler for bill, row in joined("入库")
                    if (month < 1 or bill.month == month) and (warehouse < 1 or bill.warehouse == warehouse)}
            self.assertEqual(self.result("rs入库扩展列表", "经手人", month, warehouse)["rows"],
                             [[name] for name in pinyin if name in used])
        self.assertEqual(self.result("rs入库扩展列表", "货位", 0, 0)["rows"], [[None], ["R1"], ["R2"]])
        self.assertEqual(self.result("rs入库扩展列表", "交接人", 0, 0)["rows"], [[None]])

    def test_outbound_values_are_those_of_every_line(self):
        for month, warehouse in ((0, 0), (1, 0), (2, 2), (11, 7)):
            self.assertEqual(self.result("rs出库扩展列表", "经手人", month, warehouse)["rows"],
                             [[None], ["阿明"], ["李四"], ["王五"], ["张三"]])
        self.assertEqual(self.result("rs出库扩展列表", "货位", 0, 0)["rows"], [[None], ["R1"], ["R8"], ["R9"]])
        self.assertEqual(self.result("rs出库扩展列表", "包装", 0, 0)["rows"], [[None]])

    def test_outbound_sums_of_a_month_per_product_and_value(self):
        for column, field in (("经手人", "handler"), ("货位", "slot")):
            for month, warehouse in ((2, 0), (2, 1), (2, -1), (12, 2), (12, 1)):
                rows = [(bill, row) for bill, row in joined("出库")
                        if bill.month == month and (warehouse < 1 or bill.warehouse == warehouse)]
                groups = grouped(rows, lambda bill, row: (row.product, getattr(row, field)))
                found = self.result("rs出库扩展合计", column, month, warehouse)
                self.assert_same_rows(found, f"pdID,{column},数量,金额",
                                      [(*key, total(g, "quantity"), total(g, "net")) for key, g in groups.items()])
        self.assertEqual(list(self.types(found).values()), ["Long", "String", "Double", "Currency"])
        self.assertEqual(len({row.handler for row in LINES["出库"] if row.bill == 2}), 2)

    def test_outbound_sums_of_month_0_are_none(self):
        for month in (0, -1):
            self.assertEqual(self.result("rs出库扩展合计", "经手人", month, 0)["rows"], [])

    def test_another_column_sends_nothing(self):
        for method in ("rs入库扩展列表", "rs出库扩展列表", "rs出库扩展合计"):
            for column in ("", "经手", "数量", "、", "经手人、交接人"):
                answer = self.call(method, column, 2, 1)
                self.assertEqual((answer["result"], answer["sent"]), ({"nothing": True}, []))


if __name__ == "__main__":
    unittest.main()
