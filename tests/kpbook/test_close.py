"""close: on a pipe, and on a terminal."""

import contextlib
import json
import os
import pty
import select
import unittest

from kpbook_case import KPBOOK, BALANCE_HEADER, TradingCase

JANUARY = {1: [10.0, "50", 6.0, "38", 5.0, "40", 11.0, "48"], 2: [100.0, "25", 0.0, "0", 0.0, "0", 100.0, "25"]}
FEBRUARY = {1: [11.0, "48", 0.0, "0", 0.0, "0", 11.0, "48"], 2: [100.0, "25", 0.0, "0", 0.0, "0", 100.0, "25"]}
UNTOUCHED = {1: [10.0, "50", 0.0, "0", 0.0, "0", 0.0, "0"], 2: [100.0, "25", 0.0, "0", 0.0, "0", 0.0, "0"]}


class PipeTest(TradingCase):
    def close(self, *arguments, code=0):
        done = self.run_kpbook("close", self.book, *arguments, code=code)
        self.assertEqual(done.stdout, "")
        return done.stderr

    def test_every_warehouse(self):
        self.assertEqual(self.close("--month", "1"), "东库 2004-1: 2 products closed\n西库 2004-1: 1 product closed\n")
        self.assertEqual(self.balance(1, 1), JANUARY)
        self.assertEqual(self.balance(1, 2), FEBRUARY)
        self.assertEqual(self.balance(2, 2), {1: [3.0, "15", 0.0, "0", 0.0, "0", 3.0, "15"]})

    def test_one_warehouse(self):
        self.assertEqual(self.close("--month", "1", "--warehouse", "2"), "西库 2004-1: 1 product closed\n")
        self.assertEqual(self.balance(1, 1), UNTOUCHED)
        self.assertEqual(self.balance(1, 2), {})

    def test_date(self):
        self.close("--month", "1", "--warehouse", "1", "--date", "2004-02-02")
        self.assertEqual(self.rows("Select Distinct 备注 From 仓库余额表 Where 月份=2"), [["2004-2-2"]])

    def test_date_is_today(self):
        self.close("--month", "1", "--warehouse", "1", "--today", "2004-02-03")
        self.assertEqual(self.rows("Select Distinct 备注 From 仓库余额表 Where 月份=2"), [["2004-2-3"]])

    def test_cost(self):
        self.import_text("成本目录", "CostID,年份,月份,dpID\n1,2004,1,1\n")
        self.import_text("成本记录", "CostID,pdID,单价,数量,金额\n1,1,6,5,30\n")
        self.close("--month", "1", "--warehouse", "1", "--cost")
        # The amount is the cost bill's; price and quantity stay the outbound bill's. 50 + 38 - 30 = 58.
        self.assertEqual(self.balance(1, 1)[1], [10.0, "50", 6.0, "38", 5.0, "30", 11.0, "58"])
        self.assertEqual(self.rows("Select 本期出库单价 From 仓库余额表 Where dpID=1 And 月份=1 And pdID=1"), [[8.0]])

    def test_a_forgotten_cost_is_told(self):
        self.import_text("成本目录", "CostID,年份,月份,dpID\n1,2004,1,1\n")
        self.import_text("成本记录", "CostID,pdID,单价,数量,金额\n1,1,6,5,30\n")
        told = "the months before were closed at cost"
        self.assertNotIn(told, self.close("--month", "1", "--warehouse", "1", "--cost"))
        self.assertIn(told, self.close("--month", "2", "--warehouse", "1"))
        for choice in ("--cost", "--no-cost"):
            self.assertNotIn(told, self.close("--month", "2", "--warehouse", "1", "--again", choice))
        self.run_kpbook("call", self.book, "Update_Option", "出库计价", "出库")
        self.assertNotIn(told, self.close("--month", "3", "--warehouse", "1"))

    def test_month_12_makes_no_rows(self):
        for table in ("仓库余额表", "入库目录", "出库目录"):
            self.sql(f"Update {table} Set 月份=12 Where dpID=1")
        self.assertEqual(self.close("--month", "12", "--warehouse", "1"), "东库 2004-12: 2 products closed\n")
        self.assertEqual(self.balance(1, 12), JANUARY)
        self.assertEqual(self.balance(1, 13), {})
        self.assertEqual(self.flag(1), [True, "2004-12-31"])

    def test_nothing_to_close(self):
        self.assertEqual(self.close("--month", "5"), "东库: no balance rows of month 5, nothing to close\n"
                                                     "西库: no balance rows of month 5, nothing to close\n")

    def test_unknown_warehouse(self):
        self.assertEqual(self.close("--month", "1", "--warehouse", "9", code=1), "kpbook: the book has no warehouse 9\n")

    def test_no_warehouses(self):
        self.sql("Delete From 仓库设置")
        self.assertEqual(self.close("--month", "1", code=1), "kpbook: the book has no warehouses\n")

    def test_question_without_an_answer_changes_nothing(self):
        self.add_line_without_balance()
        stderr = self.close("--month", "1", code=1)
        self.assertIn("入库记录中，有仓库余额表中没有的记录：1,是否修正？", stderr)
        self.assertIn("--answer", stderr)
        self.assertEqual(self.balance(1, 1), UNTOUCHED)
        self.assertEqual(self.rows("Select Count(*) As n From 仓库余额表"), [[3]])

    def test_question_answered_with_yes(self):
        self.add_line_without_balance()
        stderr = self.close("--month", "1", "--warehouse", "1", "--answer", "yes")
        self.assertIn("检查入库记录: 入库记录中，有仓库余额表中没有的记录：1,是否修正？ yes\n", stderr)
        self.assertIn("东库 2004-1: 3 products closed\n", stderr)
        self.assertEqual(self.balance(1, 1)[3], [0.0, "0", 1.0, "9", 0.0, "0", 1.0, "9"])

    def test_question_answered_with_no(self):
        self.add_line_without_balance()
        self.assertIn("东库 2004-1: 2 products closed\n", self.close("--month", "1", "--answer", "no"))
        self.assertEqual(self.balance(1, 2), FEBRUARY)

    def flag(self, warehouse):
        return self.rows(f"Select 结帐标志,结帐日期 From 仓库设置 Where dpID={warehouse}")[0]

    def everything(self):
        """Every balance row and every warehouse."""
        return (self.rows("Select * From 仓库余额表 Order by dpID,月份,pdID"),
                self.rows("Select * From 仓库设置 Order by dpID"))

    def late_bill(self, month=1, number=7):
        """100 bolts (2) come in at 0.5."""
        self.sql(f"Insert Into 入库目录 (BillID,年份,月份,日子,dpID) Values ({number},2004,{month},28,1)")
        self.sql(f"Insert Into 入库记录 (BillID,pdID,dpID,数量,除税单价,除税金额) Values ({number},2,1,100,0.5,50)")

    def test_warehouse_is_marked(self):
        self.close("--month", "1", "--warehouse", "1")
        self.assertEqual(self.flag(1), [True, "2004-01-31"])
        self.assertEqual(self.flag(2)[0], False)
        self.close("--month", "2", "--warehouse", "1", "--sql")
        self.assertEqual(self.flag(1), [True, "2004-02-29"])

    def test_closed_month_is_refused(self):
        self.close("--month", "1", "--warehouse", "2")
        before = self.everything()
        self.assertEqual(self.close("--month", "1", "--warehouse", "2", "--answer", "yes", code=1),
                         "kpbook: 西库 2004-1: closed already; --again closes it again\n")
        self.assertEqual(self.everything(), before)
        # The other warehouse is not held up.
        self.assertEqual(self.close("--month", "1", code=1),
                         "东库 2004-1: 2 products closed\nkpbook: 西库 2004-1: closed already; --again closes it again\n")

    def test_closed_by_another_host(self):
        self.call("Close_DepotBalance", 1, 1, False, {"date": "2004-01-31"})
        self.assertIn("closed already", self.close("--month", "1", "--warehouse", "1", code=1))
        self.assertEqual(self.close("--month", "2", "--warehouse", "1"), "东库 2004-2: 2 products closed\n")

    def test_month_after_an_open_one_is_refused(self):
        before = self.everything()
        self.assertEqual(self.close("--month", "2", "--warehouse", "1", code=1),
                         "kpbook: 东库 month 2: not closed: month 1 is open; close that first\n")
        self.sql("Delete From 仓库余额表 Where dpID=1")
        # Its bills alone keep January open.
        self.assertIn("month 1 is open", self.close("--month", "2", "--warehouse", "1", code=1))
        self.assertEqual(self.everything()[0], [row for row in before[0] if row[3] == 2])

    def test_closing_again(self):
        self.close("--month", "1", "--date", "2004-1-31")
        first = self.everything()
        self.close("--month", "1", "--again", "--date", "2004-1-31")
        self.assertEqual(self.everything(), first)
        self.late_bill()
        self.assertEqual(self.close("--month", "1", "--again"),
                         "东库 2004-1: 2 products closed\n西库 2004-1: 1 product closed\n")
        self.assertEqual(self.rows("Select dpID,Count(*) As n From 仓库余额表 Where 月份=2 Group by dpID Order by dpID"),
                         [[1, 2], [2, 1]])
        self.assertEqual(self.balance(1, 2)[2], [200.0, "75", 0.0, "0", 0.0, "0", 200.0, "75"])

    def test_closing_again_without_a_bill(self):
        self.late_bill()
        self.close("--month", "1", "--warehouse", "1")
        self.assertEqual(self.balance(1, 1)[2], [100.0, "25", 100.0, "50", 0.0, "0", 200.0, "75"])
        self.call("Del_单据", 7, "入库")
        self.close("--month", "1", "--warehouse", "1", "--again")
        self.assertEqual((self.balance(1, 1), self.balance(1, 2)), (JANUARY, FEBRUARY))

    def test_later_months_become_stale(self):
        for month in (1, 2, 3):
            self.close("--month", month, "--warehouse", "1", "--date", "2004-3-31")
        before = self.everything()
        self.late_bill()
        self.assertEqual(self.close("--month", "1", "--warehouse", "1", "--again", code=1),
                         "kpbook: 东库 month 1: not closed: it is closed through month 3, and the later months would become "
                         "stale; --through 3 closes them again too\n")
        self.assertIn("--through 3", self.close("--month", "1", "--warehouse", "1", "--again", "--through", "2", code=1))
        self.assertEqual(self.everything(), before)
        self.assertEqual(self.close("--month", "1", "--warehouse", "1", "--again", "--through", "3", "--date", "2004-3-31"),
                         "".join(f"东库 2004-{month}: 2 products closed\n" for month in (1, 2, 3)))
        self.assertEqual(self.balance(1, 4)[2], [200.0, "75", 0.0, "0", 0.0, "0", 200.0, "75"])
        self.assertEqual(self.rows("Select 月份,累计入库数量,累计入库金额 From 仓库余额表 Where dpID=1 And pdID=2 Order by 月份"),
                         [[1, 100.0, "50"], [2, 100.0, "50"], [3, 100.0, "50"], [4, 0.0, "0"]])
        self.assertEqual(self.flag(1), [True, "2004-03-31"])

    def test_open_months_in_a_row(self):
        self.assertEqual(self.close("--month", "1", "--warehouse", "2", "--through", "3"),
                         "".join(f"西库 2004-{month}: 1 product closed\n" for month in (1, 2, 3)))
        self.assertEqual(self.balance(2, 4), {1: [3.0, "15", 0.0, "0", 0.0, "0", 3.0, "15"]})

    def test_chain_that_fails_changes_nothing(self):
        self.import_text("仓库余额表", BALANCE_HEADER + "2004,2,3,1,9,1,9\n")
        self.sql("Update 仓库余额表 Set 上期库存金额=Null Where dpID=1 And 月份=2")
        before = self.everything()
        self.assertIn("东库 2004-2: not closed: 1 of its rows have no 上期库存金额",
                      self.close("--month", "1", "--warehouse", "1", "--through", "2", code=1))
        self.assertEqual(self.everything(), before)

    def test_reclosing_that_fails_changes_nothing(self):
        self.close("--month", "1")
        self.sql("Update 仓库余额表 Set 上期库存金额=Null Where dpID=1 And 月份=1 And pdID=2")
        before = self.everything()
        stderr = self.close("--month", "1", "--again", code=1)
        self.assertIn("kpbook: 东库 2004-1: not closed: 1 of its rows have no 上期库存金额\n", stderr)
        self.assertIn("西库 2004-1: 1 product closed\n", stderr)
        after = self.everything()
        self.assertEqual([row for row in after[0] if row[3] == 1], [row for row in before[0] if row[3] == 1])
        self.assertEqual(after[1], before[1])

    def test_opening_stock_entered_by_hand_stays(self):
        self.import_text("仓库余额表", BALANCE_HEADER + "2004,2,3,1,9,2,18\n")
        self.close("--month", "1", "--warehouse", "1")
        self.close("--month", "1", "--warehouse", "1", "--again")
        self.assertEqual(self.balance(1, 2), {**FEBRUARY, 3: [2.0, "18", 0.0, "0", 0.0, "0", 0.0, "0"]})

    def test_rows_of_the_next_month_are_asked_about(self):
        self.import_text("仓库余额表", BALANCE_HEADER + "2004,2,1,1,5,99,50\n")
        before = self.everything()
        question = "month 2 of 东库 has 1 rows already; remove and make them anew?"
        self.assertIn(question, self.close("--month", "1", code=1))
        self.assertEqual(self.everything(), before)
        stderr = self.close("--month", "1", "--answer", "no", code=1)
        self.assertIn("kpbook: 东库 2004-1: left as it was\n", stderr)
        self.assertIn("西库 2004-1: 1 product closed\n", stderr)
        self.close("--month", "1", "--warehouse", "1", "--answer", "yes")
        self.assertEqual(self.balance(1, 2), FEBRUARY)

    def test_product_known_in_another_warehouse(self):
        # Bolts (2) have a row in 东库 only.
        self.sql("Insert Into 入库目录 (BillID,年份,月份,日子,dpID) Values (9,2004,1,28,2)")
        self.sql("Insert Into 入库记录 (BillID,pdID,dpID,数量,除税单价,除税金额) Values (9,2,2,10,0.5,5)")
        before = self.everything()
        self.assertIn("检查入库记录 (西库): 入库记录中，有仓库余额表中没有的记录：1,是否修正？", self.close("--month", "1", code=1))
        self.assertEqual(self.everything(), before)
        self.assertIn("kpbook: 西库: 1 product on bills without a balance row left out\n",
                      self.close("--month", "1", "--warehouse", "2", "--answer", "no"))
        self.close("--month", "1", "--warehouse", "2", "--again", "--answer", "yes")
        self.assertEqual(self.balance(2, 1)[2], [0.0, "0", 10.0, "5", 0.0, "0", 10.0, "5"])

    def test_book_without_balance_rows(self):
        self.sql("Delete From 仓库余额表")
        self.assertEqual(self.close("--month", "1", "--answer", "yes").splitlines()[-2:],
                         ["东库 2004-1: 1 product closed", "西库: no balance rows of month 1, nothing to close"])
        self.assertEqual(self.balance(1, 2), {1: [1.0, "-2", 0.0, "0", 0.0, "0", 1.0, "-2"]})

    def test_dry_run(self):
        before = self.everything()
        done = self.run_kpbook("close", self.book, "--month", "1", "--warehouse", "1", "--dry-run", "-O", "json")
        self.assertIn("东库 2004-1: 2 products would be closed\n", done.stderr)
        self.assertEqual(self.everything(), before)
        table = json.loads(done.stdout)
        self.assertEqual([column["name"] for column in table["columns"]],
                         ["仓库", "年份", "月份", "pdID", "商品", "column", "before", "after"])
        changes = {(row[2], row[3], row[5]): row[6:] for row in table["rows"]}
        self.assertEqual(changes[1, 1, "本期库存金额"], ["0", "48"])
        self.assertEqual(changes[2, 1, "上期库存金额"], [None, "48"])
        self.assertEqual(changes[None, None, "结帐标志"], ["False", "True"])
        self.assertNotIn((1, 2, "本期入库数量"), changes)
        self.close("--month", "1", "--warehouse", "1")
        shown = self.run_kpbook("close", self.book, "--month", "1", "--warehouse", "1", "--again", "--dry-run").stdout
        self.assertNotIn("水泥", shown)  # closing again changes nothing

    def test_reopening(self):
        for month in (1, 2):
            self.close("--month", month, "--date", "2004-2-29")
        closed = self.everything()
        done = self.run_kpbook("reopen", self.book, "--month", "1", "--warehouse", "1", code=1)
        self.assertEqual(done.stderr, "kpbook: 东库 month 1: not reopened: month 2 is closed; reopen that first\n")
        self.assertEqual(self.everything(), closed)
        done = self.run_kpbook("reopen", self.book, "--month", "2", "--warehouse", "1")
        self.assertEqual(done.stderr, "东库 2004-2: reopened\n")
        self.assertEqual(self.balance(1, 2), FEBRUARY)
        self.assertEqual(self.balance(1, 3), {})
        self.assertEqual(self.flag(1), [True, "2004-01-31"])
        self.run_kpbook("reopen", self.book, "--month", "1", "--warehouse", "1")
        self.assertEqual(self.flag(1), [False, "2003-12-31"])
        self.assertEqual(self.run_kpbook("reopen", self.book, "--month", "1", "--warehouse", "1", code=1).stderr,
                         "东库 2004-1: not closed, nothing to reopen\n")
        for month in (1, 2):
            self.close("--month", month, "--warehouse", "1", "--date", "2004-2-29")
        self.assertEqual(self.everything(), closed)

    def test_bills_of_closed_months_are_not_imported(self):
        self.close("--month", "1", "--warehouse", "1")
        header = "BillID,年份,月份,日子,dpID\n"
        done = self.import_text("入库目录", header + "11,2004,2,1,1\n12,2004,1,30,1\n13,2004,1,30,2\n", code=1)
        self.assertIn("line 3: month 1 of 东库 is closed\n", done.stderr)
        self.assertIn("1 bad row, nothing was imported", done.stderr)
        self.import_text("入库目录", header + "11,2004,2,1,1\n13,2004,1,30,2\n")
        lines = "BillID,pdID,dpID,数量,除税单价,除税金额\n"
        done = self.import_text("入库记录", lines + "11,1,1,1,1,1\n2,1,1,1,1,1\n", code=1)
        self.assertIn("line 3: month 1 of 东库 is closed\n", done.stderr)
        self.import_text("入库记录", lines + "11,1,1,1,1,1\n13,1,2,1,1,1\n")
        self.run_kpbook("reopen", self.book, "--month", "1", "--warehouse", "1")
        self.import_text("入库记录", lines + "2,1,1,1,1,1\n")

    def test_closing_that_fails(self):
        self.sql("Update 仓库余额表 Set 上期库存金额=Null Where dpID=1 And pdID=2")
        stderr = self.close("--month", "1", code=1)
        self.assertIn("kpbook: 东库 2004-1: not closed: 1 of its rows have no 上期库存金额\n", stderr)
        self.assertIn("西库 2004-1: 1 product closed\n", stderr)
        self.assertEqual(self.balance(1, 2), {})

    def test_closing_that_the_database_refuses(self):
        self.sql("Drop Table 出库记录")
        stderr = self.close("--month", "1", code=1)
        self.assertTrue(stderr.startswith("kpbook: "), stderr)
        self.assertIn("出库记录", stderr)
        self.assertEqual(self.balance(1, 1), UNTOUCHED)


