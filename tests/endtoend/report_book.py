"""A book for the reports: its rows are kept here too, so that a test can work every figure out from them.

Quantities are eighths, which a Double holds exactly; amounts are Decimals.
"""

import math
from collections import namedtuple
from decimal import Decimal
from fractions import Fraction

from small_book import SmallBookCase

Bill = namedtuple("Bill", "id year month day bill_kind number code warehouse partner project")
Line = namedtuple("Line", "bill product warehouse quantity price amount tax net_price net handler slot")
Cost = namedtuple("Cost", "id month warehouse")
CostLine = namedtuple("CostLine", "bill product quantity price amount")
Product = namedtuple("Product", "id name code class_code")

# By class and code in pinyin order: bolts, then steel (gang), lime (shi), cement (shui), then paint.
PRODUCTS = {p.id: p for p in (Product(1, "水泥", "水-1", "02"), Product(2, "钢筋", "钢-1", "02"),
                              Product(3, "石灰", "石-1", "02"), Product(4, "螺栓", "Z9", "01"),
                              Product(5, "油漆", "A1", "03"))}
IN_ORDER = (4, 2, 3, 1, 5)
LOST = 6  # on lines only
DIALECTS = (False, True)  # isSQL
SUPPLIERS = {5: ("华新水泥", "01"), 6: ("八一钢厂", "02")}
CUSTOMERS = {8: ("安居房产", "01"), 9: ("城建二公司", "02")}
PROJECTS = {1: ("P1", "一号桥", "引桥", "市政", "01"), 2: ("P2", "学校", "教学楼", "公建", "02")}

# Numbers ascend where codes descend, which tells the two columns apart.
BILLS = {
    "入库": [
        Bill(1, 2003, 2, 10, "入库单", "R1", "N6", 1, 5, 0),
        Bill(2, 2003, 1, 20, "普通发票", "R2", "N5", 1, 0, 0),
        Bill(3, 2003, 2, 10, "增值税发票", "R3", "N4", 2, 6, 0),
        Bill(4, 2003, 3, 31, "调拨单", "R4", "N3", 2, 5, 0),
        Bill(5, 2004, 2, 12, "普通发票", "R5", "N2", 1, 6, 0),
        Bill(6, 2003, 2, 28, "入库单", "R6", "N1", 1, 5, 0),  # no lines
    ],
    "出库": [
        Bill(1, 2003, 1, 25, "普通发票", "C1", "M5", 1, 9, 1),
        Bill(2, 2003, 2, 12, "出库单", "C2", "M4", 1, 9, 0),
        Bill(3, 2003, 2, 5, "增值税发票", "C3", "M3", 2, 8, 2),
        Bill(4, 2003, 12, 31, "调拨单", "C4", "M2", 2, 0, 0),
        Bill(5, 2002, 2, 12, "出库单", "C5", "M1", 1, 8, 1),
    ],
}


def line(bill, product, warehouse, quantity, net_price, handler="张三", slot="R1"):
    """Net price and quantity give the net amount, 17 per cent tax the rest."""
    net_price, quantity = Decimal(net_price), Decimal(quantity)
    step = Decimal("0.0001")
    net, price = (net_price * quantity).quantize(step), (net_price * Decimal("1.17")).quantize(step)
    tax = (net * Decimal("0.17")).quantize(step)
    return Line(bill, product, warehouse, quantity, price, net + tax, tax, net_price, net, handler, slot)


LINES = {
    "入库": [
        line(1, 1, 1, "10", "3.1"), line(1, 1, 1, "12.5", "2.05", "李四", "R2"), line(1, 2, 2, "0.125", "0.3333"),
        line(2, 1, 1, "4", "11", None, None), line(2, LOST, 1, "1", "0.0007", "阿明"),
        line(3, 1, 2, "7.25", "3.3333", "王五"), line(3, 4, 2, "100", "0.0499"),
        line(4, 3, 2, "2.5", "9.99", "李四"), line(5, 1, 1, "1.5", "4", "王五"), line(5, 2, 1, "2", "5"),
    ],
    "出库": [
        line(1, 1, 1, "2", "15", "王五", "R9"), line(2, 1, 1, "1.5", "16.01", "王五", "R9"),
        line(2, 1, 1, "0.5", "16.02", "阿明", "R9"), line(2, 2, 2, "0.125", "1.2345", "王五", None),
        line(3, 4, 2, "40", "0.0501", None), line(3, LOST, 2, "3", "2"), line(4, 3, 2, "1.25", "12", "李四"),
        line(5, 2, 1, "6.125", "0.7", "张三", "R8"),
    ],
}
COSTS = [Cost(1, 2, 1), Cost(2, 1, 1), Cost(3, 2, 2), Cost(4, 3, 1)]
COST_LINES = [CostLine(b, p, Decimal(q), Decimal(c), Decimal(a)) for b, p, q, c, a in (
    (1, 1, "1.5", "3.0001", "4.5002"), (1, 2, "0.125", "0.4", "0.05"), (2, 1, "2", "3.5", "7"),
    (3, 1, "4", "3.25", "13"), (4, LOST, "1", "9", "9"))]
