"""-o: results take a file's place as a whole, and never that of a book. Full disks, interruptions and limits."""

import contextlib
import json
import os
import pathlib
import resource
import signal
import sqlite3
import stat
import subprocess
import threading
import time
import unittest
import xml.etree.ElementTree
import zipfile

from kpbook_case import KPBOOK, KpbookCase, TradingCase, needs_no_sanitizer

QUERY = "Select * From 商品设置"


class TargetTest(TradingCase):
    def refused(self, target):
        before = self.book.read_bytes()
        for arguments in (("info", self.book), ("sql", self.book, QUERY, "-O", "xlsx"), ("methods",)):
            done = self.run_kpbook(*arguments, "-o", target, code=2)
            self.assertIn("belongs to a book", done.stderr)
        self.assertEqual(self.book.read_bytes(), before)

    def test_the_book_itself(self):
        self.refused(self.book)
        link, hard = self.folder / "link", self.folder / "hard"
        link.symlink_to(self.book)
        os.link(self.book, hard)
        self.refused(link)
        self.refused(hard)
        (self.folder / "x").mkdir()
        self.refused(self.folder / "x" / ".." / self.book.name)

    def test_another_book(self):
        other = self.folder / "other.kpbook"
        self.run_kpbook("new", other)
        self.refused(other)

    def test_files_beside_a_book(self):
        for suffix in ("-wal", "-shm", "-journal"):
            target = pathlib.Path(str(self.book) + suffix)
            self.refused(target)
            link = self.folder / ("link" + suffix)
            link.symlink_to(target)
            self.refused(link)
            self.assertFalse(target.exists())

    def test_book_by_its_url(self):
        done = self.run_kpbook("info", self.book.as_uri(), "-o", self.book, code=2)
        self.assertIn("belongs to a book", done.stderr)

    def test_nothing_is_run(self):
        self.run_kpbook("sql", self.book, "Delete From 商品设置", "-o", self.book, code=2)
        self.assertEqual(self.rows("Select Count(*) As n From 商品设置"), [[3]])

    def test_any_other_file_is_replaced(self):
        target = self.write("out.csv", "old")
        target.chmod(0o640)
        link = self.folder / "link.csv"
        link.symlink_to(target)
        self.run_kpbook("sql", self.book, "Select dpID From 仓库设置 Order by dpID", "-O", "csv", "-o", link)
        self.assertEqual(target.read_text(), "dpID\n1\n2\n")
        self.assertEqual(stat.S_IMODE(target.stat().st_mode), 0o640)
        self.assertTrue(link.is_symlink())
        # A database that is no book may be replaced.
        database = self.folder / "x.db"
        with contextlib.closing(sqlite3.connect(database)) as connection:
            connection.execute("Create Table t (a)")
        self.run_kpbook("info", self.book, "-o", database)
        self.assertIn("information", database.read_text())

    def test_targets_that_are_no_files(self):
        self.run_kpbook("info", self.book, "-o", "/dev/null")
        self.run_kpbook("info", self.book, "-O", "xlsx", "-o", "/dev/null")
        fifo = self.folder / "fifo"
        os.mkfifo(fifo)
        for options, begin in (((), b"information"), (("-O", "xlsx"), b"PK")):
            got = []
            reader = threading.Thread(target=lambda: got.append(fifo.read_bytes()))
            reader.start()
            self.run_kpbook("info", self.book, *options, "-o", fifo)
            reader.join()
            self.assertTrue(got[0].startswith(begin), got)

    def left(self):
        """The files but those beside the book, which a killed program leaves to the next."""
        return sorted(path.name for path in self.folder.iterdir() if not path.name.endswith(("-wal", "-shm")))

    def test_failure_leaves_the_old_file(self):
        target = self.write("out.csv", "old")
        before = self.left()
        self.run_kpbook("sql", self.book, "Select 没有 From 商品设置", "-o", target, code=1)
        limited = subprocess.run(
            [KPBOOK, "sql", str(self.book), QUERY, "-o", str(target)], capture_output=True,
            preexec_fn=lambda: (signal.signal(signal.SIGXFSZ, signal.SIG_IGN),
                                resource.setrlimit(resource.RLIMIT_FSIZE, (100, 100))))
        self.assertEqual(limited.returncode, 1, limited.stderr)
        self.assertIn(b"cannot be written", limited.stderr)
        self.assertEqual(target.read_text(), "old")
        self.assertEqual(self.left(), before)

    def test_kill_leaves_the_old_file(self):
        target = self.write("out.csv", "old")
        before = self.left()
        cross = "Select A.pdID From 商品设置 As A,商品设置 As B,商品设置 As C"
        for wait in (0.01, 0.02, 0.03):
            process = subprocess.Popen([KPBOOK, "sql", str(self.book), cross, "-O", "csv", "-o", str(target)],
                                       stderr=subprocess.DEVNULL)
            time.sleep(wait)
            process.kill()
            process.wait()
            self.assertIn(target.read_text()[:4], ("old", "pdID"))
            self.assertEqual(self.left(), before)

    def test_full_device(self):
        for arguments in (("--help",), ("call", "--help"), ("--version",), ("info", self.book), ("methods",),
                          ("call", self.book, "Version")):
            with open("/dev/full", "wb") as full:
                done = subprocess.run([KPBOOK, *map(str, arguments)], stdout=full, stderr=subprocess.PIPE)
            self.assertEqual(done.returncode, 1, arguments)
            self.assertIn(b"cannot be written", done.stderr)
        self.run_kpbook("info", self.book, "-o", "/dev/full", code=1)

    def test_help_to_a_reader_that_has_gone(self):
        read, write = os.pipe()
        os.close(read)
        done = subprocess.run([KPBOOK, "--help"], stdout=write, stderr=subprocess.PIPE)
        os.close(write)
        self.assertEqual((done.returncode, done.stderr), (0, b""))


