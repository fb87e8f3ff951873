"""The sample year in a book, and its CSV files read into exact values, from which the expected rows of a report follow.

Figures are decimals, dates ISO texts, flags booleans. A few odd bills join the year: ones without lines, with lines in two
warehouses, of another year, with a partner, project or product that has no row.
"""

import atexit
import csv
import json
import os
import pathlib
import subprocess
import tempfile
import unittest
from collections import defaultdict
from decimal import Decimal, getcontext

# So wide that no sum is rounded.
getcontext().prec = 80

KPBOOK = os.environ["KPBOOK"]
KPSAMPLE = os.environ["KPSAMPLE"]

PAY = ("总收入 油费 外加油费 过路费 装卸费 折旧 保险 利润 税金 养路费 装卸工资 费用1 费用2 费用3 总费用 其它1 其它2 其它3 "
       "应付 所得税 电话费 扣款1 扣款2 扣款3 实发工资")
TYPES = {
    "Long": "BillID CostID pdID dpID ksID KSID pjID 项目ID 部门ID 厂商ID 客户ID 仓库",
    "Integer": "年份 月份 日子",
    "Double": "数量 期限 默认单价 普通税率 增值税率 购进单价 普购税率 增购税率 最低库存 最高库存 单位数量 上期库存单价 上期库存数量 "
              "本期入库单价 本期入库数量 累计入库数量 本期出库单价 本期出库数量 累计出库数量 本期库存单价 本期库存数量",
    "Currency": "单价 金额 税额 除税单价 除税金额 货款 上期库存金额 本期入库金额 累计入库金额 本期出库金额 累计出库金额 本期库存金额 " + PAY,
    "Date": "录入日期 审核日期",
    "Boolean": "外用车 违章",
}
TYPE_OF = {column: kind for kind, columns in TYPES.items() for column in columns.split()}
PRODUCT = "商品名称 商品编号 规格 型号 计量单位 进位方法 最低库存 最高库存 ClassCode"
# The bills' kinds and the lines' texts in pinyin order.
PINYIN = ["", *("编织袋 草绳捆扎 陈建国 成卷 出库单 袋装 调拨单 方小琴 何永祥 金水根 捆 李秀芳 楼金良 木架 木箱 盘卷 普通发票 入库单 散装 "
                "散装罐车 塑料桶 铁桶 托盘 王丽华 吴晓燕 线盘 徐海平 俞根法 增值税发票 章志强 张伟东 纸盒 纸箱 周敏").split()]

ODD_HEADERS = {
    "入库": ["9001,2003,3,7,入库单,赊购,RK9-03-0001,R009001,01,1,999,5,朱琳,2003-03-07,,,没有记录",
             "9002,2003,3,8,入库单,赊购,RK9-03-0002,R009002,01,2,3,999,朱琳,2003-03-08,,,两个仓库"],
    "出库": ["9001,2004,1,5,出库单,赊销,CK9-01-0001,C009001,01,1,7,3,朱琳,2004-01-05,,,下年",
             "9002,2003,3,31,出库单,零售,CK9-03-0001,C009002,01,2,0,0,朱琳,2003-03-31,,,没有记录",
             "9003,2003,3,12,普通发票,零售,XP9-03-0001,C009003,02,1,999,999,朱琳,2003-03-12,,,没有商品"],
}
ODD_LINES = {
    "入库": ["9002,3,2,234,5,1170,170,200,1000,方小琴,王丽华,袋装,T1,30,2",
             "9002,3,3,117,2.5,292.5,42.5,100,250,方小琴,王丽华,袋装,T2,30,3",
             "9002,34,2,10,0.125,1.25,0,10,1.25,俞根法,王丽华,,T3,0,2"],
    "出库": ["9001,3,1,351,0.5,175.5,25.5,300,150,周敏,方小琴,散装,T1,15,1",
             "9003,9001,1,106,1.5,159,9,100,150,周敏,方小琴,,T1,15,1",
             "9003,3,1,530,0.25,132.5,7.5,500,125,,方小琴,散装,T2,15,1", "9003,3,1,424,0.25,106,6,400,100,周敏,方小琴,袋装,T3,15,1"],
}


def value(column, text):
    kind = TYPE_OF.get(column, "String")
    if kind == "String":
        return text
    if text == "":
        return None
    if kind in ("Long", "Integer"):
        return int(text)
    if kind == "Boolean":
        return int(text) != 0
    return text if kind == "Date" else Decimal(text)


def total(rows, column):
    """What Sum answers: Null of no rows."""
    return sum(row[column] for row in rows) if rows else None


def mean(rows, column):
    return total(rows, column) / len(rows)


def grouped(items, key):
    groups = defaultdict(list)
    for item in items:
        groups[key(item)].append(item)
    return groups


def date_of(header):
    return f"{header['年份']:04}-{header['月份']:02}-{header['日子']:02}"