# Year, month, product, warehouse, opening price, quantity and amount; closing is twice the opening.
BALANCE = [(2003, 2, 1, 1, Decimal("2.5"), Decimal("10"), Decimal("25")),
           (2003, 2, 1, 2, Decimal("3"), Decimal("4.5"), Decimal("13.5001")),
           (2003, 1, 1, 1, Decimal("2"), Decimal("1"), Decimal("2")),
           (2002, 12, 1, 1, Decimal("1"), Decimal("0.125"), Decimal("0.125")),
           (2003, 2, 2, 1, Decimal("7"), Decimal("8"), Decimal("56"))]
STOCKTAKING = [(1, 2, 1), (4, 2, 2), (5, 3, 1)]  # product, month, warehouse


def literal(value):
    return "Null" if value is None else f"'{value}'" if isinstance(value, str) else str(value)


def insert(table, columns, values):
    return f"Insert into {table} ({columns}) Values ({','.join(map(literal, values))})"


def insert_bill(kind, bill):
    return insert(f"{kind}目录", "BillID,年份,月份,日子,单据类型,单据编号,编号,dpID,ksID,pjID", bill)


def insert_line(kind, row):
    columns = "BillID,pdID,dpID,数量,单价,金额,税额,除税单价,除税金额,经手人,货位"
    return insert(f"{kind}记录", columns, row)


def statements():
    yield insert("仓库设置", "dpID,仓库名称", (1, "东库"))
    yield insert("仓库设置", "dpID,仓库名称", (2, "西库"))
    for each in PRODUCTS.values():
        yield insert("商品设置", "pdID,商品名称,商品编号,ClassCode", each)
    for table, partners in (("厂商资料", SUPPLIERS), ("客户资料", CUSTOMERS)):
        for key, values in partners.items():
            yield insert(table, "KSID,企业名称,ClassCode", (key, *values))
    for key, values in PROJECTS.items():
        yield insert("项目设置", "项目ID,项目编号,项目名称,工程名称,工程性质,ClassCode", (key, *values))
    for kind, bills in BILLS.items():
        yield from (insert_bill(kind, bill) for bill in bills)
        yield from (insert_line(kind, row) for row in LINES[kind])
    for each in COSTS:
        yield insert("成本目录", "CostID,年份,月份,日子,dpID", (each.id, 2003, each.month, 1, each.warehouse))
    for each in COST_LINES:
        yield insert("成本记录", "CostID,pdID,数量,单价,金额", each)
    for *keys, price, quantity, amount in BALANCE:
        yield insert("仓库余额表", "年份,月份,pdID,dpID,上期库存单价,上期库存数量,上期库存金额,本期库存单价,本期库存数量,"
                     "本期库存金额", (*keys, price, quantity, amount, 2 * price, 2 * quantity, 2 * amount))
    for each in STOCKTAKING:
        yield insert("仓库盘点表", "pdID,月份,dpID", each)


def joined(kind):
    """Every line with its bill."""
    bills = {bill.id: bill for bill in BILLS[kind]}
    return [(bills[row.bill], row) for row in LINES[kind]]


def grouped(rows, key):
    groups = {}
    for row in rows:
        groups.setdefault(key(*row), []).append(row)
    return groups


def total(rows, figure):
    return sum((getattr(row, figure) for _, row in rows), Decimal(0))


def mean(rows, figure):
    return Fraction(total(rows, figure)) / len(rows)


def equal(found, expected):
    """Amounts and keys are exact; a Double may differ in the last place."""
    if isinstance(found, float) and expected is not None:
        return math.isclose(found, float(expected), rel_tol=1e-12, abs_tol=1e-15)
    return found == expected


class ReportCase(SmallBookCase):
    def setUp(self):
        super(SmallBookCase, self).setUp()

        def make():
            self.run_kpbook("new", self.book, "--bare")
            self.execute(*statements())

        self.copy_of("reports", make)

    def execute(self, *texts):
        for answer in self.batch(*({"execute": text} for text in texts)):
            self.assertNotIn("error", answer)

    def types(self, recordset):
        return {column["name"]: column["type"] for column in recordset["columns"]}

    def values(self, recordset, *names):
        """The named columns of every row, amounts as Decimals."""
        types = self.types(recordset)
        return [tuple(Decimal(v) if types[n] == "Currency" and v is not None else v for n, v in zip(names, row))
                for row in self.columns(recordset, *names)]

    def assert_rows(self, recordset, names, expected):
        """Expects these rows in this order."""
        found = self.values(recordset, *names.split(","))
        same = len(found) == len(expected) and all(
            len(f) == len(e) and all(map(equal, f, e)) for f, e in zip(found, expected))
        self.assertTrue(same, f"{names}\nfound    {found}\nexpected {list(expected)}")

    def assert_same_rows(self, recordset, names, expected):
        """Expects these rows, whose first columns tell them apart, in any order."""
        first = [[c["name"] for c in recordset["columns"]].index(name) for name in names.split(",")[:2]]
        rows = sorted(recordset["rows"], key=lambda row: str([row[i] for i in first]))
        self.assert_rows({**recordset, "rows": rows}, names, sorted(expected, key=lambda row: str(list(row[:2]))))