class FormatByNameTest(TradingCase):
    QUERY = "Select dpID,仓库名称 From 仓库设置 Order by dpID"

    def written(self, name, *options):
        target = self.folder / name
        done = self.run_kpbook("sql", self.book, self.QUERY, *options, "-o", target)
        self.assertEqual(done.stdout, "")
        return target.read_bytes()

    def test_the_name_picks_the_format(self):
        for name, begin in (("a.csv", b"dpID,"), ("a.CSV", b"dpID,"), ("a.json", b'{"columns"'), ("a.md", b"| dpID"),
                            ("a.xlsx", b"PK"), ("a.txt", b"dpID  "), ("a", b"dpID  ")):
            self.assertTrue(self.written(name).startswith(begin), name)
        self.assertTrue(self.written("b.txt", "-O", "csv").startswith(b"dpID,"))
        self.assertTrue(self.written("b.csv", "-O", "csv").startswith(b"dpID,"))

    def test_a_name_of_another_format_is_refused(self):
        for name, form in (("a.csv", "json"), ("a.xlsx", "csv"), ("a.md", "table")):
            target = self.folder / name
            done = self.run_kpbook("sql", self.book, self.QUERY, "-O", form, "-o", target, code=2)
            self.assertIn(f"-O says {form}", done.stderr)
            self.assertFalse(target.exists())


