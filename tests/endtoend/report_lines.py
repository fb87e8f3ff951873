"""The line listings of bills and the lists of distinct texts on the sample year."""

import unittest

from sample_book import PINYIN, SampleCase, texts_order

GOODS = "商品名称 商品编号 规格 型号 计量单位 进位方法"


class LineListTest(SampleCase):
    def compare(self, found, family, chosen, more):
        """All columns of header and line, then those that more(header, line) gives by name."""
        headers, lines = self.book.columns[family + "目录"], self.book.columns[family + "记录"]
        rows = [[header["BillID"], *(header[c] for c in headers), *(line[c] for c in lines), *more(header, line).values()]
                for header, line in self.book.lines(family) if chosen(header, line)]
        names = more(*self.book.lines(family)[0])
        self.check(found, " ".join(["BillID", *headers, *lines, *names]), rows, "BillID pdID 货位",
                   order=lambda row: (*row[2:5], PINYIN.index(row[5]), row[7]), empty=not rows)
        return len(rows)

    def test_lines_of_a_warehouse_and_a_product(self):
        for family, method in (("入库", "rs入库记录"), ("出库", "rs出库记录")):
            def more(header, line, family=family):
                return {"仓库名称": self.book.named("仓库", line["dpID"], "仓库名称")[0],
                        "企业名称": self.book.named(family, header["ksID"], "企业名称")[0]}

            compared = 0
            for warehouse, product in ((0, 0), (1, 0), (2, 0), (0, 3), (2, 3), (3, 3), (4, 3), (-1, -1), (0, 9001)):
                with self.subTest(family=family, warehouse=warehouse, product=product):
                    # The warehouse is the header's, the name the one of the line's.
                    compared += self.compare(self.both(method, warehouse, product), family,
                                             lambda h, l: (warehouse < 1 or h["dpID"] == warehouse) and
                                             (product < 1 or l["pdID"] == product), more)
            self.assertGreater(compared, 8000)

    def test_lines_of_a_partner(self):
        for family, method in (("入库", "rs单位入库记录"), ("出库", "rs单位出库记录")):
            def more(_, line):
                return {"仓库名称": self.book.named("仓库", line["dpID"], "仓库名称")[0],
                        **dict(zip(GOODS.split(), self.book.named("商品", line["pdID"], GOODS)))}

            for partner in (0, 3, 7, 999, 1000, -1):
                with self.subTest(family=family, partner=partner):
                    self.compare(self.both(method, partner), family, lambda h, l: partner < 1 or h["ksID"] == partner, more)


class TextsTest(SampleCase):
    def test_distinct_texts_of_all_lines(self):
        for word in ("经手人", "交接人", "包装", "货位"):
            for family in ("入库", "出库"):
                rows = [[text] for text in {line[word] for line in self.book.tables[family + "记录"]}]
                with self.subTest(word=word, family=family):
                    self.check(self.both("rs" + word, family), word, rows, word, order=texts_order)
            self.assertEqual(self.result("rs" + word, "成本"), self.result("rs" + word, "出库"))


class BillFigureTest(SampleCase):
    def test_amount_and_quantity_of_every_fifth_bill(self):
        for family in ("入库", "出库"):
            for bill in [header["BillID"] for header in self.book.tables[family + "目录"]][::5] + [9001, 9002]:
                own = [line for line in self.book.tables[family + "记录"] if line["BillID"] == bill]
                amount = self.result("Get单据金额", bill, family)
                self.assertEqual(self.parsed("Currency", amount["currency"]), sum(line["除税金额"] for line in own), bill)
                quantity = self.parsed("Double", float(self.result("Get单据数量", bill, family)))
                self.assertTrue(self.same("Double", quantity, sum(line["数量"] for line in own)), bill)


if __name__ == "__main__":
    unittest.main()
