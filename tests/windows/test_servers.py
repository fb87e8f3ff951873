#!/usr/bin/env python3
"""kpbook.exe under Wine with a PostgreSQL server of this machine, beside kpbook for this system: books on the server, and tables
behind ODBC, whose drivers Wine takes from this system. LIBPQ is the folder with libpq.dll for 64-bit Windows and what it needs."""

import glob
import json
import os
import pathlib
import socket
import sys
import tempfile
import unittest

import private_server
from test_windows import WindowsCase, needs_linux

LIBPQ = pathlib.Path(os.environ["LIBPQ"])
HAS_LIBPQ = (LIBPQ / "libpq.dll").exists()
DRIVERS = glob.glob("/usr/lib/*/odbc/psqlodbcw.so")
SKIPPED = 77
port = 0


@needs_linux
@unittest.skipUnless(HAS_LIBPQ, f"{LIBPQ} has no libpq.dll")
class OnServer(WindowsCase):
    @staticmethod
    def url(name):
        return f"postgresql://kp@127.0.0.1:{port}/postgres?book={name}"

    def test_a_firms_first_month(self):
        folders, shown = {}, {}
        for name, run in (("linux", self.run_linux), ("windows", self.windows)):
            folders[name] = self.folder / name
            folders[name].mkdir()
            shown[name] = self.first_month(run, self.url(name), folders[name])
        self.assertEqual(shown["windows"], shown["linux"])
        self.assertIn("72,509.71", "".join(shown["windows"]))
        self.assert_same_files(folders["windows"], folders["linux"])

    def test_calls_imports_copies_and_errors(self):
        book = self.url("丙")
        self.windows("new", book, "--company", "测试商行", "--year", 2026, "--month", 1, "--warehouse", "中心仓库", "--warehouse", "门店")
        calls = '{"method":"Get仓库名称","args":[2]}\n{"method":"Get仓库名称","args":["x"]}\n'
        named, refused = map(json.loads, self.windows("call", book, "--batch", text=calls).splitlines())
        self.assertEqual((named["result"], refused["error"]["number"]), ("门店", 13))
        self.windows("import", book, "商品设置", "-", text="商品编号,商品名称\n03001,砂\n03002,𠮷\n")
        rows = self.run_linux("sql", book, "Select 商品编号,商品名称 From 商品设置 Order by 商品编号", "-O", "csv")
        self.assertEqual(rows.splitlines()[1:], ["03001,砂", "03002,𠮷"])
        copy = self.folder / "丙.kpbook"
        self.windows("copy", book, copy)
        rows = self.run_linux("sql", copy, "Select 商品名称 From 商品设置 Where 商品编号='03002'", "-O", "csv")
        self.assertEqual(rows.splitlines()[1:], ["𠮷"])
        done = self.run_kpbook("sql", book, "Select 无 From 商品设置", code=1)
        self.assertIn("unknown column '无'", done.stderr)
        done = self.run_kpbook("info", self.url("丁"), code=1)
        self.assertIn("the database has no book of that name", done.stderr)


@needs_linux
@unittest.skipUnless(DRIVERS, "PostgreSQL's ODBC driver is not installed")
class BehindOdbc(WindowsCase):
    def statements(self, run, table):
        """What a table's rows look like, and how a refused statement is told."""
        url = f"odbc:Driver={DRIVERS[0]};Server=127.0.0.1;Port={port};Database=postgres;UID=kp"
        run("sql", url, f"Create Table {table} (id int primary key, 名称 varchar(20), 金额 numeric(19,4), 日 timestamp)")
        run("sql", url, f"Insert Into {table} Values (1, '水泥𠮷', 12.3456, '2026-01-05')")
        run("sql", url, f"Insert Into {table} Values (2, Null, -0.0001, Null)")
        return run("sql", url, f"Select * From {table} Order by id", "-O", "csv")

    def test_tables_behind_a_driver(self):
        expected = "id,名称,金额,日\n1,水泥𠮷,12.3456,2026-01-05\n2,,-0.0001,\n"
        self.assertEqual(self.statements(self.windows, "乙").replace("\\N", ""), expected)
        self.assertEqual(self.statements(self.run_linux, "甲").replace("\\N", ""), expected)
        url = f"odbc:Driver={DRIVERS[0]};Server=127.0.0.1;Port={port};Database=postgres;UID=kp"
        done = self.run_kpbook("sql", url, "Insert Into 乙 Values (1, 'x', 1, '2026-01-05')", code=1)
        self.assertIn("(SQLSTATE 23505)", done.stderr)
        self.assertIn("乙_pkey", done.stderr)


def main():
    global port
    bin_folder = private_server.programs()
    if bin_folder is None:
        print("PostgreSQL is not installed: skipped")
        return SKIPPED
    # Wine looks there for libraries too.
    os.environ["WINEPATH"] = f"Z:{LIBPQ}"
    with socket.socket() as free:
        free.bind(("127.0.0.1", 0))
        port = free.getsockname()[1]
    # Windows has no sockets that are files.
    settings = {"listen_addresses": "127.0.0.1", "port": port}
    with tempfile.TemporaryDirectory(prefix="kpTablesServer-") as folder, private_server.Server(folder, bin_folder, settings):
        return not unittest.main(exit=False).result.wasSuccessful()


if __name__ == "__main__":
    sys.exit(main())
