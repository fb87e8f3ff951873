"""The six stock figures of every product, warehouse and month, against a calculation of its own in exact fractions."""

import itertools
import unittest
from decimal import ROUND_HALF_EVEN, Decimal
from fractions import Fraction

from bare_book import BareBookCase, insert

WAREHOUSES, PRODUCTS, MONTHS = (0, 1, 2, 7), (0, 1, 2, 3, 4), (-1, 0, 1, 2, 3)
# Opening balances: month, product, warehouse, quantity, amount.
OPENINGS = [(1, 1, 1, "10.5", "105.0005"), (1, 1, 2, "4", "41"), (1, 2, 1, "3", "0.0001"), (2, 1, 1, "0.03125", "7.7777"),
            (2, 2, 2, "-2", "-9.5"), (3, 3, 1, "0", "12.5")]
# Bills: family, month, warehouse, kind, lines of product, quantity, net amount, tax, gross amount.
BILLS = [
    ("入库", 1, 1, "入库单", [(1, "4", "43.3333", "5.6333", "48.9666"), (2, "0.09375", "1.5", "0.25", "1.75")]),
    ("入库", 1, 2, "普通发票", [(1, "7.5", "80.0001", "10.4", "90.4001")]),
    ("入库", 2, 1, "%发票", [(1, "3", "31", "4.03", "35.03"), (1, "0.03125", "0.3334", "0", "0.3334")]),
    ("入库", 2, 2, "调拨单", [(2, "6", "33.3333", "0", "33.3333")]),
    ("入库", 3, 1, "增值税发票", [(3, "8", "64", "10.88", "74.88")]),
    ("出库", 1, 1, "出库单", [(1, "5", "61.7", "8.021", "69.721")]),
    ("出库", 2, 1, "调拨单", [(2, "1.15625", "3.1", "0", "3.1"), (1, "2", "25", "3.25", "28.25")]),
    ("出库", 2, 2, "出库单", [(2, "4", "50", "6.5", "56.5")]),
    ("出库", 3, 1, "%发票", [(3, "8", "100.0002", "17", "117.0002")]),
]
# Cost bills: month, warehouse, lines of product, quantity, amount.
COSTS = [(1, 1, [(1, "5", "50.0001"), (2, "1", "4")]), (2, 1, [(1, "2", "20.5")]), (2, 2, [(2, "4", "36.3333")]),
         (3, 1, [(3, "3", "10")])]
KINDS = {"直接": None, "购进": "%发票", "调拨": "调拨单", "": "", "发票": "", "直接 ": ""}
DIRECT = {"入库": "入库单", "出库": "出库单"}


def statements():
    yield from insert("仓库余额表", "年份,月份,pdID,dpID,上期库存数量,上期库存金额",
                      *((2003, m, p, d, Decimal(q), Decimal(a)) for m, p, d, q, a in OPENINGS))
    for number, (family, month, warehouse, kind, lines) in enumerate(BILLS, 1):
        yield from insert(f"{family}目录", "BillID,年份,月份,日子,单据类型,dpID", (number, 2003, month, 9, kind, warehouse))
        yield from insert(f"{family}记录", "BillID,pdID,数量,除税金额,税额,金额",
                          *((number, line[0], *map(Decimal, line[1:])) for line in lines))
    for number, (month, warehouse, lines) in enumerate(COSTS, 1):
        yield from insert("成本目录", "CostID,年份,月份,日子,dpID", (number, 2003, month, 28, warehouse))
        yield from insert("成本记录", "CostID,pdID,数量,金额", *((number, p, Decimal(q), Decimal(a)) for p, q, a in lines))


def money(value):
    """A value to four places, half to even."""
    exact = Decimal(value.numerator) / Decimal(value.denominator)
    return Fraction(exact.quantize(Decimal("0.0001"), ROUND_HALF_EVEN))


def fits(wanted, value):
    return wanted <= 0 or wanted == value


def in_month(wanted, month, total):
    return wanted <= 0 or (month <= wanted if total else month == wanted)


def divided(amount, quantity):
    return float(amount) / float(quantity) if quantity else 0.0


def opening(warehouse, product, month, what):
    rows = [row for row in OPENINGS if fits(month, row[0]) and fits(product, row[1]) and fits(warehouse, row[2])]
    quantity, amount = (sum((Fraction(row[at]) for row in rows), Fraction(0)) for at in (3, 4))
    return {"数量": float(quantity), "金额": float(amount)}.get(what, divided(amount, quantity))


