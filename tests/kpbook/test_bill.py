"""bill: entered from files, options and a terminal; edited, removed, audited, shown and printed."""

import decimal
import json
import os
import pty
import random
import re
import shutil
import stat
import subprocess
import unittest
from decimal import Decimal, ROUND_HALF_EVEN

from kpbook_case import KPBOOK, KpbookCase

PLACES = Decimal("0.0001")
decimal.getcontext().prec = 60


def rounded(value):
    return value.quantize(PLACES, rounding=ROUND_HALF_EVEN)


def plain(value):
    """An exact number as kpbook writes it."""
    return format(value.normalize(), "f") if value else "0"


class BillCase(KpbookCase):
    """A firm with two warehouses, three products at 13 % (3 % without a VAT invoice), and opening stock: cement (01001)
    10 for 4000 in 中心仓库, bolts (02001) 1000 for 500 there, and 2 cement for 820 in 门店."""

    def setUp(self):
        super().setUp()
        self.copy_of("firm", self.make_firm)

    def make_firm(self):
        self.run_kpbook("new", self.book, "--company", "测试<商行>", "--year", "2026", "--month", "1",
                        "--warehouse", "中心仓库", "--warehouse", "门店")
        self.import_text("商品设置", "pdID,商品编号,商品名称,规格,计量单位,普通税率,增值税率,普购税率,增购税率,输入简码\n"
                                     "1,01001,水泥,425#,吨,3,13,3,13,SN\n2,02001,螺栓,M8,只,3,13,3,13,LS\n"
                                     "3,02002,螺母,M8,只,3,13,3,13,LM\n")
        self.import_text("厂商资料", "KSID,单位名称,企业名称\n1,杭州宏图,杭州宏图有限公司\n2,宁波建材,宁波建材厂\n")
        self.import_text("客户资料", "KSID,单位名称,企业名称\n1,西湖工地,西湖工程公司\n2,西湖装饰,西湖装饰公司\n")
        self.run_kpbook("opening", self.book, self.write("opening.csv", "仓库,商品编号,数量,金额\n"
                                                         "中心仓库,01001,10,4000\n中心仓库,02001,1000,500\n门店,01001,2,820\n"))

    def bill(self, *arguments, text="", code=0):
        return self.run_kpbook("bill", *arguments, text=text, code=code)

    def add(self, kind, *arguments, text=""):
        """The rows that bill add answers."""
        done = self.bill("add", self.book, kind, *arguments, "--today", "2026-01-20", "-O", "json", text=text)
        answer = json.loads(done.stdout)
        names = [column["name"] for column in answer["columns"]]
        return [dict(zip(names, row)) for row in answer["rows"]]

    def refused(self, kind, *arguments, text="", code=1):
        before = self.everything()
        done = self.bill("add", self.book, kind, *arguments, "--today", "2026-01-20", text=text, code=code)
        self.assertEqual(done.stdout, "")
        self.assertEqual(self.everything(), before)
        return done.stderr

    def everything(self):
        return [self.rows(f"Select * From {family}{part}") for family in ("入库", "出库", "成本") for part in ("目录", "记录")]


