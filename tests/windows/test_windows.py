#!/usr/bin/env python3
"""kpbook.exe under Wine: a firm's month as on Linux, to the byte; Chinese paths and words; books that travel; streams and the
console. KPBOOK starts kpbook.exe, LINUX_KPBOOK is the program built for this system."""

import json
import os
import pathlib
import pty
import re
import select
import subprocess
import tty
import unittest
import zipfile

from kpbook_case import KPBOOK, KpbookCase

LINUX = os.environ.get("LINUX_KPBOOK", "")
FIRM = pathlib.Path(os.environ["SAMPLES"]) / "firm"
needs_linux = unittest.skipUnless(os.access(LINUX, os.X_OK), "there is no kpbook for this system to compare with")


class WindowsCase(KpbookCase):
    def run_linux(self, *arguments, text=""):
        done = subprocess.run([LINUX, *map(str, arguments)], input=text.encode(), capture_output=True, timeout=60)
        self.assertEqual(done.returncode, 0, f"{arguments}\n{done.stderr.decode()}")
        return done.stdout.decode()

    def windows(self, *arguments, text=""):
        return self.run_kpbook(*arguments, text=text).stdout

    def first_month(self, run, book, folder):
        """The commands of a firm's first month; what they show."""
        shown = [run("new", book, "--company", "测试商行", "--year", 2026, "--month", 1, "--warehouse", "中心仓库", "--warehouse", "门店")]
        for row in ("product 商品编号=01001 商品名称=普通硅酸盐水泥 规格=425# 计量单位=吨", "product 商品编号=01002 商品名称=白水泥 计量单位=吨",
                    "product 商品编号=02001 商品名称=螺纹钢 规格=Φ16 计量单位=公斤", "supplier 企业名称=江南水泥厂", "supplier 企业名称=沪东钢铁",
                    "customer 企业名称=杭州宏图建材有限公司 单位名称=杭州宏图", "project 项目编号=P01 项目名称=春江花苑"):
            kind, *columns = row.split()
            shown.append(run("add", book, kind, *columns))
        shown.append(run("opening", book, FIRM / "opening.csv"))
        shown.append(run("bill", "add", book, "in", FIRM / "purchases.csv"))
        shown.append(run("bill", "add", book, "transfer", "--date", "2026-1-15", "--warehouse", "中心仓库", "--to-warehouse", "门店",
                         "--line", "商品=02001,数量=400"))
        shown.append(run("bill", "add", book, "out", FIRM / "sales.csv"))
        shown.append(run("bill", "add", book, "cost", FIRM / "costs.csv"))
        shown.append(run("close", book, "--month", 1, "--cost", "--answer", "yes"))
        shown.append(run("check", book))
        shown.append(run("report", "balance", book, "--month", 1, "--cost"))
        shown.append(run("report", "bills", book, "--direction", "out", "-O", "csv"))
        run("report", "all", book, "--month", 1, "--cost", "-o", folder / "pages")
        run("report", "balance", book, "--month", 1, "-o", folder / "余额.xlsx")
        run("export", book, folder / "表")
        return shown

    @staticmethod
    def contents(folder):
        """Every file below a folder; of a workbook, the files inside but for the time at which it was made."""
        found = {}
        for path in sorted(folder.rglob("*")):
            name = path.relative_to(folder).as_posix()
            if path.suffix == ".xlsx":
                with zipfile.ZipFile(path) as book:
                    found[name] = {part: book.read(part) for part in sorted(book.namelist()) if part != "docProps/core.xml"}
            elif path.is_file():
                found[name] = path.read_bytes()
        return found

    def assert_same_files(self, folder, expected):
        """The files of a firm's first month are the expected ones, to the byte."""
        found, wanted = self.contents(folder), self.contents(expected)
        self.assertEqual(sorted(found), sorted(wanted))
        self.assertGreater(len(found), 35)
        for name, content in wanted.items():
            self.assertEqual(found[name], content, name)


@needs_linux
class AsOnLinux(WindowsCase):
    def test_a_firms_first_month(self):
        folders = {}
        shown = {}
        for name, run in (("linux", self.run_linux), ("windows", self.windows)):
            folders[name] = self.folder / name
            folders[name].mkdir()
            shown[name] = self.first_month(run, folders[name] / "帐簿.kpbook", folders[name])
        self.assertEqual(shown["windows"], shown["linux"])
        self.assertIn("72,509.71", "".join(shown["windows"]))
        for folder in folders.values():
            (folder / "帐簿.kpbook").unlink()
        self.assert_same_files(folders["windows"], folders["linux"])


NAMES = ["重庆", "长沙", "ａbC", "ABd", "abe", "张三ＡＢ", "Zürich", "阿大", "Ａ", "水泥", "〇", "ß", "1号", "２号"]
ORDERED = "Select 仓库名称 From 仓库设置 Order by 仓库名称"


