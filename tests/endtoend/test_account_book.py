"""The book's information and its two dates, which repair themselves, and a book's creation and clearing."""

import unittest

from bare_book import BareBookCase, insert

TEXT_ITEMS = ["帐簿名称", "单位名称", "财务主管", "法人代表", "帐簿编号", "单位地址", "联系电话", "电子邮件", "网络地址", "工商登记号",
              "税务登记号", "企业代码", "企业类型"]
TODAY = "2006-05-17"
ZERO = "1899-12-30"


class DatesCase(BareBookCase):
    def prepare(self, periods, **options):
        """The options that are given and a balance row a period, nothing else."""
        self.new_book()
        given = ((item, value) for item, value in options.items() if value is not None)
        self.execute(*insert("系统选项", "Item,Discription", *given),
                     *insert("仓库余额表", "年份,月份,pdID,dpID", *((*period, 1, 1) for period in periods)))

    def stored(self, item):
        found = self.rows(f"Select Discription From 系统选项 Where Item='{item}'")
        self.assertLessEqual(len(found), 1)
        return found[0][0] if found else None

    def date(self, method, today=TODAY):
        """The date of a call that shows no message."""
        answer = self.call(method, today=today)
        self.assertNotIn("messages", answer)
        return answer["result"]["date"]


class BuiltDateTest(DatesCase):
    def test_a_date_from_2000_on_is_taken_as_it_is(self):
        for text, date in (("2000年01月01日 ", "2000-01-01"), ("2004年03月07日", "2004-03-07"), ("2004年3月7日", "2004-03-07"),
                           ("2004-3-7", "2004-03-07"), ("2004/03/07", "2004-03-07")):
            self.prepare([(2003, 1)], 建帐日期=text)
            self.assertEqual(self.date("Get_BuiltDate"), date, text)
            self.assertEqual(self.stored("建帐日期"), text)

    def test_no_date_is_made_up_from_the_earliest_period(self):
        for option, periods, date, text in (
                (None, [], "2006-05-17", "2006年05月17日 "),
                ("", [], "2006-05-17", "2006年05月17日 "),
                ("1999-12-31", [], "2006-05-17", "2006年05月17日 "),
                ("明天", [(2003, 3), (2003, 11)], "2003-03-01", "2003年03月01日 "),
                ("1999年05月01日", [(2003, 4)], "2003-04-01", "2003年04月01日 "),
                (None, [(2003, 1), (2002, 12), (2004, 6)], "2002-12-01", "2002年12月01日 "),
                (None, [(None, 4)], "2006-04-01", "2006年04月01日 "),
                (None, [(2003, None)], "2003-01-01", "2003年01月01日 "),
                (None, [(None, None)], "2006-01-01", "2006年01月01日 "),
                (None, [(2003, 12)], "2003-12-01", "2003年12月01日 "),
                (None, [(2003, 13)], "2003-05-01", "2003年05月01日 "),
                (None, [(2003, 0)], "2003-05-01", "2003年05月01日 "),
                (None, [(2003, -1)], "2003-05-01", "2003年05月01日 ")):
            self.prepare(periods, 建帐日期=option)
            self.assertEqual(self.date("Get_BuiltDate"), date, (option, periods))
            self.assertEqual(self.stored("建帐日期"), text, (option, periods))
            # What was stored is found by the next call, on another day.
            self.assertEqual(self.date("Get_BuiltDate", today="2007-01-02"), date, (option, periods))

    def test_a_period_before_2000_is_worked_out_every_time(self):
        self.prepare([(1998, 7)])
        self.assertEqual(self.date("Get_BuiltDate"), "1998-07-01")
        self.execute("Update 仓库余额表 Set 月份=9")
        self.assertEqual(self.date("Get_BuiltDate"), "1998-09-01")
        self.assertEqual(self.stored("建帐日期"), "1998年09月01日 ")

    def test_without_a_balance_table_it_is_the_zero_date(self):
        self.execute("Drop Table 仓库余额表")
        self.assertEqual(self.date("Get_BuiltDate"), ZERO)
        self.assertIsNone(self.stored("建帐日期"))

    def test_a_year_that_makes_no_date_is_the_zero_date(self):
        for year in (30000, -1):
            self.prepare([(year, 3)])
            self.assertEqual(self.date("Get_BuiltDate"), ZERO, year)
            self.assertIsNone(self.stored("建帐日期"), year)

    def test_a_date_that_cannot_be_stored_is_answered_and_told(self):
        self.execute("Drop Table 系统选项")
        answer = self.call("Get_BuiltDate", today=TODAY)
        self.assertEqual(answer["result"], {"date": TODAY})
        self.assertEqual([m["title"] for m in answer["messages"]], ["修改系统选项"])