class AddTest(BillCase):
    def test_file_of_many_bills(self):
        path = self.write("in.csv", "单据,日期,仓库,单位,类型,商品编号,数量,单价,税率,说明\n"
                                    "甲,2026-1-5,中心仓库,杭州宏图,增值税发票,01001,10,400,,'一月'\n"
                                    "甲,,,,,02001,2.5,401.5555,6,\n"
                                    "乙,2026-1-6,门店,2,赊购,水泥,3,399.99,,\n")
        self.assertEqual(self.add("in", path), [
            {"单据": "甲", "单据编号": "JZ1-01-0001", "BillID": 1, "日期": "2026-01-05", "行数": 2, "数量": 12.5,
             "除税金额": "5003.8888", "税额": "580.2333", "金额": "5584.1221"},
            {"单据": "乙", "单据编号": "RK2-01-0001", "BillID": 2, "日期": "2026-01-06", "行数": 1, "数量": 3.0,
             "除税金额": "1199.97", "税额": "35.9991", "金额": "1235.9691"}])
        self.assertEqual(self.rows("Select BillID,年份,月份,日子,单据类型,类型,dpID,ksID,pjID,录入日期,说明 From 入库目录"),
                         [[1, 2026, 1, 5, "增值税发票", "", 1, 1, 0, "2026-01-20", "'一月'"],
                          [2, 2026, 1, 6, "入库单", "赊购", 2, 2, 0, "2026-01-20", ""]])
        self.assertEqual(self.rows("Select BillID,pdID,dpID,数量,除税单价,除税金额,税额,单价,金额 From 入库记录"),
                         [[1, 1, 1, 10.0, "400", "4000", "520", "452", "4520"],
                          [1, 2, 1, 2.5, "401.5555", "1003.8888", "60.2333", "425.6488", "1064.1221"],
                          [2, 1, 2, 3.0, "399.99", "1199.97", "35.9991", "411.9897", "1235.9691"]])

    def test_json_and_standard_input(self):
        bills = [{"单据": "A", "仓库": "门店", "商品编号": "01001", "数量": 1, "单价": 11.3, "税率": 13},
                 {"日期": "2026-01-07", "仓库": 1, "明细": [{"商品": "螺栓", "数量": "3", "单价": "1"}, {"商品": "3", "数量": 4, "单价": 2}]}]
        rows = self.add("in", "-", "--gross", text=json.dumps(bills))
        self.assertEqual([(r["日期"], r["行数"], r["除税金额"], r["金额"]) for r in rows],
                         [("2026-01-20", 1, "10", "11.3"), ("2026-01-07", 2, "10.6796", "11")])
        self.assertIn("neither a text nor a number", self.refused("in", "-", text='[{"数量":[1]}]'))
        self.assertIn("standard input: ", self.refused("in", "-", text="[{"))
        self.assertIn("there are no rows", self.refused("in", "-", text="单据,数量\n"))

    def test_spreadsheets_text(self):
        text = "仓库\t商品编号\t数量\t单价\r\n门店\t水泥\t2\t10\r\n"
        self.assertEqual(self.add("in", self.write("gbk.txt", text.encode("gb18030")))[0]["除税金额"], "20")
        self.run_kpbook("sql", self.book, "Select TOP 1 '门店' As 仓库,商品编号,3 As 数量,10 As 单价 From 商品设置", "-o", self.folder / "in.xlsx")
        self.assertEqual(self.add("in", self.folder / "in.xlsx")[0]["除税金额"], "30")

    def test_options(self):
        rows = self.add("out", "--date", "2026-1-8", "--warehouse", "中心仓库", "--partner", "西湖工地", "--remarks", "自提",
                        "--line", "商品=01001,数量=2,单价=500", "--line", "商品=SN,数量=1,含税单价=565,税率=13", "--type", "批发")
        self.assertEqual(rows[0]["金额"], plain(Decimal("1030") + 565))
        self.assertEqual(self.rows("Select 单据类型,类型,ksID,说明 From 出库目录"), [["出库单", "批发", 1, "自提"]])
        self.assertIn("--line", self.refused("out", "--line", "水泥", code=2))
        self.assertIn("do not go together", self.refused("out", "x.csv", "--line", "商品=1,数量=1", code=2))
        self.assertIn("needs the bills", self.refused("out", code=2))
        self.assertIn("in,out,cost", self.refused("sideways", "x.csv", code=2))

    def test_all_faults_at_once(self):
        path = self.write("bad.csv", "单据,日期,仓库,单位,商品编号,数量,单价\n"
                                     "A,2026-1-5,中心仓库,西湖,01001,1,5\n"
                                     "B,2025-1-5,中心仓库,,99999,1,5\n"
                                     "C,2026-2-30,中心仓库,,01001,0,5\n"
                                     "D,2026-1-5,中心仓库,,01001,1,五\n"
                                     "E,2026-1-5,中心仓库,,,1,5\n"
                                     "F,2026-1-5,中心仓库,,01001,-1,5\n"
                                     "G,2026-1-5,中心仓库,,01001,999,5\n")
        stderr = self.refused("out", path)
        for part in ("line 2: bill A: 单位: ", "line 3: bill B: 商品编号: ", "line 4: bill C: 日期: '2026-2-30' is no date",
                     "line 5: bill D: 单价: '五' is no number", "line 6: bill E: the line has no product",
                     "line 7: bill F: the quantity -1 is negative",
                     "line 8: bill G: 01001 水泥 in 中心仓库: stock 10 on 2026-1-5, wanted 999",
                     "nothing was changed", "--allow-negative"):
            self.assertIn(part, stderr)
        # Both customers whose name begins so are listed.
        self.assertIn("西湖工程公司", stderr)
        self.assertIn("西湖装饰公司", stderr)
        self.assertIn("2025-1-5 is not in the book's year 2026",
                      self.refused("out", "--date", "2025-1-5", "--warehouse", "1", "--line", "商品=1,数量=1,单价=5"))

    def test_stock_and_returns(self):
        line = ("--warehouse", "门店", "--date", "2026-1-9", "--line")
        self.assertIn("01001 水泥 in 门店: stock 2 on 2026-1-9, wanted 3", self.refused("out", *line, "商品=1,数量=3,单价=500"))
        self.add("out", *line, "商品=1,数量=3,单价=500", "--allow-negative")
        self.assertEqual(self.add("out", *line, "商品=1,数量=-1,单价=500", "--red")[0]["金额"], "-515")

    def test_transfer(self):
        self.add("in", "--date", "2026-1-5", "--warehouse", "1", "--line", "商品=1,数量=5,单价=430")
        row = self.add("transfer", "--date", "2026-1-9", "--warehouse", "中心仓库", "--to-warehouse", "门店",
                       "--line", "商品=01001,数量=4")[0]
        # (4000 + 2150) / 15 = 410
        self.assertEqual((row["单据编号"], row["除税金额"], row["税额"]), ("DB1-01-0001", "1640", "0"))
        self.assertEqual(self.call("GetShiftID", row["BillID"], "出库")["result"], row["入库BillID"])
        self.assertIn("DB1-01-0001", self.bill("show", self.book, "in", row["入库BillID"]).stdout)
        self.assertIn("not to the same", self.refused("transfer", "--warehouse", "门店", "--to-warehouse", "门店",
                                                      "--line", "商品=1,数量=1"))

    def test_closed_month(self):
        self.run_kpbook("close", self.book, "--month", "1", "--warehouse", "1", "--answer", "yes")
        self.assertIn("日期: 中心仓库: month 1 is closed",
                      self.refused("in", "--warehouse", "1", "--line", "商品=1,数量=1,单价=1"))

    def test_number_pattern(self):
        self.call("Update_Option", "单据编号格式", "{前缀}{年份}-{序号:6}")
        line = ("--warehouse", "1", "--line", "商品=1,数量=1,单价=1")
        self.assertEqual(self.add("in", *line)[0]["单据编号"], "RK2026-000001")
        self.assertEqual(self.add("in", *line, "--number", "手工 7")[0]["单据编号"], "手工 7")
        self.assertEqual(self.add("in", *line)[0]["单据编号"], "RK2026-000003")
        self.assertIn("month 1 has a 入库单 手工 7 already", self.refused("in", *line, "--number", "手工 7"))

    def test_operator(self):
        self.run_kpbook("sql", self.book, "Insert Into 操作员 (姓名,dpID,入库处理) Values ('李明',2,True)")
        self.add("in", "--operator", "李明", "--line", "商品=1,数量=1,单价=1")
        self.assertEqual(self.rows("Select 录入员,dpID From 入库目录"), [["李明", 2]])
        self.assertEqual([row[0] for row in self.rows("Select 内容 From Log")], ["录入入库单 RK2-01-0001"])
        self.assertIn("出库处理", self.refused("out", "--operator", "李明", "--line", "商品=1,数量=1,单价=1"))
        done = self.bill("remove", self.book, "in", "1", "--operator", "李明", code=1)
        self.assertIn("单据删除", done.stderr)
        self.bill("show", self.book, "in", "1", "--operator", "李明")
        self.assertIn("报表打印", self.bill("show", self.book, "out", "1", "--operator", "李明", code=1).stderr)

    def test_terminal(self):
        stdin, terminal = pty.openpty()
        process = subprocess.Popen([KPBOOK, "bill", "add", self.book, "in", "--today", "2026-01-20"], stdin=terminal,
                                   stdout=subprocess.PIPE, stderr=subprocess.PIPE)
        # The second warehouse; an unknown supplier first; 0 lists 01001, 02001 and 02002, 020 two, 010 one.
        answers = ["", "门店", "无名", "杭州宏图", "", "", "", "0", "020", "010", "2", "400", "", "", "y"]
        os.write(stdin, "".join(answer + "\n" for answer in answers).encode())
        output, error = process.communicate(timeout=30)
        os.close(stdin), os.close(terminal)
        self.assertEqual(process.returncode, 0, error.decode())
        self.assertIn("RK2-01-0001", output.decode())
        self.assertIn("  02002 螺母 M8\n", error.decode())
        self.assertEqual(self.rows("Select pdID,数量,除税金额,税额 From 入库记录"), [[1, 2.0, "800", "24"]])
        self.assertEqual(self.rows("Select dpID,ksID,日子 From 入库目录"), [[2, 1, 20]])