@needs_linux
class BooksTravel(WindowsCase):
    def add(self, run, names):
        for name in names:
            run("add", self.book, "warehouse", f"仓库名称={name}")

    def look(self, run):
        """Order, look-ups by an indexed text, the check of file and figures, every cell."""
        folder = self.folder / f"export-{len(list(self.folder.iterdir()))}"
        run("export", self.book, folder)
        return (run("sql", self.book, ORDERED), run("sql", self.book, "Select dpID From 仓库设置 Where 仓库名称='ａbC'"),
                run("check", self.book), self.contents(folder))

    def test_there_and_back(self):
        for first, second in ((self.run_linux, self.windows), (self.windows, self.run_linux)):
            first("new", self.book, "--company", "测试商行", "--year", 2026, "--month", 1)
            first("sql", self.book, "Create Index 名称 On 仓库设置 (仓库名称)")
            self.add(first, NAMES[:7])
            self.assertEqual(self.look(second), self.look(first))
            self.add(second, NAMES[7:])
            seen = self.look(first)
            self.assertEqual(seen, self.look(second))
            self.assertEqual(len(seen[0].splitlines()), len(NAMES) + 2)
            self.assertEqual(seen[2], "")
            self.book.unlink()


class PathsAndWords(WindowsCase):
    def test_chinese_paths(self):
        folder = self.folder / "帐 套" / "二〇二六"
        folder.mkdir(parents=True)
        book = folder / "门店 Ａ.kpbook"
        self.windows("new", book, "--bare")
        rows = folder / "仓库.csv"
        rows.write_text("dpID,仓库名称\n1,东库\n2,西 库\n", encoding="utf-8")
        self.windows("import", book, "仓库设置", rows)
        self.windows("sql", book, "Select 仓库名称 From 仓库设置 Order by dpID", "-O", "csv", "-o", folder / "结果.csv")
        self.assertEqual((folder / "结果.csv").read_bytes().decode("utf-8-sig"), "仓库名称\n东库\n西 库\n")
        self.windows("backup", book, folder / "备份.kpbook", "--keep", 2)
        self.windows("backup", book, folder / "备份.kpbook", "--keep", 2)
        self.assertEqual(sorted(path.name for path in folder.iterdir()),
                         sorted(["门店 Ａ.kpbook", "仓库.csv", "结果.csv", "备份.kpbook", "备份.kpbook.1"]))
        self.assertIn("西 库", self.windows("sql", folder / "备份.kpbook.1", "Select 仓库名称 From 仓库设置"))

    def test_drives_and_urls(self):
        self.windows("new", self.book, "--bare")
        drive = "Z:" + str(self.book).replace("/", "\\")
        for place in (drive, "file:///Z:" + str(self.book), "file:///z:" + str(self.book).replace("shop", "%73hop")):
            self.assertIn("0", self.windows("sql", place, "Select Count(*) As n From 仓库设置"), place)

    def test_words_with_quotes_and_slashes(self):
        self.windows("new", self.book, "--bare")
        for word in ('a"b', "a\\", 'a\\"b c', "/x:1", "甲 乙"):
            self.windows("sql", self.book, "Delete From 仓库设置")
            self.windows("sql", self.book, "Insert Into 仓库设置 (仓库名称) Values (:name)", "--param", f"name={word}")
            self.assertEqual(self.rows("Select 仓库名称 From 仓库设置"), [[word]])

    def test_a_chinese_user(self):
        os.environ["LANG"] = "zh_CN.UTF-8"
        saved = os.environ.pop("LC_MESSAGES")
        try:
            self.windows("new", self.book, "--bare")
            done = self.run_kpbook("new", self.book, "--bare", code=1)
        finally:
            del os.environ["LANG"]
            os.environ["LC_MESSAGES"] = saved
        self.assertIn("已有同名文件", done.stderr)

    def test_other_encodings(self):
        self.windows("new", self.book, "--bare")
        for encoding, name in (("gbk", "东库"), ("utf-16", "西库"), ("utf-8", "南库")):
            path = self.folder / "f.csv"
            path.write_bytes(f"仓库名称\r\n{name}\r\n".encode(encoding))
            self.windows("import", self.book, "仓库设置", path)
        self.assertEqual(self.rows("Select 仓库名称 From 仓库设置 Order by dpID"), [["东库"], ["西库"], ["南库"]])
        path.write_bytes("ClassCode,ClassName\n01,倉庫\n".encode("big5"))
        self.windows("import", self.book, "厂商分类", path, "--encoding", "BIG5")
        self.assertEqual(self.rows("Select ClassName From 厂商分类"), [["倉庫"]])
        done = self.run_kpbook("import", self.book, "厂商分类", path, "--encoding", "none", code=2)
        self.assertIn("there is no encoding none", done.stderr)


