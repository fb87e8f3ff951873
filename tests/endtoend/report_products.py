"""Summaries per product and partner, cost bills, product and date lists and the lists of texts on the sample year."""

import unittest

from sample_book import PRODUCT, SampleCase, date_of, grouped, mean, texts_order, total

SPANS = [(0, 0), (3, 3), (2, 9), (0, 5), (11, 0), (1, 12), (9, 2), (-1, 5), (5, -1)]
INVOICES = ("普通发票", "增值税发票")


def in_span(month, begin, end):
    """A bound of 0 is open; with a bound below 0 beside one above it the whole span is."""
    if begin < 0 or end < 0:
        return True
    return begin <= month and (end == 0 or month <= end)


def in_summary_span(month, begin, end):
    """The bounds of the product summary count one by one: each that is at least 1."""
    return (begin < 1 or begin <= month) and (end < 1 or month <= end)


class SummaryTest(SampleCase):
    BILLS = "pdID 数量 单价:Double 金额 税额 除税单价 合计:Currency " + PRODUCT
    COSTS = "pdID 数量 单价:Double 金额 " + PRODUCT

    def bill_rows(self, family, span, warehouse, partner, kind):
        kinds = {"购进": INVOICES, "调拨": ("调拨单",)}.get(kind)
        lines = [line for header, line in self.book.lines(family)
                 if in_summary_span(header["月份"], *span) and warehouse in (0, header["dpID"])
                 and partner in (0, header["ksID"]) and (kinds is None or header["单据类型"] in kinds)]
        rows = []
        for product, own in grouped(lines, lambda line: line["pdID"]).items():
            net = total(own, "除税金额")
            rows.append([product, total(own, "数量"), mean(own, "单价"), net, total(own, "税额"), total(own, "除税单价"), net,
                         *self.book.named("商品", product, PRODUCT)])
        return rows

    def test_bills_per_product(self):
        compared = 0
        for family in ("入库", "出库"):
            for span in SPANS:
                for warehouse, partner, kind in ((0, 0, ""), (1, 0, ""), (4, 0, "购进"), (0, 0, "购进"), (0, 0, "调拨"), (2, 0, "调拨"),
                                                 (0, 3, ""), (0, 7, "购进"), (0, 0, "销售"), (-1, -1, "")):
                    rows = self.bill_rows(family, span, max(warehouse, 0), max(partner, 0), kind)
                    with self.subTest(family=family, span=span, warehouse=warehouse, partner=partner, kind=kind):
                        self.check(self.both("rs商品汇总", family, *span, warehouse, partner, kind), self.BILLS, rows, "pdID",
                                   empty=not rows)
                    compared += len(rows)
        self.assertGreater(compared, 15000)

    def cost_lines(self, chosen, span, warehouse):
        return [line for header, line in self.book.lines("成本")
                if chosen(header["月份"], *span) and warehouse in (0, header["dpID"])]

    def test_costs_per_product(self):
        for span in SPANS:
            for warehouse in (0, 1, 3):
                groups = grouped(self.cost_lines(in_summary_span, span, warehouse), lambda line: line["pdID"])
                rows = [[product, total(own, "数量"), mean(own, "单价"), total(own, "金额"),
                         *self.book.named("商品", product, PRODUCT)] for product, own in groups.items()]
                # Partner and kind count for nothing; cost bills end in September.
                with self.subTest(span=span, warehouse=warehouse):
                    self.check(self.both("rs商品汇总", "成本", *span, warehouse, 3, "购进"), self.COSTS, rows, "pdID",
                               empty=span in ((11, 0), (9, 2)))

                groups = grouped(self.cost_lines(in_span, span, warehouse), lambda line: line["pdID"])
                rows = [[product, mean(own, "单价"), total(own, "数量"), total(own, "金额")] for product, own in groups.items()]
                with self.subTest(span=span, warehouse=warehouse, method="rs成本汇总"):
                    self.check(self.both("rs成本汇总", *span, warehouse), "pdID 单价:Double 数量 金额", rows, "pdID",
                               empty=span in ((11, 0), (9, 2)))

    def test_bills_per_partner(self):
        columns = "ksID ClassCode 企业名称 数量 除税单价:Double 除税金额 单价 金额 税额"
        for which, family in (("厂商", "入库"), ("客户", "出库"), ("任意", "出库")):
            for span in SPANS:
                lines = [(header["ksID"], line) for header, line in self.book.lines(family) if in_span(header["月份"], *span)]
                rows = []
                for partner, pairs in grouped(lines, lambda pair: pair[0]).items():
                    own = [line for _, line in pairs]
                    rows.append([partner, *self.book.named(family, partner, "ClassCode 企业名称"), total(own, "数量"),
                                 mean(own, "除税单价"), *(total(own, c) for c in ("除税金额", "单价", "金额", "税额"))])
                with self.subTest(which=which, span=span):
                    self.check(self.both("rs单位汇总", *span, which), columns, rows, "ksID", empty=span == (9, 2))