class Book:
    """A book of the sample year and one program that answers calls on it."""

    def __init__(self):
        scratch = tempfile.TemporaryDirectory()
        atexit.register(scratch.cleanup)
        self.path = pathlib.Path(scratch.name) / "year.kpbook"
        self.folder = pathlib.Path(scratch.name) / "csv"
        subprocess.run([KPSAMPLE, self.folder], check=True)
        for kind in ("入库", "出库"):
            for table, rows in ((kind + "目录", ODD_HEADERS[kind]), (kind + "记录", ODD_LINES[kind])):
                with open(self.folder / f"{table}.csv", "a", encoding="utf-8") as file:
                    file.writelines(row + "\n" for row in rows)
        self.tables, self.columns = {}, {}
        self.run("new", self.path, "--bare")
        for path in sorted(self.folder.glob("*.csv")):
            self.read(path)
            self.run("import", self.path, path.stem, path)
        self.master = {name: {row[key]: row for row in self.tables[table]} for name, table, key in (
            ("商品", "商品设置", "pdID"), ("仓库", "仓库设置", "dpID"), ("入库", "厂商资料", "KSID"), ("出库", "客户资料", "KSID"),
            ("项目", "项目设置", "项目ID"))}
        self.program = None

    def run(self, *arguments):
        done = subprocess.run([KPBOOK, *map(str, arguments)], capture_output=True, text=True, encoding="utf-8")
        assert done.returncode == 0, f"kpbook {arguments}: {done.stderr}"

    def read(self, path):
        with open(path, encoding="utf-8", newline="") as file:
            reader = csv.DictReader(file, strict=True)
            self.tables[path.stem] = [{column: value(column, text) for column, text in row.items()} for row in reader]
            self.columns[path.stem] = reader.fieldnames

    def lines(self, family):
        """Every line of 入库, 出库 or 成本 with its header, as pairs."""
        key = "CostID" if family == "成本" else "BillID"
        headers = {header[key]: header for header in self.tables[family + "目录"]}
        return [(headers[line[key]], line) for line in self.tables[family + "记录"]]

    def named(self, name, key, columns):
        """Columns of a master row, Nulls when there is no such row."""
        row = self.master[name].get(key, {})
        return [row.get(column) for column in columns.split()]

    def call(self, method, *arguments, **others):
        if self.program is None:
            self.program = subprocess.Popen([KPBOOK, "call", self.path, "--batch"], stdin=subprocess.PIPE,
                                            stdout=subprocess.PIPE, encoding="utf-8")
            atexit.register(self.program.communicate)
        self.program.stdin.write(json.dumps({"method": method, "args": arguments, **others}, ensure_ascii=False) + "\n")
        self.program.stdin.flush()
        return json.loads(self.program.stdout.readline())


class SampleCase(unittest.TestCase):
    """Tests on the one book of the program."""

    maxDiff = None
    book = None

    @classmethod
    def setUpClass(cls):
        if SampleCase.book is None:
            SampleCase.book = Book()

    def result(self, method, *arguments, **others):
        answer = self.book.call(method, *arguments, **others)
        self.assertNotIn("error", answer, (method, arguments))
        return answer["result"]

    def both(self, method, *arguments):
        """The result of a method that answers the same in both dialects."""
        jet = self.result(method, *arguments, isSQL=False)
        self.assertEqual(self.result(method, *arguments, isSQL=True), jet, (method, arguments))
        return jet

    def check(self, found, columns, expected, key, order=None, empty=False):
        """Compares columns ("name" or "name:Type"), all rows and, where order(row) is given, the order of its values.

        key names the columns that tell the expected rows apart. Only a report told to be empty may be."""
        names = [column.split(":")[0] for column in columns.split()]
        kinds = [(column.split(":") + [TYPE_OF.get(name, "String")])[1] for column, name in zip(columns.split(), names)]
        self.assertEqual([(c["name"], c["type"]) for c in found["columns"]], list(zip(names, kinds)))
        self.assertEqual(len(expected) == 0, empty)
        places = [names.index(column) for column in key.split()]
        rows = [[self.parsed(kind, cell) for kind, cell in zip(kinds, row)] for row in found["rows"]]
        if order:
            self.assertEqual([order(row) for row in rows], sorted(order(row) for row in expected))
        calculated = {tuple(row[i] for i in places): row for row in expected}
        self.assertEqual(len(calculated), len(expected), "the key tells rows not apart")
        self.assertEqual(len(rows), len(expected))
        for row in rows:
            at = tuple(row[i] for i in places)
            self.assertIn(at, calculated)
            for name, kind, cell, wanted in zip(names, kinds, row, calculated.pop(at), strict=True):
                self.assertTrue(self.same(kind, cell, wanted), (at, name, cell, wanted))

    @staticmethod
    def parsed(kind, cell):
        if cell is None or kind not in ("Double", "Currency"):
            return cell
        assert isinstance(cell, str) == (kind == "Currency"), cell
        return Decimal(cell)

    @staticmethod
    def same(kind, cell, wanted):
        """Doubles agree to nine decimals or twelve digits, all else altogether."""
        if kind == "Double" and cell is not None and wanted is not None:
            return abs(cell - wanted) <= Decimal("1e-9") * max(1, abs(wanted) / 1000)
        return cell == wanted and (cell is None) == (wanted is None)


def texts_order(row):
    """The order of a list of texts: the texts known in pinyin order first to last, slots and numbers by their characters."""
    return (0, PINYIN.index(row[0]), "") if row[0] in PINYIN else (1, 0, row[0])