class Files(WindowsCase):
    def test_results_replace_a_file_when_they_are_whole(self):
        self.windows("new", self.book, "--bare")
        target = self.folder / "rows.csv"
        target.write_text("before")
        self.run_kpbook("sql", self.book, "Select * From 没有", "-O", "csv", "-o", target, code=1)
        self.assertEqual(target.read_text(), "before")
        self.windows("sql", self.book, "Select 1 As n", "-O", "csv", "-o", target)
        self.assertIn("1", target.read_text())
        self.assertEqual(sorted(path.name for path in self.folder.iterdir()), ["rows.csv", "shop.kpbook"])

    def test_a_book_is_not_written_over(self):
        self.windows("new", self.book, "--bare")
        self.run_kpbook("sql", self.book, "Select 1", "-o", self.book, code=2)
        self.assertIn("already", self.run_kpbook("new", self.book, "--bare", code=1).stderr)
        self.windows("check", self.book)

    def test_workbooks_are_read(self):
        self.windows("new", self.book, "--bare")
        self.windows("sql", self.book, "Insert Into 仓库设置 (仓库名称) Values ('东库')")
        self.windows("sql", self.book, "Select 仓库名称 From 仓库设置", "-o", self.folder / "仓库.xlsx")
        self.windows("import", self.book, "仓库设置", self.folder / "仓库.xlsx")
        self.assertEqual(self.rows("Select 仓库名称 From 仓库设置"), [["东库"], ["东库"]])

    def test_a_server_needs_its_client_library(self):
        done = self.run_kpbook("info", "postgresql://somebody@localhost/books?book=shop", code=1)
        self.assertIn("needs its client library, libpq", done.stderr)
        self.assertIn("libpq.dll: ", done.stderr)


class Console(WindowsCase):
    def at_console(self, *arguments, keys):
        """Runs kpbook in Wine's console and types as it asks; the exit code, and what the console showed."""
        child, terminal = pty.fork()
        if child == 0:
            os.execv(KPBOOK, [KPBOOK, *map(str, arguments)])
        # Keys arrive as they are, also before the console has said so.
        tty.setraw(terminal)
        shown, pending = b"", list(keys)
        while select.select([terminal], [], [], 60)[0]:
            try:
                shown += os.read(terminal, 65536)
            except OSError:
                break
            # The cursor is shown again when the console waits behind a question.
            if pending and re.search(rb":\x1b\[K\x1b\[1C\x1b\[\?25h$", shown):
                os.write(terminal, pending.pop(0).encode())
        os.close(terminal)
        self.assertEqual(pending, [], shown)
        return os.waitstatus_to_exitcode(os.waitpid(child, 0)[1]), shown.decode(errors="replace")

    def test_questions(self):
        code, _ = self.at_console("new", self.book, keys=("测试商行\r", "2026\r", "1\r", "中心仓库\r", "\r"))
        self.assertEqual(code, 0)
        self.assertEqual(self.rows("Select 仓库名称 From 仓库设置"), [["中心仓库"]])
        self.assertEqual(self.windows("call", self.book, "Get_AccInfo", "单位名称"), "测试商行\n")

    def test_ctrl_c_ends_a_question_at_once(self):
        code, shown = self.at_console("new", self.book, keys=("测试商行\r", "2026\x03"))
        self.assertEqual(code, 130, shown)
        self.assertFalse(self.book.exists())

    def test_chinese_in_results_and_messages(self):
        self.windows("new", self.book, "--bare")
        self.windows("sql", self.book, "Insert Into 仓库设置 (仓库名称) Values ('钢材货场')")
        code, shown = self.at_console("sql", self.book, "Select 仓库名称 From 仓库设置", keys=())
        self.assertEqual(code, 0)
        self.assertIn("钢材货场", shown)
        code, shown = self.at_console("sql", self.book, "Select 没有这一列 From 仓库设置", keys=())
        self.assertEqual(code, 1)
        self.assertIn("没有这一列", shown)


class Streams(WindowsCase):
    def test_lines_end_as_everywhere(self):
        self.windows("new", self.book, "--bare")
        text = self.windows("sql", self.book, "Select 1 As n", "-O", "csv")
        self.assertEqual(text, "n\n1\n")

    def test_a_batch_answers_line_by_line(self):
        self.windows("new", self.book, "--bare")
        with subprocess.Popen([KPBOOK, "call", str(self.book), "--batch"], stdin=subprocess.PIPE,
                              stdout=subprocess.PIPE) as batch:
            for number in range(3):
                request = {"execute": f"Insert Into 仓库设置 (仓库名称) Values ('库{number}')"}
                batch.stdin.write((json.dumps(request, ensure_ascii=False) + "\n").encode())
                batch.stdin.flush()
                self.assertNotIn("error", json.loads(batch.stdout.readline()))
            batch.stdin.close()
            self.assertEqual(batch.wait(timeout=60), 0)
        self.assertEqual(self.rows("Select 仓库名称 From 仓库设置 Order by dpID"), [["库0"], ["库1"], ["库2"]])

    def test_standard_input(self):
        self.windows("new", self.book, "--bare")
        self.windows("import", self.book, "仓库设置", "-", text="仓库名称\n东库\n")
        self.windows("sql", self.book, "-", text="Insert Into 仓库设置 (仓库名称) Values ('西库');\n")
        self.assertEqual(self.rows("Select 仓库名称 From 仓库设置 Order by dpID"), [["东库"], ["西库"]])


if __name__ == "__main__":
    unittest.main()
