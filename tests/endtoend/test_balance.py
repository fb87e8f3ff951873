"""The balance table, its repair and the closing on a real book, with figures worked out by hand."""

import unittest

from small_book import SmallBookCase

OPENING = ("Insert into 仓库余额表 (年份,月份,pdID,dpID,上期库存单价,上期库存数量,上期库存金额) "
           "Values (2003,{},{},{},{},{},{})")
FIGURES = ("Select 本期入库单价,本期入库数量,本期入库金额,累计入库数量,累计入库金额,本期出库单价,本期出库数量,本期出库金额,"
           "累计出库数量,累计出库金额,本期库存单价,本期库存数量,本期库存金额 From 仓库余额表 Where dpID=1 And pdID={} And 月份={}")


class BalanceCase(SmallBookCase):
    def opening(self, month, product, warehouse, price=10, quantity=5, amount=50):
        self.sql(OPENING.format(month, product, warehouse, price, quantity, amount))

    def close(self, warehouse, month, cost=False):
        return self.call("Close_DepotBalance", warehouse, month, cost, {"date": "2003-01-31"}, {"progress": True})


class TableTest(BalanceCase):
    def setUp(self):
        super().setUp()
        for month, product, warehouse in ((3, 1, 1), (4, 1, 1), (4, 2, 1), (4, 1, 2)):
            self.opening(month, product, warehouse)

    def months(self):
        return self.rows("Select 月份,pdID,dpID From 仓库余额表 Order by 月份,dpID,pdID")

    def test_months_descend_within_the_year(self):
        self.sql("Update 仓库余额表 Set 年份=2002 Where 月份=3")
        self.assertEqual(self.result("rs月份列表", False)["rows"], [[2002, 3], [2003, 4]])
        self.opening(5, 1, 1)
        self.assertEqual(self.result("rs月份列表", True)["rows"], [[2002, 3], [2003, 5], [2003, 4]])

    def test_deleting(self):
        self.result("Del仓库余额表", 1, 4)
        self.assertEqual(self.months(), [[3, 1, 1], [4, 1, 2]])
        self.assertIs(self.result("Del仓库余额", 2), False)
        self.assertEqual(self.months(), [[3, 1, 1]])
        self.result("Del仓库余额表")
        self.assertEqual(self.months(), [])

    def test_pruning_keeps_the_month_itself(self):
        self.result("清理仓库余额表", 1)
        self.result("清理仓库余额表", 0)
        self.assertEqual(len(self.months()), 4)
        self.result("清理仓库余额表", 4, 2)
        self.assertEqual(len(self.months()), 4)
        self.result("清理仓库余额表", 4)
        self.assertEqual(self.months(), [[4, 1, 1], [4, 2, 1], [4, 1, 2]])

    def test_month_0_of_the_report_is_the_first_and_is_written_back(self):
        answer = self.call("rs余额记录", 0, 0)
        self.assertEqual(answer["args"], [0, 3])
        self.assertEqual(self.columns(answer["result"], "pdID", "上期库存数量", "上期库存金额", "商品名称"),
                         [[1, 5, "50", "水泥"]])

    def test_the_report_averages_prices_and_sums_the_rest_over_warehouses(self):
        self.sql("Update 仓库余额表 Set 上期库存单价=13 Where dpID=2")
        found = self.result("rs余额记录", 0, 4)
        self.assertEqual(self.columns(found, "pdID", "上期库存单价", "上期库存数量", "上期库存金额"),
                         [[1, 11.5, 10, "100"], [2, 10, 5, "50"]])

    def test_an_empty_table_runs_no_report(self):
        self.result("Del仓库余额表")
        answer = self.call("rs余额记录", 0, 0)
        self.assertEqual((answer["result"], answer["args"], len(answer["sent"])), ({"nothing": True}, [0, 0], 1))

    def test_openings(self):
        self.assertEqual(self.result("rs仓库余额表期初")["rows"], [])
        self.assertEqual(self.result("rs仓库余额表期初", 4, 1)["rows"], [[1, 5, "50"], [2, 5, "50"]])
        self.assertEqual(self.result("rs仓库余额表期初", 0, 1, True)["rows"], [[1, 10, "100"], [2, 5, "50"]])
        self.assertEqual(len(self.result("rs仓库余额表期初", 0, 0, True)["rows"]), 4)

    def test_product_entered_asks_but_never_says_so(self):
        self.assertIs(self.result("商品已经入库", 1, 1), False)


class RepairTest(BalanceCase):
    def test_yes_adds_rows_of_the_latest_year(self):
        self.opening(1, 3, 1)
        answer = self.call("CheckBnProduct", 2, answer="yes")
        self.assertEqual([(m["title"], m["text"], m["buttons"]) for m in answer["messages"]],
                         [("检查入库记录", "入库记录中，有仓库余额表中没有的记录：2,是否修正？", 4)])
        self.assertEqual(self.rows("Select 年份,月份,pdID,dpID,上期库存数量,上期库存金额 From 仓库余额表 Order by 月份,pdID"),
                         [[2003, 1, 3, 1, 5, "50"], [2003, 2, 1, 1, 0, "0"], [2003, 2, 2, 2, 0, "0"]])

    def test_no_to_the_inbound_question_still_asks_the_outbound_one(self):
        self.opening(1, 3, 1)
        answer = self.call("CheckBnProduct", 2, answer="no")
        self.assertEqual([m["title"] for m in answer["messages"]], ["检查入库记录", "检查出库记录"])
        self.assertEqual(self.rows("Select Count(*) From 仓库余额表"), [[1]])

    def test_a_row_in_another_warehouse_is_enough(self):
        self.opening(1, 1, 2)
        answer = self.call("CheckBnProduct", 1, answer="yes")
        self.assertNotIn("messages", answer)

    def test_an_empty_table_has_no_year_and_fails(self):
        answer = self.call("CheckBnProduct", 2, answer="yes")
        self.assertEqual(answer["error"]["number"], -2147217900)
        self.assertEqual(self.rows("Select Count(*) From 仓库余额表"), [[0]])


