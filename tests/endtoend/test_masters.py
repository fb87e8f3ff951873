"""Warehouses, partners, projects, departments and employees on a real book: lists, names, ids, counts, class deletion."""

import unittest

from bare_book import BareBookCase, insert

# Method, table, key column.
LISTS = [("rs厂商分类", "厂商分类", "ClassID"), ("rs厂商资料", "厂商资料", "KSID"), ("rs客户分类", "客户分类", "ClassID"),
         ("rs客户资料", "客户资料", "KSID"), ("rs项目分类", "项目分类", "ClassID"), ("rs项目资料", "项目设置", "项目ID"),
         ("rs部门分类", "部门分类", "ClassID"), ("rs雇员资料", "雇员资料", "雇员ID")]


class ListTest(BareBookCase):
    def test_no_id_lists_everything_by_class_an_id_its_row(self):
        for method, table, key in LISTS:
            self.execute(*insert(table, f"{key},ClassCode", (7, "0102"), (8, "02"), (9, "01"), (10, None)))
            for arguments, ids in (((), [10, 9, 7, 8]), ((0,), [10, 9, 7, 8]), ((-5,), [10, 9, 7, 8]), ((7,), [7]), ((6,), [])):
                self.assertEqual(self.column(self.result(method, *arguments), key), ids, (method, arguments))

    def test_a_list_carries_every_column(self):
        self.execute(*insert("厂商资料", "KSID,ClassCode,企业名称,单位名称", (5, "01", "华新水泥厂", "华新")))
        found = self.result("rs厂商资料", 5)
        self.assertEqual([(c["name"], c["type"]) for c in found["columns"]],
                         [("KSID", "Long"), ("ClassCode", "String"), ("企业名称", "String"), ("单位名称", "String")])
        self.assertEqual(found["rows"], [[5, "01", "华新水泥厂", "华新"]])

    def test_projects_of_a_class_are_in_order_of_their_numbers(self):
        self.execute(*insert("项目设置", "项目ID,ClassCode,项目编号", (1, "02", "A1"), (2, "01", "B2"), (3, "01", "B1")))
        self.assertEqual(self.column(self.result("rs项目资料"), "项目ID"), [3, 2, 1])


class MonthTest(BareBookCase):
    def setUp(self):
        super().setUp()
        self.execute(*insert("仓库设置", "dpID,仓库名称", (3, "丙"), (1, "甲"), (2, "乙")),
                     *insert("仓库余额表", "年份,月份,pdID,dpID", (2003, 2, 1, 3), (2003, 2, 2, 3), (2004, 2, 1, 1), (2003, 3, 1, 2)),
                     *insert("厂商资料", "KSID,ClassCode", (5, "02"), (6, "01"), (7, "01"), (8, "01")),
                     *insert("客户资料", "KSID,ClassCode", (5, "02"), (6, "01"), (9, "01")),
                     *insert("项目设置", "项目ID,ClassCode,ksID", (4, "02", 1), (2, "01", 9), (3, "01", 2)),
                     *insert("入库目录", "BillID,月份,ksID", (1, 2, 5), (2, 2, 7), (3, 2, 6), (4, 2, 5), (5, 3, 8)),
                     *insert("出库目录", "BillID,月份,ksID", (1, 3, 6), (2, 3, 5), (3, 4, 77)))

    def test_warehouses_with_a_balance_in_the_month_of_any_year(self):
        for arguments in ((), (0,), (-1,)):
            found = self.result("rs仓库列表", *arguments)
            self.assertEqual((self.column(found, "dpID"), self.column(found, "仓库名称")), ([1, 2, 3], ["甲", "乙", "丙"]))
        found = self.result("rs仓库列表", 2)
        self.assertEqual(([c["name"] for c in found["columns"]], found["rows"]), (["dpID"], [[1], [3]]))
        self.assertEqual(self.result("rs仓库列表", 12)["rows"], [])

    def test_partners_with_a_bill_in_the_month(self):
        for method, month, ids in (("rs厂商列表", 0, [5, 6, 7, 8]), ("rs厂商列表", 2, [6, 7, 5]), ("rs厂商列表", 3, [8]),
                                   ("rs厂商列表", 4, []), ("rs厂商列表", -1, []), ("rs客户列表", 0, [5, 6, 9]),
                                   ("rs客户列表", 3, [6, 5]), ("rs客户列表", 2, []), ("rs客户列表", 4, []), ("rs客户列表", -1, [])):
            self.assertEqual(self.column(self.result(method, month), "KSID"), ids, (method, month))
        for method, ids in (("rs厂商列表", [5, 6, 7, 8]), ("rs客户列表", [5, 6, 9])):
            self.assertEqual(self.column(self.result(method), "KSID"), ids)

    def test_projects_of_a_month_without_bills_are_none(self):
        for arguments, ids in (((), [2, 3, 4]), ((0,), [2, 3, 4]), ((1,), []), ((-1,), [])):
            self.assertEqual(self.column(self.result("rs项目列表", *arguments), "项目ID"), ids, arguments)

    def test_the_order_of_a_months_projects_is_sent_as_it_is(self):
        self.assertEqual([s["text"] for s in self.call("rs项目列表", 2)["sent"]],
                         ["Select * From 项目设置 Where (项目ID in (Select 项目ID From 入库目录 Where 月份=2)) or "
                          "(项目ID in (Select 项目ID From 出库目录 Where 月份=2)) Order by ClassCode,ksID"])


