"""Bills found by the filtered list, counted, paired and asked for ad hoc, against the same bills filtered in Python."""

import itertools
import unittest
from datetime import date
from decimal import Decimal

from bill_book import BILLS, CUSTOMERS, LINES, PRODUCTS, PROJECTS, SUPPLIERS, WAREHOUSES, BillBookCase

PARAMETERS = ("which kind first_day last_day first_number last_number warehouse partner project handler counterpart packing "
              "packing_operator slot slot_operator term term_operator min_quantity max_quantity min_amount max_amount").split()
NUMERIC = {"warehouse", "partner", "project", "min_quantity", "max_quantity", "min_amount", "max_amount"}
LIST_COLUMNS = [("年份", "Integer"), ("月份", "Integer"), ("日子", "Integer"), ("单据类型", "String"), ("类型", "String"),
                ("单据编号", "String"), ("数量", "Double"), ("金额", "Currency"), ("税额", "Currency"), ("合计", "Currency"),
                ("BillID", "Long"), ("录入员", "String"), ("录入日期", "Date"), ("审核员", "String"), ("审核日期", "Date"),
                ("说明", "String"), ("仓库名称", "String"), ("企业名称", "String"), ("项目名称", "String"),
                ("项目编号", "String")]
PINYIN = [None, "出库单", "调拨单", "普通发票", "入库单", "增值税发票"]


def everything(_):
    return True


def day_of(bill):
    return date(bill.year, bill.month, bill.day)


def money(row, *positions):
    """The row with its amounts, which come as text, as numbers that compare."""
    return [Decimal(v) if i in positions and v is not None else v for i, v in enumerate(row)]


def any_order(rows):
    return sorted(rows, key=repr)


class ListCase(BillBookCase):
    def request(self, server=False, **filters):
        self.assertLessEqual(filters.keys(), set(PARAMETERS))
        values = {name: 0 if name in NUMERIC else "" for name in PARAMETERS} | {"which": "入库"} | filters
        return {"method": "rs单据列表", "args": [values[name] for name in PARAMETERS], "isSQL": server}

    def found(self, answer):
        return [money(row, 7, 8, 9) for row in answer["rows"]]

    def expected(self, which="入库", header=everything, line=None, having=everything):
        """The rows of the list in any order; a filter on lines leaves bills without a matching line out."""
        rows = []
        for bill in filter(header, BILLS[which]):
            own = [each for each in LINES[which] if each.bill == bill.id and (line is None or line(each))]
            if line is not None and not own:
                continue
            for warehouse in {each.warehouse for each in own} or {None}:
                part = [each for each in own if each.warehouse == warehouse]
                sums = [None] * 4
                if part:
                    sums = [sum(each.quantity for each in part)]
                    sums += [sum(Decimal(getattr(each, figure)) for each in part) for figure in ("net", "tax", "amount")]
                if not having(sums):
                    continue
                partners = SUPPLIERS if which == "入库" else CUSTOMERS
                project = PROJECTS.get(bill.project, (None, None))
                rows.append([bill.year, bill.month, bill.day, bill.bill_kind, bill.kind, bill.number, *sums, bill.id,
                             *[None] * 5, WAREHOUSES.get(bill.warehouse), partners.get(bill.partner), project[1], project[0]])
        return rows

    def check(self, cases):
        """Every case in both dialects: name, filters, expected rows."""
        requests = [self.request(server, **filters) for _, filters, _ in cases for server in (False, True)]
        answers = self.results(*requests)
        for i, (name, _, rows) in enumerate(cases):
            with self.subTest(name):
                self.assertEqual(any_order(self.found(answers[2 * i])), any_order(rows))
                self.assertEqual(answers[2 * i], answers[2 * i + 1], "the dialects differ")


