"""Ad-hoc queries on bills and their lines, against the same bills filtered in Python."""

import unittest
from datetime import date
from decimal import Decimal

from bill_book import BILLS, CUSTOMERS, LINES, PRODUCTS, PROJECTS, BillBookCase

SUMMARY_COLUMNS = [("pdID", "Long"), ("数量", "Double"), ("金额", "Currency"), ("税额", "Currency"), ("除税单价", "Currency"),
                   ("除税金额", "Currency"), ("商品名称", "String"), ("商品编号", "String"), ("规格", "String"),
                   ("型号", "String"), ("计量单位", "String"), ("进位方法", "String"), ("最低库存", "Double"),
                   ("最高库存", "Double"), ("ClassCode", "String")]
LINE_COLUMNS = [("日期", "String"), ("单据名称", "String"), ("单据类型", "String"), ("单据编号", "String"), ("单据类型", "String"),
                ("单据编号", "String"), ("pdID", "Long"), ("ClassCode", "String"), ("商品名称", "String"),
                ("商品编号", "String"), ("规格", "String"), ("型号", "String"), ("计量单位", "String"), ("进位方法", "String"),
                ("最高库存", "Double"), ("最低库存", "Double"), ("单价", "Currency"), ("数量", "Double"), ("金额", "Currency"),
                ("税额", "Currency"), ("除税单价", "Currency"), ("除税金额", "Currency"), ("经手人", "String"),
                ("交接人", "String"), ("包装", "String"), ("货位", "String"), ("项目编号", "String"), ("项目名称", "String"),
                ("工程名称", "String"), ("单位名称", "String"), ("BillID", "Long")]
UNNAMED = "(无名称)"


def day_of(bill):
    return date(bill.year, bill.month, bill.day)


def text_at(value, test):
    """Whether a test holds for a text; no comparison holds for Null."""
    return value is not None and test(value)


def any_order(rows):
    return sorted(rows, key=repr)


# Name, values by position, whether a header matches by them, whether a line does.
ON_HEADERS = [
    ("first day", {0: "2003-1-31"}, lambda b: day_of(b) >= date(2003, 1, 31)),
    ("last day", {1: {"date": "2003-01-20T12:00:00"}}, lambda b: day_of(b) <= date(2003, 1, 20)),
    ("days", {0: "2003-1-3", 1: "2003年3月5日"}, lambda b: date(2003, 1, 3) <= day_of(b) <= date(2003, 3, 5)),
]
ON_NUMBERS = [
    ("first number", {2: "P9"}, lambda b: b.number >= "P9"),
    ("last number", {3: "D1"}, lambda b: b.number <= "D1"),
    ("numbers", {2: "F1", 3: "R1"}, lambda b: "F1" <= b.number <= "R1"),
]
ON_LINES = [
    ("nothing", {}, lambda r: True),
    ("handler", {4: "张三"}, lambda r: r.handler == "张三"),
    ("counterpart", {5: "甲"}, lambda r: r.counterpart == "甲"),
    ("packing =", {6: "箱", 7: "="}, lambda r: r.packing == "箱"),
    ("packing <>", {6: "箱", 7: "<>"}, lambda r: text_at(r.packing, lambda v: v != "箱")),
    ("packing Like", {6: "%箱%", 7: " Like "}, lambda r: text_at(r.packing, lambda v: "箱" in v)),
    ("slot >=", {8: "R3", 9: ">="}, lambda r: r.slot >= "R3"),
    ("slot <", {8: "R3", 9: "<"}, lambda r: r.slot < "R3"),
    ("slot Like", {8: "R%", 9: " Like "}, lambda r: r.slot.startswith("R")),
    ("term =", {10: 30, 11: "="}, lambda r: r.term == 30),
    ("term <>", {10: 30, 11: "<>"}, lambda r: r.term != 30),
    ("term >=, a text", {10: "45", 11: ">="}, lambda r: r.term >= 45),
    ("term <", {10: 0.5, 11: "<"}, lambda r: r.term < 0.5),
    ("operators alone", {7: "=", 9: "<>", 11: ">"}, lambda r: True),
    ("all of a line", {4: "张三", 5: "甲", 6: "箱", 7: "=", 8: "R1", 9: "=", 10: 30, 11: "<="},
     lambda r: (r.handler, r.counterpart, r.packing, r.slot) == ("张三", "甲", "箱", "R1") and r.term <= 30),
    ("nobody", {4: "孙七"}, lambda r: False),
]


def array(given):
    return {"array": [given.get(position, "") for position in range(12)]}


