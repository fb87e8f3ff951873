"""Delivery work orders and the drivers' pay on a real book."""

import unittest

from small_book import SmallBookCase


def order(bill, year, month, day, number, driver, payment, hired=False, violation=False, plate="粤A1", escort="小李"):
    return ("Insert into 派遣目录 (BillID,年份,月份,日子,单据编号,车牌号,司机,跟车人,货款,外用车,违章) Values "
            f"({bill},{year},{month},{day},'{number}','{plate}','{driver}','{escort}',{payment},{hired},{violation})")


def delivery(bill, product, supplier, customer, note, place, quantity, amount):
    return ("Insert into 派遣记录 (BillID,pdID,厂商ID,客户ID,配送单号,送货地点,数量,金额) Values "
            f"({bill},{product},{supplier},{customer},'{note}','{place}',{quantity},{amount})")


ORDERS = [
    "Insert into 厂商资料 (KSID,企业名称) Values (6,'海螺水泥')",
    "Insert into 客户资料 (KSID,企业名称) Values (10,'路桥公司')",
    order(1, 2003, 2, 10, "P3", "王五", 100.5), delivery(1, 1, 5, 9, "S1", "南门", 10, 30),
    delivery(1, 2, 6, 10, "S2", "北门", 4, 8),
    order(2, 2003, 1, 20, "P2", "赵六", 50, hired=True, plate="粤B2", escort=""), delivery(2, 3, 5, 10, "S3", "南门", 1, 2),
    order(3, 2003, 1, 20, "P1", "王五", 0, violation=True), delivery(3, 1, 6, 9, "T1", "西门", 7, 14),
    order(4, 2004, 2, 1, "P4", "王五", "20.25"),
]

POSITIONS = {name: position for position, name in enumerate(
    "起始日期 结束日期 起始编号 结束编号 车牌号 司机 跟车人 收货款 收货款Opr 外用车 违章 厂商ID 配送单号 配送单号Opr 客户ID "
    "送货地点 pdID 最小数量 最大数量 最小金额 最大金额".split())}
EMPTY = {"empty": True}


class HaulageCase(SmallBookCase):
    def setUp(self):
        super().setUp()
        for answer in self.batch(*({"execute": text} for text in ORDERS)):
            self.assertNotIn("error", answer)


