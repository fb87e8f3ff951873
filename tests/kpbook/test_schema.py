"""schema: the script that it prints for SQLite makes a book there, and kpbook takes it."""

import sqlite3
import unittest

from kpbook_case import KpbookCase


class SchemaTest(KpbookCase):
    def test_script_makes_a_book(self):
        script = self.run_kpbook("schema", "--dialect", "sqlite").stdout
        made = sqlite3.connect(self.book)
        # Nothing is compared while the tables are empty.
        made.create_collation("KPTEXT", lambda a, b: 0)
        made.executescript(script)
        made.close()
        self.run_kpbook("check", self.book)
        self.assertIn("is up to date, format 2", self.run_kpbook("upgrade", self.book).stderr)
        self.run_kpbook("sql", self.book, "Insert Into 仓库设置 (仓库名称) Values ('东库')")
        bare = self.folder / "bare.kpbook"
        self.run_kpbook("new", bare, "--bare")
        query = "SELECT name, sql FROM sqlite_schema WHERE sql IS NOT NULL AND name NOT LIKE 'kp_%' ORDER BY name"
        books = [sqlite3.connect(book) for book in (self.book, bare)]
        tables = [book.execute(query).fetchall() for book in books]
        for book in books:
            book.close()
        self.assertEqual(tables[0], tables[1])

    def test_dialects(self):
        self.assertEqual(self.run_kpbook("schema").stdout, self.run_kpbook("schema", "--dialect", "jet").stdout)
        file = self.folder / "book.sql"
        self.run_kpbook("schema", "--dialect", "sqlserver", "-o", file)
        self.assertEqual(file.read_text("utf-8"), self.run_kpbook("schema", "--dialect", "sqlserver").stdout)
        for words in (["--dialect", "oracle"], ["-O", "csv"], ["shop.kpbook"]):
            self.run_kpbook("schema", *words, code=2)


if __name__ == "__main__":
    unittest.main()
