"""The product catalogue on a real book: lists, one attribute of one product, ids by text, a customer's price."""

import unittest

from bare_book import BareBookCase, insert

TEXTS = ["商品名称", "商品编号", "存放地点", "ClassCode", "输入简码", "计量单位", "计价方法", "规格", "型号", "进位方法", "存放位置", "备注"]
NUMBERS = ["默认单价", "普通税率", "增值税率", "购进单价", "普购税率", "增购税率", "最低库存", "最高库存", "单位数量"]
CLASS_CODE = "分类代码”"
SYNTAX = -2147217900


class AttributeTest(BareBookCase):
    def setUp(self):
        super().setUp()
        columns = ["pdID", "KSID", "商品条码", *TEXTS, *NUMBERS]
        full = [1, 5, " 690 ", *(f"  {name} 1 " for name in TEXTS), *(index + 0.5 for index in range(len(NUMBERS)))]
        nothing = [2, *[None] * (len(columns) - 1)]
        self.execute(*insert("商品设置", ",".join(columns), full, nothing))

    def attributes(self, product, names):
        """The answers by name; a name's JSON type tells whether it is a number, a text or Null."""
        return dict(zip(names, self.results(*(("Get商品资料", product, name) for name in names))))

    def assertSame(self, found, expected):
        self.assertEqual(found, expected)
        self.assertEqual({k: type(v) for k, v in found.items()}, {k: type(v) for k, v in expected.items()})

    def test_a_row_with_every_column(self):
        expected = {"ID": 1, "生产厂商": 5, "商品条码": " 690 ", CLASS_CODE: "  ClassCode 1 "}
        expected |= {name: f"{name} 1" for name in TEXTS} | {name: index + 0.5 for index, name in enumerate(NUMBERS)}
        self.assertEqual(len(expected), 25)
        self.assertSame(self.attributes(1, expected), expected)

    def test_a_row_of_nulls(self):
        expected = {"ID": 2, "生产厂商": None, "商品条码": "", CLASS_CODE: ""}
        expected |= dict.fromkeys(TEXTS, "") | dict.fromkeys(NUMBERS, 0)
        self.assertSame(self.attributes(2, expected), expected)

    def test_a_whole_number_stays_a_double(self):
        self.execute("Update 商品设置 Set 默认单价=3,最低库存=0 Where pdID=1")
        self.assertSame(self.attributes(1, ["默认单价", "最低库存"]), {"默认单价": 3.0, "最低库存": 0.0})

    def test_other_names_are_empty(self):
        names = ["", "unknown", "id", "classcode", "分类代码", "分类代码\"", "生产厂家", "KSID", "pdID", "商品名称 ", "单价", "税率", "库存", "数量"]
        self.assertSame(self.attributes(1, names), dict.fromkeys(names, ""))

    def test_a_missing_product_answers_0_for_each_piece_of_the_number_names(self):
        text = "单价,税率,库存,数量"
        pieces = {text[first:last] for first in range(len(text)) for last in range(first, len(text) + 1)}
        self.assertTrue({"", "单价", "税率", "库存", "数量", "价,税", text} < pieces)
        self.assertSame(self.attributes(3, sorted(pieces)), dict.fromkeys(sorted(pieces), 0))

    def test_a_missing_product_answers_empty_for_any_other_name(self):
        names = [*TEXTS, *NUMBERS, "ID", "生产厂商", "商品条码", CLASS_CODE, "unknown", "单价 ", "税率库存", "数量,"]
        self.assertSame(self.attributes(3, names), dict.fromkeys(names, ""))