class WorkOrderTest(HaulageCase):
    def list(self, isSQL=False, **filters):
        arguments = [EMPTY] * len(POSITIONS)
        for name, value in filters.items():
            arguments[POSITIONS[name]] = value
        return self.call("rs工作单列表", *arguments, isSQL=isSQL)

    def notes(self, **filters):
        """The delivery notes found, in both dialects."""
        found = []
        for dialect in (False, True):
            answer = self.list(isSQL=dialect, **filters)
            self.assertNotIn("error", answer)
            found.append(sorted(row[0] for row in self.columns(answer["result"], "配送单号")))
        self.assertEqual(found[0], found[1])
        return found[0]

    def test_no_filter_lists_every_delivery_by_date_and_number(self):
        answer = self.list()
        self.assertTrue(answer["sent"][0]["text"].endswith(
            "ON Pd.pdID = Rec.pdID ORDER BY Lst.年份, Lst.月份, Lst.日子, Lst.单据编号"))
        found = self.columns(answer["result"], "单据编号", "司机", "货款", "外用车", "违章", "发货单位", "收货单位", "商品名称")
        self.assertEqual(found[:2], [["P1", "王五", "0", False, True, "海螺水泥", "城建二公司", "水泥"],
                                     ["P2", "赵六", "50", True, False, "华新水泥", "路桥公司", "石灰"]])
        self.assertEqual(sorted(found[2:]), [["P3", "王五", "100.5", False, False, "华新水泥", "城建二公司", "水泥"],
                                             ["P3", "王五", "100.5", False, False, "海螺水泥", "路桥公司", "钢筋"]])

    def test_one_filter(self):
        cases = [
            ({"起始日期": {"date": "2003-02-10"}}, ["S1", "S2"]),
            ({"结束日期": "2003-01-20"}, ["S3", "T1"]),
            ({"起始日期": "2003-01-20", "结束日期": "2003-01-20"}, ["S3", "T1"]),
            ({"起始日期": "2003-01-21", "结束日期": "2003-02-09"}, []),
            ({"起始编号": "P2"}, ["S1", "S2", "S3"]),
            ({"结束编号": "P2"}, ["S3", "T1"]),
            ({"起始编号": "P2", "结束编号": "P2"}, ["S3"]),
            ({"车牌号": "粤B2"}, ["S3"]),
            ({"司机": "王五"}, ["S1", "S2", "T1"]),
            ({"跟车人": "小李"}, ["S1", "S2", "T1"]),
            ({"收货款": 50, "收货款Opr": ">="}, ["S1", "S2", "S3"]),
            ({"收货款": {"currency": "100.5"}, "收货款Opr": "<"}, ["S3", "T1"]),
            ({"收货款": 0, "收货款Opr": ">"}, ["S1", "S2", "S3", "T1"]),
            ({"外用车": True}, ["S3"]),
            ({"外用车": False}, ["S1", "S2", "S3", "T1"]),
            ({"违章": True}, ["T1"]),
            ({"违章": False}, ["S1", "S2", "S3", "T1"]),
            ({"厂商ID": 6}, ["S2", "T1"]),
            ({"厂商ID": 0}, ["S1", "S2", "S3", "T1"]),
            ({"配送单号": "S2", "配送单号Opr": "="}, ["S2"]),
            ({"配送单号": "S%", "配送单号Opr": " Like "}, ["S1", "S2", "S3"]),
            ({"配送单号": "S2", "配送单号Opr": ">="}, ["S2", "S3", "T1"]),
            ({"客户ID": 10}, ["S2", "S3"]),
            ({"送货地点": "南门"}, ["S1", "S3"]),
            ({"pdID": 1}, ["S1", "S2", "S3", "T1"]),
            ({"司机": "王五", "pdID": 2}, ["S1", "S2", "T1"]),
        ]
        for filters, expected in cases:
            with self.subTest(filters):
                self.assertEqual(self.notes(**filters), expected)

    def test_all_filters_together(self):
        filters = {"起始日期": "2003-02-01", "结束日期": "2003-02-28", "起始编号": "P1", "结束编号": "P9", "车牌号": "粤A1",
                   "司机": "王五", "跟车人": "小李", "收货款": 100.5, "收货款Opr": "=", "厂商ID": 6, "配送单号": "S1",
                   "配送单号Opr": "<>", "客户ID": 10, "送货地点": "北门", "pdID": 77}
        self.assertEqual(self.notes(**filters), ["S2"])
        self.assertEqual(self.notes(**filters, 外用车=True), [])

    def test_a_delivery_without_its_partner_or_product_is_not_listed(self):
        self.sql(delivery(1, 99, 5, 9, "X1", "", 1, 1))
        self.sql(delivery(1, 1, 99, 9, "X2", "", 1, 1))
        self.sql(delivery(1, 1, 5, 99, "X3", "", 1, 1))
        self.assertEqual(self.notes(), ["S1", "S2", "S3", "T1"])

    def test_a_bound_is_refused_by_the_database(self):
        refused = -2147217900  # a syntax error
        cases = [
            ({"最小数量": 1}, "ON Pd.pdID = Rec.pdID Sum(Rec.数量)>=1ORDER BY "),
            ({"最大金额": 5}, "ON Pd.pdID = Rec.pdID Sum(Rec.金额)<=5ORDER BY "),
            ({"最小数量": 1, "最大数量": 9}, "ON Pd.pdID = Rec.pdID (Sum(Rec.数量)>=1 And Sum(Rec.数量)<=9)ORDER BY "),
            ({"司机": "王五", "最小数量": 1}, " Where (( Lst.司机='王五'Sum(Rec.数量)>=1))ORDER BY "),
        ]
        for filters, text in cases:
            with self.subTest(filters):
                answer = self.list(**filters)
                self.assertNotIn("result", answer)
                self.assertIn(text, answer["sent"][0]["text"])
                self.assertEqual(answer["error"]["number"], refused)
                self.assertRegex(answer["error"]["description"], r"^Syntax error at line 1, column \d+ near ")

    def test_a_value_that_makes_no_text_answers_nothing(self):
        for filters in ({"起始日期": "x"}, {"收货款": "x"}, {"外用车": "x"}, {"车牌号": {"array": []}}):
            answer = self.list(**filters)
            self.assertEqual(answer["result"], {"nothing": True})
            self.assertEqual(answer["sent"], [])