class CostBillTest(SampleCase):
    COLUMNS = "CostID 年份 月份 日子 dpID CostID CostID pdID 单价 数量 金额"

    def test_cost_bills_of_a_product(self):
        compared = 0
        for product in (3, 12, 34, 90, 157, 226, 327):
            for warehouse in (0, 1, 2, 3, 4):
                rows = [[header["CostID"], *(header[c] for c in ("年份", "月份", "日子", "dpID", "CostID")),
                         *(line[c] for c in ("CostID", "pdID", "单价", "数量", "金额"))]
                        for header, line in self.book.lines("成本")
                        if line["pdID"] == product and warehouse in (0, header["dpID"])]
                with self.subTest(product=product, warehouse=warehouse):
                    self.check(self.both("rs成本记录", warehouse, product), self.COLUMNS, rows, "CostID",
                               order=lambda row: (row[2], row[0]), empty=not rows)
                compared += len(rows)
        self.assertGreater(compared, 60)


class ProductListTest(SampleCase):
    def compare(self, source, found, pairs):
        products = {line["pdID"] for _, line in pairs}
        columns = self.book.columns["商品设置"]
        rows = [[row[c] for c in columns] for row in self.book.tables["商品设置"] if row["pdID"] in products]
        place = (columns.index("ClassCode"), columns.index("商品编号"))
        self.check(found, " ".join(columns), rows, "pdID", order=lambda row: (row[place[0]], row[place[1]]),
                   empty=not rows)
        return len(rows)

    def pairs(self, source):
        if source in ("盘点", "仓库"):
            return [(row, row) for row in self.book.tables["仓库盘点表" if source == "盘点" else "仓库余额表"]]
        return self.book.lines(source)

    def test_every_source_by_months_and_warehouse(self):
        compared = 0
        for source in ("盘点", "仓库", "入库", "出库", "成本"):
            for span in SPANS:
                for warehouse in (0, 1, 2):
                    pairs = [(place, line) for place, line in self.pairs(source)
                             if in_span(place["月份"], *span) and warehouse in (0, place["dpID"])]
                    with self.subTest(source=source, span=span, warehouse=warehouse):
                        compared += self.compare(source, self.both("rs商品列表", warehouse, 0, *span, source), pairs)
        self.assertGreater(compared, 10000)

    def test_partner_and_numbers_of_bills(self):
        # One number alone is compared with the column 编号, two with 单据编号.
        for source, partner, low, high, chosen in (
                ("入库", 3, "", "", lambda h: h["ksID"] == 3),
                ("出库", 7, "", "", lambda h: h["ksID"] == 7),
                ("入库", 0, "JZ1-02-0001", "JZ1-02-0004", lambda h: "JZ1-02-0001" <= h["单据编号"] <= "JZ1-02-0004"),
                ("出库", 0, "CK1-01-0001", "CK2-09-0001", lambda h: "CK1-01-0001" <= h["单据编号"] <= "CK2-09-0001"),
                ("入库", 0, "", "R000005", lambda h: h["编号"] <= "R000005"),
                ("出库", 0, "C001560", "", lambda h: h["编号"] >= "C001560"),
                ("入库", 2, "R000800", "", lambda h: h["编号"] >= "R000800" and h["ksID"] == 2)):
            with self.subTest(source=source, partner=partner, low=low, high=high):
                pairs = [pair for pair in self.pairs(source) if chosen(pair[0])]
                found = self.both("rs商品列表", 0, partner, 0, 0, source, low, high)
                self.assertGreater(self.compare(source, found, pairs), 1)

    def test_filters_that_a_source_does_not_know(self):
        for source in ("盘点", "仓库", "成本"):
            self.assertEqual(self.result("rs商品列表", 0, 3, 0, 0, source, "A", "B"),
                             self.result("rs商品列表", 0, 0, 0, 0, source))

    def test_an_unknown_source_is_an_error(self):
        self.assertEqual(self.book.call("rs商品列表", 0, 0, 0, 0, "其它")["error"]["number"], -2147217900)