class ListTest(BareBookCase):
    def setUp(self):
        super().setUp()
        self.execute(*insert("商品分类", "ClassCode,ClassName", ("02", "钢材"), ("01", "水泥"), ("A1", None)),
                     *insert("商品设置", "pdID,ClassCode,商品编号,生产厂家,存放位置", (1, "01", "Z", "上海厂", "R2"), (2, "02", "Y", "北京厂", "R1"),
                             (3, "01", "X", "安徽厂", "R2"), (4, "A1", "W", "上海厂", "R10")))

    def test_classes(self):
        for arguments, codes in (((), ["01", "02", "A1"]), (("",), ["01", "02", "A1"]), (("   ",), ["01", "02", "A1"]),
                                 (("02",), ["02"]), (("a1 ",), ["A1"]), (("0",), [])):
            self.assertEqual(self.column(self.result("rs商品分类", *arguments), "ClassCode"), codes, arguments)

    def test_class_names(self):
        for code, name in (("01", "水泥"), ("02 ", "钢材"), ("A1", ""), ("a1", ""), ("03", ""), ("", "")):
            self.assertEqual(self.result("Get商品分类名称", code), name, code)
        self.assertEqual(self.error("Get商品分类名称", "O'Brien"), SYNTAX)

    def test_products_need_an_id(self):
        for arguments, ids in (((1,), [1]), ((1, "01"), [1]), ((1, "02"), []), ((1, "  "), [1]), ((1, "01", "商品编号 Desc"), [1]),
                               ((1, "", "商品编号"), [1]), ((9,), [])):
            self.assertEqual(self.column(self.result("rs商品资料", *arguments), "pdID"), ids, arguments)
        for arguments in ((), (0,), (-1,), (0, "01"), (0, "", "商品编号"), (0, "01", "商品编号")):
            self.assertEqual(self.error("rs商品资料", *arguments), SYNTAX, arguments)

    def test_the_pieces_are_joined_as_they_are(self):
        for arguments, text in (((1, "01", "商品编号"), "Select * from 商品设置 Where  pdID=1And  ClassCode='01' Order by 商品编号"),
                                ((0, " 01"), "Select * from 商品设置 Where And  ClassCode=' 01'"),
                                ((0,), "Select * from 商品设置 Where ")):
            self.assertEqual([s["text"] for s in self.call("rs商品资料", *arguments)["sent"]], [text])

    def test_manufacturers_and_places_are_listed_once(self):
        self.assertEqual(self.result("rs生产厂家")["rows"], [["安徽厂"], ["北京厂"], ["上海厂"]])
        self.assertEqual(self.result("rs存放位置")["rows"], [["R1"], ["R10"], ["R2"]])

    def test_counts(self):
        for arguments, count in (((), 4), (("",), 4), (("01",), 2), (("a1 ",), 1), (("03",), 0), (("  ",), 0),
                                 (("O'Brien",), 0)):
            self.assertEqual(self.result("Get商品数量", *arguments), count, arguments)
        self.execute("Drop Table 商品设置")
        self.assertEqual(self.results(("Get商品数量",), ("Get商品ID", "Z")), [0, 0])

    def test_a_product_is_in_use_as_soon_as_its_warehouse_has_any_balance(self):
        self.execute(*insert("仓库余额表", "年份,月份,pdID,dpID", (2003, 1, 1, 3)))
        for arguments, used in (((1, 3), True), ((2, 3), True), ((99, 3), True), ((1, 4), False), ((1,), False),
                                ((1, 0), False)):
            self.assertIs(self.result("商品已被使用", *arguments), used, arguments)
        self.execute(*insert("仓库余额表", "年份,月份,pdID,dpID", (2003, 1, 7, 0)))
        self.assertIs(self.result("商品已被使用", 1), True)
        self.assertEqual([s["text"] for s in self.call("商品已被使用", 1, 3)["sent"]],
                         ["Select pdID From 仓库余额表 Where dpID=3 And dpID=3"])


class IdTest(BareBookCase):
    def setUp(self):
        super().setUp()
        self.execute(*insert("商品设置", "pdID,商品条码,输入简码,商品编号,商品名称", (1, "B1", "S1", "C1", "N1"), (2, "C1", "N1", "S1", "B1"),
                             (3, None, "D1", "D2", "D3"), (4, "", None, "D1", "D2"), (5, None, None, None, "D1")))

    def test_bar_code_before_short_code_before_code_before_name(self):
        for text, product in (("B1", 1), ("C1", 2), ("S1", 1), ("N1", 2), ("D1", 3), ("D2", 3), ("D3", 3), ("d1 ", 3),
                              (" D1", 0), ("E1", 0), ("O'Brien", 0)):
            self.assertEqual(self.result("Get商品ID", text), product, text)

    def test_the_search_stops_at_the_first_that_answers(self):
        columns = ["商品条码", "输入简码", "商品编号", "商品名称"]
        for text, queries in (("B1", 1), ("S1", 2), ("D2", 3), ("D3", 4), ("E1", 4)):
            self.assertEqual([s["text"] for s in self.call("Get商品ID", text)["sent"]],
                             [f"Select * From 商品设置 Where {column}='{text}'" for column in columns[:queries]])