def matching(which, header, line):
    """Header and line of every line that matches."""
    headers = {bill.id: bill for bill in BILLS[which] if header(bill)}
    return [(headers[each.bill], each) for each in LINES[which] if each.bill in headers and line(each)]


class QueryCase(BillBookCase):
    def check(self, cases, compare):
        """Calls every case (name, method, arguments, expected) in both dialects."""
        answers = self.results(*({"method": method, "args": arguments, "isSQL": server}
                                 for _, method, arguments, _ in cases for server in (False, True)))
        for i, (name, _, _, expected) in enumerate(cases):
            with self.subTest(name):
                compare(answers[2 * i], expected)
                self.assertEqual(answers[2 * i], answers[2 * i + 1], "the dialects differ")

    def check_recordsets(self, method, expected, extra=()):
        """Every condition that a recordset knows; expected makes the rows from headers with lines."""
        def everything(_):
            return True

        cases = []
        for which in ("入库", "出库"):
            for name, given, line in ON_LINES:
                cases.append((name, which, "", 0, 0, 0, given, everything, line))
            for name, given, header in ON_HEADERS + ON_NUMBERS:
                cases.append((name, which, "", 0, 0, 0, given, header, everything))
        cases += [
            ("kind", "入库", "采购", 0, 0, 0, {}, lambda b: b.kind == "采购", everything),
            ("kind of blanks", "入库", "  ", 0, 0, 0, {}, everything, everything),
            ("warehouse", "入库", "", 2, 0, 0, {}, lambda b: b.warehouse == 2, everything),
            ("partner", "入库", "", 0, 5, 0, {}, lambda b: b.partner == 5, everything),
            ("project", "入库", "", 0, 0, 7, {}, lambda b: b.project == 7, everything),
            ("negative ids", "入库", "", -2, -5, -7, {}, everything, everything),
            ("all", "入库", "采购", 1, 5, 7, {0: "2003-2-10", 1: "2003-2-10", 2: "R2", 3: "R2", 4: "张三", 8: "R1", 9: "="},
             lambda b: b.id == 1, lambda r: r.handler == "张三"),
        ]
        self.check([(f"{which}: {name}", method, [which, kind, warehouse, partner, project, *extra, array(given)],
                     expected(matching(which, header, line)))
                    for name, which, kind, warehouse, partner, project, given, header, line in cases],
                   self.same_rows)


class SummaryTest(QueryCase):
    def rows(self, recordset):
        """Each row with its amounts as numbers, the average price rounded as a price is."""
        at = {c["name"]: i for i, c in enumerate(recordset["columns"])}
        for row in recordset["rows"]:
            for name in ("金额", "税额", "除税单价", "除税金额"):
                row[at[name]] = Decimal(row[at[name]])
            row[at["单价"]] = round(float(row[at["单价"]]), 6)
        return recordset["rows"]

    def same_rows(self, recordset, expected):
        self.assertEqual(any_order(self.rows({"columns": recordset["columns"], "rows": [list(r) for r in recordset["rows"]]})),
                         any_order(expected))

    def summed(self, pairs, column=None):
        """A row for every product, and for every value of the column, which follows the product."""
        rows = []
        for key in {(line.product, column(bill, line) if column else None) for bill, line in pairs}:
            own = [each for bill, each in pairs if (each.product, column(bill, each) if column else None) == key]
            name, number, class_code = PRODUCTS[key[0]]
            prices = [Decimal(each.price) for each in own]
            sums = [sum(Decimal(getattr(each, figure)) for each in own) for figure in ("amount", "tax", "net_price", "net")]
            rows.append([key[0], *([key[1]] if column else []), sum(each.quantity for each in own),
                         round(float(sum(prices) / len(prices)), 6), *sums, name, number, *[None] * 4, 0, 0, class_code])
        return rows

    def test_columns_and_their_types(self):
        for group, types in (("", []), ("经手人", ["String"]), ("dpID", ["Long"]), ("项目名称", ["String"])):
            found = self.result("rsSql单据记录", "入库", "", 0, 0, 0, group, array({}))
            columns = [(c["name"], c["type"]) for c in found["columns"] if c["name"] != "单价"]
            self.assertEqual(columns, SUMMARY_COLUMNS[:1] + [(group, each) for each in types] + SUMMARY_COLUMNS[1:])
            self.assertEqual([c["name"] for c in found["columns"]].index("单价"), 2 + len(types))

    def test_nothing_given_sums_every_line(self):
        answer = self.call("rsSql单据记录", "入库", "", 0, 0, 0, "", array({}))
        self.assertNotIn("Where", answer["sent"][0]["text"])
        self.assertEqual(self.columns(answer["result"], "pdID", "数量", "除税金额", "除税单价"),
                         [[1, 15, "158", "60.5"], [2, 13.5, "51.1667", "10.3333"], [3, 22, "44", "6"]])

    def test_conditions(self):
        self.check_recordsets("rsSql单据记录", self.summed, extra=("",))

    def test_groups(self):
        def project(position):
            return lambda b, r: PROJECTS.get(b.project, (None, None))[position]

        columns = {"项目名称": project(1), "项目编号": project(0), "经手人": lambda b, r: r.handler, "dpID": lambda b, r: r.warehouse,
                   "包装": lambda b, r: r.packing}
        pairs = matching("入库", lambda b: True, lambda r: True)
        self.check([(group, "rsSql单据记录", ["入库", "", 0, 0, 0, group, array({})], self.summed(pairs, column))
                    for group, column in columns.items()], self.same_rows)