class ClosingTest(BalanceCase):
    def test_two_months(self):
        self.opening(1, 1, 1)
        self.assertIs(self.close(1, 1)["result"], True)
        # 5 + 4 - 2 pieces, 50 + 44 - 30 in money.
        self.assertEqual(self.rows(FIGURES.format(1, 1)), [[11, 4, "44", 4, "44", 15, 2, "30", 2, "30", 64 / 7, 7, "64"]])
        self.assertEqual(self.rows("Select 年份,月份,上期库存单价,上期库存数量,上期库存金额,累计入库数量,本期库存数量,备注 "
                                   "From 仓库余额表 Where 月份=2"), [[2003, 2, 64 / 7, 7, "64", 0, 7, "2003-1-31"]])
        self.assertIs(self.close(1, 2)["result"], True)
        self.assertEqual(self.rows(FIGURES.format(1, 2)),
                         [[11.25, 5, "55", 9, "99", 16, 1, "16", 3, "46", 103 / 11, 11, "103"]])

    def test_without_rows_nothing_is_touched(self):
        answer = self.close(1, 1)
        self.assertIs(answer["result"], True)
        self.assertNotIn("progress", answer)
        self.assertEqual(len(answer["sent"]), 1)

    def test_a_product_without_lines_keeps_what_the_row_holds(self):
        self.opening(1, 3, 1)
        self.sql("Update 仓库余额表 Set 本期入库数量=2,本期入库金额=30")
        self.close(1, 1)
        self.assertEqual(self.rows(FIGURES.format(3, 1))[0][-3:], [80 / 7, 7, "80"])

    def test_cost_bills_replace_the_outbound_amount_alone(self):
        self.opening(1, 1, 1)
        self.sql("Insert into 成本目录 (CostID,年份,月份,日子,dpID) Values (1,2003,1,31,1)")
        self.sql("Insert into 成本记录 (CostID,pdID,单价,数量,金额) Values (1,1,10,99,20.5)")
        self.close(1, 1, True)
        self.assertEqual(self.rows(FIGURES.format(1, 1)),
                         [[11, 4, "44", 4, "44", 15, 2, "20.5", 2, "20.5", 73.5 / 7, 7, "73.5"]])

    def test_month_12_is_the_last(self):
        self.opening(12, 1, 1)
        answer = self.close(1, 12)
        self.assertEqual(answer["progress"], [["Visible", True], ["Value", 50.0], ["Value", 100], ["Visible", False]])
        self.assertEqual(self.rows("Select 月份,本期库存数量 From 仓库余额表"), [[12, 5]])

    def test_progress_of_two_rows(self):
        self.opening(1, 1, 1)
        self.opening(1, 3, 1)
        self.assertEqual(self.close(1, 1)["progress"],
                         [["Visible", True], ["Value", 25.0], ["Value", 50.0], ["Value", 75.0], ["Value", 100.0],
                          ["Value", 100], ["Visible", False]])

    def test_no_bar_closes_the_same(self):
        self.opening(1, 1, 1)
        self.assertIs(self.result("Close_DepotBalance", 1, 1, False, {"date": "2003-01-31"}), True)
        self.assertEqual(self.rows("Select Count(*) From 仓库余额表"), [[2]])

    def test_a_second_closing_adds_a_second_set(self):
        self.opening(1, 1, 1)
        self.close(1, 1)
        self.close(1, 1)
        self.assertEqual(self.rows("Select Count(*) From 仓库余额表 Where 月份=2"), [[2]])

    def test_a_null_opening_amount_ends_the_closing_with_the_rows_before_it_written(self):
        self.opening(1, 1, 1)
        self.opening(1, 3, 1)
        self.sql("Update 仓库余额表 Set 上期库存金额=Null Where pdID=3")
        answer = self.close(1, 1)
        self.assertIs(answer["result"], False)
        self.assertEqual(answer["progress"][-1], ["Value", 50.0])
        self.assertEqual(self.rows("Select pdID,本期库存数量 From 仓库余额表 Order by pdID"), [[1, 7], [3, 0]])

    def test_the_closed_flag_in_both_dialects(self):
        for is_sql, closed in ((False, True), (True, False), (True, True), (False, False)):
            self.result("UpdateDepotClosedFlag", 2, {"date": "2003-01-31"}, closed, isSQL=is_sql)
            self.assertEqual(self.rows("Select 结帐日期,结帐标志 From 仓库设置 Order by dpID"),
                             [[None, False], ["2003-01-31", closed]])

    def test_sold_by_bills_or_by_a_summary(self):
        self.assertIs(self.result("isSaled", 1, 1), True)
        self.assertIs(self.result("isSaled", 2, 1), False)
        self.sql("Insert into 销售汇总目录 (ID,月份,dpID) Values (4,1,2)")
        self.assertIs(self.result("isSaled", 2, 1), False)
        self.sql("Insert into 销售汇总记录 (ListID) Values (4)")
        self.assertIs(self.result("isSaled", 2, 1), True)


if __name__ == "__main__":
    unittest.main()
