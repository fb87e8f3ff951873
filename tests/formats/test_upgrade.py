"""kpbook upgrade, and books of which a part is missing."""

import gzip
import pathlib
import random
import shutil
import sqlite3
import subprocess
import time
import unittest

from kpbook_case import KPBOOK, KpbookCase

BOOKS = pathlib.Path(__file__).parent / "books"
OLDEST = sorted(BOOKS.glob("1-*"))[0]


def state(path):
    """Format, schema and rows of a file."""
    book = sqlite3.connect(path)
    try:
        tables = [name for (name,) in book.execute(
            "SELECT name FROM sqlite_schema WHERE type = 'table' AND name NOT GLOB 'kp_*' ORDER BY name")]
        return (book.execute("PRAGMA user_version").fetchone(),
                sorted(book.execute("SELECT name, sql FROM sqlite_schema WHERE sql IS NOT NULL").fetchall()),
                {table: book.execute(f'SELECT rowid, * FROM "{table}" ORDER BY rowid').fetchall() for table in tables})
    finally:
        book.close()


class UpgradeTest(KpbookCase):
    def setUp(self):
        super().setUp()
        self.book.write_bytes(gzip.decompress(OLDEST.read_bytes()))

    def test_other_commands_refuse_the_book(self):
        for command in (["info"], ["sql", "Select 1 As a"], ["call", "rs仓库设置"], ["close", "--month", "1"], ["log"]):
            done = self.run_kpbook(command[0], self.book, *command[1:], code=1)
            self.assertIn("its format is 1, an earlier one than 2; kpbook upgrade brings it up to date", done.stderr)

    def test_says_what_it_did(self):
        done = self.run_kpbook("upgrade", self.book)
        self.assertEqual(done.stdout, "")
        self.assertIn("added the column 入库目录.项目ID\n", done.stderr)
        self.assertIn("changed the index 仓库余额表.pdID\n", done.stderr)
        self.assertIn(f"{self.book}: upgraded from format 1 to 2\n", done.stderr)
        self.assertIn(f"the book as it was: {self.book}.before-upgrade\n", done.stderr)
        self.run_kpbook("info", self.book)
        again = self.run_kpbook("upgrade", self.book)
        self.assertEqual(again.stderr, f"{self.book}: is up to date, format 2\n")

    def test_makes_no_copy_when_told(self):
        self.run_kpbook("upgrade", self.book, "--no-backup")
        self.assertEqual([file.name for file in self.folder.iterdir()], [self.book.name])

    def test_a_kill_leaves_the_old_book_or_the_new_one(self):
        old = state(self.book)
        upgraded = self.folder / "upgraded"
        shutil.copy(self.book, upgraded)
        begin = time.monotonic()
        self.run_kpbook("upgrade", upgraded, "--no-backup")
        longest = time.monotonic() - begin
        new = state(upgraded)
        self.assertNotEqual(old, new)
        moments = random.Random(7)
        killed = self.folder / "killed"
        for _ in range(25):
            shutil.copy(self.book, killed)
            running = subprocess.Popen([KPBOOK, "upgrade", killed, "--no-backup"], stderr=subprocess.DEVNULL)
            time.sleep(moments.uniform(0, longest))
            running.kill()
            running.wait()
            self.assertIn(state(killed), (old, new))
            self.run_kpbook("upgrade", killed, "--no-backup")
            self.assertEqual(state(killed), new)
            for file in self.folder.glob("killed*"):
                file.unlink()


class MissingPartTest(KpbookCase):
    def test_is_named_and_added(self):
        self.new_book()
        book = sqlite3.connect(self.book)
        book.create_collation("KPTEXT", lambda left, right: (left > right) - (left < right))
        book.execute("ALTER TABLE 仓库设置 DROP COLUMN 结帐标志")
        book.execute("DROP TABLE 工资表")
        book.close()
        warnings = ("kpbook: the book lacks the column 仓库设置.结帐标志; kpbook upgrade adds it\n"
                    "kpbook: the book lacks the table 工资表; kpbook upgrade adds it\n")
        for _ in range(2):
            done = self.run_kpbook("sql", self.book, "Select Count(*) As n From 商品设置", "-O", "csv")
            self.assertEqual(done.stdout, "n\n0\n")
            self.assertEqual(done.stderr.replace("1 row\n", ""), warnings)
        self.assertEqual(self.run_kpbook("upgrade", self.book).stderr.splitlines()[-2],
                         f"{self.book}: has everything of format 2 again")
        done = self.run_kpbook("sql", self.book, "Select Count(*) As n From 工资表", "-O", "csv")
        self.assertNotIn("lacks", done.stderr)


if __name__ == "__main__":
    unittest.main()