class LinesTest(QueryCase):
    def same_rows(self, recordset, expected):
        rows = [[Decimal(v) if 16 <= i <= 21 and i != 17 else v for i, v in enumerate(row)] for row in recordset["rows"]]
        self.assertEqual(any_order(rows), any_order(expected))

    def listed(self, pairs):
        rows = []
        for bill, line in pairs:
            name, number, class_code = PRODUCTS[line.product]
            project = PROJECTS.get(bill.project, (None, None, None))
            rows.append([f"{bill.year}-{bill.month}-{bill.day}", bill.bill_kind, bill.kind, bill.number, bill.bill_kind, bill.number,
                         line.product, class_code, name, number, *[None] * 4, 0, 0, Decimal(line.price), line.quantity,
                         *(Decimal(v) for v in (line.amount, line.tax, line.net_price, line.net)), line.handler,
                         line.counterpart, line.packing, line.slot, *project, CUSTOMERS.get(bill.partner), bill.id])
        return rows

    def test_columns_and_their_types(self):
        found = self.result("rsSql查询记录", "入库", "", 0, 0, 0, array({}))
        self.assertEqual([(c["name"], c["type"]) for c in found["columns"]], LINE_COLUMNS)

    def test_the_partner_of_an_inbound_bill_is_looked_for_among_the_customers(self):
        found = self.result("rsSql查询记录", "入库", "", 0, 5, 7, array({}))
        self.assertEqual(self.columns(found, "BillID", "单位名称"), [[1, "城建五公司"]] * 3)

    def test_conditions(self):
        self.check_recordsets("rsSql查询记录", self.listed)


class BillNumbersTest(QueryCase):
    def numbers(self, product, header, line):
        lines = [each for each in LINES["入库"] if each.product == product and line(each)]
        bills = [bill for bill in BILLS["入库"] if header(bill) and bill.id in {each.bill for each in lines}]
        return ";".join(bill.number for bill in sorted(bills, key=lambda b: (b.month, b.sort, b.number)))

    def test_order_is_month_type_and_number(self):
        self.assertEqual(self.result("Get单据列表", "入库", "", 0, 0, 1, array({})), "D0;R3;R1;R2;P9")

    def test_one_number_has_no_separator(self):
        self.assertEqual(self.result("Get单据列表", "入库", "", 0, 0, 1, array({5: "丙"})), "R3")

    def test_without_a_product_nothing_is_read(self):
        answer = self.call("Get单据列表", "入库", "", 1, 5, 0, array({4: "张三"}))
        self.assertEqual((answer["result"], answer["sent"]), ("", []))

    def test_an_unknown_product_has_no_bills(self):
        for product in (99, -1):
            self.assertEqual(self.result("Get单据列表", "入库", "", 0, 0, product, array({})), "")

    def test_conditions(self):
        def everything(_):
            return True

        cases = [(name, "", 0, 0, given, everything, line) for name, given, line in ON_LINES]
        cases += [(name, "", 0, 0, given, header, everything) for name, given, header in ON_HEADERS]
        cases += [(f"{name} without effect", "", 0, 0, given, everything, everything) for name, given, _ in ON_NUMBERS]
        cases += [
            ("kind without effect", "借用", 0, 0, {}, everything, everything),
            ("warehouse", "", 1, 0, {}, lambda b: b.warehouse == 1, everything),
            ("partner", "", 0, 5, {}, lambda b: b.partner == 5, everything),
            ("negative ids", "", -1, -5, {}, everything, everything),
            ("placeholders", "", 0, 0, {4: UNNAMED, 5: UNNAMED, 6: UNNAMED, 8: UNNAMED, 10: UNNAMED}, everything, everything),
        ]
        self.check([(f"{name}, product {product}", "Get单据列表", ["入库", kind, warehouse, partner, product, array(given)],
                     self.numbers(product, header, line))
                    for name, kind, warehouse, partner, given, header, line in cases for product in (1, 2)], self.assertEqual)


