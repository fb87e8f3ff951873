"""add, edit, remove and list: master rows by names, without SQL."""

import unittest

from kpbook_case import KpbookCase


class MastersTest(KpbookCase):
    def setUp(self):
        super().setUp()
        self.copy_of("ready", lambda: self.run_kpbook("new", self.book, "--today", "2026-01-01"))

    def add(self, *words, code=0):
        return self.run_kpbook("add", self.book, *words, code=code)

    def refused(self, *words, code=1):
        """The reason for which a command is refused; nothing may be answered, nor changed."""
        before = self.book.read_bytes()
        done = self.run_kpbook(*words[:1], self.book, *words[1:], code=code)
        self.assertEqual((done.stdout, self.book.read_bytes()), ("", before))
        return done.stderr

    def test_a_firm_without_sql(self):
        for words, new_id in (("warehouse 仓库名称=中心仓库", 1), ("warehouse 仓库名称=钢材货场", 2),
                              ("class 种类=商品 ClassCode=01 ClassName=水泥", 1),
                              ("class 类别=supplier ClassCode=01 ClassName=厂家", 1),
                              ("class kind=部门 ClassCode=01 ClassName=营业部", 1),
                              ("supplier 企业名称=杭州水泥厂 ClassCode=厂家", 1),
                              ("客户 企业名称=杭州宏图建材有限公司 单位名称=杭州宏图", 1),
                              ("product 商品编号=01001 商品名称=普通水泥 规格=425# ClassCode=水泥 KSID=杭州水泥厂 默认单价=320.5", 1),
                              ("product 商品编号=01003 商品名称=普通水泥 规格=525#", 2),
                              ("project 项目编号=A-1 项目名称=南桥 ksID=杭州宏图", 1), ("employee 姓名=李明 ClassCode=营业部", 1),
                              ("payment 收付款方式=转账 科目代码=102", 3)):
            done = self.add(*words.split(" "))
            self.assertEqual(done.stdout, f"{new_id}\n", words)
        self.assertEqual(self.rows("Select 商品编号,规格,ClassCode,KSID,默认单价 From 商品设置 Order by pdID"),
                         [["01001", "425#", "01", 1, 320.5], ["01003", "525#", None, 0, 0]])
        self.assertEqual(self.rows("Select 项目名称,ksID From 项目设置"), [["南桥", 1]])

        self.run_kpbook("edit", self.book, "product", "01003", "默认单价=350", "ClassCode=01")
        self.assertEqual(self.run_kpbook("edit", self.book, "customer", "杭州宏图", "单位名称=宏图").stderr,
                         "customer 1 (杭州宏图建材有限公司): changed\n")
        listed = self.run_kpbook("list", self.book, "customer", "-O", "csv")
        self.assertEqual(listed.stdout, "KSID,ClassCode,企业名称,单位名称\n1,,杭州宏图建材有限公司,宏图\n")
        self.assertEqual(self.run_kpbook("list", self.book, "class", "-O", "csv").stdout,
                         "种类,ClassCode,ClassName\n厂商,01,厂家\n部门,01,营业部\n商品,01,水泥\n")
        self.assertEqual(self.run_kpbook("list", self.book, "class", "种类=商品", "-O", "csv").stdout, "ClassCode,ClassName\n01,水泥\n")

        self.assertIn("is used: 2 rows of 商品设置", self.refused("remove", "class", "水泥"))
        self.assertIn("'01' may be any of these classes: 厂商 1 (01 厂家), 部门 1 (01 营业部), 商品 1 (01 水泥)",
                      self.refused("remove", "class", "01"))
        self.assertIn("is used: 1 row of 项目设置", self.refused("remove", "customer", "宏图"))
        self.run_kpbook("remove", self.book, "project", "A-1")
        self.run_kpbook("remove", self.book, "customer", "宏图")
        self.assertEqual(self.rows("Select * From 客户资料"), [])

    def test_what_is_refused(self):
        self.add("warehouse", "仓库名称=中心仓库")
        self.add("product", "商品编号=01001", "商品名称=水泥", "规格=425#")
        self.add("product", "商品编号=01003", "商品名称=水泥", "规格=525#")
        for words, reason in ((("add", "warehouse", "仓库名称=中心仓库"), "the warehouse 1 (中心仓库) has it already"),
                              (("add", "warehouse", "名称=东库"), "did you mean 仓库名称?"),
                              (("add", "product", "商品名称=油漆"), "a product needs 商品编号"),
                              (("add", "product", "商品编号=01001", "商品名称=油漆"), "商品编号 01001: the product 1"),
                              (("add", "product", "商品编号=02001", "商品名称=油漆", "增值税率=13%"), "增值税率: '13%' is no number"),
                              (("add", "product", "商品编号=02001", "商品名称=油漆", "ClassCode=02"), "has no product class 02"),
                              (("edit", "warehouse", "中心仓库", "dpID=7"), "dpID is not set by hand"),
                              (("edit", "product", "水泥", "默认单价=1"), "1 (01001 水泥 425#), 2 (01003 水泥 525#)"),
                              (("edit", "product", "油漆", "默认单价=1"), "the book has no product 油漆"),
                              (("edit", "product", "水", "默认单价=1"), "near: 1 (01001 水泥 425#), 2 (01003 水泥 525#)"),
                              (("remove", "warehouse", "'; Delete From 仓库设置; --"), "the book has no warehouse")):
            self.assertIn(reason, self.refused(*words), words)
        for words in (("add", "shop", "a=b"), ("add", "class", "ClassCode=01"), ("add", "class", "种类=仓库", "ClassCode=01"),
                      ("add", "warehouse", "中心仓库"), ("add", "warehouse"), ("edit", "warehouse", "中心仓库"),
                      ("remove", "warehouse"), ("remove", "warehouse", "中心仓库", "仓库名称=x"), ("list", "warehouse", "a=b"), ("list",)):
            self.refused(*words, code=2)

    def test_a_new_warehouse_does_not_hinder_closing(self):
        self.add("warehouse", "仓库名称=中心仓库")
        self.add("product", "商品编号=01001", "商品名称=水泥")
        self.import_text("仓库余额表", "年份,月份,pdID,dpID,上期库存数量,上期库存金额\n2026,1,1,1,10,50\n")
        self.add("warehouse", "仓库名称=东库")
        done = self.run_kpbook("close", self.book, "--month", "1", "--answer", "yes")
        self.assertEqual(done.stderr, "中心仓库 2026-1: 1 product closed\n东库: no balance rows of month 1, nothing to close\n")


if __name__ == "__main__":
    unittest.main()
