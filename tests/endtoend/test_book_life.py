"""The life of a book from its creation to the next year, beside a ledger that works out every figure on its own."""

import unittest
from fractions import Fraction

from bare_book import BareBookCase, insert
from ledger import AMOUNTS, FIGURES, Bill, Ledger

YEAR, TODAY = 2003, "2003-01-05"
MONTH_ENDS = {1: "2003-01-31", 2: "2003-02-28", 3: "2003-03-31"}
NOTES = {1: "2003-1-31", 2: "2003-2-28", 3: "2003-3-31"}
WAREHOUSES = {1: "东库", 2: "西库", 3: "南库"}
# Only the first warehouse's outbound amounts come from cost bills.
COSTS = {1: True, 2: False, 3: False}
# Name, code and class of a product.
PRODUCTS = {1: ("水泥", "A1", "03"), 2: ("钢筋", "B1", "02"), 3: ("石灰", "A2", "04"), 4: ("油漆", "C1", "01")}
# Product, warehouse, price, quantity, amount at the beginning of January.
OPENINGS = [(1, 1, "10", "100", "1000"), (1, 2, "10.5", "40", "420"), (2, 1, "0.3333", "3", "0.9999"),
            (3, 3, "7", "0.1", "0.7")]
BILLS = [
    Bill("入库", 1, 1, 1, [(1, "11", "20", "220"), (1, "12.5", "8", "100"), (2, "0.3334", "0.2", "0.0667")]),
    Bill("入库", 2, 1, 2, [(1, "10.3333", "3", "31"), (4, "85.4701", "2.5", "213.6753")]),
    Bill("入库", 3, 2, 1, [(1, "11.2", "30", "336"), (3, "7.1", "0.7", "4.97")]),
    Bill("入库", 4, 3, 3, [(3, "7.2001", "10", "72.001")]),
    Bill("入库", 5, 3, 1, [(2, "0.35", "100", "35")]),
    Bill("出库", 1, 1, 1, [(1, "15", "50", "750"), (2, "0.5", "3.2", "1.6")]),
    Bill("出库", 2, 1, 3, [(3, "9", "0.1", "0.9")]),
    Bill("出库", 3, 2, 1, [(1, "15.5", "8", "124")]),
    Bill("出库", 4, 2, 1, [(1, "16", "12", "192")]),
    Bill("出库", 5, 2, 2, [(4, "99.99", "1.25", "124.9875"), (1, "15", "43", "645")]),
    Bill("出库", 6, 3, 1, [(1, "15.3333", "7", "107.3331"), (2, "0.6", "50", "30")]),
    Bill("成本", 1, 1, 1, [(1, "10.3125", "50", "515.625")]),
    Bill("成本", 2, 2, 1, [(1, "10.4", "20", "208.0001"), (3, "7", "0.1", "0.7")]),
    Bill("成本", 3, 3, 2, [(1, "99", "1", "99")]),
]


def bill_statements(bill):
    key = "CostID" if bill.family == "成本" else "BillID"
    if key == "CostID":
        yield from insert("成本目录", "CostID,年份,月份,日子,dpID", (bill.number, YEAR, bill.month, 28, bill.warehouse))
        columns, rows = "CostID,pdID,单价,数量,金额", [(bill.number, *line) for line in bill.lines]
    else:
        yield from insert(f"{bill.family}目录", "BillID,年份,月份,日子,单据类型,单据编号,dpID,ksID",
                          (bill.number, YEAR, bill.month, 10 + bill.number, f"{bill.family}单", f"N{bill.number}",
                           bill.warehouse, 5))
        columns = "BillID,dpID,pdID,除税单价,数量,除税金额"
        rows = [(bill.number, bill.warehouse, *line) for line in bill.lines]
    for row in rows:
        yield f"Insert into {bill.family}记录 ({columns}) Values ({','.join(map(str, row))})"


