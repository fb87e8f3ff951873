"""Other programs over SQLite read a book with the extension kptext; SQLite's shell does as docs/other-programs.md shows."""

import os
import pathlib
import shutil
import subprocess
import unittest

from page_case import PageCase

KPTEXT = os.environ.get("KPTEXT", "")
SHELL = shutil.which("sqlite3")
CATALOGUE = pathlib.Path(__file__).resolve().parents[2] / "samples" / "names"


@unittest.skipUnless(SHELL, "no sqlite3 shell")
class ShellTest(PageCase):
    def test_page(self):
        self.assertEqual(self.run_page("other-programs.md", LD_LIBRARY_PATH=str(pathlib.Path(KPTEXT).parent)), 10)
        self.assertEqual(len(self.run_kpbook("list", self.folder / "firm.kpbook", "product", "-O", "csv").stdout.splitlines()), 5)

    def shell(self, *words):
        return subprocess.run([SHELL, "-cmd", f".load {KPTEXT}", *map(str, words)], capture_output=True, text=True, timeout=60)

    def test_texts_come_in_the_books_order(self):
        self.new_book()
        names = [*"bBaAéÉ", "Ａ", "ab", "a b", "10", "9", "-1", "水泥", "ａ水泥", "重庆", "重量", "行走", "银行", "𠮷", "ー", "のり", "", " x", "x "]
        for file in ("catalogue.txt", "customers.txt"):
            names += [line.split(",")[0] for line in (CATALOGUE / file).read_text("utf-8").splitlines()]
        quoted = ("\"" + name.replace("\"", "\"\"") + "\"" for name in names)
        self.import_text("商品设置", "商品名称\n" + "\n".join(quoted) + "\n")
        expected = [row[0] for row in self.rows("Select pdID From 商品设置 Order by 商品名称,pdID")]
        self.assertGreater(len(expected), 400)
        self.assertNotEqual(expected, sorted(expected, key=lambda pd: names[pd - 1]))
        done = self.shell("-readonly", self.book, "select pdID from 商品设置 order by 商品名称, pdID")
        self.assertEqual([int(line) for line in done.stdout.split()], expected, done.stderr)
        # kpbook sorted the index of the names: each name is found in it, as often as by going through all rows.
        counts = [self.shell("-readonly", self.book, f"select count(*) from 商品设置 a, 商品设置 b where {name} = a.商品名称").stdout
                  for name in ("b.商品名称", "+b.商品名称 collate kptext")]
        self.assertGreater(int(counts[0]), len(names))
        self.assertEqual(counts[0], counts[1])

    def test_reading_alone(self):
        self.new_book()
        done = self.shell(self.book, "insert into 商品设置 (商品名称) values ('水泥')")
        self.assertIn("attempt to write a readonly database", done.stderr)
        self.assertEqual(self.shell(self.book, "select count(*) from 商品设置", "pragma integrity_check").stdout, "0\nok\n")

    def test_another_version_of_the_order_is_refused(self):
        self.new_book()
        for change, version in (("update kp_collation set version = '0'", "0"), ("drop table kp_collation", "none")):
            subprocess.run([SHELL, self.book, change], check=True, timeout=60)
            done = self.shell("-readonly", self.book, "select 商品名称 from 商品设置 order by 商品名称")
            self.assertIn(f"the book's order of texts has the version {version}, this extension's is ", done.stderr)
            self.assertIn("no such collation sequence", done.stderr)
            self.assertNotEqual(done.returncode, 0)

    def test_any_other_database_has_the_functions_and_may_be_written(self):
        done = self.shell(self.folder / "other.db", "create table t (x text collate kptext)", "insert into t values ('b'), ('Ａ'), ('a')",
                          "select group_concat(x, '') from (select x from t order by x, rowid)",
                          "select kp_stdevp(column1), kp_text_currency(125000) from (values (1), (3))", "select kp_to_short(40000)")
        self.assertEqual(done.stdout, "Ａab\n1.0|12.5\n")
        self.assertIn("verflow", done.stderr)


if __name__ == "__main__":
    unittest.main()