class FigureTest(BillCase):
    def test_random_lines(self):
        """Net, tax and gross of 400 lines by the rule of docs/book.md, in exact decimals."""
        chance = random.Random(20260101)
        for gross in (False, True):
            rows, expected = ["单据,仓库,商品编号,数量,单价,税率"], []
            for line in range(200):
                quantity = Decimal(chance.randint(1, 3_000_000)) / 1000
                price = Decimal(chance.randint(1, 99_999_999)) / 10000
                rate = chance.choice([0, 1, 3, 6, 9, 13, 17, Decimal("0.5"), Decimal("7.25")])
                rows.append(f"{line // 20},1,02001,{quantity},{price},{rate}")
                amount, factor = rounded(quantity * price), (100 + Decimal(rate)) / 100
                net = rounded(amount / factor) if gross else amount
                tax = amount - net if gross else rounded(net * Decimal(rate) / 100)
                expected.append([plain(net), plain(tax), plain(net + tax)])
            self.add("in", self.write("lines.csv", "\n".join(rows) + "\n"), *(["--gross"] if gross else []))
            found = self.rows("Select 除税金额,税额,金额 From 入库记录")
            self.assertEqual(found[-200:], expected)

    def test_month_of_every_kind(self):
        """Closed with the cost bills, and compared with sums made here."""
        self.add("in", self.write("in.csv", "单据,日期,仓库,商品编号,数量,单价,税率\n"
                                  "A,2026-1-5,中心仓库,01001,6,412.5,13\nA,2026-1-5,中心仓库,02001,500,0.55,13\n"
                                  "B,2026-1-12,中心仓库,01001,3,405,13\nC,2026-1-12,门店,02002,40,0.3333,3\n"))
        self.add("transfer", self.write("move.csv", "单据,日期,调出仓库,调入仓库,商品编号,数量,单价\n"
                                        "T,2026-1-15,中心仓库,门店,01001,4,408\nT,2026-1-15,中心仓库,门店,02001,100,0.5\n"))
        self.add("out", self.write("out.csv", "单据,日期,仓库,商品编号,数量,单价,税率\n"
                                   "X,2026-1-16,中心仓库,01001,7,520,13\nX,2026-1-16,中心仓库,02001,300,0.8,13\n"
                                   "Y,2026-1-20,门店,01001,5,530,3\nY,2026-1-20,门店,02002,10,0.6,3\n"))
        self.add("out", "--red", "--date", "2026-1-22", "--warehouse", "门店", "--line", "商品=01001,数量=-1,单价=530")
        self.add("cost", self.write("cost.csv", "单据,日期,仓库,商品编号,数量,单价,金额\n"
                                    "K,2026-1-31,中心仓库,01001,11,405,\nK,2026-1-31,中心仓库,02001,400,,206.6667\n"
                                    "L,2026-1-31,门店,01001,4,409.25,\nL,2026-1-31,门店,02001,0.001,0,\nL,2026-1-31,门店,02002,10,0.3333,\n"))
        self.run_kpbook("close", self.book, "--month", "1", "--cost", "--answer", "yes")
        # Opening, in, out, closing: quantity and amount; costs of January are those of the cost bills.
        money = Decimal
        opening = {(1, 1): (10, money("4000")), (1, 2): (1000, money("500")), (2, 1): (2, money("820"))}
        inbound = {(1, 1): (9, money("3690")), (1, 2): (500, money("275")), (2, 3): (40, money("13.332")),
                   (2, 1): (4, money("1632")), (2, 2): (100, money("50"))}
        outbound = {(1, 1): (11, money("4455")), (1, 2): (400, money("206.6667")), (2, 1): (4, money("1637")),
                    (2, 2): (0, money("0")), (2, 3): (10, money("3.333"))}
        expected = []
        for place in sorted(set(opening) | set(inbound) | set(outbound)):
            parts = [part.get(place, (0, money(0))) for part in (opening, inbound, outbound)]
            closing = (parts[0][0] + parts[1][0] - parts[2][0], parts[0][1] + parts[1][1] - parts[2][1])
            expected.append([*place] + [x for q, a in (*parts, closing) for x in (float(q), plain(a))])
        self.assertEqual(self.rows("Select dpID,pdID,上期库存数量,上期库存金额,本期入库数量,本期入库金额,本期出库数量,本期出库金额,"
                                   "本期库存数量,本期库存金额 From 仓库余额表 Where 月份=1 Order by dpID,pdID"), expected)
        self.assertEqual(self.run_kpbook("check", self.book).stdout, "")


