"""A book small enough to work out by hand: two warehouses, three products, a few bills of months 1 to 3 of 2003."""

from host_case import HostCase

STATEMENTS = [
    "Insert into 仓库设置 (dpID,仓库名称) Values (1,'东库')",
    "Insert into 仓库设置 (dpID,仓库名称) Values (2,'西库')",
    "Insert into 厂商资料 (KSID,企业名称) Values (5,'华新水泥')",
    "Insert into 客户资料 (KSID,企业名称) Values (9,'城建二公司')",
    "Insert into 商品设置 (pdID,商品名称,商品编号,ClassCode) Values (1,'水泥','A1','01')",
    "Insert into 商品设置 (pdID,商品名称,商品编号,ClassCode) Values (2,'钢筋','B1','02')",
    "Insert into 商品设置 (pdID,商品名称,商品编号,ClassCode) Values (3,'石灰','A2','01')",
]


def header(kind, bill, month, day, number, warehouse, partner, bill_kind):
    return (f"Insert into {kind}目录 (BillID,年份,月份,日子,单据类型,单据编号,dpID,ksID) "
            f"Values ({bill},2003,{month},{day},'{bill_kind}','{number}',{warehouse},{partner})")


def line(kind, bill, product, warehouse, price, quantity, amount, handler="张三", slot="R1"):
    return (f"Insert into {kind}记录 (BillID,pdID,dpID,除税单价,数量,除税金额,经手人,货位) "
            f"Values ({bill},{product},{warehouse},{price},{quantity},{amount},'{handler}','{slot}')")


STATEMENTS += [
    header("入库", 1, 2, 10, "R2", 1, 5, "入库单"), line("入库", 1, 1, 1, 10, 3, 30),
    line("入库", 1, 1, 1, 12.5, 2, 25, "李四", "R2"), line("入库", 1, 2, 2, "0.3333", 3, "0.9999"),
    header("入库", 2, 1, 20, "R1", 1, 0, "入库单"), line("入库", 2, 1, 1, 11, 4, 44),
    header("入库", 3, 1, 20, "R0", 2, 5, "入库单"),
    header("出库", 1, 1, 25, "C1", 1, 9, "出库单"), line("出库", 1, 1, 1, 15, 2, 30, "王五", "R9"),
    header("出库", 2, 2, 11, "C2", 1, 9, "出库单"), line("出库", 2, 1, 1, 16, 1, 16, "王五", "R9"),
]


class SmallBookCase(HostCase):
    def setUp(self):
        super().setUp()

        def make():
            self.run_kpbook("new", self.book, "--bare")
            for answer in self.batch(*({"execute": text} for text in STATEMENTS)):
                self.assertNotIn("error", answer)

        self.copy_of("small", make)

    def result(self, method, *arguments, **others):
        answer = self.call(method, *arguments, **others)
        self.assertNotIn("error", answer)
        return answer["result"]

    def columns(self, recordset, *names):
        """The named columns of every row; of two columns of one name the first."""
        at = [[c["name"] for c in recordset["columns"]].index(name) for name in names]
        return [[row[i] for i in at] for row in recordset["rows"]]
