#!/usr/bin/env python3
"""How often kpbook waits for a server: by the batch of rows, not by the row."""

import os
import pathlib
import subprocess
import sys
import tempfile
import unittest
import urllib.parse

from proxy import Proxy

KPBOOK = os.environ["KPBOOK"]
SERVER = os.environ["KPTABLES_SERVER"]
BATCH = 1000


def kpbook(*arguments):
    done = subprocess.run([KPBOOK, *arguments], capture_output=True, text=True, check=False)
    if done.returncode != 0:
        raise AssertionError(f"kpbook {' '.join(arguments)}: {done.stderr}")
    return done.stdout


class Trips(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory(prefix="kpTablesProxy-")
        self.addCleanup(self.folder.cleanup)
        address, query = SERVER.split("?", 1)
        options = dict(urllib.parse.parse_qsl(query))
        self.proxy = Proxy(self.folder.name, options["host"])
        self.proxy.__enter__()
        self.addCleanup(self.proxy.__exit__)
        options["host"] = self.folder.name
        self.through = address + "?" + urllib.parse.urlencode(options, safe="/")

    def trips_of(self, *arguments):
        """Of a command on a book through the proxy."""
        before = self.proxy.round_trips()
        kpbook(*arguments)
        return self.proxy.round_trips() - before

    def write(self, name, lines):
        path = pathlib.Path(self.folder.name) / name
        path.write_text("\n".join(lines) + "\n", encoding="utf-8")
        return str(path)

    def close_of(self, products):
        """The round trips of a closing, of an import, and the figures that the closing has carried forward."""
        book = f"&book=trips{products}"
        kpbook("new", SERVER + book, "--company", "测试商行", "--year", "2003", "--month", "1", "--warehouse", "中心仓库")
        imported = self.trips_of("import", self.through + book, "商品设置", self.write(
            "products.csv", ["商品编号,商品名称"] + [f"{i:05},商品{i}" for i in range(1, products + 1)]))
        kpbook("import", SERVER + book, "仓库余额表", self.write(
            "balance.csv", ["年份,月份,pdID,dpID,上期库存数量,上期库存金额"] +
            [f"2003,1,{i},1,{i},{i * 2}.5" for i in range(1, products + 1)]))
        closed = self.trips_of("close", self.through + book, "--month", "1", "--date", "2003-1-31", "--answer", "yes")
        carried = kpbook("sql", SERVER + book, "-O", "csv",
                         "Select Count(*) As n,Sum(上期库存数量) As q,Sum(上期库存金额) As a From 仓库余额表 Where 月份=2")
        counters = kpbook("sql", SERVER + book, "-O", "csv", "Select Max(pdID)-Min(pdID) As span From 商品设置")
        return closed, imported, carried.split()[1], counters.split()[1]

    def test_grow_by_the_batch(self):
        small, large = BATCH, 3 * BATCH
        few_closed, few_imported, carried, span = self.close_of(small)
        self.assertEqual(carried, f"{small},{small * (small + 1) // 2},{small * (small + 1) + small // 2}")
        self.assertEqual(span, str(small - 1))
        many_closed, many_imported, carried, span = self.close_of(large)
        self.assertEqual(carried, f"{large},{large * (large + 1) // 2},{large * (large + 1) + large // 2}")
        self.assertEqual(span, str(large - 1))
        # A batch of rows that are changed, one of ids and one of rows that are added.
        batches = (large - small) // BATCH
        self.assertLessEqual(many_closed - few_closed, 3 * batches)
        # One COPY, which has two.
        self.assertLessEqual(many_imported - few_imported, 2)
        # The rest is to open the book and to prepare its statements; all tables are learned at once.
        self.assertLess(many_closed, 120)
        self.assertLess(many_imported, 40)

    def test_of_a_new_book_do_not_grow_with_its_tables(self):
        kpbook("new", f"{SERVER}&book=first", "--bare")
        self.assertLess(self.trips_of("new", self.through + "&book=second", "--bare"), 20)


if __name__ == "__main__":
    sys.exit(unittest.main())