class BillListTest(ListCase):
    def test_columns_and_their_types(self):
        for which in ("入库", "出库"):
            found = self.results(self.request(which=which))[0]
            self.assertEqual([(c["name"], c["type"]) for c in found["columns"]], LIST_COLUMNS)

    def test_nothing_given_lists_every_bill_of_the_direction(self):
        self.check([("inbound", {}, self.expected())] +
                   [(str(which), {"which": which}, self.expected("出库")) for which in ("出库", "成本", {"empty": True}, None)])

    def test_sums_of_a_bill_in_two_warehouses(self):
        rows = [row for row in self.found(self.results(self.request())[0]) if row[10] == 1]
        self.assertEqual(any_order([row[6:10] + [row[16]] for row in rows]), any_order(
            [[5, Decimal("55"), Decimal("9.35"), Decimal("64.35"), "东库"],
             [3.5, Decimal("1.1667"), Decimal("0.1983"), Decimal("1.365"), "东库"]]))

    def test_a_bill_without_lines_is_listed_with_null_sums(self):
        row = next(row for row in self.found(self.results(self.request())[0]) if row[10] == 3)
        self.assertEqual(row[6:10] + row[16:], [None] * 4 + ["西库", "华新水泥", "大桥", "X7"])

    def test_a_missing_partner_project_or_warehouse_keeps_the_bill(self):
        names = {row[10]: row[16:] for row in self.found(self.results(self.request())[0])}
        self.assertEqual([names[bill] for bill in (2, 4, 8)], [["东库", None, None, None], ["西库", None, None, None], [None] * 4])

    def test_order_is_month_kind_in_pinyin_and_number(self):
        found = self.found(self.results(self.request())[0])
        self.assertEqual([row[10] for row in found], [9, 10, 3, 2, 7, 5, 8, 1, 1, 4, 11, 6])
        for which in ("入库", "出库"):
            keys = [(row[1], PINYIN.index(row[3]), row[5]) for row in self.found(self.results(self.request(which=which))[0])]
            self.assertEqual(keys, sorted(keys))

    def test_header_filters(self):
        cases = [
            ("kind", {"kind": "退货"}, lambda b: b.kind == "退货"),
            ("no such kind", {"kind": "借用"}, lambda b: False),
            ("Null asks for an empty kind", {"kind": None}, lambda b: b.kind == ""),
            ("warehouse", {"warehouse": 2}, lambda b: b.warehouse == 2),
            ("warehouse as text", {"warehouse": "2"}, lambda b: b.warehouse == 2),
            ("partner", {"partner": 5}, lambda b: b.partner == 5),
            ("missing partner", {"partner": 77}, lambda b: b.partner == 77),
            ("project", {"project": 7}, lambda b: b.project == 7),
            ("negative project", {"project": -7}, lambda b: b.project == -7),
            ("ids", {"warehouse": 1, "partner": 5, "project": 8}, lambda b: (b.warehouse, b.partner, b.project) == (1, 5, 8)),
            ("Empty is not given", {n: {"empty": True} for n in ("kind", "warehouse", "partner", "handler")}, everything),
        ]
        self.check([(name, filters, self.expected(header=header)) for name, filters, header in cases])

    def test_outbound_filters(self):
        self.check([("partner", {"which": "出库", "partner": 9}, self.expected("出库", lambda b: b.partner == 9)),
                    ("packing", {"which": "出库", "packing": "箱"}, self.expected("出库", line=lambda r: r.packing == "箱"))])

    def test_line_filters_sum_the_matching_lines_only(self):
        cases = [
            ("handler", {"handler": "张三"}, lambda r: r.handler == "张三"),
            ("counterpart", {"counterpart": "甲"}, lambda r: r.counterpart == "甲"),
            ("packing", {"packing": "箱"}, lambda r: r.packing == "箱"),
            ("all three", {"handler": "张三", "counterpart": "乙", "packing": "箱"},
             lambda r: (r.handler, r.counterpart, r.packing) == ("张三", "乙", "箱")),
            ("nobody", {"handler": "孙七"}, lambda r: False),
        ]
        self.check([(name, filters, self.expected(line=line)) for name, filters, line in cases])

    def test_filters_of_headers_and_lines_together(self):
        self.check([("all", {"kind": "采购", "first_day": "2003-1-1", "last_day": "2003-12-31", "first_number": "R", "warehouse": 1,
                             "partner": 5, "project": 7, "handler": "张三", "packing": "箱", "min_quantity": 3, "max_amount": 30},
                     self.expected(header=lambda b: b.id == 1, line=lambda r: r.handler == "张三"))])

    def test_filters_without_effect(self):
        all_bills = self.expected()
        self.check([(name, {name: value}, all_bills) for value in ("=", "R1", 30, None, {"empty": True})
                    for name in ("packing_operator", "slot", "slot_operator", "term", "term_operator")])

    def test_date_range_includes_both_ends(self):
        days = [day_of(bill) for bill in BILLS["入库"]]
        ranges = [(a, b) for a in days + [None] for b in days + [None]]
        cases = []
        for first, last in ranges:
            filters = {"first_day": {"date": first.isoformat()} if first else "", "last_day": {"date": last.isoformat()} if last else ""}
            cases.append((f"{first} to {last}", filters, self.expected(
                header=lambda b, first=first, last=last: (first or date.min) <= day_of(b) <= (last or date.max))))
        self.check(cases)

    def test_days_given_as_text_or_with_a_time(self):
        rows = self.expected(header=lambda b: day_of(b) == date(2003, 1, 20))
        self.check([("text", {"first_day": "2003-1-20", "last_day": "2003年1月20日"}, rows),
                    ("time", {"first_day": {"date": "2003-01-20T23:59:59"}, "last_day": {"date": "2003-01-20T00:00:01"}}, rows)])

    def test_number_range_includes_both_ends(self):
        cases = []
        for first, last in itertools.product(("", "D1", "P9", "R1"), ("", "P9", "R1", "R2")):
            cases.append((f"{first} to {last}", {"first_number": first, "last_number": last}, self.expected(
                header=lambda b, first=first, last=last: first <= b.number and (not last or b.number <= last))))
        self.check(cases)

    def test_bounds_of_the_sums(self):
        def within(value, low, high):
            return (low == 0 or value is not None and value >= low) and (high == 0 or value is not None and value <= high)

        cases = []
        for bounds in itertools.product((0, 3.5, 5, -1), (0, 6, 3.5), ("0", "1.1667", "-9", "44"), ("0", "55", "10")):
            low, high, least, most = bounds[0], bounds[1], Decimal(bounds[2]), Decimal(bounds[3])
            cases.append((str(bounds), {"min_quantity": low, "max_quantity": high, "min_amount": {"currency": bounds[2]},
                                        "max_amount": float(bounds[3])},
                          self.expected(having=lambda s, low=low, high=high, least=least, most=most:
                                        within(s[0], low, high) and within(s[1], least, most))))
        self.assertIn([], [rows for _, _, rows in cases])
        self.check(cases)

    def test_a_null_bound_suppresses_its_pair(self):
        self.check([("quantity", {"min_quantity": None, "max_quantity": 1}, self.expected()),
                    ("amount", {"min_quantity": 8, "min_amount": 1000, "max_amount": None},
                     self.expected(having=lambda s: s[0] is not None and s[0] >= 8))])

    def test_what_cannot_be_composed_gives_nothing(self):
        for filters in ({"warehouse": "abc"}, {"partner": ""}, {"min_amount": "x"}, {"first_day": "2003-02-30"}, {"last_day": "soon"}):
            answer = self.batch(self.request(**filters))[0]
            self.assertEqual((answer["result"], answer["sent"]), ({"nothing": True}, []), filters)

    def test_what_the_book_rejects_is_an_error(self):
        for filters in ({"warehouse": None}, {"partner": None}, {"kind": "O'X"}):
            answer = self.batch(self.request(**filters))[0]
            self.assertEqual(answer["error"]["number"], -2147217900, filters)
            self.assertIn("Syntax error at line 1", answer["error"]["description"])
            self.assertEqual(len(answer["sent"]), 1)


