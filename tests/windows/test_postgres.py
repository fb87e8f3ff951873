#!/usr/bin/env python3
"""kpbook.exe under Wine with books on a PostgreSQL server of this machine, beside kpbook for this system. LIBPQ is the folder
with libpq.dll for 64-bit Windows and what it needs; without it nothing is tested."""

import json
import os
import pathlib
import socket
import sys
import tempfile
import unittest

import private_server
from test_windows import WindowsCase

LIBPQ = pathlib.Path(os.environ["LIBPQ"])
SKIPPED = 77


class OnServer(WindowsCase):
    server = ""

    def url(self, name):
        return f"{self.server}/postgres?book={name}"

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


def main():
    bin_folder = private_server.programs()
    if bin_folder is None or not (LIBPQ / "libpq.dll").exists():
        print(f"PostgreSQL is not installed, or {LIBPQ} has no libpq.dll: skipped")
        return SKIPPED
    # Wine looks there for libraries too.
    os.environ["WINEPATH"] = f"Z:{LIBPQ}"
    with socket.socket() as free:
        free.bind(("127.0.0.1", 0))
        port = free.getsockname()[1]
    # Windows has no sockets that are files.
    settings = {"listen_addresses": "127.0.0.1", "port": port}
    with tempfile.TemporaryDirectory(prefix="kpTablesServer-") as folder, private_server.Server(folder, bin_folder, settings):
        OnServer.server = f"postgresql://kp@127.0.0.1:{port}"
        return not unittest.main(exit=False).result.wasSuccessful()


if __name__ == "__main__":
    sys.exit(main())
