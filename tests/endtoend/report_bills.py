"""The bill list, the ad-hoc queries and the counts on the sample year, in both dialects."""

import unittest

from sample_book import PINYIN, PRODUCT, SampleCase, date_of, grouped, mean, total

LIST = ("年份 月份 日子 单据类型 类型 单据编号 数量 金额 税额 合计:Currency BillID 录入员 录入日期 审核员 审核日期 说明 仓库名称 企业名称 "
        "项目名称 项目编号")
PARAMETERS = ("单据类型 起始日期 结束日期 起始编号 结束编号 dpID ksID pjID 经手人 交接人 包装 包装Opr 货位 货位Opr 期限 期限Opr "
              "最小数量 最大数量 最小金额 最大金额").split()
IDS_AND_BOUNDS = ("dpID", "ksID", "pjID", "最小数量", "最大数量", "最小金额", "最大金额")
HEADER_FILTERS = {
    "单据类型": lambda header, given: header["类型"] == given,
    "起始日期": lambda header, given: date_of(header) >= given["date"],
    "结束日期": lambda header, given: date_of(header) <= given["date"],
    "起始编号": lambda header, given: header["单据编号"] >= given,
    "结束编号": lambda header, given: header["单据编号"] <= given,
    "dpID": lambda header, given: header["dpID"] == given,
    "ksID": lambda header, given: header["ksID"] == given,
    "pjID": lambda header, given: header["pjID"] == given,
}
LINE_FILTERS = ("经手人", "交接人", "包装")


def day(text):
    return {"date": text}


class BillListTest(SampleCase):
    def expected(self, family, filters):
        def wanted(line):
            return all(line.get(column) == filters[column] for column in LINE_FILTERS if column in filters)

        lines = grouped(self.book.tables[family + "记录"], lambda line: line["BillID"])
        rows = []
        for header in self.book.tables[family + "目录"]:
            if not all(test(header, filters[name]) for name, test in HEADER_FILTERS.items() if name in filters):
                continue
            # A bill without lines stands in the list with one row of Nulls.
            own = [line for line in lines.get(header["BillID"], [{}]) if wanted(line)]
            for part in grouped(own, lambda line: line.get("dpID")).values():
                part = [line for line in part if line]
                sums = [total(part, column) for column in ("数量", "除税金额", "税额", "金额")]
                if self.within(sums[0], filters, "数量") and self.within(sums[1], filters, "金额"):
                    rows.append(self.row(family, header, sums))
        return rows

    @staticmethod
    def within(figure, filters, what):
        low, high = filters.get("最小" + what, 0), filters.get("最大" + what, 0)
        if figure is None:
            return low == 0 and high == 0
        return (low == 0 or figure >= low) and (high == 0 or figure <= high)

    def row(self, family, header, sums):
        return [*(header[c] for c in ("年份", "月份", "日子", "单据类型", "类型", "单据编号")), *sums,
                *(header[c] for c in ("BillID", "录入员", "录入日期", "审核员", "审核日期", "说明")),
                *self.book.named("仓库", header["dpID"], "仓库名称"), *self.book.named(family, header["ksID"], "企业名称"),
                *self.book.named("项目", header["pjID"], "项目名称 项目编号")]

    def compare(self, family, empty=False, **filters):
        arguments = [float(filters[name]) if name.startswith("最") and name in filters else
                     filters.get(name, 0 if name in IDS_AND_BOUNDS else "") for name in PARAMETERS]
        with self.subTest(family=family, **filters):
            self.check(self.both("rs单据列表", family, *arguments), LIST, self.expected(family, filters), "BillID 金额",
                       order=lambda row: (row[1], PINYIN.index(row[3]), row[5]), empty=empty)

    def test_every_bill(self):
        for family in ("入库", "出库"):
            self.compare(family)

    def test_any_other_direction_is_outbound(self):
        everything = [0 if name in IDS_AND_BOUNDS else "" for name in PARAMETERS]
        outbound = self.both("rs单据列表", "出库", *everything)
        for other in ("成本", {"empty": True}):
            self.assertEqual(self.both("rs单据列表", other, *everything), outbound)

    def test_header_filters(self):
        for family in ("入库", "出库"):
            for warehouse in (1, 2, 3, 4):
                self.compare(family, dpID=warehouse)
            self.compare(family, dpID=5, empty=True)
            self.compare(family, 起始日期=day("2003-03-05"), 结束日期=day("2003-04-10"))
            self.compare(family, 起始日期=day("2003-11-20"))
            self.compare(family, 结束日期=day("2003-01-20"))
            self.compare(family, 起始日期=day("2003-03-12"), 结束日期=day("2003-03-12"))
            self.compare(family, 起始日期=day("2003-05-01"), 结束日期=day("2003-05-07"), empty=True)
            for partner in (3, 7, 999, -1):
                self.compare(family, ksID=partner, empty=partner == -1)
        for family, low, high in (("入库", "JP2-04-0001", "JZ2-03-9999"), ("出库", "CK3-01-0001", "XP1-02-0004")):
            self.compare(family, 起始编号=low, 结束编号=high)
            self.compare(family, 起始编号=low)
            self.compare(family, 结束编号=high)
        for kind in ("赊购", "现购", "预付款", "调拨"):
            self.compare("入库", 单据类型=kind)
        for kind in ("批发", "赊销", "调拨", "工程", "零售"):
            self.compare("出库", 单据类型=kind)
        for project in (1, 3, 12, 999):
            self.compare("出库", pjID=project)

    def test_line_filters_keep_and_sum_the_matching_lines(self):
        for family, handler in (("入库", "李秀芳"), ("入库", "俞根法"), ("出库", "周敏"), ("出库", "楼金良")):
            self.compare(family, 经手人=handler)
            self.compare(family, 经手人=handler, 交接人="王丽华")
            for packing in ("袋装", "散装", "木箱"):
                self.compare(family, 包装=packing)
        self.compare("出库", 经手人="陈建国", empty=True)

    def test_filters_without_effect(self):
        for name in ("货位", "货位Opr", "期限Opr", "包装Opr"):
            everything = [0 if p in IDS_AND_BOUNDS else "T1" if p == name else "" for p in PARAMETERS]
            self.check(self.both("rs单据列表", "入库", *everything), LIST, self.expected("入库", {}), "BillID 金额")

    def test_bounds_of_the_sums(self):
        bill = self.book.tables["入库记录"][0]["BillID"]
        amount = total([line for line in self.book.tables["入库记录"] if line["BillID"] == bill], "除税金额")
        self.compare("入库", 最小金额=amount, 最大金额=amount)
        for family in ("入库", "出库"):
            self.compare(family, 最小数量=1000)
            self.compare(family, 最大数量=2.5)
            self.compare(family, 最小数量=10.0005, 最大数量=99.9995)
            self.compare(family, 最小金额=50000)
            self.compare(family, 最大金额=1500.5)
            self.compare(family, 最小金额=20000, 最大金额=30000)
            self.compare(family, 最小数量=100.0005, 最小金额=40000)
            self.compare(family, 最大数量=500.0005, 最大金额=10000)
            self.compare(family, 最小数量=10.0005, 最大数量=500.0005, 最小金额=5000, 最大金额=25000)

    def test_filters_together(self):
        self.compare("入库", dpID=1, 起始日期=day("2003-02-01"), 结束日期=day("2003-09-30"), 经手人="陈建国", 包装="散装", 最小金额=1000)
        self.compare("出库", 单据类型="批发", dpID=3, 起始编号="XZ3-02-0001", 结束编号="XZ3-06-9999", 交接人="方小琴", 最大数量=400.0005)
        self.compare("出库", pjID=2, ksID=54)