class TextListTest(SampleCase):
    WORDS = ("经手人", "交接人", "包装", "货位")

    def test_texts_of_inbound_lines(self):
        for word in self.WORDS:
            for month in (0, 3, 12):
                for warehouse in (0, 1, 4):
                    rows = [[text] for text in {line[word] for header, line in self.book.lines("入库")
                                                if month in (0, header["月份"]) and warehouse in (0, header["dpID"])}]
                    with self.subTest(word=word, month=month, warehouse=warehouse):
                        self.check(self.both("rs入库扩展列表", word, month, warehouse), word, rows, word, order=texts_order)

    def test_texts_of_all_outbound_lines(self):
        for word in self.WORDS:
            rows = [[text] for text in {line[word] for line in self.book.tables["出库记录"]}]
            for month, warehouse in ((0, 0), (3, 0), (0, 4), (7, 2)):
                with self.subTest(word=word, month=month, warehouse=warehouse):
                    self.check(self.both("rs出库扩展列表", word, month, warehouse), word, rows, word, order=texts_order)

    def test_sums_of_outbound_lines(self):
        for word in self.WORDS:
            for month in (1, 3, 12):
                for warehouse in (0, 1, 4):
                    groups = grouped([line for header, line in self.book.lines("出库")
                                      if header["月份"] == month and warehouse in (0, header["dpID"])],
                                     lambda line: (line["pdID"], line[word]))
                    rows = [[*key, total(own, "数量"), total(own, "除税金额")] for key, own in groups.items()]
                    with self.subTest(word=word, month=month, warehouse=warehouse):
                        self.check(self.both("rs出库扩展合计", word, month, warehouse), f"pdID {word} 数量 金额", rows,
                                   f"pdID {word}")
            self.check(self.both("rs出库扩展合计", word, 0, 0), f"pdID {word} 数量 金额", [], "pdID", empty=True)

    def test_any_other_word_runs_nothing(self):
        for method in ("rs入库扩展列表", "rs出库扩展列表", "rs出库扩展合计"):
            answer = self.book.call(method, "期限", 3, 1)
            self.assertEqual((answer["result"], answer.get("sent", [])), ({"nothing": True}, []))


class DateListTest(SampleCase):
    def test_dates_of_all_bills(self):
        dates = {date_of(header) for family in ("入库", "出库") for header in self.book.tables[family + "目录"]}
        self.assertEqual((min(dates), max(dates)), ("2003-01-02", "2004-01-05"))
        self.check(self.both("rs单据日期列表"), "日期:Date", [[date] for date in dates], "日期", order=lambda row: row[0])


if __name__ == "__main__":
    unittest.main()
