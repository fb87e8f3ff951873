"""A book of bills as varied as its filters, and the same bills in Python to work out what a filter must find."""

from decimal import Decimal
from typing import NamedTuple, Optional

from host_case import HostCase


class Bill(NamedTuple):
    id: int
    year: int
    month: Optional[int]
    day: int
    bill_kind: Optional[str]
    kind: str
    number: str
    warehouse: int
    partner: int = 0
    project: int = 0
    sort: str = "01"


class Line(NamedTuple):
    bill: int
    product: int
    warehouse: int
    price: str
    quantity: float
    amount: str
    tax: str
    net_price: str
    net: str
    handler: Optional[str] = None
    counterpart: Optional[str] = None
    packing: Optional[str] = None
    slot: Optional[str] = None
    term: float = 0


WAREHOUSES = {1: "东库", 2: "西库"}
SUPPLIERS = {5: "华新水泥"}
CUSTOMERS = {5: "城建五公司", 9: "城建二公司"}
PROJECTS = {7: ("X7", "大桥", "引桥"), 8: ("X8", "隧道", None)}
PRODUCTS = {1: ("水泥", "A1", "01"), 2: ("钢筋", "B1", "02"), 3: ("石灰", "A2", "01")}

# Supplier 77, project 88 and warehouse 99 do not exist. Bill 3 has no lines, those of bill 1 lie in two warehouses.
BILLS = {
    "入库": [
        Bill(1, 2003, 2, 10, "入库单", "采购", "R2", 1, 5, 7, "02"),
        Bill(2, 2003, 1, 20, "入库单", "采购", "R1", 1, sort="02"),
        Bill(3, 2003, 1, 20, "入库单", "退货", "R0", 2, 5, 7),
        Bill(4, 2003, 3, 5, "调拨单", "调拨", "D1", 2, 77, 88),
        Bill(5, 2003, 1, 31, "增值税发票", "采购", "F1", 1, 5, 8),
        Bill(6, 2002, 12, 31, "普通发票", "采购", "P9", 1, 5),
        Bill(7, 2004, 1, 5, "入库单", "采购", "R3", 2, 5, -7),
        Bill(8, 2003, 2, 9, None, "退货", "N1", 99),
        Bill(9, 2003, 1, 2, "调拨单", "调拨", "D0", 1),
        Bill(10, 2003, 1, 3, "普通发票", "采购", "P1", 1),
        Bill(11, 2003, 10, 1, "出库单", "", "C9", 1),
    ],
    "出库": [
        Bill(1, 2003, 1, 25, "出库单", "销售", "C1", 1, 9, 7),
        Bill(2, 2003, 2, 11, "出库单", "销售", "C2", 1, 9),
        Bill(3, 2003, 3, 5, "调拨单", "调拨", "D1", 1),
        Bill(4, 2003, 3, 6, "调拨单", "调拨", "D2", 1),
    ],
}
LINES = {
    "入库": [
        Line(1, 1, 1, "11.7", 3, "35.1", "5.1", "10", "30", "张三", "甲", "箱", "R1", 30),
        Line(1, 1, 1, "14.625", 2, "29.25", "4.25", "12.5", "25", "李四", "甲", "袋", "R2", 60),
        Line(1, 2, 2, "0.39", 3.5, "1.365", "0.1983", "0.3333", "1.1667", "张三", "乙", "箱", "R1", 90),
        Line(2, 1, 1, "12.87", 4, "51.48", "7.48", "11", "44", "李四", None, "箱", "S1", 30),
        Line(4, 3, 2, "2", 10, "20", "0", "2", "20", "王五", "乙", None, "S2"),
        Line(5, 2, 1, "5.85", 2, "11.7", "1.7", "5", "10", "张三", "甲", "捆", "R1", 15),
        Line(6, 1, 1, "9.36", 1, "9.36", "1.36", "8", "8", "张三", "甲", "袋", "R9", 30),
        Line(7, 1, 2, "10.53", -1, "-10.53", "-1.53", "9", "-9", "赵六", "丙", "箱", "R1", 45),
        Line(8, 3, 1, "2.34", 5, "11.7", "1.7", "2", "10", "赵六", None, "袋", "R1", 30),
        Line(9, 1, 1, "10", 6, "60", "0", "10", "60", "张三", "甲", "箱", "R1", 30),
        Line(10, 2, 1, "5.85", 8, "46.8", "6.8", "5", "40", "李四", "甲", "捆", "R3", 15),
        Line(11, 3, 1, "2", 7, "14", "0", "2", "14", "李四", "甲", "袋", "R3", 15),
    ],
    "出库": [
        Line(1, 1, 1, "17.55", 2, "35.1", "5.1", "15", "30", "王五", "甲", "箱", "R9", 30),
        Line(2, 1, 1, "18.72", 1, "18.72", "2.72", "16", "16", "王五", "乙", "箱", "R9", 60),
        Line(3, 3, 1, "2", 10, "20", "0", "2", "20", "王五", None, None, "S2"),
    ],
}


def text_of(value):
    """A value as a statement takes it."""
    if value is None:
        return "Null"
    return f"'{value}'" if isinstance(value, str) else str(value)


def insert(table, columns, *values):
    return f"Insert into {table} ({columns}) Values ({','.join(text_of(v) for v in values)})"


def statements():
    yield from (insert("仓库设置", "dpID,仓库名称", *row) for row in WAREHOUSES.items())
    yield from (insert("厂商资料", "KSID,企业名称", *row) for row in SUPPLIERS.items())
    yield from (insert("客户资料", "KSID,企业名称", *row) for row in CUSTOMERS.items())
    yield from (insert("项目设置", "项目ID,项目编号,项目名称,工程名称", key, *row) for key, row in PROJECTS.items())
    yield from (insert("商品设置", "pdID,商品名称,商品编号,ClassCode", key, *row) for key, row in PRODUCTS.items())
    for which in ("入库", "出库"):
        for bill in BILLS[which]:
            yield insert(f"{which}目录", "BillID,年份,月份,日子,单据类型,类型,单据编号,dpID,ksID,pjID,BillType", *bill)
        for line in LINES[which]:
            figures = [Decimal(v) for v in line[3:9]]
            yield insert(f"{which}记录", "BillID,pdID,dpID,单价,数量,金额,税额,除税单价,除税金额,经手人,交接人,包装,货位,期限",
                         *line[:3], *figures, *line[9:])


class BillBookCase(HostCase):
    def setUp(self):
        super().setUp()

        def make():
            self.run_kpbook("new", self.book, "--bare")
            for answer in self.batch(*({"execute": text} for text in statements())):
                self.assertNotIn("error", answer)

        self.copy_of("bills", make)

    def results(self, *requests):
        """The results of many calls."""
        answers = self.batch(*requests)
        self.assertEqual(len(answers), len(requests))
        for answer in answers:
            self.assertNotIn("error", answer)
        return [answer["result"] for answer in answers]

    def result(self, method, *arguments):
        return self.results({"method": method, "args": list(arguments)})[0]

    def columns(self, recordset, *names):
        """The named columns of every row; of two columns of one name the first."""
        at = [[c["name"] for c in recordset["columns"]].index(name) for name in names]
        return [[row[i] for i in at] for row in recordset["rows"]]