def moved(family, warehouse, product, month, what, which="", total=False):
    kind = DIRECT[family] if which == "直接" else KINDS[which]
    lines = [line for f, m, d, k, lines in BILLS for line in lines
             if f == family and in_month(month, m, total) and fits(warehouse, d) and fits(product, line[0]) and kind in ("", k)]
    sums = {name: sum((Fraction(line[at]) for line in lines), Fraction(0))
            for at, name in enumerate(("数量", "金额", "税额", "合计"), 1)}
    if what == "单价":
        return money(Fraction(divided(sums["金额"], sums["数量"])))
    return money(sums.get(what, Fraction(0)))


def cost(warehouse, product, month, what, total=False):
    lines = [line for m, d, lines in COSTS for line in lines
             if in_month(month, m, total) and fits(warehouse, d) and line[0] == product]
    quantity, amount = (sum((Fraction(line[at]) for line in lines), Fraction(0)) for at in (1, 2))
    return money({"数量": quantity, "金额": amount}.get(what, Fraction(divided(amount, quantity))))


def stock(warehouse, product, month, what, cost_used=False):
    """Quantity or amount in stock."""
    out = cost(warehouse, product, month, what) if cost_used and what == "金额" else moved("出库", warehouse, product, month, what)
    return money(Fraction(opening(warehouse, product, month, what))) + moved("入库", warehouse, product, month, what) - out


class FiguresCase(BareBookCase):
    def setUp(self):
        super().setUp()
        self.execute(*statements())

    def compare(self, cases, read):
        """Cases: a call and its figure; read turns an answer's result into what the figure is compared with."""
        cases = list(cases)
        self.assertGreater(len(cases), 100)
        self.assertGreater(len({figure for _, figure in cases}), 5)
        for (call, figure), found in zip(cases, self.results(*(call for call, _ in cases))):
            self.assertEqual(read(found), figure, call)

    @staticmethod
    def currency(found):
        return Fraction(found["currency"])

    def double(self, found):
        self.assertIs(type(found), float)
        return found


class MatrixTest(FiguresCase):
    AT = list(itertools.product(WAREHOUSES, PRODUCTS, MONTHS))

    @staticmethod
    def costs(at):
        """With and without costs; those of all products together are no figure of their sum."""
        return (False, True) if at[1] else (False,)

    def test_openings(self):
        self.compare(((("Get上期库存", *at, what), opening(*at, what)) for at in self.AT for what in ("数量", "金额", "单价", "其它", "")),
                     self.double)

    def test_movements(self):
        for family in DIRECT:
            self.compare(((("Get商品" + family, *at, what, which, total), moved(family, *at, what, which, total))
                          for at in self.AT for what in ("数量", "金额", "税额", "合计", "单价", "其它") for which in KINDS
                          for total in (False, True)), self.currency)

    def test_costs(self):
        self.compare(((("Get商品成本", warehouse, product, str(month), what, total), cost(warehouse, product, month, what, total))
                      for warehouse, product, month in self.AT if product for what in ("数量", "金额", "单价", "其它")
                      for total in (False, True)), self.currency)

    def test_stock_of_the_current_month(self):
        self.compare(((("Get本期库存", *at, what, used),
                       float(stock(*at, what, used)) if what in ("数量", "金额") and at[2] else 0.0)
                      for at in self.AT for what in ("数量", "金额", "单价", "其它") for used in self.costs(at)), self.double)

    def test_stock_with_its_price(self):
        cases = [(at, what, used) for at in self.AT for what in ("数量", "金额", "单价") for used in self.costs(at)]
        found = self.batch(*({"method": "Get商品库存", "args": [*at, what, used]} for at, what, used in cases))
        failed = 0
        for (at, what, used), answer in zip(cases, found, strict=True):
            quantity = stock(*at, "数量")
            if what == "单价" and not quantity:
                failed += 1
                self.assertEqual(("result" in answer, answer["error"]["number"]), (False, 11), at)
                continue
            expected = divided(stock(*at, "金额", used), quantity) if what == "单价" else float(stock(*at, what, used))
            self.assertEqual(self.double(answer["result"]), expected, (at, what, used))
        self.assertTrue(10 < failed < len(cases) / 3)