class TerminalTest(TradingCase):
    def test_progress_bar(self):
        shown, code = self.on_terminal("close", self.book, "--month", "1")
        self.assertEqual(code, 0)
        # Two rows: 25, 50, 75 and 100 percent of a bar of 40.
        for filled, percent in ((0, 0), (10, 25), (20, 50), (30, 75), (40, 100)):
            self.assertIn(f"\r东库 2004-1 [{'#' * filled}{'-' * (40 - filled)}] {percent:3d}%", shown)
        self.assertIn("\n东库 2004-1: 2 products closed\n", shown)
        self.assertIn("\n西库 2004-1: 1 product closed\n", shown)
        self.assertEqual(self.balance(1, 2), FEBRUARY)

    def test_question(self):
        self.add_line_without_balance()
        shown, code = self.on_terminal("close", self.book, "--month", "1", answers=["y"])
        self.assertEqual(code, 0)
        self.assertIn("检查入库记录: 入库记录中，有仓库余额表中没有的记录：1,是否修正？ [y/n] ", shown)
        self.assertIn("东库 2004-1: 3 products closed\n", shown)

    def test_question_answered_with_no(self):
        self.add_line_without_balance()
        shown, code = self.on_terminal("close", self.book, "--month", "1", answers=["n"])
        self.assertEqual(code, 0)
        self.assertIn("东库 2004-1: 2 products closed\n", shown)

    def test_other_answers_are_asked_again(self):
        self.add_line_without_balance()
        shown, code = self.on_terminal("close", self.book, "--month", "1", answers=["maybe", "", "yes"])
        self.assertEqual(code, 0)
        self.assertEqual(shown.count("[y/n]"), 3)
        self.assertIn("东库 2004-1: 3 products closed\n", shown)

    def test_end_of_input_is_no_answer(self):
        self.add_line_without_balance()
        child, terminal = pty.fork()
        if child == 0:
            os.execv(KPBOOK, [KPBOOK, "close", str(self.book), "--month", "1"])
        shown = b""
        while b"[y/n]" not in shown:
            shown += os.read(terminal, 4096)
        os.write(terminal, b"\x04")
        while True:
            try:
                piece = os.read(terminal, 4096)
            except OSError:
                break
            if not piece:
                break
            shown += piece
        os.close(terminal)
        self.assertEqual(os.waitstatus_to_exitcode(os.waitpid(child, 0)[1]), 1)
        self.assertEqual(self.balance(1, 1), UNTOUCHED)

    def test_given_answer_is_not_asked_for(self):
        self.add_line_without_balance()
        shown, code = self.on_terminal("close", self.book, "--month", "1", "--answer", "no")
        self.assertEqual(code, 0)
        self.assertNotIn("[y/n]", shown)

    def test_rows_of_the_next_month_are_asked_about(self):
        self.import_text("仓库余额表", BALANCE_HEADER + "2004,2,1,1,5,99,50\n")
        shown, code = self.on_terminal("close", self.book, "--month", "1", answers=["n"])
        self.assertEqual(code, 1)
        self.assertIn("month 2 of 东库 has 1 rows already; remove and make them anew? [y/n] ", shown)
        self.assertIn("东库 2004-1: left as it was\n", shown)
        shown, code = self.on_terminal("close", self.book, "--month", "1", "--warehouse", "1", answers=["y"])
        self.assertEqual(code, 0)
        self.assertIn("东库 2004-1: 2 products closed\n", shown)
        self.assertEqual(self.balance(1, 2), FEBRUARY)

    def test_other_programs_write_while_a_question_waits(self):
        self.add_line_without_balance()
        with self.asking("close", self.book, "--month", "1") as answer:
            # A second product without a row comes in: the question is another one by then.
            self.import_text("商品设置", "pdID,商品名称\n4,砂子\n")
            self.import_text("入库记录", "BillID,pdID,dpID,数量,除税单价,除税金额\n2,4,1,1,3,3\n")
            shown = answer("y")
            self.assertIn("：2,是否修正？ [y/n] ", shown)
            self.assertIn("东库 2004-1: 4 products closed\n", answer("y"))

    @contextlib.contextmanager
    def asking(self, *arguments):
        """kpbook on a terminal, waiting at its first question; gives what types an answer and tells what is shown then."""
        child, terminal = pty.fork()
        if child == 0:
            os.execv(KPBOOK, [KPBOOK, *map(str, arguments)])

        def until_it_waits():
            shown = b""
            while not shown.endswith(b"[y/n] ") and select.select([terminal], [], [], 30)[0]:
                try:
                    piece = os.read(terminal, 4096)
                except OSError:
                    break
                if not piece:
                    break
                shown += piece
            return shown.decode().replace("\r\n", "\n")

        def answer(text):
            os.write(terminal, text.encode() + b"\n")
            return until_it_waits()

        until_it_waits()
        yield answer
        os.close(terminal)
        self.assertEqual(os.waitstatus_to_exitcode(os.waitpid(child, 0)[1]), 0)

    def test_call_draws_a_bar_too(self):
        shown, code = self.on_terminal("call", self.book, "Close_DepotBalance", "1", "1", "False", "null:", "progress:")
        self.assertEqual(code, 0)
        self.assertIn(f"[{'#' * 40}] 100%", shown)
        self.assertIn("True\n", shown)


if __name__ == "__main__":
    unittest.main()