class StatisticsTest(QueryCase):
    def count(self, product, header, line):
        """Bills with a matching line; one without a bill kind does not count."""
        lines = [each for each in LINES["入库"] if product in (0, each.product) and line(each)]
        return len([b for b in BILLS["入库"] if header(b) and b.bill_kind and b.id in {each.bill for each in lines}])

    def test_nothing_given_counts_every_bill_with_lines_and_a_kind(self):
        self.assertEqual(self.result("Get单据统计", "入库", "", "", 0, 0, 0, array({})), 9)
        self.assertEqual(self.result("Get单据统计", "出库", "", "", 0, 0, 0, array({})), 3)

    def test_conditions(self):
        def everything(_):
            return True

        cases = [(name, "", "", 0, 0, 0, given, everything, line) for name, given, line in ON_LINES]
        cases += [(name, "", "", 0, 0, 0, given, header, everything) for name, given, header in ON_HEADERS]
        cases += [(f"{name} without effect", "", "", 0, 0, 0, given, everything, everything) for name, given, _ in ON_NUMBERS]
        cases += [
            ("bill kind", "入库单", "", 0, 0, 0, {}, lambda b: b.bill_kind == "入库单", everything),
            ("kind", "", "采购", 0, 0, 0, {}, lambda b: b.kind == "采购", everything),
            ("kinds", "入库单", "采购", 0, 0, 0, {}, lambda b: (b.bill_kind, b.kind) == ("入库单", "采购"), everything),
            ("kinds of blanks", " ", " ", 0, 0, 0, {}, everything, everything),
            ("warehouse", "", "", 1, 0, 0, {}, lambda b: b.warehouse == 1, everything),
            ("partner", "", "", 0, 5, 0, {}, lambda b: b.partner == 5, everything),
            ("product", "", "", 0, 0, 1, {}, everything, everything),
            ("negative ids", "", "", -1, -5, -1, {}, everything, everything),
            ("placeholders", "", "", 0, 0, 0, {4: UNNAMED, 5: UNNAMED, 6: UNNAMED, 8: UNNAMED, 10: UNNAMED}, everything, everything),
        ]
        self.check([(name, "Get单据统计", ["入库", bill_kind, kind, warehouse, partner, product, array(given)],
                     self.count(max(product, 0), header, line))
                    for name, bill_kind, kind, warehouse, partner, product, given, header, line in cases], self.assertEqual)


class FailureTest(BillBookCase):
    def calls(self, values):
        """The four queries with the value each answers when it finds nothing to say."""
        return [(("rsSql单据记录", "入库", "", 0, 0, 0, "", values), {"nothing": True}),
                (("rsSql查询记录", "入库", "", 0, 0, 0, values), {"nothing": True}),
                (("Get单据列表", "入库", "", 0, 0, 1, values), ""),
                (("Get单据统计", "入库", "", "", 0, 0, 0, values), 0)]

    def test_values_that_do_not_make_a_text_give_nothing(self):
        for values in ({"array": [""] * 11}, {"array": []}, array({4: None}), array({10: None}), array({0: "2003-02-30"})):
            for call, nothing in self.calls(values):
                answer = self.call(*call)
                self.assertNotIn("error", answer)
                self.assertEqual((answer["result"], answer["sent"]), (nothing, []))

    def test_a_packing_without_its_operator_is_rejected(self):
        for call, _ in self.calls(array({6: "箱"})):
            answer = self.call(*call)
            self.assertIn(" 包装'箱'", answer["sent"][0]["text"])
            self.assertEqual(answer["error"]["number"], -2147217900)
            self.assertRegex(answer["error"]["description"], r"^Syntax error at line 1, column \d+ near \"'箱'\"")
            self.assertNotIn("result", answer)

    def test_the_recordsets_take_a_placeholder_as_a_term(self):
        for call, _ in self.calls(array({10: UNNAMED, 11: "="}))[:2]:
            answer = self.call(*call)
            self.assertIn("Where  期限=(无名称)", answer["sent"][0]["text"])
            self.assertIn("无名称", answer["error"]["description"])

    def test_an_unknown_group_is_an_error(self):
        answer = self.call("rsSql单据记录", "入库", "", 0, 0, 0, "颜色", array({}))
        self.assertIn("颜色", answer["error"]["description"])


if __name__ == "__main__":
    unittest.main()