class CountTest(BillBookCase):
    def test_bills_of_a_month(self):
        requests, counts = [], []
        for which, month, warehouse, kind in itertools.product(("入库", "出库"), range(1, 13), (0, 1, 2, 99), ("", "入库单", "调拨单")):
            requests.append({"method": "Get_BillNum", "args": [warehouse, month, kind, which]})
            counts.append(sum(b.month == month and warehouse in (0, b.warehouse) and kind in ("", b.bill_kind) for b in BILLS[which]))
        self.assertIn(0, counts)
        self.assertEqual(self.results(*requests), counts)

    def count(self, *arguments):
        return self.result("GetBillCount", *arguments)

    def test_a_span_tests_month_and_day_separately(self):
        self.assertEqual(self.count("入库", "", 0, 0, 0, 0), "11 张")
        self.assertEqual(self.count("出库", "", 0, 0, 0, 0), "4 张")
        self.assertEqual(self.count("入库", "", 2, 9, 0, 0), "3 张")
        self.assertEqual(self.count("入库", "", 3, 6, 0, 0), "1 张")
        self.assertEqual(self.count("出库", "", 12, 31, 0, 0), "(无)")

    def test_an_end_meets_no_bill(self):
        for end in ((6, 0), (0, 31), (12, 31)):
            self.assertEqual(self.count("入库", "", 0, 0, *end), "(无)")

    def test_a_kind(self):
        for kind, count in (("退货", "2 张"), ("退货  ", "2 张"), ("  ", "11 张"), ("借用", "(无)")):
            self.assertEqual(self.count("入库", kind, 0, 0, 0, 0), count, repr(kind))

    def test_an_unknown_table_is_an_error(self):
        for method, arguments in (("Get_BillNum", (0, 1, "", "盘点")), ("GetBillCount", ("盘点", "", 0, 0, 0, 0))):
            self.assertIn("盘点目录", self.call(method, *arguments)["error"]["description"])