class BookLifeTest(BareBookCase):
    def test_from_creation_to_the_next_year(self):
        self.ledger = Ledger(YEAR, list(BILLS))
        self.create()
        self.enter_masters()
        self.enter_openings_and_bills()
        self.refuse_and_accept_the_repair()
        self.close_month(1)
        self.close_month(2)
        self.audit_a_bill()
        self.delete_a_bill_and_close_february_again()
        self.close_month(3)
        self.compare_cumulated_figures()
        self.begin_the_next_year()
        self.clear_the_bills()

    def create(self):
        self.assertEqual(self.results(("Create_NewBook",), ("SetDefaultSFK",), ("SetDefaultSFK",), ("Get收付款方式数量",),
                                      today=TODAY),
                         [True, True, True, 2])
        items = {"帐簿名称": "新帐簿", "单位名称": "(新单位)", "建帐日期": {"date": TODAY}, "建帐月份": 1, "当前日期": 0, "当前月份": 0}
        self.compare_information(items)
        self.assertIs(self.result("Update_AccInfo", "单位名称", "大江建材"), False)
        self.compare_information(items | {"单位名称": "大江建材"})

    def compare_information(self, items):
        self.assertEqual(self.results(*(("Get_AccInfo", item) for item in items)), list(items.values()))

    def enter_masters(self):
        self.execute(*insert("仓库设置", "dpID,仓库名称", *WAREHOUSES.items()), *insert("厂商资料", "KSID,企业名称,单位名称", (5, "华新水泥厂", "华新")),
                     *insert("客户资料", "KSID,企业名称,单位名称", (5, "城建二公司", "城建")),
                     *insert("商品设置", "pdID,商品名称,商品编号,ClassCode", *((p, *texts) for p, texts in PRODUCTS.items())))
        self.assertEqual(self.results(("Get仓库数量",), ("Get商品数量",), ("Get厂商名称", 5), ("Get客户名称", 5), ("Get厂商ID", "华新")),
                         [3, 4, "华新水泥厂", "城建二公司", 5])
        for number, name in WAREHOUSES.items():
            self.assertEqual(self.results(("Get仓库名称", number), ("Get仓库ID", name)), [name, number])
        for number, (name, code, _) in PRODUCTS.items():
            self.assertEqual(self.results(("Get商品ID", name), ("Get商品ID", code), ("Get商品资料", number, "商品名称")),
                             [number, number, name])

    def enter_openings_and_bills(self):
        for product, warehouse, price, quantity, amount in OPENINGS:
            self.ledger.open(1, product, warehouse, price, quantity, amount)
        self.execute(*(f"Insert into 仓库余额表 (年份,月份,pdID,dpID,上期库存单价,上期库存数量,上期库存金额) "
                       f"Values ({YEAR},1,{','.join(map(str, row))})" for row in OPENINGS),
                     *(text for bill in BILLS for text in bill_statements(bill)))
        # A single month in the table makes no current date.
        self.assertEqual(self.result("Get_CurrentDate"), {"date": "1899-12-30"})
        self.assertEqual(self.column(self.result("rs仓库列表", 1), "dpID"), [1, 2, 3])
        self.compare_balance()

    def repair_messages(self, month):
        counts = {family: len(self.ledger.unknown(family, month)) for family in ("入库", "出库")}
        return [(f"检查{family}记录", f"{family}记录中，有仓库余额表中没有的记录：{n},是否修正？", 4) for family, n in counts.items() if n]

    def refuse_and_accept_the_repair(self):
        # Paint came in in January without a balance row; by February it went out too.
        for month, titles in ((1, ["检查入库记录"]), (2, ["检查入库记录", "检查出库记录"])):
            messages = self.call("CheckBnProduct", month, answer="no")["messages"]
            self.assertEqual([(m["title"], m["text"], m["buttons"]) for m in messages], self.repair_messages(month))
            self.assertEqual([m["title"] for m in messages], titles)
            self.compare_balance()
        self.assertEqual(len(self.call("CheckBnProduct", 1, answer="yes")["messages"]), 1)
        self.ledger.repair(1)
        self.compare_balance()
        self.assertNotIn("messages", self.call("CheckBnProduct", 2))

    def close_month(self, month):
        self.compare_sales(month)
        for warehouse, costs in COSTS.items():
            self.close(warehouse, month)
            self.assertEqual(self.call("UpdateDepotClosedFlag", warehouse, {"date": MONTH_ENDS[month]}, True)["args"],
                             [warehouse, {"date": MONTH_ENDS[month]}, True])
            self.compare_report(month, warehouse)
            for product in PRODUCTS:
                self.compare_stock(warehouse, product, month, costs)
        self.compare_report(month)
        self.assertEqual(self.rows("Select dpID,结帐日期,结帐标志 From 仓库设置 Order by dpID"),
                         [[warehouse, MONTH_ENDS[month], True] for warehouse in WAREHOUSES])
        current = f"{YEAR}-{month + 1}-1"
        self.assertEqual(self.result("Get_CurrentDate"), {"date": f"{YEAR}-0{month + 1}-01"})
        self.compare_information({"当前日期": current, "当前月份": month + 1, "帐簿年份": YEAR, "建帐月份": 1})
        self.assertEqual(self.result("rs月份列表", True)["rows"], [[YEAR, m] for m in range(month + 1, 0, -1)])

    def close(self, warehouse, month):
        answer = self.call("Close_DepotBalance", warehouse, month, COSTS[warehouse], {"date": MONTH_ENDS[month]},
                           {"progress": True})
        self.assertIs(answer["result"], True)
        self.assertEqual([answer["progress"][0], *answer["progress"][-2:]],
                         [["Visible", True], ["Value", 100], ["Visible", False]])
        self.ledger.close(warehouse, month, COSTS[warehouse], NOTES[month])
        self.compare_balance()

    def compare_sales(self, month):
        sold = {bill.warehouse for bill in self.ledger.bills if bill.family == "出库" and bill.month == month}
        self.assertTrue(0 < len(sold) < 3)
        self.assertEqual(self.results(*(("isSaled", warehouse, month) for warehouse in WAREHOUSES)),
                         [warehouse in sold for warehouse in WAREHOUSES])

    def compare_figures(self, found, expected, at):
        for name in FIGURES:
            if name in AMOUNTS:
                self.assertIsInstance(found[name], str, (at, name))
                self.assertEqual(Fraction(found[name]), expected[name], (at, name))
            else:
                self.assertAlmostEqual(found[name], float(expected[name]), delta=1e-9, msg=str((at, name)))

    def records(self, recordset):
        names = [column["name"] for column in recordset["columns"]]
        return [dict(zip(names, row)) for row in recordset["rows"]]

    def compare_balance(self):
        def key(row):
            return row["年份"], row["月份"], row["dpID"], row["pdID"]

        found = sorted(self.records(self.result("rs仓库余额表")), key=key)
        expected = sorted(self.ledger.rows, key=key)
        self.assertEqual([(*key(row), row["备注"]) for row in found], [(*key(row), row["备注"]) for row in expected])
        for one, other in zip(found, expected):
            self.compare_figures(one, other, key(one))

    def compare_report(self, month, warehouse=None):
        found = self.records(self.result("rs余额记录", warehouse or 0, month))
        expected = self.ledger.report(month, warehouse)
        self.assertEqual([row["pdID"] for row in found], sorted(expected, key=lambda product: PRODUCTS[product][2]))
        for row in found:
            product = row["pdID"]
            self.compare_figures(row, expected[product], ("report", month, warehouse, product))
            self.assertEqual((row["商品名称"], row["商品编号"], row["ClassCode"]), PRODUCTS[product])

    def compare_stock(self, warehouse, product, month, costs):
        """The six figures; the bills alone say what they are, but for what is carried in."""
        rows = [row for row in self.ledger.of(month, warehouse) if row["pdID"] == product]
        opening = [sum((row["上期库存" + what] for row in rows), Fraction(0)) for what in ("数量", "金额")]
        moved = {family: self.ledger.figure(family, warehouse, product, [month]) for family in ("入库", "出库", "成本")}
        stock = [opening[0] + moved["入库"][0] - moved["出库"][0], opening[1] + moved["入库"][1] - moved["成本" if costs else "出库"][1]]
        for at, what in enumerate(("数量", "金额")):
            place = (warehouse, product, month, what)
            found = self.results(("Get上期库存", *place), ("Get本期库存", *place, costs), ("Get商品库存", *place, costs))
            for one, expected in zip(found, (opening[at], stock[at], stock[at])):
                self.assertAlmostEqual(one, float(expected), delta=1e-9, msg=str(place))
            found = self.results(("Get商品入库", *place), ("Get商品出库", *place), ("Get商品成本", warehouse, product, str(month), what))
            self.assertEqual([Fraction(one["currency"]) for one in found], [each[at] for each in moved.values()], place)
        answer = self.call("Get商品库存", warehouse, product, month, "单价", costs)
        if stock[0]:
            self.assertAlmostEqual(answer["result"], float(stock[1] / stock[0]), delta=1e-9)
        else:
            self.assertEqual(answer["error"]["number"], 11)

    def audit_a_bill(self):
        self.assertIs(self.result("BillAdulting", "入库", 3, "赵六", {"date": "2003-03-01"}), True)
        self.assertEqual(self.rows("Select BillID,审核日期 From 入库目录 Where 审核员='赵六'"), [[3, "2003-03-01"]])
        bill = next(bill for bill in BILLS if (bill.family, bill.number) == ("入库", 3))
        self.assertEqual(self.results(("Get单据金额", 3, "入库"), ("Get单据数量", 3, "入库")), [{"currency": "340.97"}, 30.7])
        self.assertEqual(sum(Fraction(line[3]) for line in bill.lines), Fraction("340.97"))

    def delete_a_bill_and_close_february_again(self):
        self.assertEqual(self.result("Get单据金额", 4, "出库"), {"currency": "192"})
        self.assertIs(self.result("Del_单据", 4, "出库"), False)
        self.assertEqual(self.result("Get单据金额", 4, "出库"), {"currency": "0"})
        self.assertEqual(self.rows("Select BillID From 出库目录 Where 月份=2 Order by BillID"), [[3], [5]])
        self.ledger.delete_bill("出库", 4)
        self.assertEqual(self.result("Del仓库余额表", 1, 3), {"empty": True})
        self.ledger.delete_month(1, 3)
        self.close(1, 2)
        february = next(row for row in self.ledger.of(2, 1) if row["pdID"] == 1)
        self.assertEqual((february["本期出库数量"], february["累计出库数量"]), (8, 58))

    def compare_cumulated_figures(self):
        """What the year's bills amount to, from the figures and from the last closed month."""
        for warehouse in WAREHOUSES:
            for product in PRODUCTS:
                for at, what in enumerate(("数量", "金额")):
                    place = (warehouse, product, 3, what, "", True)
                    found = self.results(("Get商品入库", *place), ("Get商品出库", *place),
                                         ("Get商品成本", warehouse, product, "3", what, True))
                    self.assertEqual([Fraction(one["currency"]) for one in found],
                                     [self.ledger.figure(family, warehouse, product, [1, 2, 3])[at]
                                      for family in ("入库", "出库", "成本")])

    def begin_the_next_year(self):
        self.result("清理仓库余额表", 4)
        self.ledger.rows = self.ledger.of(4)
        self.compare_balance()
        self.assertIs(self.result("SetBnCurrentDate", 2004, 1), True)
        for row in self.ledger.rows:
            row["年份"], row["月份"] = 2004, 1
        self.compare_balance()
        self.assertGreater(len(self.ledger.rows), 4)
        self.assertIs(self.result("CancCreateBook"), False)
        self.compare_information({"当前日期": 0, "当前月份": 0, "建帐日期": {"date": TODAY}, "单位名称": "大江建材"})

    def clear_the_bills(self):
        self.assertEqual(self.results(("ClearInputRecs",), ("ClearOutputRecs",), ("ClearCostRecs",)), [True] * 3)
        for family in ("入库", "出库", "成本"):
            for part in ("目录", "记录"):
                self.assertEqual(self.rows(f"Select Count(*) From {family}{part}"), [[0]])
        self.ledger.bills = []
        self.compare_balance()
        for row in self.ledger.rows:
            self.compare_stock(row["dpID"], row["pdID"], 1, False)


class ServerDialectLifeTest(BookLifeTest):
    """The same life of a host that speaks the server's dialect."""

    def batch(self, *requests):
        return super().batch(*({**request, "isSQL": True} if "method" in request else request for request in requests))

    def close_month(self, month):
        super().close_month(month)
        answer = self.call("UpdateDepotClosedFlag", 1, {"date": MONTH_ENDS[month]}, True)
        self.assertEqual(answer["sent"][0]["text"], f"Update 仓库设置 Set 结帐日期='{NOTES[month]}',结帐标志=1 Where dpID=1")


if __name__ == "__main__":
    unittest.main()