AMOUNTS = ("总收入 油费 外加油费 过路费 装卸费 折旧 保险 利润 税金 养路费 装卸工资 费用1 费用2 费用3 总费用 其它1 其它2 其它3 应付 "
           "所得税 电话费 扣款1 扣款2 扣款3").split()


def sheet(*rows, fixed=1):
    """A grid of drivers: a name, a remark and the amounts that are not empty, net pay as 实发. Its columns are turned."""
    keys = ["备注", "实发", *reversed(AMOUNTS), "姓名"]
    return {"grid": {"FixedRows": fixed, "cols": [{"key": key} for key in keys],
                     "rows": [[row.get(key, "") for key in keys] for row in rows]}}


TOTALS = {"姓名": "合计", "总收入": 999}


class PayTest(HaulageCase):
    def save(self, year, month, *rows, **others):
        answer = self.call("Update工资表", year, month, sheet(*rows, **others))
        self.assertNotIn("error", answer)
        self.assertIs(answer["result"], True)
        self.assertEqual(answer["sent"], [
            {"op": "execute", "text": f"Delete From 工资表 Where 月份={month}", "kind": "text"},
            {"op": "open", "text": "工资表", "kind": "table"}])

    def saved(self):
        return self.rows("Select 年份,月份,姓名,总收入,实发工资,备注 From 工资表 Order by 年份,月份,姓名 DESC")

    def test_a_new_sheet_has_each_driver_with_the_payments_of_the_month(self):
        for second in (0, 6):
            found = self.result("rs工资表", 2, second, True)
            self.assertEqual(found["rows"], [["王五", "120.75"]], "of every year")
        self.assertEqual(sorted(self.result("rs工资表", 1, 0, True)["rows"]), [["王五", "0"], ["赵六", "50"]])
        self.assertEqual(self.result("rs工资表", 7, 0, True)["rows"], [])

    def test_every_column_is_saved_and_the_totals_are_not(self):
        driver = {name: number + 0.25 for number, name in enumerate(AMOUNTS, 1)}
        self.save(2003, 2, {"姓名": "王五", "实发": "1,234.5678", "备注": "扣罚", **driver}, TOTALS)
        row = self.rows(f"Select 年份,月份,姓名,{','.join(AMOUNTS)},实发工资,Flag,备注 From 工资表")
        self.assertEqual(row, [[2003, 2, "王五", *(f"{n}.25" for n in range(1, 25)), "1234.5678", None, "扣罚 "]])

    def test_header_and_totals_only_delete_the_month(self):
        self.save(2003, 2, {"姓名": "王五"}, TOTALS)
        self.save(2003, 3, {"姓名": "王五"}, TOTALS)
        self.save(2003, 2, TOTALS)
        self.assertEqual([row[:3] for row in self.saved()], [[2003, 3, "王五"]])
        self.save(2003, 3)
        self.assertEqual(self.saved(), [])

    def test_a_month_goes_in_every_year(self):
        self.save(2003, 3, {"姓名": "王五"}, TOTALS)
        self.save(2003, 4, {"姓名": "王五"}, TOTALS)
        self.save(2004, 3, {"姓名": "赵六"}, TOTALS)
        self.assertEqual([row[:3] for row in self.saved()], [[2003, 4, "王五"], [2004, 3, "赵六"]])

    def test_an_empty_remark_is_a_blank(self):
        self.save(2003, 3, {"姓名": "王五"}, TOTALS)
        self.assertEqual(self.saved(), [[2003, 3, "王五", "0", "0", " "]])
        self.assertEqual(self.rows("Select Len(备注) From 工资表"), [[1]])

    def test_other_numbers_of_header_rows(self):
        self.save(2003, 3, {"姓名": "王五"}, {"姓名": "赵六"}, fixed=0)
        self.assertEqual([row[2] for row in self.saved()], ["赵六", "王五"])
        self.save(2003, 3, {"姓名": "王五"}, {"姓名": "赵六"}, TOTALS, fixed=2)
        self.assertEqual([row[2] for row in self.saved()], ["王五"], "rows 2 to 5 - 2 - 1")

    def test_a_cell_that_is_no_number_is_0(self):
        self.save(2003, 3, {"姓名": "王五", "总收入": "无", "实发": {"currency": "0.5"}}, TOTALS)
        self.assertEqual(self.saved(), [[2003, 3, "王五", "0", "0.5", " "]])

    def test_a_grid_that_lacks_a_column_leaves_the_month_deleted(self):
        self.save(2003, 3, {"姓名": "王五"}, TOTALS)
        given = sheet({"姓名": "赵六"}, TOTALS)
        given["grid"]["cols"][1]["key"] = "实发工资"
        answer = self.call("Update工资表", 2003, 3, given)
        self.assertEqual(answer["error"]["number"], 9)
        self.assertEqual(self.saved(), [])

    def test_a_saved_month(self):
        self.save(2003, 3, {"姓名": "王五", "总收入": 100}, TOTALS)
        self.save(2003, 4, {"姓名": "王五", "总收入": 7}, TOTALS)
        found = self.result("rs工资表", 3)
        self.assertEqual(self.columns(found, "年份", "月份", "姓名", "总收入"), [[2003, 3, "王五", "100"]])
        self.assertEqual(self.result("rs工资表", 5)["rows"], [])

    def test_sums_over_months_and_years(self):
        self.save(2003, 12, {"姓名": "王五", "总收入": 1000, "实发": 10, "备注": "年终"}, TOTALS)
        self.save(2004, 1, {"姓名": "王五", "总收入": 100, "实发": 1}, {"姓名": "赵六", "总收入": 40}, TOTALS)
        self.save(2004, 6, {"姓名": "王五", "总收入": 20, "实发": "0.5"}, TOTALS)
        self.save(2004, 7, {"姓名": "王五", "总收入": 3}, TOTALS)

        def sums(*arguments):
            found = self.columns(self.result("rs工资表", *arguments), "姓名", "备注", "总收入", "实发工资", "Flag")
            return sorted(found, key=lambda row: (row[0], row[1]))

        everything = [["王五", " ", "123", "1.5", None], ["王五", "年终 ", "1000", "10", None], ["赵六", " ", "40", "0", None]]
        self.assertEqual(sums(0, 6), [["王五", " ", "120", "1.5", None], ["赵六", " ", "40", "0", None]])
        self.assertEqual(sums(0, 1), [["王五", " ", "100", "1", None], ["赵六", " ", "40", "0", None]])
        for arguments in ((-1,), (-1, 6), (0,), (0, 0), (0, -1)):
            self.assertEqual(sums(*arguments), everything, arguments)

    def test_sums_keep_flags_apart(self):
        self.save(2003, 1, {"姓名": "王五", "总收入": 1}, TOTALS)
        self.save(2003, 2, {"姓名": "王五", "总收入": 2}, TOTALS)
        self.sql("Update 工资表 Set Flag='x' Where 月份=2")
        found = self.columns(self.result("rs工资表", -1), "Flag", "总收入")
        self.assertEqual(sorted(found, key=str), [["x", "2"], [None, "1"]])


if __name__ == "__main__":
    unittest.main()
