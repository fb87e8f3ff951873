"""new --dialect: the names of the table Header's first columns, and grid layouts kept under them."""

import unittest

from kpbook_case import KpbookCase


def grid(*columns):
    """Columns as (key, title, width)."""
    return {"grid": {"FixedRows": 1, "rows": [],
                     "cols": [{"key": key, "title": title, "hidden": False, "width": width} for key, title, width in columns]}}


class HeaderTest(KpbookCase):
    NAMES = {"jet": ["Table", "Index"], "sql": ["TableName", "ColIndex"]}

    def make(self, dialect):
        self.book = self.folder / dialect
        self.run_kpbook("new", self.book, "--bare", "--dialect", dialect)
        return dialect == "sql"

    def save(self, is_sql):
        layout = grid(("a", "编号", 100), ("b", "名称", 200))
        return self.call("Header", layout, "清单", "", True, is_sql)

    def test_names(self):
        for dialect, names in self.NAMES.items():
            self.make(dialect)
            done = self.run_kpbook("sql", self.book, "Select * From Header", "-O", "csv")
            self.assertEqual(done.stdout, ",".join([*names, "Flag", "colkey", "Header", "Hidden", "Width"]) + "\n")

    def test_default_is_jet(self):
        self.run_kpbook("new", self.book, "--bare")
        self.assertEqual(self.rows("Select Table,Index From Header"), [])

    def test_layout_is_saved_and_applied(self):
        for dialect in self.NAMES:
            is_sql = self.make(dialect)
            self.assertNotIn("error", self.save(is_sql))
            self.assertEqual(self.rows("Select * From Header Order by colkey"),
                             [["清单", 0, "Default", "a", "编号", False, 100.0], ["清单", 1, "Default", "b", "名称", False, 200.0]])
            applied = self.call("Header", grid(("b", "?", 1), ("a", "?", 1)), "清单", "", False, is_sql)
            self.assertNotIn("error", applied)
            self.assertEqual([(c["key"], c["title"], c["width"]) for c in applied["args"][0]["grid"]["cols"]],
                             [("a", "编号", 100), ("b", "名称", 200)])

    def test_the_other_names_are_an_error(self):
        for dialect in self.NAMES:
            is_sql = self.make(dialect)
            self.save(is_sql)
            for setting in (False, True):
                answer = self.call("Header", grid(("a", "?", 1)), "清单", "", setting, not is_sql)
                self.assertIn("unknown column", answer["error"]["description"])
            self.assertEqual(self.rows("Select Count(*) As n From Header"), [[2]])

    def test_ready_book(self):
        done = self.run_kpbook("new", self.book, "--dialect", "sql", "--today", "2004-03-07")
        self.assertTrue(done.stderr.endswith("31 tables made, names, dates and payment methods set\n"), done.stderr)
        self.assertEqual(self.rows("Select TableName,ColIndex From Header"), [])

    def test_rows_are_imported_under_the_books_names(self):
        self.make("sql")
        self.import_text("Header", "TableName,ColIndex,Flag,colkey\n清单,0,Default,a\n")
        self.assertEqual(self.rows("Select TableName From Header Where TableName='清单' And Flag='default'"), [["清单"]])
        self.import_text("Header", "Table,Index\n清单,0\n", code=1)

    def test_unknown_dialect(self):
        self.run_kpbook("new", self.book, "--dialect", "oracle", code=2)
        self.assertFalse(self.book.exists())


if __name__ == "__main__":
    unittest.main()
