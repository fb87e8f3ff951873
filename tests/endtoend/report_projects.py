"""The projects' monthly summary, the work orders and the drivers' pay on the sample year."""

import unittest

from sample_book import PAY, SampleCase, date_of, grouped, total

PROJECT = "ClassCode 项目名称 工程名称 项目编号 工程性质"
MONTHS = "一 二 三 四 五 六 七 八 九 十 十一 十二".split()


class ProjectTest(SampleCase):
    def lines(self):
        """The outbound lines by project and month."""
        return grouped(self.book.lines("出库"), lambda pair: pair[0]["pjID"])

    @staticmethod
    def months(pairs, column, nothing):
        by_month = grouped(pairs, lambda pair: pair[0]["月份"])
        return [total([line for _, line in by_month[m]], column) if m in by_month else nothing for m in range(1, 13)]

    def test_jet_has_the_measure_in_the_months(self):
        for given, measure, kind in (("金额", "金额", "Currency"), ("数量", "数量", "Double"), ("税额", "数量", "Double")):
            columns = " ".join(["pjID", PROJECT, "合计:Double", f"月合计:{kind}", *(f"{m}:{kind}" for m in range(1, 13))])
            rows = []
            for project, pairs in self.lines().items():
                own = [line for _, line in pairs]
                rows.append([project, *self.book.named("项目", project, PROJECT), total(own, "数量"), total(own, measure),
                             *self.months(pairs, measure, None)])
            answer = self.book.call("rs项目汇总表", given, isSQL=False)
            self.assertEqual(answer["args"], [measure])
            with self.subTest(given=given):
                self.check(answer["result"], columns, rows, "pjID")

    def test_sql_server_has_quantities_whatever_the_measure(self):
        columns = " ".join(["pjID", PROJECT, *(f"{m}:Double" for m in MONTHS), "合计:Double"])
        rows = [[project, *self.book.named("项目", project, PROJECT), *self.months(pairs, "数量", 0),
                 total([line for _, line in pairs], "数量")] for project, pairs in self.lines().items()]
        for given, measure in (("金额", "金额"), ("数量", "数量"), ("", "数量")):
            answer = self.book.call("rs项目汇总表", given, isSQL=True)
            self.assertEqual(answer["args"], [measure])
            with self.subTest(given=given):
                self.check(answer["result"], columns, rows, "pjID")

    def test_the_dialects_agree_on_the_totals(self):
        totals = []
        for is_sql in (False, True):
            found = self.result("rs项目汇总表", "金额", isSQL=is_sql)
            place = [column["name"] for column in found["columns"]].index("合计")
            totals.append({row[0]: row[place] for row in found["rows"]})
        self.assertEqual(totals[0].keys(), totals[1].keys())
        for project, quantity in totals[0].items():
            self.assertAlmostEqual(quantity, totals[1][project], delta=1e-12 * quantity)