class PriceTest(BareBookCase):
    def setUp(self):
        super().setUp()
        bills = [(1, 2003, 9, 5), (2, 2003, 10, 4), (3, 2003, 10, 20), (4, 2002, 12, 31)]
        self.execute(*insert("客户资料", "KSID", (9,), (8,)),
                     *insert("出库目录", "BillID,年份,月份,日子,ksID", *((*bill, 9) for bill in bills),
                             (5, 2003, 9, 1, 8), (6, 2003, 9, 1, 7)),
                     *insert("出库记录", "BillID,pdID,单价", (1, 1, 11.25), (2, 1, 12), (3, 1, 13), (4, 2, 0), (1, 2, None), (2, 2, 7),
                             (5, 1, 99), (6, 1, 98), (4, 3, None), (1, 3, 4.0001)))

    def price(self, customer, product, date):
        return self.result("Get客户单价", customer, product, {"date": date})

    def test_the_first_price_of_the_two_oldest_lines_before_the_date(self):
        for customer, product, date, price in (
                (9, 1, "2003-12-01", 11.25), (9, 1, "2003-09-06", 11.25), (9, 1, "2003-09-05", 0), (8, 1, "2003-12-01", 99),
                # Product 2: 0 and Null are the oldest two; the third is never seen.
                (9, 2, "2003-12-01", 0), (9, 3, "2003-12-01", 4.0001), (9, 3, "2003-09-05", 0),
                # No such customer row, product, customer.
                (7, 1, "2003-12-01", 0), (9, 4, "2003-12-01", 0), (1, 1, "2003-12-01", 0)):
            self.assertEqual(self.price(customer, product, date), price, (customer, product, date))

    def test_dates_are_compared_as_dates(self):
        # As texts 2003-10-4 would stand before 2003-9-30, and 2003-10-20 before 2003-10-4.
        self.execute("Delete From 出库记录 Where BillID=1")
        for date, price in (("2003-09-30", 0), ("2003-10-04", 0), ("2003-10-05", 12)):
            self.assertEqual(self.price(9, 1, date), price, date)
        self.execute("Update 出库记录 Set 单价=0 Where BillID=2")
        self.assertEqual(self.price(9, 1, "2003-10-20"), 0)
        self.assertEqual(self.price(9, 1, "2003-10-21"), 13)

    def test_a_day_lies_before_the_times_of_that_day(self):
        for date, price in (("2003-09-05T12:30:00", 11.25), ("2003-09-05T00:00:00", 0)):
            self.assertEqual(self.price(9, 1, date), price, date)

    def test_a_time_of_day_goes_into_the_text(self):
        answer = self.call("Get客户单价", 9, 1, {"date": "2003-09-06T12:30:00"})
        self.assertIn("<'2003-9-6 12:30:00')", answer["sent"][0]["text"])
        self.assertEqual(answer["result"], 11.25)

    def test_the_text_is_the_same_in_both_dialects(self):
        text = ("SELECT TOP 2 R.单价, CDate(L.年份 & '-' & L.月份 & '-' & L.日子) AS 日期 FROM (出库目录 AS L INNER JOIN 出库记录 AS R "
                "ON L.BillID = R.BillID) INNER JOIN 客户资料 AS C ON L.ksID = C.KSID WHERE ((R.pdID=1) AND (C.KSID=9) AND "
                "CDate(L.年份 & '-' & L.月份 & '-' & L.日子)<'2003-9-6') ORDER BY CDate(L.年份 & '-' & L.月份 & '-' & L.日子)")
        for is_sql in (False, True):
            answer = self.call("Get客户单价", 9, 1, {"date": "2003-09-06"}, isSQL=is_sql)
            self.assertEqual(([s["text"] for s in answer["sent"]], answer["result"]), ([text], 11.25))


if __name__ == "__main__":
    unittest.main()