class AdHocTest(SampleCase):
    SUMS = "数量 单价:Double 金额 税额 除税单价 除税金额 "
    LINES = ("日期:String 单据名称 单据类型 单据编号 单据类型 单据编号 pdID ClassCode 商品名称 商品编号 规格 型号 计量单位 进位方法 最高库存 最低库存 "
             "单价 数量 金额 税额 除税单价 除税金额 经手人 交接人 包装 货位 项目编号 项目名称 工程名称 单位名称 BillID")
    # Positions of the array with a test of what they ask.
    QUERIES = [
        ({}, lambda h, l: True),
        ({0: day("2003-02-10"), 1: day("2003-02-28")}, lambda h, l: "2003-02-10" <= date_of(h) <= "2003-02-28"),
        ({0: day("2003-10-15")}, lambda h, l: date_of(h) >= "2003-10-15"),
        ({1: day("2003-01-15")}, lambda h, l: date_of(h) <= "2003-01-15"),
        ({2: "JZ1-01-0001", 3: "XP2-03-0001"}, lambda h, l: "JZ1-01-0001" <= h["单据编号"] <= "XP2-03-0001"),
        ({4: "俞根法", 5: "方小琴"}, lambda h, l: (l["经手人"], l["交接人"]) == ("俞根法", "方小琴")),
        ({6: "纸箱", 7: "<>"}, lambda h, l: l["包装"] != "纸箱"),
        ({6: "%装%", 7: " Like "}, lambda h, l: "装" in l["包装"]),
        ({8: "T1", 9: ">="}, lambda h, l: l["货位"] >= "T1"),
        ({10: 45, 11: ">="}, lambda h, l: l["期限"] >= 45),
        ({6: "散装", 7: "=", 8: "B", 9: ">", 10: 0, 11: "="},
         lambda h, l: l["包装"] == "散装" and l["货位"] > "B" and l["期限"] == 0),
    ]
    # 类型, dpID, ksID, pjID (the last of the first two methods alone).
    SCOPES = [("", 0, 0, 0), ("批发", 0, 0, 0), ("现购", 1, 0, 0), ("", 2, 3, 0), ("", 0, 0, 3), ("", 0, 0, 999), ("  ", 3, 0, 0)]

    @staticmethod
    def array(given):
        return {"array": [given.get(position, "") for position in range(12)]}

    def matching(self, family, scope, test):
        kind, warehouse, partner, project = scope
        return [(header, line) for header, line in self.book.lines(family)
                if line["pdID"] in self.book.master["商品"] and test(header, line)
                and kind.strip() in ("", header["类型"]) and warehouse in (0, header["dpID"])
                and partner in (0, header["ksID"]) and project in (0, header["pjID"])]

    def cases(self):
        for family in ("入库", "出库"):
            for given, test in self.QUERIES:
                yield family, self.SCOPES[0], given, test
            for scope in self.SCOPES[1:]:
                yield family, scope, {}, self.QUERIES[0][1]
            yield family, ("", 1, 0, 0), *self.QUERIES[2]

    def group_value(self, group, header, line):
        if group in ("项目名称", "项目编号"):
            return self.book.named("项目", header["pjID"], group)
        return [line[group]] if group else []

    def compare_summary(self, family, scope, given, test, group):
        kind, warehouse, partner, project = scope
        found = self.both("rsSql单据记录", family, kind, warehouse, partner, project, group, self.array(given))
        groups = grouped(self.matching(family, scope, test),
                         lambda pair: (pair[1]["pdID"], *self.group_value(group, *pair)))
        rows = []
        for key, pairs in groups.items():
            lines = [line for _, line in pairs]
            rows.append([*key, total(lines, "数量"), mean(lines, "单价"),
                         *(total(lines, c) for c in ("金额", "税额", "除税单价", "除税金额")),
                         *self.book.named("商品", key[0], PRODUCT)])
        self.check(found, f"pdID {group} {self.SUMS}{PRODUCT}", rows, f"pdID {group}", empty=not rows)
        return len(rows)

    def test_products_of_every_query(self):
        compared = 0
        for family, scope, given, test in self.cases():
            with self.subTest(family=family, scope=scope, given=given):
                compared += self.compare_summary(family, scope, given, test, "")
        self.assertGreater(compared, 3000)

    def test_products_by_a_further_column(self):
        for group in ("项目名称", "项目编号", "经手人", "包装", "货位", "期限"):
            with self.subTest(group=group):
                self.assertGreater(self.compare_summary("出库", ("", 0, 0, 0), {}, self.QUERIES[0][1], group), 327)
        self.compare_summary("入库", ("", 2, 0, 0), *self.QUERIES[5], "包装")

    def test_lines_of_every_query(self):
        columns = self.LINES.split()
        compared = 0
        for family, scope, given, test in self.cases():
            kind, warehouse, partner, project = scope
            found = self.both("rsSql查询记录", family, kind, warehouse, partner, project, self.array(given))
            rows = []
            for header, line in self.matching(family, scope, test):
                source = {**self.book.master["项目"].get(header["pjID"], {}), **self.book.master["商品"][line["pdID"]], **line,
                          "单据编号": header["单据编号"]}
                names = {"日期:String": "{年份}-{月份}-{日子}".format(**header), "单据名称": header["单据类型"],
                         # The partner is looked up among the customers, on inbound bills too.
                         "单位名称": self.book.named("出库", header["ksID"], "企业名称")[0]}
                row = [names[c] if c in names else source.get(c) for c in columns]
                row[2], row[4] = header["类型"], header["单据类型"]
                rows.append(row)
            with self.subTest(family=family, scope=scope, given=given):
                self.check(found, self.LINES, rows, "BillID pdID 货位", empty=not rows)
            compared += len(rows)
        self.assertGreater(compared, 30000)

    def bills(self, family, warehouse, partner, product, test):
        """Headers of the bills with a line of the product that meets the test; the dates are the header's."""
        found = {header["BillID"]: header for header, line in self.book.lines(family)
                 if product in (0, line["pdID"]) and test(header, line)
                 and warehouse in (0, header["dpID"]) and partner in (0, header["ksID"])}
        return list(found.values())

    # Number ranges have no effect on the lists of bills.
    LISTED = [query for query in QUERIES if 2 not in query[0]]

    def test_numbers_of_the_bills_with_a_product(self):
        listed = 0
        for family in ("入库", "出库"):
            for given, test in self.LISTED:
                for warehouse, partner, product in ((0, 0, 3), (1, 0, 100), (0, 3, 3), (0, 0, 9001)):
                    bills = self.bills(family, warehouse, partner, product, test)
                    bills.sort(key=lambda h: (h["月份"], h["BillType"], h["单据编号"]))
                    for more in ({}, {2: "Z", 3: "A"}):
                        found = self.both("Get单据列表", family, "无效", warehouse, partner, product, self.array({**given, **more}))
                        self.assertEqual(found, ";".join(h["单据编号"] for h in bills), (family, given, warehouse, product))
                    listed += len(bills)
        self.assertGreater(listed, 300)
        self.assertEqual(self.result("Get单据列表", "入库", "", 1, 0, 0, self.array({})), "")

    def test_no_name_is_no_filter_on_the_lists_of_bills(self):
        given = {4: "(无名称)", 5: "(无名称)", 6: "(无名称)", 7: "=", 8: "(无名称)", 9: "=", 10: "(无名称)", 11: "="}
        bills = self.bills("入库", 0, 0, 3, lambda h, l: True)
        self.assertEqual(self.result("Get单据列表", "入库", "", 0, 0, 3, self.array(given)).count(";"), len(bills) - 1)
        self.assertEqual(self.result("Get单据统计", "入库", "", "", 0, 0, 3, self.array(given)), len(bills))

    def test_counts_of_bills(self):
        counted = 0
        for family in ("入库", "出库"):
            for given, test in self.LISTED:
                for kind, sub_kind, warehouse, partner, product in (
                        ("", "", 0, 0, 0), ("普通发票", "", 0, 0, 0), ("", "调拨", 1, 0, 0), ("调拨单", "调拨", 0, 0, 100),
                        ("", "", 0, 7, 0), ("入库单", "赊购", 2, 0, -1)):
                    bills = [h for h in self.bills(family, warehouse, partner, max(product, 0), test)
                             if kind in ("", h["单据类型"]) and sub_kind in ("", h["类型"])]
                    found = self.both("Get单据统计", family, kind, sub_kind, warehouse, partner, product,
                                      self.array({**given, 2: "Z"}))
                    self.assertEqual(found, len(bills), (family, given, kind, sub_kind, warehouse, partner, product))
                    counted += found
        self.assertGreater(counted, 10000)


