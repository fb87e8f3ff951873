#!/usr/bin/env python3
"""kpbook as somebody meets it whose system speaks Chinese, without the locale being installed."""

import json
import os
import re
import unittest
import unittest.mock

from kpbook_case import KpbookCase, TradingCase

# What stays as it is: options, commands and their words, files, columns and forms of values.
ALLOWED = re.compile(r"kpbook(?:\.\w+|-[\w-]+| \w+)?|--?[A-Za-z][\w-]*|[\w./-]*\.(?:kpbook|csv|xlsx|json|md|html|pdf|mo|jsonl|txt|before-upgrade)\b"
                     r"|/[\w./-]+|\b(?:[A-Z][A-Za-z]*(?:-\d+\w*)?|id|dpID|pdID|csv|xlsx|json|html|jet|sql|in|out|cost|transfer|yes|no)\b")


class ChineseCase(KpbookCase):
    def setUp(self):
        super().setUp()
        for name, value in (("LANG", "zh_CN.UTF-8"), ("LC_MESSAGES", "")):
            before = os.environ.get(name)
            os.environ[name] = value
            self.addCleanup(lambda name=name, before=before: os.environ.update({name: before}) if before is not None
                            else os.environ.pop(name, None))

    def assert_chinese(self, text, expected=None):
        """The text is what is expected, and no English word is left in it."""
        if expected is not None:
            self.assertEqual(text, expected)
        left = [word for word in re.findall(r"[A-Za-z]{2,}", ALLOWED.sub(" ", text.replace(str(self.folder), "")))]
        self.assertEqual(left, [], text)

    def told(self, *arguments, code, expected, **others):
        done = self.run_kpbook(*arguments, code=code, **others)
        self.assert_chinese(done.stderr.replace(f"{self.folder}/", ""), expected)
        return done


class NewFirm(ChineseCase):
    def new_firm(self):
        return self.run_kpbook("new", self.book, "--company", "测试商行", "--year", "2026", "--month", "1", "--warehouse", "中心仓库")

    def test_new_says_what_it_made(self):
        done = self.new_firm()
        self.assertRegex(done.stderr, r"shop\.kpbook：已建 \d+ 个表，测试商行自 2026 年 1 月开始，1 个仓库\n$")
        self.assert_chinese(done.stderr)

    def test_a_book_that_exists_is_refused(self):
        self.new_firm()
        self.told("new", self.book, code=1, expected="kpbook: 不能新建帐簿“shop.kpbook”：已有同名文件\n")

    def test_bills_are_refused_with_the_reason(self):
        self.new_firm()
        self.run_kpbook("add", self.book, "product", "商品编号=01001", "商品名称=水泥")
        self.told("bill", "add", self.book, "out", "--date", "2026-1-5", "--line", "商品=01001,数量=5,单价=12", code=1,
                  expected="第 1 行：中心仓库 的 01001 水泥：2026-1-5 库存 0，要出 5\n"
                           "kpbook: 共 1 处错误，没有作任何改动；要允许库存为负请加 --allow-negative\n")

    def test_questions_at_the_terminal(self):
        shown, code = self.on_terminal("new", self.book, answers=["测试商行", "2026", "1", "中心仓库", ""], asks=(": ".encode(), "：".encode()))
        self.assertEqual(code, 0, shown)
        for question in ("企业名称（直接回车：暂不填）：", "年份 [", "首月，1 到 12 [", "仓库（直接回车：没有了）："):
            self.assertIn(question, shown)


class WrongUsage(ChineseCase):
    def test_wrong_options(self):
        hint = "用法见 kpbook --help。\n"
        for arguments, expected in [
                (["clsoe"], "kpbook: 没有 clsoe 这个命令或选项；您是指 close 吗？\n"),
                ([], "kpbook: 请写出命令\n"),
                (["close", "shop.kpbook"], "kpbook: 缺少 --month\n"),
                (["close", "shop.kpbook", "--month", "13"], "kpbook: --month：13 不在 1 到 12 之间\n"),
                (["close", "shop.kpbook", "--month", "1", "--date", "x"], "kpbook: --date: “x”不是日期\n"),
                (["info", "shop.kpbook", "-O", "xlsx"], "kpbook: -O xlsx 要写到文件：请加 -o 文件\n"),
                (["payroll", "shop.kpbook", "--new"], "kpbook: --new 须与 --month 同用\n")]:
            with self.subTest(arguments=arguments):
                done = self.run_kpbook(*arguments, code=2)
                self.assertEqual(done.stderr, expected + hint)

    def test_a_file_that_is_not_there(self):
        self.told("info", "nowhere.kpbook", code=1, expected="kpbook: 不能打开帐簿“nowhere.kpbook”：没有这个文件\n")

    def test_help_of_every_command(self):
        commands = re.findall(r"^  (\w+) +\S", self.run_kpbook("--help").stdout.split("命令:")[-1], re.M)
        self.assertGreater(len(commands), 25)
        self.assertIn("用法: kpbook [选项] 命令\n", self.run_kpbook("--help").stdout)
        for command in commands:
            with self.subTest(command=command):
                help_text = self.run_kpbook(command, "--help").stdout
                self.assertRegex(help_text.splitlines()[0], "[\u4e00-\u9fff]")
                self.assertIn("示例：\n  ", help_text)
                for english in (" the ", " The ", "Examples", " is ", " of ", "Options", "Usage", "REQUIRED"):
                    self.assertNotIn(english, help_text)

    def test_manual_pages(self):
        page = self.run_kpbook("man", "close").stdout
        for heading in ("名称", "概述", "描述", "选项", "示例", "退出码", "另见"):
            self.assertIn(f".SH {heading}\n", page)
        self.assertIn("kpbook close shop.kpbook", page.replace("\\-", "-").split(".SH 示例")[1])


