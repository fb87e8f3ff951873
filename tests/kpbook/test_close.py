"""close: on a pipe, and on a terminal."""

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

    def test_month_12_makes_no_rows(self):
        self.import_text("仓库余额表", BALANCE_HEADER + "2004,12,1,1,5,10,50\n")
        self.assertEqual(self.close("--month", "12", "--warehouse", "1"), "东库 2004-12: 1 product closed\n")
        self.assertEqual(self.balance(1, 13), {})

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

    def test_closing_again_without_an_answer_changes_nothing(self):
        self.close("--month", "1", "--warehouse", "2")
        stderr = self.close("--month", "1", code=1)
        self.assertIn("month 2 of 西库 has 1 rows already; remove and make them anew?", stderr)
        self.assertEqual(self.balance(1, 1), UNTOUCHED)
        self.assertEqual(len(self.balance(2, 2)), 1)

    def test_closing_again_answered_with_yes(self):
        self.close("--month", "1")
        self.import_text("入库目录", "BillID,年份,月份,日子,dpID\n7,2004,1,30,1\n")
        self.import_text("入库记录", "BillID,pdID,dpID,数量,除税单价,除税金额\n7,2,1,100,0.5,50\n")
        self.close("--month", "1", "--answer", "yes")
        self.assertEqual(self.rows("Select dpID,Count(*) As n From 仓库余额表 Where 月份=2 Group by dpID Order by dpID"),
                         [[1, 2], [2, 1]])
        self.assertEqual(self.balance(1, 2)[2], [200.0, "75", 0.0, "0", 0.0, "0", 200.0, "75"])

    def test_closing_again_answered_with_no(self):
        self.close("--month", "1", "--warehouse", "2")
        self.sql("Update 仓库余额表 Set 上期库存金额=99 Where dpID=2 And 月份=1")
        stderr = self.close("--month", "1", "--answer", "no", code=1)
        self.assertIn("东库 2004-1: 2 products closed\n", stderr)
        self.assertIn("kpbook: 西库 2004-1: left as it was\n", stderr)
        self.assertEqual(self.balance(1, 2), FEBRUARY)
        self.assertEqual(self.balance(2, 1)[1], [3.0, "99", 0.0, "0", 0.0, "0", 3.0, "15"])

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
    def on_terminal(self, *arguments, answers=()):
        """Runs kpbook on a terminal of its own, types an answer at each question; gives what was shown and the exit code."""
        child, terminal = pty.fork()
        if child == 0:
            os.execv(KPBOOK, [KPBOOK, *map(str, arguments)])
        shown, pending = b"", list(answers)
        while select.select([terminal], [], [], 30)[0]:
            try:
                piece = os.read(terminal, 4096)
            except OSError:
                break
            if not piece:
                break
            shown += piece
            if shown.endswith(b"[y/n] ") and pending:
                os.write(terminal, pending.pop(0).encode() + b"\n")
        os.close(terminal)
        self.assertEqual(pending, [], "questions that were never asked")
        return shown.decode().replace("\r\n", "\n"), os.waitstatus_to_exitcode(os.waitpid(child, 0)[1])

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

    def test_closing_again_asks_for_each_warehouse(self):
        self.on_terminal("close", self.book, "--month", "1")
        shown, code = self.on_terminal("close", self.book, "--month", "1", answers=["y", "n"])
        self.assertEqual(code, 1)
        self.assertIn("month 2 of 东库 has 2 rows already; remove and make them anew? [y/n] ", shown)
        self.assertIn("month 2 of 西库 has 1 rows already; remove and make them anew? [y/n] ", shown)
        self.assertIn("东库 2004-1: 2 products closed\n", shown)
        self.assertIn("西库 2004-1: left as it was\n", shown)
        self.assertEqual(self.balance(1, 2), FEBRUARY)

    def test_call_draws_a_bar_too(self):
        shown, code = self.on_terminal("call", self.book, "Close_DepotBalance", "1", "1", "False", "null:", "progress:")
        self.assertEqual(code, 0)
        self.assertIn(f"[{'#' * 40}] 100%", shown)
        self.assertIn("True\n", shown)


if __name__ == "__main__":
    unittest.main()
