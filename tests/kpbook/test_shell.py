"""The shell: without a terminal, and at one with editing, history, completion and Ctrl-C."""

import os
import pty
import select
import signal
import stat
import termios
import time
import unittest

from kpbook_case import KPBOOK, TradingCase


class PipedTest(TradingCase):
    def shell(self, text, *options, code=0):
        return self.run_kpbook("shell", self.book, *options, text=text, code=code)

    def test_statements_and_modes(self):
        done = self.shell("Select pdID,\n  商品名称 From 商品设置\nWhere pdID<3 Order by pdID; Select 1 As a;\n"
                          ".mode csv\nSelect 商品名称 From 商品设置 Where pdID=3;\n-- a comment\n.mode json\nSelect 'x;y' As t")
        self.assertEqual(done.stdout, 'pdID  商品名称\n----  --------\n   1  水泥\n   2  螺栓\na\n-\n1\n商品名称\n油漆\n'
                                      '{"columns":[{"name":"t","type":"String"}],"rows":[\n["x;y"]\n]}\n')

    def test_tables_and_schema(self):
        done = self.shell(".mode csv\n.schema 仓库设置\n.tables\n")
        self.assertIn("table,column,type,key,default\n仓库设置,dpID,Long,counter,\n仓库设置,仓库名称,String,,\n", done.stdout)
        self.assertIn("\n商品设置,", done.stdout)

    def test_errors_keep_it_going(self):
        done = self.shell("Select 1;\n\nSelect x;\n.schema 仓库设定\n.begun\n.commit\n.mode xlsx\n.call 'Get\nSelect 2 As b;\n", code=1)
        self.assertRegex(done.stderr, r"unknown column 'x' \(line 3, column 8\)")
        self.assertIn("there is no table 仓库设定; did you mean 仓库设置?", done.stderr)
        self.assertIn("there is no command .begun; did you mean .begin?", done.stderr)
        self.assertIn(".mode takes table, csv, json or markdown", done.stderr)
        self.assertIn("quote in the line is not closed", done.stderr)
        self.assertEqual(done.stderr.count("unknown column"), 1)
        self.assertTrue(done.stdout.endswith("b\n-\n2\n"))

    def test_calls(self):
        done = self.shell('.call Get单据金额 1 入库\n.dialect sql\n.call isSQL\n.call Get单据金额 1 "\'"\n', code=1)
        self.assertEqual(done.stdout, "24\nTrue\n")
        self.assertIn("a quote in it must be doubled", done.stderr)
        # A method that traps an error answers; the statement that failed is told all the same.
        self.run_kpbook("sql", self.book, "Drop Table 操作员")
        done = self.shell(".call Clear_Password 1\nSelect 5 As n;\n", code=1)
        self.assertIn("a statement failed", done.stderr)
        self.assertIn("n\n-\n5\n", done.stdout)

    def test_transactions(self):
        done = self.shell(".begin\nDelete From 商品设置;\n.rollback\nSelect Count(*) As n From 商品设置;\n.begin\n"
                          "Delete From 商品设置 Where pdID=1;\n.commit\n.begin\nDelete From 商品设置;\n.quit\nSelect 9;\n", code=1)
        self.assertIn("ended inside a transaction, which is rolled back", done.stderr)
        self.assertEqual(done.stdout, "n\n-\n3\n")
        self.assertEqual(self.rows("Select pdID From 商品设置 Order by pdID"), [[2], [3]])

    def test_usage(self):
        self.assertIn("do not go with it", self.shell("", "-o", self.folder / "x", code=2).stderr)

    def test_a_last_statement_without_its_semicolon_runs(self):
        self.assertEqual(self.shell(".mode csv\nSelect 1 As a\n /* not; yet */ , 2 As b").stdout, "a,b\n1,2\n")