class LookupTest(BareBookCase):
    def setUp(self):
        super().setUp()
        self.execute(*insert("仓库设置", "dpID,仓库名称", (3, "Main Depot"), (4, None), (5, "全部 分库")),
                     *insert("厂商资料", "KSID,企业名称,单位名称", (5, "华新水泥厂", "华新"), (6, None, None), (7, "Acme Works", "Acme")),
                     *insert("客户资料", "KSID,企业名称,单位名称", (5, "城建二公司", "城建"), (9, None, "Brown")),
                     *insert("项目设置", "项目ID,项目编号,项目名称", (2, "X-1", "大桥"), (3, None, None)))

    def test_names(self):
        for method, names in (("Get厂商名称", {5: "华新水泥厂", 6: "", 7: "Acme Works", 8: "", 0: "", -1: ""}),
                              ("Get客户名称", {5: "城建二公司", 9: "", 6: ""}),
                              ("Get项目名称", {2: "大桥", 3: "", 4: ""}), ("Get项目编号", {2: "X-1", 3: "", 4: ""}),
                              ("Get仓库名称", {3: "Main Depot", 4: "", 6: "", -1: "", 0: "全部仓库"})):
            for number, name in names.items():
                self.assertEqual(self.result(method, number), name, (method, number))

    def test_ids_without_regard_to_case_and_trailing_blanks(self):
        for method, names in (("Get厂商ID", {"华新": 5, "华新 ": 5, "Acme": 7, "aCME  ": 7, " Acme": 0, "华新水泥厂": 0, "城建": 0, "": 0}),
                              ("Get客户ID", {"城建": 5, "BROWN": 9, "brown ": 9, "Brow": 0}),
                              ("Get仓库ID", {"Main Depot": 3, "MAIN DEPOT ": 3, "MainDepot": -1, "": -1, "全部 分库": 5})):
            for name, number in names.items():
                self.assertEqual(self.result(method, name), number, (method, name))

    def test_all_warehouses_are_known_without_asking(self):
        for method, argument, result in (("Get仓库名称", 0, "全部仓库"), ("Get仓库ID", "全部", 0), ("Get仓库ID", "全部仓库", 0)):
            answer = self.call(method, argument)
            self.assertEqual((answer["result"], answer["sent"]), (result, []))
        # These names are compared as they are, so any other text is looked for.
        for name in ("全部 ", " 全部", "全部仓库 "):
            answer = self.call("Get仓库ID", name)
            self.assertEqual((answer["result"], len(answer["sent"])), (-1, 1), name)

    def test_of_several_rows_of_one_name_one_is_answered(self):
        self.execute(*insert("仓库设置", "dpID,仓库名称", (8, "双库"), (9, "双库")))
        self.assertIn(self.result("Get仓库ID", "双库"), (8, 9))

    def test_a_quote_in_a_name_reaches_the_caller_as_an_error(self):
        for method in ("Get厂商ID", "Get客户ID", "Get仓库ID"):
            found = self.batch({"method": method, "args": ["O'Brien"]}, {"method": "Get仓库数量"})
            self.assertEqual((found[0]["error"]["number"], "result" in found[0], found[1]["result"]), (-2147217900, False, 3))

    def test_counts(self):
        self.assertEqual(self.results(("Get仓库数量",), ("Get收付款方式数量",)), [3, 0])
        self.execute(*insert("收付款方式", "收付款方式", ("现金",), ("支票",)))
        self.assertEqual(self.result("Get收付款方式数量"), 2)

    def test_a_count_beyond_16_bits(self):
        rows = "".join(f"{number}\n" for number in range(10, 10 + 32767 - 3))
        self.import_text("仓库设置", "dpID\n" + rows)
        self.import_text("收付款方式", "科目代码\n" + rows)
        self.import_text("商品设置", "pdID\n" + rows)
        self.assertEqual(self.results(("Get仓库数量",), ("Get收付款方式数量",), ("Get商品数量",)), [32767, 32764, 32764])
        four = "".join(f"{number}\n" for number in range(40000, 40004))
        for table, column in (("仓库设置", "dpID"), ("收付款方式", "科目代码"), ("商品设置", "pdID")):
            self.import_text(table, f"{column}\n{four}")
        self.assertEqual(self.error("Get仓库数量"), 6)
        self.assertEqual(self.results(("Get收付款方式数量",), ("Get商品数量",)), [0, 0])

    def test_a_missing_table_is_an_error_except_for_the_payment_methods(self):
        self.execute(*(f"Drop Table {table}" for table in ("仓库设置", "厂商资料", "客户资料", "项目设置", "收付款方式")))
        for method, *arguments in (("Get仓库数量",), ("Get仓库名称", 3), ("Get仓库ID", "x"), ("Get厂商名称", 5), ("Get客户名称", 5),
                                   ("Get项目名称", 2), ("Get项目编号", 2), ("Get厂商ID", "x"), ("Get客户ID", "x"), ("rs仓库列表",),
                                   ("rs厂商列表",), ("rs客户列表",), ("rs项目列表",), ("rs厂商资料",), ("rs项目资料", 2)):
            self.assertLess(self.error(method, *arguments), 0, method)
        self.assertEqual(self.result("Get收付款方式数量"), 0)


class DeletionTest(BareBookCase):
    def test_a_class_goes_alone(self):
        for kind, records in (("客户", "客户资料"), ("厂商", "厂商资料"), ("项目", "项目设置")):
            self.execute(*insert(f"{kind}分类", "ClassID,ClassCode", (1, "01"), (2, "02")),
                         *insert(records, "ClassCode", ("01",)))
            for number, left in ((9, [[1], [2]]), (1, [[2]]), (1, [[2]])):
                self.assertIs(self.result(f"Del_{kind}分类", number), True)
                self.assertEqual(self.rows(f"Select ClassID From {kind}分类 Order by ClassID"), left)
            self.assertEqual(self.rows(f"Select ClassCode From {records}"), [["01"]])
            self.execute(f"Drop Table {kind}分类")
            self.assertIs(self.result(f"Del_{kind}分类", 2), False)


if __name__ == "__main__":
    unittest.main()