class WorkbookTest(TradingCase):
    SPACE = "{http://schemas.openxmlformats.org/spreadsheetml/2006/main}"

    def sheet(self, *arguments):
        """The sheet of a workbook that a command writes, as XML, and the sheet's name."""
        target = self.folder / "look.xlsx"
        self.run_kpbook(*arguments, "-o", target)
        with zipfile.ZipFile(target) as archive:
            names = xml.etree.ElementTree.fromstring(archive.read("xl/workbook.xml")).iter(self.SPACE + "sheet")
            self.styles = xml.etree.ElementTree.fromstring(archive.read("xl/styles.xml"))
            return (xml.etree.ElementTree.fromstring(archive.read("xl/worksheets/sheet1.xml")),
                    [sheet.get("name") for sheet in names])

    def look(self, cell):
        """The number format of a cell, and whether it is bold."""
        codes = {f.get("numFmtId"): f.get("formatCode") for f in self.styles.iter(self.SPACE + "numFmt")}
        codes["4"] = "#,##0.00"
        used = self.styles.find(self.SPACE + "cellXfs")[int(cell.get("s", 0))]
        font = self.styles.find(self.SPACE + "fonts")[int(used.get("fontId"))]
        return codes.get(used.get("numFmtId"), ""), font.find(self.SPACE + "b") is not None

    def test_look(self):
        self.sql("Update 入库记录 Set 除税金额=1234567.8901 Where 数量=4")
        sheet, names = self.sheet("report", "bills", self.book, "--direction", "in", "--raw")
        self.assertEqual(names, ["bills"])
        pane = next(sheet.iter(self.SPACE + "pane"))
        self.assertEqual((pane.get("ySplit"), pane.get("state")), ("1", "frozen"))
        rows = [[(cell.get("r")[0], "".join(cell.itertext()), *self.look(cell)) for cell in row]
                for row in sheet.iter(self.SPACE + "row")]
        self.assertEqual(len(rows), 4)
        self.assertTrue(all(bold for _, _, _, bold in rows[0]) and all(bold for _, _, _, bold in rows[-1]))
        self.assertFalse(any(bold for row in rows[1:3] for _, _, _, bold in row))
        # 1234567.8901 and 14 with all decimals, shown with two.
        money = [value for row in rows[1:] for _, value, pattern, _ in row if pattern == "#,##0.00" and value != "0"]
        self.assertEqual([float(value) for value in money], [1234567.8901, 14, 1234581.8901])

    def test_widths(self):
        self.sql("Update 仓库设置 Set 仓库名称='一二三四五六七八九十' Where dpID=1")
        sheet, names = self.sheet("sql", self.book, "Select dpID,仓库名称,结帐标志 From 仓库设置")
        self.assertEqual(names, ["sql"])
        # Ten characters, each two columns wide, and a margin of two; at least six and the margin.
        widths = [float(column.get("width")) for column in sheet.iter(self.SPACE + "col")]
        self.assertEqual([int(width) for width in widths], [8, 22, 10])

    def test_names_of_sheets(self):
        _, names = self.sheet("call", self.book, "rs余额记录", 1, 1)
        self.assertEqual(names, ["rs余额记录"])

    @needs_no_sanitizer
    def test_little_memory(self):
        target = self.folder / "out.xlsx"
        megabyte = 1 << 20
        refused = answered = 0
        # In less than its own size, the system cannot begin to load the program.
        for limit in range(os.path.getsize(KPBOOK), 160 * megabyte, 2 * megabyte):
            target.unlink(missing_ok=True)
            done = subprocess.run([KPBOOK, "sql", str(self.book), QUERY, "-O", "xlsx", "-o", str(target)],
                                  capture_output=True,
                                  preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_AS, (limit, limit)))
            if done.returncode == 0:
                self.assertIsNone(zipfile.ZipFile(target).testzip())
                answered += 1
            elif done.returncode != 127:
                self.assertEqual(done.returncode, 1, f"{limit}: {done}")
                self.assertIn(b"kpbook: ", done.stderr)
                self.assertFalse(target.exists())
                refused += 1
        self.assertGreater(refused, 0)
        self.assertGreater(answered, 0)


class EndingTest(KpbookCase):
    ENDLESS = "Select Count(*) As n From 商品设置 As A,商品设置 As B,商品设置 As C,商品设置 As D,商品设置 As E"

    def setUp(self):
        super().setUp()
        self.new_book()
        self.import_text("商品设置", "商品名称\n" + "水泥\n" * 500)

    def test_interrupt(self):
        for number in (signal.SIGINT, signal.SIGTERM):
            process = subprocess.Popen([KPBOOK, "sql", str(self.book), self.ENDLESS], stdout=subprocess.PIPE,
                                       stderr=subprocess.PIPE)
            time.sleep(0.5)
            process.send_signal(number)
            out, error = process.communicate(timeout=20)
            self.assertEqual(process.returncode, 128 + number)
            self.assertEqual(out, b"")
            self.assertIn(b"interrupted", error)

    def test_interrupt_of_a_batch_that_waits(self):
        process = subprocess.Popen([KPBOOK, "call", str(self.book), "--batch"], stdin=subprocess.PIPE,
                                   stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)
        for line in ({"begin": True}, {"execute": "Delete From 商品设置"}):
            process.stdin.write(json.dumps(line) + "\n")
            process.stdin.flush()
            self.assertNotIn("error", json.loads(process.stdout.readline()))
        process.send_signal(signal.SIGINT)
        self.assertEqual(process.wait(timeout=20), 130)
        self.assertIn("inside a transaction", process.stderr.read())
        for stream in (process.stdin, process.stdout, process.stderr):
            stream.close()
        self.assertEqual(self.rows("Select Count(*) As n From 商品设置"), [[500]])

    def test_timeout(self):
        done = self.run_kpbook("sql", self.book, self.ENDLESS, "--timeout", "0.5", code=1)
        self.assertIn("--timeout", done.stderr)
        self.run_kpbook("sql", self.book, "Select Count(*) As n From 商品设置", "--timeout", "20")

    def test_limits(self):
        self.run_kpbook("sql", self.book, QUERY, "--max-rows", "499", code=1)
        self.run_kpbook("sql", self.book, QUERY, "--max-rows", "500")
        self.run_kpbook("sql", self.book, "Select A.* From 商品设置 As A,商品设置 As B", "--max-memory", "1", code=1)
        self.run_kpbook("sql", self.book, QUERY, "--max-memory", "0", code=2)