class CurrentDateTest(DatesCase):
    def check(self, *cases):
        """Cases: the current date and the date of creation as stored, the periods, the date, what is stored then."""
        for current, built, periods, date, text in cases:
            self.prepare(periods, 当前日期=current, 建帐日期=built)
            self.assertEqual(self.date("Get_CurrentDate"), date, (current, built, periods))
            self.assertEqual(self.stored("当前日期"), text, (current, built, periods))

    def test_less_than_two_periods_repair_nothing(self):
        self.check((None, None, [], ZERO, None),
                   (None, "2003-1-1", [], ZERO, None),
                   (None, "2003-1-1", [(2003, 3)], ZERO, None),
                   (None, "2003-1-1", [(2003, 3), (2003, 3)], ZERO, None),
                   ("明天", "2003-1-1", [(2003, 3)], ZERO, "明天"),
                   ("2003-2-20", "2003-1-1", [(2003, 3)], "2003-02-20", "2003-2-20"),
                   ("2002-6-15", "2003-1-1", [(2003, 3)], "2002-06-15", "2002-6-15"))

    def test_a_current_date_that_cannot_be_is_set_to_the_latest_month(self):
        self.check((None, "2003年01月10日", [(2003, 1), (2003, 2)], "2003-02-01", "2003-2-1 "),
                   (" ", "2003-1-10", [(2003, 5), (2003, 1), (2003, 2)], "2003-05-01", "2003-5-1 "),
                   ("明天", "2003-1-10", [(2003, 1), (2003, 12)], "2003-12-01", "2003-12-1 "),
                   ("2002-6-15", "2003-1-10", [(2003, 1), (2003, 2)], "2003-02-01", "2003-2-1 "),
                   ("2004-6-15", "2003-1-10", [(2003, 1), (2003, 2)], "2003-02-01", "2003-2-1 "),
                   ("2003-2-28", "2003-3-1", [(2003, 3), (2003, 4)], "2003-04-01", "2003-4-1 "))

    def test_the_month_is_the_latest_of_the_earliest_year_the_year_that_of_the_creation(self):
        self.check((None, "2003-1-10", [(2003, 4), (2004, 9), (2003, 2)], "2003-04-01", "2003-4-1 "),
                   (None, "2004-1-10", [(2003, 4), (2004, 9)], "2004-04-01", "2004-4-1 "))

    def test_a_later_month_in_the_table_moves_a_sound_date(self):
        self.check(("2003-2-20", "2003-1-1", [(2003, 2), (2003, 4)], "2003-04-01", "2003-4-1 "),
                   ("2003-4-20", "2003-1-1", [(2003, 2), (2003, 4)], "2003-04-20", "2003-4-20"),
                   ("2003-6-20", "2003-1-1", [(2003, 2), (2003, 4)], "2003-06-20", "2003-6-20"),
                   ("2003-3-2", "2003-3-30", [(2003, 2), (2003, 3)], "2003-03-02", "2003-3-2"))

    def test_without_a_date_of_creation_there_is_no_year_to_repair_with(self):
        self.check((None, None, [(2003, 2), (2003, 4)], ZERO, None),
                   ("2003-2-20", None, [(2003, 2), (2003, 4)], "2003-02-20", "2003-2-20"),
                   ("2003-2-20", "某日", [(2003, 2), (2003, 4)], "2003-02-20", "2003-2-20"))

    def test_a_period_without_a_month_counts_as_month_0(self):
        self.check(("2003-2-20", "2003-1-1", [(2003, None), (2004, 4)], "2003-02-20", "2003-2-20"),
                   (None, "2003-1-1", [(2003, None), (2004, 4)], ZERO, None))

    def test_without_a_balance_table_the_stored_date_is_answered(self):
        for text, date in (("2003-2-20", "2003-02-20"), ("明天", ZERO)):
            self.prepare([], 当前日期=text)
            self.execute("Drop Table 仓库余额表")
            self.assertEqual(self.date("Get_CurrentDate"), date)


