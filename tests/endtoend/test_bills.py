"""Bill records, totals, audit and deletion on a real book."""

import unittest

from small_book import SmallBookCase

ORDERED = [[2, 1, 4.0], [1, 1, 3.0], [1, 1, 2.0], [1, 2, 3.0]]


class ListingTest(SmallBookCase):
    def test_no_id_lists_every_line_in_order_of_date_kind_and_number(self):
        for warehouse in (0, -1):
            found = self.result("rs入库记录", warehouse, 0)
            self.assertEqual(sorted(self.columns(found, "BillID", "pdID", "数量")), sorted(ORDERED))
            self.assertEqual([r[0] for r in self.columns(found, "BillID")], [2, 1, 1, 1])

    def test_a_product_alone_filters_the_lines(self):
        answer = self.call("rs入库记录", 0, 2)
        self.assertIn(" Where  Rec.pdID=2 Order by", answer["sent"][0]["text"])
        self.assertEqual(self.columns(answer["result"], "BillID", "pdID", "仓库名称"), [[1, 2, "西库"]])

    def test_a_warehouse_is_that_of_the_header_its_name_that_of_the_line(self):
        found = self.result("rs入库记录", 1, 2)
        self.assertEqual(self.columns(found, "仓库名称", "企业名称"), [["西库", "华新水泥"]])

    def test_a_bill_without_a_partner_has_a_null_name(self):
        found = self.result("rs入库记录", 0, 1)
        self.assertEqual(self.columns(found, "BillID", "企业名称")[0], [2, None])

    def test_a_line_without_its_warehouse_is_not_listed(self):
        self.sql("Delete From 仓库设置 Where dpID=2")
        self.assertEqual(len(self.result("rs入库记录", 0, 0)["rows"]), 3)

    def test_outbound_lines_with_their_customer(self):
        found = self.result("rs出库记录", 1, 0)
        self.assertEqual(self.columns(found, "BillID", "企业名称"), [[1, "城建二公司"], [2, "城建二公司"]])

    def test_lines_of_a_partner_carry_the_product(self):
        found = self.result("rs单位入库记录", 5)
        self.assertEqual({tuple(r) for r in self.columns(found, "BillID", "商品名称", "商品编号")},
                         {(1, "水泥", "A1"), (1, "钢筋", "B1")})
        self.assertEqual(len(self.result("rs单位出库记录", 9)["rows"]), 2)
        self.assertEqual(self.result("rs单位出库记录", 8)["rows"], [])
        self.assertEqual(len(self.result("rs单位入库记录", 0)["rows"]), 4)

    def test_distinct_values_are_sorted_and_keep_null(self):
        self.sql("Insert into 入库记录 (BillID,pdID,dpID,经手人) Values (1,1,1,Null)")
        self.assertEqual(self.result("rs经手人", "入库")["rows"], [[None], ["李四"], ["张三"]])
        self.assertEqual(self.result("rs货位", "出库")["rows"], [["R9"]])
        self.assertEqual(self.result("rs货位", "成本")["rows"], [["R9"]])
        self.assertEqual(self.result("rs交接人", "入库")["rows"], [[None]])
        self.assertEqual(self.result("rs包装", "出库")["rows"], [[None]])


class BillTest(SmallBookCase):
    def test_totals(self):
        self.assertEqual(self.result("Get单据金额", 1, "入库"), {"currency": "55.9999"})
        self.assertEqual(self.result("Get单据数量", 1, "入库"), 8)
        self.assertEqual(self.result("Get单据金额", 3, "入库"), {"currency": "0"})
        self.assertEqual(self.result("Get单据数量", 3, "入库"), 0)

    def test_the_cost_selector_means_outbound_lines_for_the_quantity_only(self):
        self.assertEqual(self.result("Get单据数量", 1, "成本"), 2)
        self.assertIn("BillID", self.call("Get单据金额", 1, "成本")["error"]["description"])

    def test_an_audit_stamps_one_bill(self):
        self.assertIs(self.result("BillAdulting", "入库", 1, "赵六", {"date": "2003-03-07"}), True)
        self.assertEqual(self.rows("Select BillID,审核员,审核日期 From 入库目录 Order by BillID"),
                         [[1, "赵六", "2003-03-07"], [2, None, None], [3, None, None]])

    def test_an_audit_of_another_kind_changes_nothing(self):
        self.assertIs(self.result("BillAdulting", "成本", 1, "赵六", {"date": "2003-03-07"}), True)
        self.assertEqual(self.rows("Select Count(审核员) From 入库目录"), [[0]])

    def test_an_audit_that_fails_answers_false_and_changes_nothing(self):
        for auditor, date in (("O'Brien", {"date": "2003-03-07"}), ("赵六", "no date"), ("赵六", None)):
            self.assertIs(self.result("BillAdulting", "入库", 1, auditor, date), False)
        self.assertEqual(self.rows("Select Count(审核员) From 入库目录"), [[0]])

    def test_a_deletion_answers_false_and_takes_header_and_lines(self):
        self.assertIs(self.result("Del_单据", 1, "入库"), False)
        self.assertEqual(self.rows("Select BillID From 入库目录 Order by BillID"), [[2], [3]])
        self.assertEqual(self.rows("Select BillID From 入库记录"), [[2]])
        self.assertEqual(self.rows("Select Count(*) From 出库目录"), [[2]])

    def test_a_deletion_of_another_kind_sends_nothing(self):
        self.assertEqual(self.call("Del_单据", 1, "成本")["sent"], [])


if __name__ == "__main__":
    unittest.main()