class CountTest(SampleCase):
    def test_bills_of_a_month(self):
        for family in ("入库", "出库"):
            headers = self.book.tables[family + "目录"]
            for month in range(1, 13):
                for warehouse in (0, 1, 2, 3, 4):
                    for kind in ("", "调拨单", "增值税发票"):
                        count = sum(h["月份"] == month and warehouse in (0, h["dpID"]) and kind in ("", h["单据类型"])
                                    for h in headers)
                        self.assertEqual(self.result("Get_BillNum", warehouse, month, kind, family), count)

    def test_bills_of_a_span(self):
        for family in ("入库", "出库"):
            headers = self.book.tables[family + "目录"]
            for kind in ("", "  ", "调拨", "赊销"):
                for month, first_day in ((0, 0), (3, 0), (2, 15), (12, 31)):
                    count = sum(h["月份"] >= month and h["日子"] >= first_day and kind.strip() in ("", h["类型"]) for h in headers)
                    self.assertEqual(self.result("GetBillCount", family, kind, month, first_day, 0, 0),
                                     f"{count} 张" if count else "(无)", (family, kind, month, first_day))
            # An end that is named counts as 0.
            self.assertEqual(self.result("GetBillCount", family, "", 1, 1, 6, 0), "(无)")
            self.assertEqual(self.result("GetBillCount", family, "", 1, 1, 0, 20), "(无)")

    def test_halves_of_transfers(self):
        inbound = {(h["月份"], h["单据编号"]): h["BillID"] for h in self.book.tables["入库目录"] if h["单据类型"] == "调拨单"}
        outbound = {(h["月份"], h["单据编号"]): h["BillID"] for h in self.book.tables["出库目录"] if h["单据类型"] == "调拨单"}
        self.assertEqual((len(inbound), inbound.keys()), (88, outbound.keys()))
        for number, bill in inbound.items():
            self.assertEqual(self.result("GetShiftID", bill, "入库"), outbound[number])
            self.assertEqual(self.result("Get_FromBillID", bill), outbound[number])
            self.assertEqual(self.result("GetShiftID", outbound[number], "出库"), bill)
        self.assertEqual(self.result("GetShiftID", 9002, "入库"), 0)


if __name__ == "__main__":
    unittest.main()