class CaseTest(FiguresCase):
    def test_optional_arguments_left_out(self):
        for call, figure in ((("Get商品入库", 1, 1, 2, "金额"), "31.3334"), (("Get商品出库", 1, 1, 1, "合计"), "69.721"),
                             (("Get商品入库", 1, 1, 2, "金额", "购进"), "31.3334"), (("Get商品入库", 2, 1, 1, "金额", "购进"), "0"),
                             (("Get商品成本", 1, 1, "2", "金额"), "20.5")):
            self.assertEqual(self.result(*call), {"currency": figure}, call)
        self.assertEqual(self.results(("Get本期库存", 1, 1, 1, "数量"), ("Get商品库存", 1, 1, 1, "数量")), [9.5, 9.5])

    def test_all_zero_is_the_whole_table(self):
        # 10.5 + 4 + 3 + 0.03125 - 2 + 0; 105.0005 + 41 + 0.0001 + 7.7777 - 9.5 + 12.5.
        self.assertEqual(self.results(("Get上期库存", 0, 0, 0, "数量"), ("Get上期库存", 0, 0, 0, "金额")), [15.53125, 156.7783])
        self.assertEqual([s["text"] for s in self.call("Get上期库存", 0, 0, 0, "数量")["sent"]],
                         ["SELECT Sum(Bn.上期库存数量) AS 数量, Sum(Bn.上期库存金额) AS 金额 FROM 仓库余额表 AS Bn "])

    def test_month_0_takes_no_notice_of_the_total(self):
        for method in ("Get商品入库", "Get商品出库"):
            answers = self.answers((method, 1, 1, 0, "数量", "", True), (method, 1, 1, 0, "数量", "", False))
            self.assertEqual(answers[0]["result"], answers[1]["result"])
            self.assertEqual(answers[0]["sent"], answers[1]["sent"])
            self.assertNotIn("月份", answers[0]["sent"][0]["text"])

    def test_a_cost_month_that_is_none(self):
        # 5 at 50.0001 in January and 2 at 20.5 in February.
        for month, figure in (("", "70.5001"), ("0", "70.5001"), ("-1", "70.5001"), ("1", "50.0001"), ("02", "20.5"),
                              ("二月", "0"), ("13", "0")):
            self.assertEqual(self.result("Get商品成本", 0, 1, month, "金额"), {"currency": figure}, month)
        self.assertNotIn("月份", self.call("Get商品成本", 0, 1, "", "金额")["sent"][0]["text"])

    def test_costs_without_a_product_are_those_of_one_product(self):
        self.assertIn(self.result("Get商品成本", 1, 0, "1", "金额"), ({"currency": "50.0001"}, {"currency": "4"}))
        # 105.0006 carried in, 44.8333 come in.
        self.assertIn(self.result("Get本期库存", 1, 0, 1, "金额", True), (99.8338, 145.8339))

    def test_only_one_stock_method_has_a_price(self):
        self.assertEqual(self.result("Get本期库存", 1, 1, 1, "单价"), 0)
        # 10.5 + 4 - 5 pieces; 105.0005 + 43.3333 - 61.7, or - 50.0001 with costs.
        self.assertEqual(self.results(("Get商品库存", 1, 1, 1, "单价"), ("Get商品库存", 1, 1, 1, "单价", True)),
                         [86.6338 / 9.5, 98.3337 / 9.5])

    def test_no_stock_has_no_price(self):
        # Product 3 comes in and goes out with 8 in March; 64 in, 100.0002 out, 12.5 carried in.
        self.assertEqual(self.error("Get商品库存", 1, 3, 3, "单价"), 11)
        self.assertEqual(self.error("Get商品库存", 1, 3, 3, "单价", True), 11)
        self.assertEqual(self.results(("Get本期库存", 1, 3, 3, "单价"), ("Get本期库存", 1, 3, 3, "数量"), ("Get本期库存", 1, 3, 3, "金额")),
                         [0, 0, -23.5002])