class CorrectionTest(BillCase):
    def setUp(self):
        super().setUp()
        self.line = ("--date", "2026-1-9", "--warehouse", "1", "--line")
        self.add("in", *self.line, "商品=1,数量=5,单价=400,税率=13", "--remarks", "<原>", "--partner", "杭州宏图")
        self.add("transfer", *self.line, "商品=1,数量=2,单价=400", "--to-warehouse", "门店")

    def test_edit(self):
        done = self.bill("edit", self.book, "in", "RK1-01-0001", "--partner", "宁波建材", "--date", "2026-01-10", "--remarks", "")
        self.assertEqual(done.stderr, "RK1-01-0001 (id 1): changed\n")
        self.assertEqual(self.rows("Select 日子,ksID,说明 From 入库目录 Where BillID=1"), [[10, 2, ""]])
        path = self.write("lines.csv", "商品编号,数量,单价,税率\n02002,7,2,3\n01001,1,400,13\n")
        self.bill("edit", self.book, "in", "id:1", "--lines", path)
        self.assertEqual(self.rows("Select pdID,数量,金额 From 入库记录 Where BillID=1"), [[3, 7.0, "14.42"], [1, 1.0, "452"]])
        done = self.bill("edit", self.book, "in", "DB1-01-0001", "--line", "商品=1,数量=3,单价=400")
        self.assertEqual(done.stderr, "DB1-01-0001 (id 2) and its other half (id 1): changed\n")
        self.assertEqual(self.rows("Select 数量 From 出库记录"), [[3.0]])
        self.bill("edit", self.book, "in", "1", "说明=自提", "类型=赊购", "单位=1")
        self.assertEqual(self.rows("Select 日子,ksID,单据类型,类型,说明 From 入库目录 Where BillID=1"), [[10, 1, "入库单", "赊购", "自提"]])
        self.assertIn("数量=3", self.bill("edit", self.book, "in", "1", "数量=3", code=2).stderr)
        self.assertIn("no date", self.bill("edit", self.book, "in", "1", "日期=2026-2-30", code=2).stderr)
        self.bill("edit", self.book, "in", "RK1-01-0001", code=2)
        self.assertIn("no inbound bill 99", self.bill("edit", self.book, "in", "99", "--remarks", "x", code=1).stderr)
        self.assertIn("'x' is no number",
                      self.bill("edit", self.book, "in", "1", "--line", "商品=1,数量=x", code=1).stderr)

    def test_remove(self):
        before = self.everything()
        done = self.bill("remove", self.book, "in", "RK1-01-0001", "--month", "2", code=1)
        self.assertIn("in month 2", done.stderr)
        self.assertEqual(self.everything(), before)
        self.assertEqual(self.bill("remove", self.book, "out", "DB1-01-0001").stderr,
                         "DB1-01-0001 (id 1) and its other half (id 2): removed\n")
        self.bill("remove", self.book, "in", "1")
        self.assertEqual(self.everything(), [[]] * 6)

    def test_removing_what_was_sold(self):
        self.add("out", *self.line, "商品=1,数量=12,单价=500")
        done = self.bill("remove", self.book, "in", "1", code=1)
        self.assertIn("bill RK1-01-0001: 01001 水泥 in 中心仓库: stock 1 on 2026-1-9, wanted 5", done.stderr)
        self.bill("remove", self.book, "in", "1", "--allow-negative")

    def test_audit(self):
        self.assertEqual(self.bill("audit", self.book, "in", "1", "--auditor", "O'Hara", "--date", "2026-1-31").stderr,
                         "RK1-01-0001 (id 1): audited by O'Hara\n")
        self.assertEqual(self.rows("Select 审核员,审核日期 From 入库目录 Where BillID=1"), [["O'Hara", "2026-01-31"]])
        for action in (["remove"], ["edit", "--remarks", "x"], ["audit", "--auditor", "x"]):
            done = self.bill(action[0], self.book, "in", "1", *action[1:], code=1)
            self.assertIn("it is audited by O'Hara", done.stderr)
        self.bill("audit", self.book, "in", "1", "--undo")
        self.call("Update_AccInfo", "财务主管", "王芳")
        self.assertIn("audited by 王芳", self.bill("audit", self.book, "in", "1").stderr)
        self.bill("audit", self.book, "in", "1", "--undo")
        self.add("cost", *self.line, "商品=1,数量=2,金额=801")
        self.assertIn("no auditor", self.bill("audit", self.book, "cost", "1", "--auditor", "x", code=1).stderr)
        self.bill("remove", self.book, "in", "1", "--allow-negative")

    def test_ambiguous_number(self):
        self.bill("edit", self.book, "in", "1", "--number", "2")
        done = self.bill("show", self.book, "in", "2", code=1)
        self.assertIn("id:1 (2026-1-9 入库单 2), id:2 (2026-1-9 调拨单 DB1-01-0001)", done.stderr)

    def test_show(self):
        shown = json.loads(self.bill("show", self.book, "in", "RK1-01-0001", "-O", "json").stdout)
        names = [column["name"] for column in shown["单据"]["columns"]]
        header = dict(zip(names, shown["单据"]["rows"][0]))
        self.assertEqual(header, {"BillID": "1", "单据编号": "RK1-01-0001", "日期": "2026-1-9", "仓库": "中心仓库",
                                  "供应商": "杭州宏图有限公司", "单据类型": "入库单", "说明": "<原>", "录入日期": "2026-1-20"})
        self.assertEqual(shown["明细"]["rows"], [["01001", "水泥", "425#", "吨", 5.0, "400", "2000", "260", "452", "2260"]])
        text = self.bill("show", self.book, "out", "DB1-01-0001").stdout
        self.assertRegex(text, "调出仓库 +中心仓库\n")
        self.assertRegex(text, "调入仓库 +门店\n")
        self.add("cost", *self.line, "商品=1,数量=2,金额=801")
        self.assertIn("400.5", self.bill("show", self.book, "cost", "1", "-O", "csv").stdout)

    def test_print(self):
        page = self.folder / "bill.html"
        self.bill("print", self.book, "in", "RK1-01-0001", "-o", page)
        html = page.read_text()
        for text in ("测试&lt;商行&gt;", "<h1>入库单</h1>", "<dt>供应商</dt><dd>杭州宏图有限公司</dd>", "<dd>&lt;原&gt;</dd>",
                     "<th>价税合计</th>", '<td class="n">2,260.00</td>', "（大写）：贰仟贰佰陆拾元整", "¥2,260.00"):
            self.assertIn(text, html)
        # Nothing is loaded from elsewhere.
        self.assertEqual(re.findall(r"(?:src|href)=|url\(|@import", html), [])
        self.assertIn("<h1>调拨单</h1>", self.bill("print", self.book, "in", "2").stdout)

    def test_pdf(self):
        pdf = self.folder / "bill.pdf"
        if shutil.which("chromium"):
            self.bill("print", self.book, "in", "1", "-o", pdf)
            self.assertTrue(pdf.read_bytes().startswith(b"%PDF-"))
        environment = {**os.environ, "PATH": str(self.folder)}
        run = lambda: subprocess.run([KPBOOK, "bill", "print", self.book, "in", "1", "-o", self.folder / "b.pdf"],
                                     env=environment, capture_output=True, timeout=60)
        done = run()
        self.assertEqual(done.returncode, 1)
        self.assertIn("a PDF needs Chromium", done.stderr.decode())
        browser = self.write("chromium", "#!/bin/sh\nexit 1\n")
        browser.chmod(browser.stat().st_mode | stat.S_IXUSR)
        done = run()
        self.assertEqual(done.returncode, 1)
        self.assertIn("did not make the PDF", done.stderr.decode())
        self.assertFalse((self.folder / "b.pdf").exists())


if __name__ == "__main__":
    unittest.main()