class WorkOrderTest(SampleCase):
    HEADER = "年份 月份 日子 单据编号 录入员 录入日期 车牌号 司机 跟车人 货款 外用车 违章 部门ID 说明 审核员 审核日期"
    LINE = "BillID pdID 厂商ID 客户ID 配送单号 送货地点 数量 金额"
    GOODS = "商品名称 型号 规格 计量单位 进位方法"
    COLUMNS = f"BillID {HEADER} {LINE} 发货单位 收货单位 {GOODS}"
    TEXTS = ("起始日期", "结束日期", "起始编号", "结束编号", "车牌号", "司机", "跟车人", "收货款Opr", "配送单号", "配送单号Opr", "送货地点")
    PARAMETERS = ("起始日期 结束日期 起始编号 结束编号 车牌号 司机 跟车人 收货款 收货款Opr 外用车 违章 厂商ID 配送单号 配送单号Opr 客户ID 送货地点 "
                  "pdID 最小数量 最大数量 最小金额 最大金额").split()
    CASES = [
        ({}, lambda h, l: True),
        ({"pdID": 26}, lambda h, l: True),
        ({"起始日期": {"date": "2003-03-03"}, "结束日期": {"date": "2003-03-14"}},
         lambda h, l: "2003-03-03" <= date_of(h) <= "2003-03-14"),
        ({"起始日期": {"date": "2003-12-20"}}, lambda h, l: date_of(h) >= "2003-12-20"),
        ({"结束日期": {"date": "2003-01-08"}}, lambda h, l: date_of(h) <= "2003-01-08"),
        ({"起始编号": "PC02-0005", "结束编号": "PC03-0002"}, lambda h, l: "PC02-0005" <= h["单据编号"] <= "PC03-0002"),
        ({"车牌号": "浙D-18342"}, lambda h, l: h["车牌号"] == "浙D-18342"),
        ({"司机": "高阿毛"}, lambda h, l: h["司机"] == "高阿毛"),
        ({"跟车人": "屠阿根", "司机": "倪国庆"}, lambda h, l: (h["跟车人"], h["司机"]) == ("屠阿根", "倪国庆")),
        ({"收货款": 406, "收货款Opr": "="}, lambda h, l: h["货款"] == 406),
        ({"收货款": 500.5, "收货款Opr": ">"}, lambda h, l: h["货款"] > 500.5),
        ({"收货款": 0, "收货款Opr": ">"}, lambda h, l: True),
        ({"外用车": True}, lambda h, l: h["外用车"]),
        ({"外用车": False, "违章": False}, lambda h, l: True),
        ({"违章": True}, lambda h, l: h["违章"]),
        ({"厂商ID": 11}, lambda h, l: l["厂商ID"] == 11),
        ({"客户ID": 12}, lambda h, l: l["客户ID"] == 12),
        ({"配送单号": "PS01-0002", "配送单号Opr": "<="}, lambda h, l: l["配送单号"] <= "PS01-0002"),
        ({"配送单号": "PS06%", "配送单号Opr": " Like "}, lambda h, l: l["配送单号"].startswith("PS06")),
        ({"送货地点": "富阳东升仓库", "违章": False, "起始日期": {"date": "2003-02-01"}},
         lambda h, l: l["送货地点"] == "富阳东升仓库" and date_of(h) >= "2003-02-01"),
    ]

    def row(self, header, line):
        return [header["BillID"], *(header[c] for c in self.HEADER.split()), *(line[c] for c in self.LINE.split()),
                *self.book.named("入库", line["厂商ID"], "企业名称"), *self.book.named("出库", line["客户ID"], "企业名称"),
                *self.book.named("商品", line["pdID"], self.GOODS)]

    def lines(self):
        headers = {header["BillID"]: header for header in self.book.tables["派遣目录"]}
        return [(headers[line["BillID"]], line) for line in self.book.tables["派遣记录"]]

    def test_every_filter(self):
        for given, test in self.CASES:
            arguments = [given.get(name, "" if name in self.TEXTS else 0) for name in self.PARAMETERS]
            rows = [self.row(header, line) for header, line in self.lines() if test(header, line)]
            with self.subTest(given=given):
                self.check(self.both("rs工作单列表", *arguments), self.COLUMNS, rows, "BillID pdID 配送单号",
                           order=lambda row: tuple(row[1:5]))

    def test_bounds_of_the_sums_are_errors(self):
        for name in ("最小数量", "最大数量", "最小金额", "最大金额"):
            arguments = ["" if p in self.TEXTS else int(p == name) for p in self.PARAMETERS]
            self.assertEqual(self.book.call("rs工作单列表", *arguments)["error"]["number"], -2147217900, name)


class PayTest(SampleCase):
    def test_a_new_sheet_from_the_work_orders(self):
        for month in range(1, 13):
            drivers = grouped([h for h in self.book.tables["派遣目录"] if h["月份"] == month], lambda h: h["司机"])
            rows = [[name, total(own, "货款")] for name, own in drivers.items()]
            with self.subTest(month=month):
                self.check(self.both("rs工资表", month, 5, True), "姓名 总收入", rows, "姓名")

    def test_a_saved_month(self):
        columns = self.book.columns["工资表"]
        for month in (1, 7, 12):
            rows = [[row[c] for c in columns] for row in self.book.tables["工资表"] if row["月份"] == month]
            with self.subTest(month=month):
                self.check(self.both("rs工资表", month), " ".join(columns), rows, "姓名")
        self.check(self.both("rs工资表", 13, 0, False), " ".join(columns), [], "姓名", empty=True)

    def test_sums_of_months(self):
        for first, last, until in ((0, 6, 6), (0, 1, 1), (0, 12, 12), (0, 0, 12), (-1, 3, 12)):
            groups = grouped([row for row in self.book.tables["工资表"] if row["月份"] <= until],
                             lambda row: (row["姓名"], row["Flag"], row["备注"]))
            rows = [[key[0], *(total(own, c) for c in PAY.split()), *key[1:]] for key, own in groups.items()]
            with self.subTest(first=first, last=last):
                self.check(self.both("rs工资表", first, last), f"姓名 {PAY} Flag 备注", rows, "姓名 Flag 备注")


if __name__ == "__main__":
    unittest.main()
