"""Books: made, opened, refused."""

import os
import sqlite3
import unittest

from kpbook_case import KpbookCase


class NewTest(KpbookCase):
    def test_makes_every_table(self):
        done = self.run_kpbook("new", self.book, "--bare")
        self.assertEqual(done.stdout, "")
        self.assertIn("tables made", done.stderr)
        for table in ("仓库设置", "商品设置", "入库目录", "入库记录", "出库目录", "出库记录", "成本目录", "成本记录",
                      "仓库余额表", "系统选项", "AccInfo", "操作员", "Log", "Header", "History", "派遣目录", "工资表"):
            self.assertEqual(self.rows(f"Select Count(*) As n From [{table}]"), [[0]], table)

    def test_ready_book_has_the_same_tables(self):
        made = [self.run_kpbook("new", self.folder / name, *options).stderr.split(": ")[1].split(" ")[0]
                for name, options in (("bare", ["--bare"]), ("ready", []))]
        self.assertEqual(made[0], made[1])
        self.assertGreaterEqual(int(made[0]), 31)
        for table in ("仓库设置", "商品设置", "入库目录", "出库记录", "成本目录", "仓库余额表", "AccInfo", "操作员", "工资表"):
            counted = self.run_kpbook("sql", self.folder / "ready", f"Select Count(*) As n From {table}", "-O", "csv")
            self.assertEqual(counted.stdout, "n\n0\n", table)

    def test_existing_file_is_left_as_it_is(self):
        self.book.write_text("my letter")
        done = self.run_kpbook("new", self.book, code=1)
        self.assertTrue(done.stderr.startswith("kpbook: "), done.stderr)
        self.assertEqual(self.book.read_text(), "my letter")

    def test_existing_book_is_left_as_it_is(self):
        self.new_book()
        self.sql("Insert Into 仓库设置 (仓库名称) Values ('东库')")
        self.run_kpbook("new", self.book, code=1)
        self.assertEqual(self.rows("Select 仓库名称 From 仓库设置"), [["东库"]])

    def test_folder_that_is_not_there(self):
        self.run_kpbook("new", self.folder / "none" / "shop.kpbook", code=1)

    def test_file_url(self):
        self.book = self.folder / "my shop.kpbook"
        self.run_kpbook("new", self.book.as_uri())
        self.assertTrue(self.book.is_file())
        self.run_kpbook("sql", self.book.as_uri(), "Insert Into 仓库设置 (仓库名称) Values ('东库')")
        self.assertEqual(self.rows("Select 仓库名称 From 仓库设置"), [["东库"]])

    def test_server_is_refused(self):
        done = self.run_kpbook("new", "postgres://host/shop", code=1)
        self.assertIn("a book is a file", done.stderr)


class OpenTest(KpbookCase):
    def refused(self, *arguments):
        """The message, the same for every command that opens a book."""
        for command in (("sql", self.book, "Select 1"), ("call", self.book, "Version"), ("call", self.book, "--batch"),
                        ("import", self.book, "仓库设置", "-"), ("close", self.book, "--month", "1"),
                        ("info", self.book), ("stock", self.book, "--month", "1")):
            done = self.run_kpbook(*command, code=1)
            self.assertTrue(done.stderr.startswith("kpbook: "), done.stderr)
            self.assertEqual(done.stdout, "")
        return done.stderr

    def test_no_such_file(self):
        self.refused()
        self.assertFalse(self.book.exists())

    def test_directory(self):
        self.book.mkdir()
        self.refused()

    def test_text_file(self):
        self.book.write_text("no book at all\n" * 100)
        self.refused()
        self.assertEqual(self.book.read_text(), "no book at all\n" * 100)

    def test_empty_file(self):
        self.book.write_bytes(b"")
        self.refused()
        self.assertEqual(self.book.read_bytes(), b"")

    def test_another_programs_database(self):
        connection = sqlite3.connect(self.book)
        connection.execute("Create Table t (a)")
        connection.commit()
        connection.close()
        before = self.book.read_bytes()
        self.refused()
        self.assertEqual(self.book.read_bytes(), before)

    def test_server(self):
        self.book = "postgres://host/shop"
        self.assertIn("a book is a file", self.refused())

    def test_locked_book(self):
        self.new_book()
        connection = sqlite3.connect(self.book, isolation_level=None)
        connection.execute("Begin Immediate")
        try:
            done = self.run_kpbook("sql", self.book, "Delete From 仓库设置", code=1)
            self.assertIn("another program", done.stderr)
        finally:
            connection.execute("Rollback")
            connection.close()
        self.run_kpbook("sql", self.book, "Delete From 仓库设置")

    @unittest.skipIf(os.geteuid() == 0, "root may write everywhere")
    def test_read_only_book(self):
        self.new_book()
        self.book.chmod(0o444)
        self.run_kpbook("sql", self.book, "Insert Into 仓库设置 (仓库名称) Values ('东库')", code=1)


class BookNameTest(KpbookCase):
    def test_blanks_brackets_and_chinese(self):
        for name in ("my shop", "[shop]", "帐簿.kpbook", "it's"):
            self.book = self.folder / name
            self.new_book()
            self.assertEqual(self.rows("Select Count(*) As n From 仓库设置"), [[0]])

    def test_bracketed_relative_name(self):
        os.chdir(self.folder)
        self.addCleanup(os.chdir, "/")
        self.run_kpbook("new", "[a,b]")
        self.assertTrue((self.folder / "[a,b]").is_file())


if __name__ == "__main__":
    unittest.main()
