"""What the tests of the built program share: a folder of its own for each test, and running kpbook as a user does."""

import atexit
import json
import os
import pathlib
import pty
import select
import shutil
import subprocess
import tempfile
import unittest

KPBOOK = os.environ["KPBOOK"]
# English, whoever runs the tests.
for name in ("LANGUAGE", "LC_ALL"):
    os.environ.pop(name, None)
os.environ["LC_MESSAGES"] = "C"
# For tests that bound the address space, of which a program with sanitizers takes terabytes.
needs_no_sanitizer = unittest.skipIf(os.environ.get("SANITIZED") == "1", "built with sanitizers")


# Books that many tests begin with are made once.
_kept = tempfile.TemporaryDirectory()
atexit.register(_kept.cleanup)
KEPT = pathlib.Path(_kept.name)


# The URL of a server on which the tests' books are then made.
SERVER = os.environ.get("KPTABLES_SERVER")


class KpbookCase(unittest.TestCase):
    maxDiff = None

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        self.book = self.folder / "shop.kpbook"
        if SERVER:
            self.book = f"{SERVER}&book={self.folder.name}"

    def run_kpbook(self, *arguments, text="", code=0):
        """Runs kpbook with standard input on a pipe; text may be bytes. Fails when the exit code is another."""
        data = text if isinstance(text, bytes) else text.encode()
        done = subprocess.run([KPBOOK, *(a if isinstance(a, bytes) else str(a) for a in arguments)], input=data,
                              capture_output=True, timeout=60)
        done.stdout, done.stderr = done.stdout.decode(), done.stderr.decode()
        self.assertEqual(done.returncode, code, f"kpbook {arguments}\n{done.stdout}\n{done.stderr}")
        return done

    def on_terminal(self, *arguments, answers=(), asks=b"[y/n] ", environment=()):
        """Runs kpbook on a terminal of its own, types an answer at each question; gives what was shown and the exit code."""
        child, terminal = pty.fork()
        if child == 0:
            os.environ.update(environment)
            os.execv(KPBOOK, [KPBOOK, *map(str, arguments)])
        shown, pending = b"", list(answers)
        while select.select([terminal], [], [], 30)[0]:
            try:
                piece = os.read(terminal, 65536)
            except OSError:
                break
            if not piece:
                break
            shown += piece
            if shown.endswith(asks) and pending:
                os.write(terminal, pending.pop(0).encode() + b"\n")
        os.close(terminal)
        self.assertEqual(pending, [], "questions that were never asked")
        return shown.decode().replace("\r\n", "\n"), os.waitstatus_to_exitcode(os.waitpid(child, 0)[1])

    def new_book(self):
        """A book with its tables only."""
        self.copy_of("bare", lambda: self.run_kpbook("new", self.book, "--bare"))

    def copy_of(self, name, make):
        """Puts a copy of a book in place that make() makes when the first test needs it."""
        kept = KEPT / name
        if SERVER:
            make()
        elif kept.exists():
            shutil.copy(kept, self.book)
        else:
            make()
            shutil.copy(self.book, kept)

    def sql(self, text):
        return self.run_kpbook("sql", self.book, text)

    def rows(self, text):
        """The rows that a statement answers."""
        return json.loads(self.run_kpbook("sql", self.book, text, "-O", "json").stdout)["rows"]

    def write(self, name, content):
        path = self.folder / name
        path.write_bytes(content if isinstance(content, bytes) else content.encode())
        return path

    def import_text(self, table, content, code=0):
        return self.run_kpbook("import", self.book, table, self.write(f"{table}.csv", content), code=code)

    def batch(self, *requests, options=()):
        """Sends requests (objects, or lines as they stand) and answers with the objects that come back."""
        lines = "".join((r if isinstance(r, str) else json.dumps(r, ensure_ascii=False)) + "\n" for r in requests)
        done = self.run_kpbook("call", self.book, "--batch", *options, text=lines)
        return [json.loads(line) for line in done.stdout.splitlines()]

    def call(self, method, *arguments, **others):
        """One call of a batch."""
        return self.batch({"method": method, "args": list(arguments), **others})[0]


BALANCE_HEADER = "年份,月份,pdID,dpID,上期库存单价,上期库存数量,上期库存金额\n"


class TradingCase(KpbookCase):
    """A book with two warehouses, three products and the bills of January and February.

    Warehouse 1, January: cement (1) opens with 10 at 5, amount 50; in come 4 at 6 and 2 at 7 (amount 38), out go 5 at 8
    (amount 40); bolts (2) open with 100 at 0.25, amount 25, and do not move.
    Warehouse 2, January: cement opens with 3 at 5, amount 15, and does not move.
    """

    def setUp(self):
        super().setUp()
        self.copy_of("trading", self.make_trading_book)

    def make_trading_book(self):
        self.new_book()
        self.import_text("仓库设置", "dpID,仓库名称\n1,东库\n2,西库\n")
        self.import_text("商品设置", "pdID,商品名称,ClassCode\n1,水泥,01\n2,螺栓,02\n3,油漆,03\n")
        self.import_text("仓库余额表", BALANCE_HEADER + "2004,1,1,1,5,10,50\n2004,1,2,1,0.25,100,25\n2004,1,1,2,5,3,15\n")
        self.import_text("入库目录", "BillID,年份,月份,日子,单据类型,dpID\n1,2004,1,5,入库单,1\n2,2004,1,20,入库单,1\n")
        self.import_text("入库记录", "BillID,pdID,dpID,数量,除税单价,除税金额\n1,1,1,4,6,24\n2,1,1,2,7,14\n")
        self.import_text("出库目录", "BillID,年份,月份,日子,单据类型,dpID\n1,2004,1,25,出库单,1\n")
        self.import_text("出库记录", "BillID,pdID,dpID,数量,除税单价,除税金额\n1,1,1,5,8,40\n")

    def add_line_without_balance(self):
        """Paint (3) comes in without a balance row."""
        self.import_text("入库记录", "BillID,pdID,dpID,数量,除税单价,除税金额\n2,3,1,1,9,9\n")

    def balance(self, warehouse, month):
        """Opening, inbound, outbound and closing quantity and amount by product."""
        found = self.rows("Select pdID,上期库存数量,上期库存金额,本期入库数量,本期入库金额,本期出库数量,本期出库金额,"
                          f"本期库存数量,本期库存金额 From 仓库余额表 Where dpID={warehouse} And 月份={month} Order by pdID")
        return {row[0]: row[1:] for row in found}