class InformationTest(DatesCase):
    def test_every_text_item_is_kept_twice(self):
        for number, item in enumerate(TEXT_ITEMS):
            self.assertIs(self.result("Update_AccInfo", item, f" 值{number} "), False)
            self.assertEqual(self.result("Get_AccInfo", item), f"值{number}")
        self.assertEqual(self.rows(f"Select {','.join(TEXT_ITEMS)} From AccInfo"),
                         [[f" 值{number} " for number in range(len(TEXT_ITEMS))]])
        self.assertEqual(len(TEXT_ITEMS), 13)
        self.assertEqual(self.rows("Select Count(*) From 系统选项"), [[13]])

    def test_the_dates_are_stored_items_too(self):
        for item in ("建帐日期", "当前日期"):
            self.assertIs(self.result("Update_AccInfo", item, "2004-3-7"), False)
        self.assertEqual(self.rows("Select 建帐日期,当前日期 From AccInfo"), [["2004-3-7", "2004-3-7"]])
        self.assertEqual(self.results(("Get_AccInfo", "建帐日期"), ("Get_AccInfo", "当前日期")), [{"date": "2004-03-07"}, "2004-3-7"])

    def test_another_name_is_an_option_but_no_column(self):
        self.assertIs(self.result("Update_AccInfo", "纸张", "A4"), False)
        self.assertEqual(self.result("Get_Option", "纸张"), "A4")
        self.assertEqual(self.rows(f"Select {','.join(TEXT_ITEMS)} From AccInfo"), [[None] * 13])
        self.result("Update_AccInfo", "单位名称", "x")
        self.assertEqual(self.rows("Select 单位名称 From AccInfo"), [["x"]])

    def test_unknown_names_are_empty_and_ask_nothing(self):
        for name in ("unknown", "", "单位名称 ", " 单位名称", "纸张", "AccInfo"):
            answer = self.call("Get_AccInfo", name)
            self.assertEqual((answer["result"], answer["sent"]), ("", []), name)

    def test_what_is_derived_from_the_dates(self):
        derived = [("Get_AccInfo", item) for item in ("建帐日期", "当前日期", "建帐月份", "帐簿年份", "当前月份")]
        for current, built, periods, expected in (
                ("2004-7-9", "2004-3-7", [], [{"date": "2004-03-07"}, "2004-7-9", 3, 2004, 7]),
                (None, "2004-3-7", [], [{"date": "2004-03-07"}, 0, 3, 1899, 0]),
                ("明天", None, [], [{"date": TODAY}, 0, 5, 1899, 0]),
                # The stored date is answered as it stands; the derived ones repair it first.
                ("2004-3-9", "2004-3-7", [(2004, 3), (2004, 8)], [{"date": "2004-03-07"}, "2004-3-9", 3, 2004, 8])):
            self.prepare(periods, 当前日期=current, 建帐日期=built)
            found = self.results(*derived, today=TODAY)
            self.assertEqual(found, expected)
            self.assertEqual([type(value) for value in found[2:]], [int] * 3)
            self.assertEqual(self.date("Get_CurrentDate")[:4], str(found[3]))

    def test_a_table_that_is_gone_leaves_the_option_written(self):
        self.execute("Drop Table AccInfo")
        answer = self.call("Update_AccInfo", "单位名称", "x")
        self.assertEqual((answer["result"], "messages" in answer), (False, False))
        self.assertEqual(self.result("Get_AccInfo", "单位名称"), "x")

    def test_an_option_that_cannot_be_written_is_told_and_the_column_set(self):
        self.execute("Drop Table 系统选项")
        answer = self.call("Update_AccInfo", "单位名称", "x")
        self.assertIs(answer["result"], False)
        self.assertEqual([m["title"] for m in answer["messages"]], ["修改系统选项"])
        self.assertEqual(self.rows("Select 单位名称 From AccInfo"), [["x"]])


