"""Operators, their rights and passwords, and the operator log on a real book."""

import datetime
import unittest

from small_book import SmallBookCase


class OperatorCase(SmallBookCase):
    def operator(self, number, *columns):
        return self.rows(f"Select {','.join(columns)} From 操作员 Where ID={number}")[0]


class FirstOperatorTest(OperatorCase):
    def test_the_list_of_an_empty_table_holds_the_system_operator(self):
        answer = self.call("rs操作员")
        self.assertEqual(self.columns(answer["result"], "ID", "姓名", "密码"), [[1, "系统操作员", ""]])
        self.assertEqual([s["text"] for s in answer["sent"]], ["Select * From 操作员 Order By ID", "操作员",
                                                               "Select * From 操作员 Order By ID"])
        self.assertEqual(self.operator(1, "dpID", "凭证处理", "入库处理", "资产折旧", "系统设置"),
                         [0, True, False, False, False])

    def test_the_list_adds_nobody_when_there_is_one(self):
        self.result("操作员_Append", "李四")
        answer = self.call("rs操作员")
        self.assertEqual(self.columns(answer["result"], "ID", "姓名"), [[1, "李四"]])
        self.assertEqual(len(answer["sent"]), 1)

    def test_an_unknown_id_adds_nobody(self):
        self.assertEqual(self.result("rs操作员", 5)["rows"], [])
        self.assertEqual(self.rows("Select Count(*) From 操作员"), [[0]])


class OperatorTest(OperatorCase):
    def setUp(self):
        super().setUp()
        self.result("rs操作员")
        self.assertEqual(self.result("操作员_Append", "李四"), 2)

    def test_every_operator_is_added_with_one_right(self):
        self.assertEqual(self.result("操作员_Append", "王五"), 3)
        self.assertEqual(self.operator(3, "姓名", "密码", "dpID", "凭证处理", "入库处理", "系统设置"),
                         ["王五", "", 0, True, False, False])

    def test_the_list_is_in_order_of_ids(self):
        self.assertEqual(self.columns(self.result("rs操作员", 0), "ID"), [[1], [2]])
        self.assertEqual(self.columns(self.result("rs操作员", 2), "姓名"), [["李四"]])

    def test_a_new_name(self):
        self.assertIs(self.result("操作员_Update", 2, "李小四"), True)
        self.assertEqual(self.result("Get操作员", 2, "姓名"), "李小四")
        self.assertEqual(self.result("Get操作员", 1, "姓名"), "系统操作员")

    def test_names_need_not_differ(self):
        self.assertIs(self.result("操作员_Update", 2, "系统操作员"), True)
        self.assertEqual(self.columns(self.result("rs操作员"), "姓名"), [["系统操作员"], ["系统操作员"]])

    def test_a_right_kept_under_another_name(self):
        for right, column in (("发货单位", "资产处理"), ("收货单位", "卡片打印"), ("部件管理", "资产折旧")):
            self.assertIs(self.result("操作权限_Update", 2, right, True), True)
            self.assertEqual(self.operator(2, column), [True])
            self.assertIs(self.result("Get操作权限", 2, right), True)
            self.assertIs(self.result("Get操作权限", 2, column), True)
            self.assertIs(self.result("Get操作权限", 1, right), False)
            self.assertIs(self.result("操作权限_Update", 2, right, False), True)
            self.assertIs(self.result("Get操作权限", 2, right), False)

    def test_a_right_under_its_own_name(self):
        self.assertIs(self.result("操作权限_Update", 2, "月末结帐", True, isSQL=True), True)
        self.assertIs(self.result("Get操作权限", 2, "月末结帐"), True)
        self.assertIs(self.result("Get操作权限", 2, "库存查询"), False)

    def test_a_right_that_does_not_exist(self):
        self.assertIs(self.result("操作权限_Update", 2, "飞行", True), False)
        self.assertIs(self.result("Get操作权限", 2, "飞行"), False)

    def test_clearing_leaves_the_warehouse(self):
        for right in ("入库处理", "系统设置"):
            self.assertIs(self.result("操作权限_Update", 2, right, True), True)
        self.assertIs(self.result("管理仓库_Update", 2, 3), True)
        self.assertIs(self.result("操作权限_Clear", 2), True)
        self.assertEqual(self.operator(2, "姓名", "dpID", "入库处理", "凭证处理", "系统设置"),
                         ["李四", 3, False, False, False])
        self.assertEqual(self.operator(1, "凭证处理"), [True])

    def test_the_managed_warehouse(self):
        self.assertEqual(self.result("Get管理仓库", 2), 0)
        self.assertIs(self.result("管理仓库_Update", 2, 3), True)
        self.assertEqual(self.result("Get管理仓库", 2), 3)
        self.assertEqual(self.result("Get管理仓库", 1), 0)

    def test_an_operator_that_is_not_there(self):
        for method, *arguments in (("操作员_Update", 9, "x"), ("操作权限_Update", 9, "入库处理", True),
                                   ("管理仓库_Update", 9, 3), ("操作权限_Clear", 9), ("Clear_Password", 9),
                                   ("Update_Password", "x", "m1", 9), ("操作员_Delete", 9)):
            self.assertIs(self.result(method, *arguments), True, method)
        self.assertEqual(self.rows("Select ID,姓名,密码,dpID,入库处理 From 操作员 Order by ID"),
                         [[1, "系统操作员", "", 0, False], [2, "李四", "", 0, False]])
        self.assertEqual(self.result("GetPassword", "", 9), "")
        self.assertEqual(self.result("Get操作员", 9, "姓名"), "")
        self.assertEqual(self.result("Get管理仓库", 9), 0)
        self.assertIs(self.result("Get操作权限", 9, "凭证处理"), False)

    def test_passwords(self):
        self.assertEqual(self.result("GetPassword", "李四"), "")
        self.assertIs(self.result("Update_Password", "", "m2", 2), True)
        self.assertIs(self.result("Update_Password", "系统操作员", "m1"), True)
        self.assertEqual(self.result("GetPassword", "李四"), "m2")
        self.assertEqual(self.result("GetPassword", "李四", 1), "m1")
        self.assertEqual(self.result("GetPassword", "系统操作员", 0), "m1")

    def test_the_password_of_an_unknown_name(self):
        answer = self.call("GetPassword", "无名")
        self.assertEqual(answer["result"], "")
        self.assertEqual(answer["sent"][0]["text"], "Select * From 操作员 Where姓名='无名'")

    def test_a_cleared_password_is_empty_not_null(self):
        self.result("Update_Password", "", "m2", 2)
        self.assertIs(self.result("Clear_Password", 2), True)
        self.assertEqual(self.operator(2, "密码"), [""])
        self.assertEqual(self.rows("Select Count(*) From 操作员 Where 密码 Is Null"), [[0]])

    def test_a_null_password_reads_as_empty(self):
        self.sql("Update 操作员 Set 密码=Null Where ID=2")
        self.assertEqual(self.result("GetPassword", "李四"), "")

    def test_a_quote_breaks_the_statement_quietly(self):
        self.assertIs(self.result("操作员_Update", 2, "O'Brien"), False)
        self.assertIs(self.result("Update_Password", "", "O'Brien", 2), False)
        self.assertEqual(self.result("GetPassword", "O'Brien"), "")
        self.assertEqual(self.operator(2, "姓名", "密码"), ["李四", ""])

    def test_deleting(self):
        self.assertIs(self.result("操作员_Delete", 2), True)
        self.assertEqual(self.columns(self.result("rs操作员"), "ID"), [[1]])

    def test_an_operator_with_log_entries_is_not_to_be_deleted(self):
        self.sql("Insert into Log (Operator,logDate) Values ('2',#2004-3-7#)")
        self.assertIs(self.result("AllowDelOperator", 2), False)
        self.assertIs(self.result("AllowDelOperator", 1), True)
        self.assertIs(self.result("AllowDelOperator", 22), True)
        self.assertIs(self.result("操作员_Delete", 2), True, "the host decides, not the component")