class PasswordTest(KpbookCase):
    SECRET = "s3cret"

    def setUp(self):
        super().setUp()
        self.new_book()
        self.sql("Insert Into 操作员 (姓名,密码) Values ('甲','one')")
        self.sql("Insert Into 操作员 (姓名,密码) Values ('O''Hara','two')")

    def passwords(self):
        return self.rows("Select 密码 From 操作员 Order by ID")

    def test_from_a_pipe(self):
        done = self.run_kpbook("--trace", "operators", self.book, "set-password", "甲", text=self.SECRET + "\n")
        self.assertEqual(self.passwords(), [[self.SECRET], ["two"]])
        self.assertNotIn(self.SECRET, done.stderr + done.stdout)
        self.assertIn("密码='***'", done.stderr)
        self.run_kpbook("operators", self.book, "set-password", "O'Hara", text="it's\n")
        self.assertEqual(self.passwords(), [[self.SECRET], ["it's"]])

    def test_refused(self):
        for name, text in (("乙", "x\n"), ("甲", ""), ("甲", "\n"), ("x' or 'a'='a", "x\n")):
            self.run_kpbook("operators", self.book, "set-password", name, text=text, code=1)
        self.run_kpbook("operators", self.book, "set-password", code=2)
        self.run_kpbook("operators", self.book, "drop", "甲", code=2)
        self.assertEqual(self.passwords(), [["one"], ["two"]])

    def test_at_a_terminal(self):
        def at_terminal(typed):
            pid, terminal = os.forkpty()
            if pid == 0:
                os.execv(KPBOOK, [KPBOOK, "operators", str(self.book), "set-password", "甲"])
            shown = b""
            for word in typed:
                while not shown.rstrip().endswith(b":"):
                    shown += os.read(terminal, 1000)
                shown += b"\n"
                os.write(terminal, word.encode() + b"\n")
            with contextlib.suppress(OSError):
                while piece := os.read(terminal, 1000):
                    shown += piece
            os.close(terminal)
            return os.waitstatus_to_exitcode(os.waitpid(pid, 0)[1]), shown.decode()
        code, shown = at_terminal([self.SECRET, self.SECRET])
        self.assertEqual(code, 0, shown)
        self.assertNotIn(self.SECRET, shown)
        self.assertEqual(self.passwords(), [[self.SECRET], ["two"]])
        code, shown = at_terminal(["a", "b"])
        self.assertEqual(code, 1, shown)
        self.assertIn("differ", shown)

    def test_trace_and_errors(self):
        done = self.run_kpbook("--trace", "call", self.book, "Update_Password", "", self.SECRET, "1")
        self.assertIn("密码='***' Where ID=1", done.stderr)
        self.assertNotIn(self.SECRET, done.stderr)
        self.sql("Drop Table 操作员")
        done = self.run_kpbook("call", self.book, "Update_Password", "", self.SECRET, "1", code=1)
        self.assertIn("密码='***' Where ID=1", done.stderr)
        self.assertNotIn(self.SECRET, done.stderr)
        answer = self.call("Update_Password", "", self.SECRET, 1)
        self.assertIn(self.SECRET, answer["sent"][0]["text"])
        self.assertIn(self.SECRET, answer["failed"][0]["text"])


if __name__ == "__main__":
    unittest.main()