class Terminal:
    """kpbook at a terminal of its own."""

    def __init__(self, folder, *arguments):
        self.child, self.tty = pty.fork()
        if self.child == 0:
            os.environ.update(TERM="xterm", XDG_STATE_HOME=str(folder / "state"), LC_ALL="C.UTF-8", NO_COLOR="1")
            os.execv(KPBOOK, [KPBOOK, *map(str, arguments)])
        self.shown = ""

    def wait(self, text):
        """Reads until text is shown, and answers with what was shown since the last wait."""
        end = time.monotonic() + 20
        while text not in self.shown:
            if time.monotonic() > end or not select.select([self.tty], [], [], 1)[0]:
                if time.monotonic() > end:
                    raise AssertionError(f"{text!r} was not shown: {self.shown!r}")
                continue
            self.shown += os.read(self.tty, 65536).decode(errors="replace")
        # What is typed before the line editor has the terminal is edited by the system.
        while text.endswith("> ") and termios.tcgetattr(self.tty)[3] & termios.ICANON:
            if time.monotonic() > end:
                raise AssertionError(f"nobody reads the keys after {text!r}: {self.shown!r}")
            time.sleep(0.01)
        before, _, self.shown = self.shown.partition(text)
        return before + text

    def type(self, text):
        os.write(self.tty, text.encode())

    def end(self):
        """Reads to the end; the exit code and what was shown."""
        try:
            while data := os.read(self.tty, 65536):
                self.shown += data.decode(errors="replace")
        except OSError:
            pass
        return os.waitstatus_to_exitcode(os.waitpid(self.child, 0)[1]), self.shown


class TerminalTest(TradingCase):
    def start(self):
        terminal = Terminal(self.folder, "shell", self.book)
        terminal.wait("kpbook> ")
        return terminal

    def test_lines_completion_and_history(self):
        at = self.start()
        at.type("Select 商品名称\r")
        at.wait("   ...> ")
        at.type("From 商品设\t Where pdID=1;\r")
        self.assertIn("水泥", at.wait("1 row"))
        at.wait("kpbook> ")
        at.type(".sch\t 仓库设\t\r")
        self.assertIn("结帐标志", at.wait("rows"))
        at.wait("kpbook> ")
        # Chinese characters take two columns and are erased whole.
        at.type("Select '水泥甲\x7f' As 名;\r")
        shown = at.wait("1 row")
        self.assertRegex(shown, "(?m)^水泥\\s*$")
        at.wait("kpbook> ")
        at.type("Update 操作员 Set 密码='secret' Where 姓名='x';\r")
        at.wait("row")
        at.wait("kpbook> ")
        at.type("\x04")
        self.assertEqual(at.end()[0], 0)
        history = self.folder / "state" / "kpbook" / "history"
        self.assertEqual(stat.S_IMODE(history.stat().st_mode), 0o600)
        self.assertEqual(history.read_text(), "Select 商品名称 From 商品设置 Where pdID=1;\n.schema 仓库设置\nSelect '水泥' As 名;\n")
        at = self.start()
        at.type("\x1b[A\x1b[A\x1b[A\r")
        self.assertRegex(at.wait("1 row"), "(?m)^水泥\\s*$")
        at.type(".quit\r")
        self.assertEqual(at.end()[0], 0)

    def test_completion_lists_what_there_is(self):
        at = self.start()
        at.type("Select B. From 入库目录 As B;\r")
        at.wait("kpbook: ")
        at.wait("kpbook> ")
        at.type("Select * From 商品\t")
        self.assertIn("商品分类", at.wait("商品设置"))
        at.type("\x03")
        at.wait("kpbook> ")
        at.type(".call Close_\t")
        at.wait("DepotBalance")
        at.type("\x03")
        at.wait("kpbook> ")
        at.type(".quit\r")
        self.assertEqual(at.end()[0], 0)

    def test_interruptions(self):
        at = self.start()
        at.type("Select 1\r")
        at.wait("   ...> ")
        at.type("\x03")
        at.wait("kpbook> ")
        at.type("Select 7 As n;\r")
        at.wait("1 row")
        at.wait("kpbook> ")
        # A statement that would take years.
        joins = ",".join(f"商品设置 As t{i}" for i in range(60))
        at.type(f"Select Count(*) As n From {joins};\r")
        time.sleep(1)
        at.type("\x03")
        at.wait("kpbook> ")
        at.type("Select 8 As n;\r")
        at.wait("1 row")
        at.wait("kpbook> ")
        at.type(".begin\r")
        at.wait("kpbook> ")
        at.type("Delete From 商品设置;\r")
        at.wait("3 rows changed")
        os.kill(at.child, signal.SIGTERM)
        code, shown = at.end()
        self.assertEqual(code, 143)
        self.assertIn("rolled back", shown)
        self.assertEqual(self.rows("Select Count(*) From 商品设置"), [[3]])


if __name__ == "__main__":
    unittest.main()