class LogTest(SmallBookCase):
    def fill(self, count, shuffled=None):
        """Entries 1 to count, a minute apart; shuffled gives an entry another time."""
        start = datetime.datetime(2004, 3, 7, 8)
        lines = ["logID,Operator,logDate,内容"]
        for number in range(1, count + 1):
            at = start + datetime.timedelta(minutes=(shuffled or {}).get(number, number))
            lines.append(f"{number},1,{at:%Y-%m-%d %H:%M:%S},entry {number}")
        self.import_text("Log", "\n".join(lines) + "\n")

    def ids(self):
        return [row[0] for row in self.rows("Select logID From Log Order by logID")]

    def test_the_newest_comes_first_with_all_its_columns(self):
        self.fill(3, {1: 10})
        found = self.result("rsLog")
        self.assertEqual(self.columns(found, "logID", "内容"), [[1, "entry 1"], [3, "entry 3"], [2, "entry 2"]])

    def test_300_of_1000_leaves_the_newest_alone(self):
        self.fill(1000)
        answer = self.call("Delete_LogRecs", 300)
        self.assertIs(answer["result"], True)
        self.assertEqual([s["text"] for s in answer["sent"]], ["Select Top 200 * From Log Order by logDate DESC",
                                                               "Delete From Log Where logID<1000"])
        self.assertEqual(self.ids(), [1000])

    def test_entries_with_a_higher_id_than_the_newest_stay(self):
        self.fill(1000, {997: 5000})
        self.assertIs(self.result("Delete_LogRecs", 3), True)
        self.assertEqual(self.ids(), [997, 998, 999, 1000])

    def test_a_number_without_whole_two_thirds_is_refused(self):
        self.fill(10)
        for most, top in ((100, "66.6666666666667"), (1, "0.666666666666667"), (-1, "-0.666666666666667")):
            answer = self.call("Delete_LogRecs", most)
            self.assertIs(answer["result"], False)
            self.assertEqual([s["text"] for s in answer["sent"]],
                             [f"Select Top {top} * From Log Order by logDate DESC"])
        self.assertEqual(self.ids(), list(range(1, 11)))

    def test_none_of_the_log_finds_no_newest_entry(self):
        self.fill(10)
        self.assertIs(self.result("Delete_LogRecs", 0), False)
        self.assertEqual(len(self.ids()), 10)

    def test_a_number_whose_double_does_not_fit_asks_nothing(self):
        self.fill(10)
        answer = self.call("Delete_LogRecs", 2000000000)
        self.assertIs(answer["result"], False)
        self.assertEqual(answer["sent"], [])
        self.assertEqual(len(self.ids()), 10)

    def test_an_empty_log(self):
        answer = self.call("Delete_LogRecs", 300)
        self.assertIs(answer["result"], False)
        self.assertEqual(len(answer["sent"]), 1)
        self.assertEqual(self.ids(), [])


if __name__ == "__main__":
    unittest.main()
