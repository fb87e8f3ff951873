"""A failure is never answered as success, whatever the method makes of it."""

import contextlib
import os
import resource
import sqlite3
import subprocess
import unittest

from kpbook_case import KPBOOK, TradingCase, needs_no_sanitizer


class FailureTest(TradingCase):
    def break_book(self, *statements):
        with contextlib.closing(sqlite3.connect(self.book)) as connection:
            connection.create_collation("KPTEXT", lambda a, b: (a > b) - (a < b))
            for statement in statements:
                connection.execute(statement)
            connection.commit()

    def refuse_changes_of_balance(self):
        for event in ("Delete", "Update", "Insert"):
            self.break_book(f"Create Trigger refuse{event} Before {event} On 仓库余额表 "
                            "Begin Select Raise(Abort, 'no change today'); End")

    def test_locked_book(self):
        before = self.rows("Select Count(*) As n From 仓库余额表")
        with contextlib.closing(sqlite3.connect(self.book, isolation_level=None)) as other:
            other.execute("Begin Immediate")
            done = self.run_kpbook("call", self.book, "Clear_Password", "1", code=1)
            other.execute("Rollback")
        self.assertEqual(done.stdout, "False\n")
        self.assertIn("kpbook: a statement failed: ", done.stderr)
        self.assertIn("\n  Update 操作员 Set 密码=''", done.stderr)
        self.assertEqual(self.rows("Select Count(*) As n From 仓库余额表"), before)

    def test_trapped_error_of_a_statement(self):
        self.refuse_changes_of_balance()
        done = self.run_kpbook("call", self.book, "Close_DepotBalance", "1", "1", "False", "date:2004-01-31", code=1)
        self.assertEqual(done.stdout, "False\n")
        self.assertIn("no change today", done.stderr)
        self.assertIn("仓库余额表", done.stderr)

    def test_trapped_error_of_a_query(self):
        self.break_book("Alter Table 操作员 Rename To 职员")
        done = self.run_kpbook("call", self.book, "GetPassword", "x", "1", code=1)
        self.assertIn("kpbook: ", done.stderr)
        self.assertIn("操作员", done.stderr)

    def test_raised_error_shows_its_statement_once(self):
        done = self.run_kpbook("sql", self.book, "Select x From 仓库设置", code=1)
        self.assertTrue(done.stderr.startswith("kpbook: "), done.stderr)
        self.assertEqual(done.stderr.count("Select x From 仓库设置"), 1)
        self.assertNotIn("a statement failed", done.stderr)

    def test_message_box_with_an_error(self):
        done = self.run_kpbook("call", self.book, "Update_Option", "a" * 300, "1", code=1)
        self.assertIn("修改系统选项: ", done.stderr)

    def test_success_says_nothing(self):
        done = self.run_kpbook("call", self.book, "Get商品ID", "水泥")
        self.assertEqual((done.stdout, done.stderr), ("1\n", ""))

    def test_batch_tells_what_a_method_trapped(self):
        self.refuse_changes_of_balance()
        closing, version = self.batch(
            {"method": "Close_DepotBalance", "args": [1, 1, False, {"date": "2004-01-31"}]}, {"method": "Version"})
        self.assertEqual(closing["result"], False)
        self.assertNotIn("error", closing)
        self.assertEqual(len(closing["failed"]), 1)
        self.assertIn("no change today", closing["failed"][0]["error"]["description"])
        self.assertIn(closing["failed"][0]["text"], [sent["text"] for sent in closing["sent"]])
        self.assertNotIn("failed", version)

    def test_batch_tells_a_raised_error_once(self):
        answer = self.batch({"execute": "Select x From 仓库设置"})[0]
        self.assertIn("error", answer)
        self.assertNotIn("failed", answer)


@needs_no_sanitizer
class MemoryTest(TradingCase):
    MEGABYTE = 1 << 20
    NOT_STARTED = 127  # the dynamic loader's own exit code

    def under(self, limit, *arguments):
        def restrict():
            resource.setrlimit(resource.RLIMIT_AS, (limit, limit))
        return subprocess.run([KPBOOK, *map(str, arguments)], capture_output=True, preexec_fn=restrict, timeout=60)

    def check_under_every_limit(self, *arguments):
        """With any amount of memory the command gives the whole answer, or says that it could not."""
        whole = self.run_kpbook(*arguments).stdout.encode()
        refused = answered = 0
        # The system ends a program that it cannot load itself.
        least = max(8 * self.MEGABYTE, os.path.getsize(KPBOOK) + self.MEGABYTE)
        for limit in range(least, 48 * self.MEGABYTE, self.MEGABYTE // 4):
            done = self.under(limit, *arguments)
            if done.returncode == 0:
                self.assertEqual(done.stdout, whole, f"{limit} bytes")
                answered += 1
            elif done.returncode != self.NOT_STARTED:
                self.assertEqual(done.returncode, 1, f"{limit} bytes: {done}")
                self.assertIn(b"kpbook: ", done.stderr, f"{limit} bytes")
                refused += 1
        self.assertGreater(refused, 0)
        self.assertGreater(answered, 0)

    def test_info(self):
        self.run_kpbook("call", self.book, "Create_NewBook")
        self.check_under_every_limit("info", self.book)


if __name__ == "__main__":
    unittest.main()
