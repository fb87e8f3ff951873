"""kpbook on a book behind ODBC: the test's own driver stands for a driver of Jet books, or for SQL Server's, over a book in a file."""

import json
import unittest

import small_book
import test_book_life


# In a command's words, the place of the book.
BOOK = object()


class BehindDriver:
    """Makes each book as a file, and then calls it by the URL of the driver."""

    server = "ACCESS"

    def url(self, file):
        return f"odbc:Driver=kptest;Name={self.server};Database={file}"

    def copy_of(self, name, make):
        super().copy_of(name, make)
        self.file = self.book
        self.book = self.url(self.file)


class JetLifeTest(BehindDriver, test_book_life.BookLifeTest):
    pass


class ServerLifeTest(BehindDriver, test_book_life.ServerDialectLifeTest):
    server = "Microsoft SQL Server"


class CommandTest(BehindDriver, small_book.SmallBookCase):
    """Commands that read answer as on the file; those that cannot work say so."""

    def both(self, *words):
        self.close_host()
        on_file, behind = (self.run_kpbook(*(book if word is BOOK else word for word in words)).stdout
                           for book in (self.file, self.book))
        self.assertNotEqual(on_file, "")
        self.assertEqual(behind.replace(self.book, str(self.file)), on_file, words)

    def refused(self, *words, says, code=1):
        done = self.run_kpbook(*words, code=code)
        self.assertIn(says, done.stderr)

    def test_commands_that_read(self):
        for words in (("sql", BOOK, "Select * From 入库记录 Order by pdID,数量"), ("list", BOOK, "product"),
                      ("list", BOOK, "warehouse"), ("call", BOOK, "rs仓库列表"), ("stock", BOOK, "--month", "2"),
                      ("bill", "show", BOOK, "in", "1"), ("report", "bills", BOOK, "--direction", "in"),
                      ("report", "products", BOOK, "--direction", "out"), ("report", "daily", BOOK, "--month", "2"),
                      ("report", "projects", BOOK, "--measure", "amount"), ("info", BOOK)):
            self.both(*words)

    def test_a_month_is_closed_and_opened(self):
        self.close_host()
        closed = self.run_kpbook("close", self.book, "--month", "1", "--answer", "yes")
        self.assertIn("东库 2003-1", closed.stdout + closed.stderr)
        self.both("sql", BOOK, "Select pdID,dpID,月份,本期库存数量,本期库存金额 From 仓库余额表 Order by 月份,dpID,pdID")
        # 4 bought for 44, 2 sold for 30.
        self.assertEqual(self.rows("Select 本期库存数量,本期库存金额 From 仓库余额表 Where 月份=1 And dpID=1 And pdID=1"), [[2, "14"]])
        # The book has a bill without lines.
        found = [self.run_kpbook("check", book, code=1).stdout for book in (self.file, self.book)]
        self.assertEqual(found[0], found[1])
        self.assertIn("BillID 3", found[1])
        self.run_kpbook("reopen", self.book, "--month", "1")
        self.both("info", BOOK)

    def test_a_row_is_added_and_changed(self):
        self.close_host()
        added = self.run_kpbook("add", self.book, "product", "商品名称=玻璃 𠮷", "商品编号=G1")
        self.assertEqual(added.stdout.strip(), "4")
        self.run_kpbook("edit", self.book, "product", "4", "商品名称=平板玻璃")
        self.assertEqual(self.rows("Select 商品名称 From 商品设置 Where pdID=4"), [["平板玻璃"]])
        self.run_kpbook("remove", self.book, "product", "4")
        self.assertEqual(self.rows("Select Count(*) As n From 商品设置"), [[3]])

    def test_it_is_copied_into_a_file(self):
        self.close_host()
        for command in ("backup", "copy"):
            copy = self.folder / command
            self.run_kpbook(command, self.book, copy)
            for table in ("入库记录", "商品设置", "仓库设置"):
                text = f"Select * From {table}"
                self.assertEqual(self.run_kpbook("sql", copy, text).stdout, self.run_kpbook("sql", self.file, text).stdout)
            added = [self.run_kpbook("add", book, "product", f"商品名称=玻璃{command}", f"商品编号=G{command}").stdout for book in (copy, self.file)]
            self.assertEqual(added[0], added[1])

    def test_a_batch_has_transactions(self):
        self.close_host()
        answers = self.batch({"begin": True}, {"execute": "Update 商品设置 Set 商品名称='x'"}, {"rollback": True},
                             {"execute": "Select Count(*) As n From 商品设置 Where 商品名称=@name", "params": {"name": "水泥"}})
        self.assertEqual(answers[-1]["result"]["rows"], [[1]])

    def test_what_cannot_work_says_so(self):
        self.close_host()
        self.refused("new", self.book, "--bare", says="not made by this program")
        self.refused("upgrade", self.book, says="not upgraded by this program")
        self.refused("new", self.folder / "next", "--from", self.book + ";PWD=x", says="a password does not belong into a URL")
        self.refused("info", self.book + ";PWD=secret1", says="a password does not belong into a URL")
        self.refused("info", "odbc:DSN=nowhere", says="The server cannot be reached")
        missing = self.run_kpbook("info", self.book + ";PWD=secret1", code=1)
        self.assertNotIn("secret1", missing.stderr)

    def test_a_password_comes_from_a_file(self):
        self.close_host()
        password = self.folder / "password"
        password.write_text("秘密;x\n", encoding="utf-8")
        password.chmod(0o600)
        url = f"{self.book};Needs=秘密"
        self.refused("info", url, says="--password-file")
        self.refused("info", url, "--password-file", password, says="the password is wrong")
        password.write_text("秘密\n", encoding="utf-8")
        done = self.run_kpbook("info", url, "--password-file", password)
        self.assertNotIn("秘密", (done.stdout + done.stderr).replace(url, ""))

    def test_tables_that_are_missing_are_told(self):
        self.close_host()
        self.run_kpbook("sql", self.file, "Drop Table 仓库设置")
        done = self.run_kpbook("sql", self.book, "Select Count(*) As n From 商品设置", "-O", "json")
        self.assertIn("the table 仓库设置 and more", done.stderr)
        self.assertEqual(json.loads(done.stdout)["rows"], [[3]])


del small_book, test_book_life.BookLifeTest, test_book_life.ServerDialectLifeTest

if __name__ == "__main__":
    unittest.main()