class CreationTest(DatesCase):
    METHODS = "Select 收付款方式,科目名称,科目代码 From 收付款方式"

    def test_a_new_book_has_names_and_its_date(self):
        self.assertIs(self.result("Create_NewBook", today=TODAY), True)
        self.assertEqual(self.rows("Select Item,Discription From 系统选项"),
                         [["帐簿名称 ", "新帐簿 "], ["单位名称 ", "(新单位) "], ["建帐日期 ", "2006年05月17日 "]])
        self.assertEqual(self.results(("Get_AccInfo", "帐簿名称"), ("Get_AccInfo", "单位名称"), ("Get_BuiltDate",), today="2008-01-02"),
                         ["新帐簿", "(新单位)", {"date": TODAY}])

    def test_a_second_creation_starts_over_in_the_same_rows(self):
        self.results(("Create_NewBook",), ("Update_AccInfo", "单位名称", "x"), ("Update_Option", "纸张", "A4"), today=TODAY)
        self.result("Create_NewBook", today="2007-02-03")
        self.assertEqual(self.rows("Select Item,Discription From 系统选项 Order by Item Desc"),
                         [["纸张 ", "A4 "], ["帐簿名称 ", "新帐簿 "], ["建帐日期 ", "2007年02月03日 "], ["单位名称 ", "(新单位) "]])

    def test_payment_methods_are_added_once_the_blank_one_first(self):
        for _ in range(2):
            self.assertIs(self.result("SetDefaultSFK"), True)
            self.assertEqual(self.rows(self.METHODS), [[" ", " ", " "], ["现金", "现金", "101"]])
        self.assertEqual(self.result("Get收付款方式数量"), 2)

    def test_payment_methods_of_the_host_stay(self):
        self.execute(*insert("收付款方式", "收付款方式,科目名称,科目代码", ("支票", "银行存款", "102")))
        self.assertIs(self.result("SetDefaultSFK"), True)
        self.assertEqual(self.rows(self.METHODS), [["支票", "银行存款", "102"]])
        self.execute("Drop Table 收付款方式")
        self.assertIs(self.result("SetDefaultSFK"), False)

    def test_giving_up_a_creation_has_the_current_date_rebuilt(self):
        self.prepare([(2003, 1), (2003, 2)], 建帐日期="2003-1-1", 当前日期="2003-2-20")
        self.assertEqual(self.date("Get_CurrentDate"), "2003-02-20")
        self.assertIs(self.result("CancCreateBook"), False)
        self.assertEqual(self.stored("当前日期"), " ")
        self.assertEqual(self.date("Get_CurrentDate"), "2003-02-01")

    def test_every_balance_row_is_moved(self):
        self.prepare([(2003, 1), (2003, 2), (2004, 1), (None, None)])
        answer = self.call("SetBnCurrentDate", 2005, 3)
        self.assertEqual((answer["result"], answer["args"]), (True, [2005, 3]))
        self.assertEqual(self.rows("Select 年份,月份 From 仓库余额表"), [[2005, 3]] * 4)
        self.execute("Drop Table 仓库余额表")
        self.assertLess(self.error("SetBnCurrentDate", 2005, 3), 0)


class ClearingTest(BareBookCase):
    FAMILIES = (("入库", "ClearInputRecs", "BillID"), ("出库", "ClearOutputRecs", "BillID"), ("成本", "ClearCostRecs", "CostID"))

    def setUp(self):
        super().setUp()
        for kind, _, key in self.FAMILIES:
            self.execute(*insert(f"{kind}目录", key, (1,), (2,)), *insert(f"{kind}记录", key, (1,), (1,), (9,)))

    def counts(self):
        """Headers and lines of the families, in their order; None for a table that is gone."""
        answers = self.batch(*({"execute": f"Select Count(*) From {kind}{part}"} for kind, _, _ in self.FAMILIES
                               for part in ("目录", "记录")))
        return [answer["result"]["rows"][0][0] if "result" in answer else None for answer in answers]

    def test_a_family_is_cleared_headers_first_and_the_others_stay(self):
        expected = [2, 3] * 3
        for number, (kind, method, _) in enumerate(self.FAMILIES):
            self.assertEqual(self.counts(), expected)
            answer = self.call(method)
            self.assertIs(answer["result"], True)
            self.assertEqual([s["text"] for s in answer["sent"]], [f"Delete from {kind}目录", f"Delete from {kind}记录"])
            expected[2 * number:2 * number + 2] = [0, 0]
        self.assertEqual(self.counts(), [0] * 6)

    def test_only_the_clearing_of_costs_keeps_its_failure_to_itself(self):
        self.execute(*(f"Drop Table {kind}记录" for kind, _, _ in self.FAMILIES))
        self.assertLess(self.error("ClearInputRecs"), 0)
        self.assertLess(self.error("ClearOutputRecs"), 0)
        self.assertIs(self.result("ClearCostRecs"), False)
        # The headers were deleted before.
        self.assertEqual(self.counts(), [0, None] * 3)


if __name__ == "__main__":
    unittest.main()