class LimitTest(BareBookCase):
    def test_amounts_are_exact(self):
        self.execute(*insert("入库目录", "BillID,年份,月份,日子,dpID", (1, 2003, 1, 1, 1)),
                     *insert("入库记录", "BillID,pdID,数量,除税金额", (1, 1, 1, Decimal("900000000000000.0001")),
                             (1, 1, 1, Decimal("0.0002")), *[(1, 2, 1, Decimal("0.1"))] * 30,
                             (1, 3, 1, Decimal("922337203685477.5807")), (1, 3, 1, Decimal("-0.0001"))))
        self.assertEqual(self.results(*(("Get商品入库", 1, product, 1, "金额") for product in (1, 2, 3))),
                         [{"currency": text} for text in ("900000000000000.0003", "3", "922337203685477.5806")])

    def test_prices_round_half_to_even(self):
        self.execute(*insert("出库目录", "BillID,年份,月份,日子,dpID", (1, 2003, 1, 1, 1)),
                     *insert("出库记录", "BillID,pdID,数量,除税金额", (1, 1, 32, 1), (1, 2, 32, 3), (1, 3, 3, 2), (1, 4, -4, 1)))
        # 0.03125, 0.09375, 0.66666..., -0.25.
        self.assertEqual(self.results(*(("Get商品出库", 0, product, 0, "单价") for product in (1, 2, 3, 4))),
                         [{"currency": text} for text in ("0.0312", "0.0938", "0.6667", "-0.25")])

    def test_a_sum_beyond_an_amount_is_0(self):
        self.execute(*insert("入库目录", "BillID,年份,月份,日子,dpID", (1, 2003, 1, 1, 1)),
                     *insert("入库记录", "BillID,pdID,数量,除税金额", (1, 1, 1, Decimal("922337203685477.5807")), (1, 1, 1, 1)))
        self.assertEqual(self.result("Get商品入库", 1, 1, 1, "金额"), {"currency": "0"})

    def test_nulls_count_as_0(self):
        self.execute(*insert("仓库余额表", "年份,月份,pdID,dpID,上期库存数量,上期库存金额", (2003, 1, 1, 1, None, 5), (2003, 1, 2, 1, 5, None)),
                     *insert("入库目录", "BillID,年份,月份,日子,dpID", (1, 2003, 1, 1, 1)),
                     *insert("入库记录", "BillID,pdID,数量,除税金额,税额,金额", (1, 1, None, 7, None, None), (1, 2, 2, None, None, None)),
                     *insert("成本目录", "CostID,年份,月份,日子,dpID", (1, 2003, 1, 1, 1)),
                     *insert("成本记录", "CostID,pdID,数量,金额", (1, 1, None, 6), (1, 2, 3, None)))
        for method, product, figures in (("Get上期库存", 1, {"数量": 0, "金额": 5, "单价": 0}),
                                         ("Get上期库存", 2, {"数量": 5, "金额": 0, "单价": 0}),
                                         ("Get商品入库", 1, {"数量": "0", "金额": "7", "单价": "0", "税额": "0", "合计": "0"}),
                                         ("Get商品入库", 2, {"数量": "2", "金额": "0", "单价": "0"})):
            for what, figure in figures.items():
                expected = {"currency": figure} if isinstance(figure, str) else figure
                self.assertEqual(self.result(method, 1, product, 1, what), expected, (method, product, what))
        for product, what, figure in ((1, "数量", "0"), (1, "金额", "6"), (1, "单价", "0"), (2, "数量", "3"), (2, "金额", "0"),
                                      (2, "单价", "0")):
            self.assertEqual(self.result("Get商品成本", 1, product, "1", what), {"currency": figure}, (product, what))

    def test_a_figure_that_fails_is_0(self):
        self.execute(*insert("仓库余额表", "年份,月份,pdID,dpID,上期库存数量,上期库存金额", (2003, 1, 1, 1, 6, 60)),
                     "Drop Table 入库记录", "Drop Table 出库记录", "Drop Table 成本记录")
        self.assertEqual(self.results(("Get商品入库", 1, 1, 1, "数量"), ("Get商品出库", 1, 1, 1, "单价"), ("Get商品成本", 1, 1, "1", "金额")),
                         [{"currency": "0"}] * 3)
        self.assertEqual(self.results(("Get商品库存", 1, 1, 1, "数量"), ("Get商品库存", 1, 1, 1, "单价", True), ("Get本期库存", 1, 1, 1, "金额")),
                         [6, 10, 60])
        self.execute("Drop Table 仓库余额表")
        self.assertEqual(self.result("Get上期库存", 1, 1, 1, "数量"), 0)
        self.assertEqual(self.error("Get商品库存", 1, 1, 1, "单价"), 11)


if __name__ == "__main__":
    unittest.main()
