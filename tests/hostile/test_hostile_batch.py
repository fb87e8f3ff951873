#!/usr/bin/env python3
"""Hostile values from outside: every method with texts in one process of kpbook call --batch, and lines that are hostile
themselves. Every line is answered with an object, and the book stays whole."""

import json
import subprocess
import unittest

from kpbook_case import KPBOOK, KpbookCase

VALUES = [
    "O'Brien", "x' Or 'a'='a", "x'; Delete From 仓库设置; --", "x'); Drop Table 商品设置; --", "x' /*", "a--b /* c */",
    "[a] (b) {c}", "100%_*?", "a\u0000b", "\u202e👩‍👩‍👧🙂", "长" * 70000, "'" * 70001, "1E400", 2147483648, -1e308, None,
    {"array": ["x", {"array": ["'"]}]}, {"date": "9999-12-31T23:59:59"}, {"currency": "922337203685477.5807"}, {"empty": True},
    {"nothing": True}, {"row": {"'": "'"}}, {"grid": {"cols": [{"key": "'", "title": "x' --"}], "rows": [["'; Drop Table Log"]]}}]

LINES = [
    "", "null", "[]", '"x"', "{", "{}", '{"method":1}', '{"method":"\\ud800"}', '{"execute":"\\u0000"}', "[" * 200 + "]" * 200,
    '{"method":"Version","args":' + "[" * 99 + "]" * 99 + "}", '{"method":"Version","args":[1e999]}', "\ufeff{}",
    '{"method":"Version","extra":"' + "长" * 70000 + '"}', '{"method":"' + "é" * 79 + '","args":"' + "é" * 200 + '"}',
    '{"execute":"Select 1; Delete From 仓库设置"}', '{"execute":"' + "(" * 70000 + '"}', '{"execute":"Select \'x"}']


def texts_of(signature):
    """What stands for each parameter of a method: True for one that takes a text, else a harmless value."""
    inside = signature[signature.index("(") + 1:]
    parameters = [part for part in inside.split(", ") if " As " in part]
    found = []
    for parameter in parameters:
        kind = parameter.split(" As ")[1].split(" (")[0].split(")")[0]
        found.append(True if kind in ("String", "Variant", "Object") or kind.startswith("Variant(") else
                     {"date": "2004-03-07"} if kind == "Date" else False if kind == "Boolean" else 1)
    return found


class HostileBatch(KpbookCase):
    def setUp(self):
        super().setUp()
        self.new_book()
        for table, columns, values in [("仓库设置", "仓库名称", "'东库'"), ("商品设置", "商品名称", "'水泥'"), ("Log", "内容", "'x'"),
                                       ("操作员", "姓名,密码", "'张三','secret'")]:
            self.sql(f"Insert Into {table} ({columns}) Values ({values})")

    def expect_whole(self):
        self.assertEqual(self.rows("Select 仓库名称 From 仓库设置 Where dpID=1"), [["东库"]])
        self.assertEqual(self.rows("Select 商品名称 From 商品设置"), [["水泥"]])
        self.assertEqual(self.rows("Select Count(*) From 入库目录"), [[0]])

    def test_values(self):
        listed = json.loads(self.run_kpbook("methods", "-O", "json").stdout)["rows"]
        requests = []
        for _, name, kind, signature, _ in listed:
            places = texts_of(signature)
            if kind != "Method" or True not in places:
                continue
            for value in VALUES:
                requests.append({"method": name, "args": [value if place is True else place for place in places],
                                 "answer": "yes", "isSQL": len(requests) % 2 == 1})
        self.assertGreater(len(requests), 1000)
        answers = self.batch(*requests)
        self.assertEqual([answer["method"] for answer in answers], [request["method"] for request in requests])
        self.expect_whole()

    def test_lines(self):
        done = self.run_kpbook("call", self.book, "--batch", text="\n".join(LINES))
        answers = [json.loads(line) for line in done.stdout.splitlines()]
        self.assertEqual(len(answers), sum(line != "" for line in LINES))
        for answer in answers:
            self.assertIn("error", answer)
        self.expect_whole()

    def test_bytes_that_are_no_text(self):
        done = self.run_kpbook("call", self.book, "--batch", text=b'{"method":"Version\xff"}\n\xff\xfe\n{"method":"Version"}\n')
        answers = [json.loads(line) for line in done.stdout.splitlines()]
        self.assertEqual(["error" in answer for answer in answers], [True, True, False])

    def test_arguments(self):
        for value in ["x'; Delete From 仓库设置; --", "'" * 70001, "长" * 30000, "\\", "--", ""]:
            for method in ["Get仓库ID", "Get商品ID", "Get_Option"]:
                done = subprocess.run([KPBOOK, "call", self.book, method, "--", value], capture_output=True, timeout=60)
                self.assertIn(done.returncode, [0, 1], f"{method} {value[:40]}: {done.stderr.decode()}")
        self.expect_whole()


if __name__ == "__main__":
    unittest.main()
