"""backup: copies with generations."""

import subprocess
import unittest

from kpbook_case import KPBOOK, TradingCase


class BackupTest(TradingCase):
    def setUp(self):
        super().setUp()
        self.copies = self.folder / "copies"
        self.copies.mkdir()
        self.copy = self.copies / "shop.kpbook"

    def backup(self, *options, code=0):
        return self.run_kpbook("backup", self.book, self.copy, *options, code=code).stderr

    def names(self):
        return sorted(file.name for file in self.copies.iterdir())

    def products(self, copy):
        return len(self.run_kpbook("sql", copy, "Select pdID From 商品设置", "-O", "csv").stdout.splitlines()) - 1

    def add_product(self):
        self.sql("Insert Into 商品设置 (商品名称) Values ('砂子')")

    def test_copy(self):
        self.assertEqual(self.backup(), f"{self.copy}: copied and checked\n")
        self.assertEqual(self.names(), ["shop.kpbook"])
        self.run_kpbook("check", self.copy)
        self.assertEqual(self.products(self.copy), 3)

    def test_existing_file_is_refused(self):
        self.copy.write_text("mine")
        self.assertIn("exists already", self.backup(code=1))
        self.assertEqual(self.copy.read_text(), "mine")
        self.assertEqual(self.names(), ["shop.kpbook"])

    def test_generations(self):
        for _ in range(5):
            self.backup("--keep", "3")
            self.add_product()
        self.assertEqual(self.names(), ["shop.kpbook", "shop.kpbook.1", "shop.kpbook.2"])
        self.assertEqual([self.products(self.copies / name) for name in self.names()], [7, 6, 5])

    def test_one_generation(self):
        self.backup("--keep", "1")
        self.add_product()
        self.backup("--keep", "1")
        self.assertEqual((self.names(), self.products(self.copy)), (["shop.kpbook"], 4))
        self.copy.write_text("mine")
        self.backup("--keep", "1", code=1)
        self.assertEqual((self.names(), self.copy.read_text()), (["shop.kpbook"], "mine"))

    def test_the_book_itself_is_refused(self):
        link = self.folder / "link"
        link.symlink_to(self.book)
        for target in (self.book, link, str(self.folder) + "/./shop.kpbook"):
            done = self.run_kpbook("backup", self.book, target, "--keep", "2", code=1)
            self.assertIn("is the book itself", done.stderr)
        self.copy = self.folder / "shop"
        (self.folder / "shop.1").hardlink_to(self.book)
        self.assertIn("is the book itself", self.backup("--keep", "2", code=1))
        self.assertEqual(self.products(self.book), 3)

    def test_failure_leaves_the_copies(self):
        self.backup("--keep", "2")
        self.book.write_bytes(self.book.read_bytes()[:20000])
        self.backup("--keep", "2", code=1)
        self.assertEqual((self.names(), self.products(self.copy)), (["shop.kpbook"], 3))

    def test_no_such_folder(self):
        self.copy = self.folder / "nowhere" / "shop.kpbook"
        self.backup(code=1)

    def test_book_in_use(self):
        other = subprocess.Popen([KPBOOK, "call", self.book, "--batch"], stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                 text=True)
        other.stdin.write('{"execute":"Insert Into 商品设置 (商品名称) Values (\'砂子\')"}\n')
        other.stdin.flush()
        other.stdout.readline()
        self.backup()
        other.communicate(timeout=30)
        self.assertEqual(self.products(self.copy), 4)


if __name__ == "__main__":
    unittest.main()