class Trading(ChineseCase, TradingCase):
    def test_unknown_tables_and_columns(self):
        self.told("sql", self.book, "Select * From 商品设", code=1,
                  expected="kpbook: 没有表“商品设” (第 1 行第 15 列)；您是指 商品设置 吗？\n  Select * From 商品设\n")
        self.told("sql", self.book, "Select 商品名 From 商品设置", code=1,
                  expected="kpbook: 没有列“商品名” (第 1 行第 8 列)；您是指 商品名称 吗？\n  Select 商品名 From 商品设置\n")

    def test_closing(self):
        done = self.run_kpbook("close", self.book, "--month", "2", code=1)
        self.assert_chinese(done.stderr, "kpbook: 东库 2 月：没有结帐：1 月尚未结帐，请先结该月\n"
                                         "kpbook: 西库 2 月：没有结帐：1 月尚未结帐，请先结该月\n")
        done = self.run_kpbook("close", self.book, "--month", "1")
        self.assert_chinese(done.stderr, "东库 2004-1：已结帐，2 种商品\n西库 2004-1：已结帐，1 种商品\n")
        done = self.run_kpbook("close", self.book, "--month", "1", code=1)
        self.assert_chinese(done.stderr, "kpbook: 东库 2004-1：已经结帐；要重新结帐请加 --again\n"
                                         "kpbook: 西库 2004-1：已经结帐；要重新结帐请加 --again\n")
        self.assert_chinese(self.run_kpbook("reopen", self.book, "--month", "1").stderr, "东库 2004-1：已反结帐\n西库 2004-1：已反结帐\n")

    def test_a_question_that_nobody_answers(self):
        self.add_line_without_balance()
        done = self.run_kpbook("close", self.book, "--month", "1", code=1)
        self.assertIn("无人可以回答这个提问；请加 --answer yes 或 --answer no\n", done.stderr)

    def test_checks_findings(self):
        self.run_kpbook("close", self.book, "--month", "1")
        self.run_kpbook("sql", self.book, "Update 仓库余额表 Set 本期库存数量=12 Where dpID=1 And pdID=1 And 月份=1")
        done = self.run_kpbook("check", self.book, code=1)
        self.assertEqual(done.stdout.splitlines()[0].split(), ["仓库", "年份", "月份", "pdID", "商品", "问题", "应为", "实为"])
        self.assertIn("本期库存数量不等于期初加入库减出库", done.stdout)
        self.assertIn("上期库存数量不等于上月结存", done.stdout)
        self.assert_chinese(done.stdout + done.stderr)
        self.assertEqual(json.loads(self.run_kpbook("check", self.book, "-O", "json", code=1).stdout)["columns"][5]["name"], "what")
        self.assertTrue(self.run_kpbook("check", self.book, "-O", "csv", code=1).stdout.startswith(
            "仓库,年份,月份,pdID,商品,what,expected,found"))

    def test_notes_of_reports(self):
        done = self.run_kpbook("report", "balance", self.book, "--month", "1")
        self.assertIn("1月未结帐：东库、西库；", done.stdout)
        self.assert_chinese(done.stdout + done.stderr)

    def test_what_programs_read_stays(self):
        answer = self.batch({"execute": "Select * From 没有"}, {"execute": "x", "methd": 1})
        self.assertIn("unknown table", answer[0]["error"]["description"])
        self.assertIn("unknown key", answer[1]["error"]["description"])
        trace = self.run_kpbook("sql", self.book, "Select 1 As n", "--trace").stderr
        self.assertRegex(trace, r"^execute: Select 1 As n\n  [\d.]+ ms, 1 row\n1 行\n$")

    def test_english_where_it_is_asked_for(self):
        for settings in ({"LC_ALL": "C"}, {"LANGUAGE": "en:zh_CN"}, {"LANG": "de_DE.UTF-8"}):
            with self.subTest(settings=settings), unittest.mock.patch.dict(os.environ, settings):
                self.assertEqual(self.run_kpbook("sql", self.book, "Select 1 As n").stderr, "1 row\n")


if __name__ == "__main__":
    unittest.main()
