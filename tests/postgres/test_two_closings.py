"""Two programs that close one warehouse on a server at once: one of them waits, and is then told."""

import subprocess
import unittest

from kpbook_case import KPBOOK
from server_case import ServerCase

CLOSING = ["--month", "2", "--warehouse", "中心仓库", "--cost", "--answer", "yes"]
MARCH = "Select pdID,上期库存数量,上期库存金额 From 仓库余额表 Where dpID=1 And 月份=3 Order By pdID"


class TwoClosingsTest(ServerCase):
    def started(self, *words):
        return subprocess.Popen([KPBOOK, *map(str, words)], stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                stderr=subprocess.PIPE, text=True, encoding="utf-8")

    def ended(self, program):
        out, err = program.communicate(timeout=60)
        return program.returncode, out, err

    def march(self, book):
        return self.run_kpbook("sql", book, MARCH, "-O", "csv").stdout

    def closed_alone(self):
        """What March begins with after one closing."""
        _, alone = self.copied("alone")
        self.run_kpbook("close", alone, *CLOSING)
        return self.march(alone)

    def test_at_once(self):
        expected = self.closed_alone()
        self.assertGreater(len(expected.splitlines()), 1)
        _, book = self.copied("both")
        for _ in range(3):
            ends = [self.ended(program) for program in [self.started("close", book, *CLOSING) for _ in range(2)]]
            self.assertEqual(sorted(code for code, _, _ in ends), [0, 1], ends)
            told = next(err for code, _, err in ends if code == 1)
            self.assertIn("closed already", told)
            self.assertEqual(self.march(book), expected)
            self.run_kpbook("check", book)
            self.run_kpbook("reopen", book, "--month", "2", "--warehouse", "中心仓库", "--answer", "yes")

    def test_behind_a_long_change(self):
        """The other program's change is open for longer than a closing waits."""
        _, book = self.copied("long")
        other = self.started("call", book, "--batch")
        for line in ('{"begin":true}', '''{"execute":"Update 商品设置 Set 备注='x' Where pdID=1"}'''):
            other.stdin.write(line + "\n")
            other.stdin.flush()
            self.assertNotIn("error", other.stdout.readline())
        done = self.run_kpbook("close", book, *CLOSING, code=1)
        self.assertIn("in use", done.stderr)
        self.assertEqual(len(self.march(book).splitlines()), 1)
        other.stdin.write('{"commit":true}\n')
        self.assertEqual(self.ended(other)[0], 0)
        self.run_kpbook("close", book, *CLOSING)
        self.run_kpbook("check", book)


if __name__ == "__main__":
    unittest.main()
