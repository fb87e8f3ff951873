"""operators and log: who works with a book, and what they did."""

import json
import unittest

from kpbook_case import KpbookCase


class OperatorsTest(KpbookCase):
    def setUp(self):
        super().setUp()
        self.new_book()

    def add_operators(self):
        self.import_text("仓库设置", "dpID,仓库名称\n1,东库\n2,西库\n")
        self.import_text("操作员", "ID,姓名,密码,dpID,入库处理,月末结帐\n1,系统操作员,8801,0,True,True\n2,李明,,2,False,False\n"
                                   "3,王芳,,9,False,False\n")
        self.sql("Update 操作员 Set 密码=Null Where ID=3")
        self.batch({"method": "操作权限_Update", "args": [2, "发货单位", True]})

    def test_table(self):
        self.add_operators()
        done = self.run_kpbook("operators", self.book)
        self.assertEqual(done.stdout,
                         "ID  姓名        密码     dpID  仓库名称  权限\n"
                         "--  ----------  -------  ----  --------  ------------------\n"
                         " 1  系统操作员  set         0  全部仓库  入库处理、月末结帐\n"
                         " 2  李明        not set     2  西库      资产处理\n"
                         " 3  王芳        not set     9\n")
        self.assertEqual(done.stderr, "3 rows\n")

    def test_no_format_shows_a_password(self):
        self.add_operators()
        for form in ("table", "csv", "json", "markdown"):
            done = self.run_kpbook("operators", self.book, "-O", form)
            self.assertNotIn("8801", done.stdout + done.stderr)
            self.assertIn("系统操作员", done.stdout)
        self.assertEqual(self.run_kpbook("operators", self.book, "-O", "csv").stdout.splitlines()[1],
                         "1,系统操作员,set,0,全部仓库,入库处理、月末结帐")

    def test_empty_table_stays_empty(self):
        before = self.book.read_bytes()
        done = self.run_kpbook("operators", self.book, "--trace")
        self.assertEqual(done.stdout, "ID  姓名  密码  dpID  仓库名称  权限\n--  ----  ----  ----  --------  ----\n")
        self.assertEqual([line for line in done.stderr.splitlines() if not line.startswith("  ")],
                         ["execute: Select * From 操作员 Order By ID", "0 rows"])
        self.assertEqual(self.book.read_bytes(), before)


class LogTest(KpbookCase):
    NEWEST_FIRST = [[2, "2", "2004-03-02T09:30:00", "结帐"], [1, "1", "2004-03-01T08:00:00", "登录"],
                    [3, "1", "2004-02-28", "退出"]]

    def setUp(self):
        super().setUp()
        self.new_book()

    def log(self, *options):
        return json.loads(self.run_kpbook("log", self.book, *options, "-O", "json").stdout)["rows"]

    def test_newest_first(self):
        self.import_text("Log", "logID,Operator,logDate,内容\n1,1,2004-03-01 08:00:00,登录\n2,2,2004-03-02 09:30:00,结帐\n"
                                "3,1,2004-02-28,退出\n")
        for options, expected in (((), 3), (("--limit", 1), 1), (("--limit", 2), 2), (("--limit", 3), 3), (("--limit", 99), 3)):
            self.assertEqual(self.log(*options), self.NEWEST_FIRST[:expected], options)
        self.import_text("操作员", "ID,姓名\n2,李明\n")
        self.assertEqual(self.run_kpbook("log", self.book, "--limit", 2).stdout,
                         "时间                 操作员  内容\n"
                         "-------------------  ------  ----\n"
                         "2004-03-02 09:30:00  李明    结帐\n"
                         "2004-03-01 08:00:00  1       登录\n")
        self.assertEqual(self.run_kpbook("log", self.book, "--limit", 1, "--raw").stdout,
                         "logID  Operator  logDate              内容\n"
                         "-----  --------  -------------------  ----\n"
                         "    2  2         2004-03-02 09:30:00  结帐\n")

    def test_empty_log(self):
        before = self.book.read_bytes()
        for options in ((), ("--limit", 5)):
            done = self.run_kpbook("log", self.book, *options, "-O", "csv")
            self.assertEqual((done.stdout, done.stderr), ("logID,Operator,logDate,内容\n", "0 rows\n"))
        self.assertEqual(self.book.read_bytes(), before)

    def test_statement(self):
        done = self.run_kpbook("log", self.book, "--limit", 5, "--trace")
        self.assertIn("execute: Select * From Log Order by logDate DESC\n", done.stderr)


class UsageTest(KpbookCase):
    def test_wrong_usage(self):
        self.new_book()
        for words in (("operators",), ("log",), ("log", self.book, "--limit", "0"), ("log", self.book, "--limit", "-1"),
                      ("log", self.book, "--limit", "many"), ("operators", self.book, "--limit", "1")):
            self.assertEqual(self.run_kpbook(*words, code=2).stdout, "", words)

    def test_book_that_cannot_be_read(self):
        self.book.write_text("no book at all\n" * 100)
        for command in ("operators", "log"):
            for book in (self.book, self.folder / "none"):
                done = self.run_kpbook(command, book, code=1)
                self.assertTrue(done.stderr.startswith("kpbook: "), done.stderr)
                self.assertEqual(done.stdout, "")


if __name__ == "__main__":
    unittest.main()
