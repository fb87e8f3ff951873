"""A book of two months for the tests of the reports."""

import json

from kpbook_case import BALANCE_HEADER, KpbookCase

LINES = "BillID,pdID,dpID,数量,单价,金额,税额,除税单价,除税金额,经手人,交接人,包装\n"
BILLS = "BillID,年份,月份,日子,单据类型,类型,单据编号,dpID,ksID,pjID\n"


class ReportCase(KpbookCase):
    """A book whose months are March and April.

    March opens with 110 pieces and tons at 75 in warehouse 1 and 3 tons at 15 in warehouse 2. In come cement 4 and
    bolts 0.5 on the 5th (net 24 and 0.8766), cement 2 on the 20th into warehouse 2 (net 14); out go cement 5 and bolts
    0.25 on the 10th (net 40 and 0.9). In April an inbound bill has no lines, and cement 1 goes out (net 9).
    """

    def setUp(self):
        super().setUp()
        self.copy_of("reports", self.make_report_book)

    def make_report_book(self):
        self.new_book()
        self.import_text("仓库设置", "dpID,仓库名称\n1,东库\n2,西库\n")
        self.import_text("商品设置", "pdID,商品名称,商品编号,计量单位,ClassCode\n1,水泥,C01,吨,01\n2,螺栓,C02,只,02\n")
        self.import_text("厂商资料", "KSID,企业名称\n1,红星厂\n2,O'Neil\n")
        self.import_text("客户资料", "KSID,企业名称,ClassCode\n1,建工集团,02\n")
        self.import_text("客户分类", "ClassID,ClassCode,ClassName\n1,02,施工\n")
        self.import_text("项目分类", "ClassID,ClassCode,ClassName\n1,01,桥梁\n")
        self.import_text("项目设置", "项目ID,项目编号,项目名称,工程名称,工程性质,ClassCode\n1,P1,大桥,桥面,市政,01\n")
        self.import_text("仓库余额表", BALANCE_HEADER.replace("\n", ",本期库存金额\n") +
                         "2004,3,1,1,5,10,50,48.0001\n2004,3,2,1,0.25,100,25,25\n2004,3,1,2,5,3,15,15\n"
                         "2004,4,1,1,4,11,48.0001,0\n")
        self.import_text("入库目录", BILLS + "1,2004,3,5,普通发票,购货,R001,1,1,0\n2,2004,3,20,调拨单,移库,R002,2,2,0\n"
                         "3,2004,4,2,普通发票,购货,R003,1,1,0\n")
        self.import_text("入库记录", LINES + "1,1,1,4,7,28,4,6,24,张三,李四,袋\n"
                         "1,2,1,0.5,2,1,0.1234,1.7532,0.8766,张三,,箱\n2,1,2,2,8,16,2,7,14,O'Neil,李四,袋\n")
        self.import_text("出库目录", BILLS + "1,2004,3,10,普通发票,销售,C001,1,1,1\n2,2004,4,25,普通发票,销售,C002,1,1,0\n")
        self.import_text("出库记录", LINES + "1,1,1,5,9,45,5,8,40,,,\n1,2,1,0.25,4,1,0.1,4,0.9,,,\n"
                         "2,1,1,1,10,10,1,9,9,,,\n")
        self.import_text("成本目录", "CostID,年份,月份,日子,dpID\n1,2004,3,31,1\n")
        self.import_text("成本记录", "CostID,pdID,数量,单价,金额\n1,1,5,5.5,27.5\n1,2,0.25,0.2,0.05\n")

    def report(self, *options, columns=None, **others):
        """The rows; of these columns only when they are given."""
        found = json.loads(self.run_kpbook("report", options[0], self.book, *options[1:], "-O", "json", **others).stdout)
        names = [column["name"] for column in found["columns"]]
        places = [names.index(column) for column in columns] if columns else range(len(names))
        return [[row[place] for place in places] for row in found["rows"]]

    def table(self, *options):
        return self.run_kpbook("report", options[0], self.book, *options[1:]).stdout

    def totals(self, *options):
        """The words of the last line, which stands below a rule as the titles do."""
        lines = self.table(*options).splitlines()
        self.assertEqual(set(lines[-2]), {"-", " "})
        self.assertEqual(lines.count(lines[-2]), 2)
        return lines[-1].split()