class TransferTest(BillBookCase):
    def test_either_half_finds_the_other(self):
        self.assertEqual(self.result("GetShiftID", 3, "出库"), 4)
        self.assertEqual(self.result("GetShiftID", 4, "入库"), 3)
        self.assertEqual(self.result("Get_FromBillID", 4), 3)

    def test_no_counterpart_no_bill_or_another_kind_is_0(self):
        calls = [("GetShiftID", 4, "出库"), ("GetShiftID", 9, "入库"), ("GetShiftID", 999, "入库"), ("GetShiftID", 3, "成本"),
                 ("GetShiftID", 3, ""), ("Get_FromBillID", 9), ("Get_FromBillID", 999)]
        self.assertEqual(self.results(*({"method": m, "args": a} for m, *a in calls)), [0] * len(calls))

    def test_of_two_counterparts_the_first_is_meant(self):
        self.sql("Insert into 入库目录 (BillID,月份,单据类型,单据编号) Values (50,3,'调拨单','D1')")
        first = self.rows("Select * From 入库目录 Where 月份=3 And 单据类型='调拨单' And 单据编号='D1'")[0][0]
        self.assertEqual(self.result("GetShiftID", 3, "出库"), first)

    def test_a_null_month_counts_as_0_in_one_and_is_an_error_in_the_other(self):
        self.sql("Insert into 入库目录 (BillID,单据类型,单据编号) Values (50,'调拨单','D7')")
        self.sql("Insert into 出库目录 (BillID,月份,单据类型,单据编号) Values (60,0,'调拨单','D7')")
        self.assertEqual(self.result("GetShiftID", 50, "入库"), 60)
        self.assertEqual(self.call("Get_FromBillID", 50)["error"]["number"], 94)

    def test_an_error_is_0_in_one_and_reported_by_the_other(self):
        self.sql("Update 入库目录 Set 单据编号='O''X' Where BillID=4")
        for bill in (4, None):
            self.assertEqual(self.result("GetShiftID", bill, "入库"), 0)
            self.assertEqual(self.call("Get_FromBillID", bill)["error"]["number"], -2147217900)


if __name__ == "__main__":
    unittest.main()
