#!/usr/bin/env python3
"""Several processes on one book: 4 enter bills, 2 close and close again, 2 read. several_processes.py [SECONDS] [SEED]

The book is a file, or on the server whose URL KPTABLES_SERVER has. Every bill brings in and takes out the same quantity in one transaction, so that in whatever a reader sees at one moment the
inbound and outbound figures of a product agree. What is checked throughout: what was confirmed is there, a key has one row in
仓库余额表, its figures fit together, a closing is seen before or after and never between, and a statement that fails says why.
"""

import json
import os
import pathlib
import random
import subprocess
import sys
import tempfile
import threading
import time
from decimal import Decimal

KPBOOK = os.environ["KPBOOK"]
PRODUCTS = range(1, 9)
WAREHOUSES = (1, 2)
MONTH = 3

# Whatever is selected here is wrong in every moment of the book's life.
FAULTS = {
    "a key twice": "Select 月份,pdID,dpID,Count(*) As n From 仓库余额表 Group by 月份,pdID,dpID Having Count(*)>1",
    "累计 does not fit": "Select B.pdID,B.dpID,B.累计入库数量,A.累计入库数量,B.本期入库数量 From 仓库余额表 As A Inner Join 仓库余额表 As B "
                         "On (A.pdID=B.pdID And A.dpID=B.dpID) Where A.月份=2 And B.月份=3 "
                         "And B.本期入库数量<>0 And B.累计入库数量<>A.累计入库数量+B.本期入库数量",
    "in and out of different moments": "Select pdID,dpID,本期入库数量,本期出库数量 From 仓库余额表 Where 月份=3 And 本期入库数量<>本期出库数量",
    "closing stock does not fit": "Select pdID,dpID,上期库存数量,本期库存数量 From 仓库余额表 Where 月份=3 "
                                  "And 本期库存数量<>上期库存数量+本期入库数量-本期出库数量",
    "opening is not the last closing": "Select B.pdID,B.dpID,A.本期库存数量,B.上期库存数量 From 仓库余额表 As A Inner Join 仓库余额表 As B "
                                       "On (A.pdID=B.pdID And A.dpID=B.dpID) Where A.月份=3 And B.月份=4 And A.本期库存数量<>B.上期库存数量",
    "a part of the next month": "Select dpID,Count(*) As n From 仓库余额表 Where 月份=4 Group by dpID Having Count(*)<>8",
    "half a bill": "Select D.BillID From 入库目录 As D Left Join 入库记录 As R On D.BillID=R.BillID Where R.BillID Is Null",
    "a bill that came in and did not go out": "Select D.BillID From 入库目录 As D Left Join 出库记录 As R On D.BillID=R.BillID "
                                              "Where R.BillID Is Null",
}


class Batch:
    """A kpbook that answers lines of JSON."""

    def __init__(self, book):
        self.process = subprocess.Popen([KPBOOK, "call", book, "--batch"], stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                        stderr=subprocess.PIPE, text=True, encoding="utf-8")

    def ask(self, request):
        self.process.stdin.write(json.dumps(request, ensure_ascii=False) + "\n")
        self.process.stdin.flush()
        line = self.process.stdout.readline()
        if not line:
            raise RuntimeError("kpbook ended: " + self.process.stderr.read())
        return json.loads(line)

    def execute(self, text):
        return self.ask({"execute": text})

    def close(self):
        self.process.stdin.close()
        code = self.process.wait(60)
        rest = self.process.stderr.read()
        self.process.stdout.close()
        self.process.stderr.close()
        return code, rest


class Shop:
    def __init__(self, book, seconds, seed):
        self.book = book
        self.seed = seed
        self.end = time.monotonic() + seconds
        self.lock = threading.Lock()
        self.confirmed = set()
        self.entered = {}
        self.counts = {"bills": 0, "refused bills": 0, "closings": 0, "refused closings": 0, "looks": 0, "refused looks": 0,
                       "reports": 0, "refused reports": 0}
        self.wrong = []

    def count(self, what, number=1):
        with self.lock:
            self.counts[what] += number

    def complain(self, what):
        with self.lock:
            self.wrong.append(what)

    def run(self, *words, ok=True):
        done = subprocess.run([KPBOOK, *words], capture_output=True, text=True, encoding="utf-8", timeout=120)
        if ok and done.returncode != 0:
            raise RuntimeError(f"kpbook {words}: {done.stdout}{done.stderr}")
        return done

    def prepare(self):
        self.run("new", self.book, "--bare")
        batch = Batch(self.book)
        statements = [f"Insert Into 仓库设置 (dpID,仓库名称) Values ({d},'仓库{d}')" for d in WAREHOUSES]
        for product in PRODUCTS:
            statements.append(f"Insert Into 商品设置 (pdID,商品名称) Values ({product},'商品{product}')")
            for warehouse in WAREHOUSES:
                statements.append("Insert Into 仓库余额表 (年份,月份,pdID,dpID,上期库存单价,上期库存数量,上期库存金额) "
                                  f"Values (2004,1,{product},{warehouse},2,100,200)")
        for statement in statements:
            answer = batch.execute(statement)
            assert "error" not in answer, answer
        batch.close()
        for month in (1, 2, MONTH):
            self.run("close", self.book, "--month", str(month), "--date", "2004-3-31", "--answer", "yes")

    def bill(self, batch, bill, rng):
        """The answers of one bill in one transaction; it ends at the first refusal."""
        warehouse, product, quantity = rng.choice(WAREHOUSES), rng.choice(PRODUCTS), rng.randint(1, 9)
        self.entered[bill] = warehouse, product, quantity
        texts = []
        for kind in ("入库", "出库"):
            texts.append(f"Insert Into {kind}目录 (BillID,年份,月份,日子,单据类型,dpID) "
                         f"Values ({bill},2004,{MONTH},{rng.randint(1, 28)},'{kind}单',{warehouse})")
            texts.append(f"Insert Into {kind}记录 (BillID,pdID,dpID,数量,除税单价,除税金额) "
                         f"Values ({bill},{product},{warehouse},{quantity},2,{2 * quantity})")
        for request in ({"begin": True}, *({"execute": text} for text in texts), {"commit": True}):
            answer = batch.ask(request)
            if "error" in answer or "failed" in answer:
                if request != {"begin": True}:
                    batch.ask({"rollback": True})
                return answer
        return None

    def enter(self, number):
        rng = random.Random(f"{self.seed} enter {number}")
        batch = Batch(self.book)
        bill = number * 1000000
        while time.monotonic() < self.end:
            bill += 1
            refusal = self.bill(batch, bill, rng)
            if refusal is None:
                self.count("bills")
                with self.lock:
                    self.confirmed.add(bill)
            else:
                self.count("refused bills")
                if not refusal.get("error", {}).get("description") and not refusal.get("failed"):
                    self.complain(f"a refusal without a reason: {refusal}")
            time.sleep(rng.uniform(0, 0.02))
        code, rest = batch.close()
        if code not in (0, 1):
            self.complain(f"a batch ended with {code}: {rest}")

    def close(self, number):
        rng = random.Random(f"{self.seed} close {number}")
        batch = Batch(self.book)
        while time.monotonic() < self.end:
            done = self.run("close", self.book, "--month", str(MONTH), "--warehouse", str(rng.choice(WAREHOUSES)), "--again",
                            "--date", "2004-3-31", "--answer", "yes", ok=False)
            self.count("closings" if done.returncode == 0 else "refused closings")
            if done.returncode != 0 and not done.stderr.strip():
                self.complain("a closing failed without a word")
            if done.returncode not in (0, 1):
                self.complain(f"a closing ended with {done.returncode}: {done.stderr}")
            self.look(batch)
        batch.close()

    def look(self, batch):
        refused = False
        for name, text in FAULTS.items():
            answer = batch.execute(text)
            if "error" in answer or "failed" in answer:
                refused = True
                if not answer.get("error", {}).get("description") and not answer.get("failed"):
                    self.complain(f"a query failed without a reason: {answer}")
            elif answer["result"]["rows"]:
                self.complain(f"{name}: {answer['result']['rows'][:3]}")
        self.count("refused looks" if refused else "looks")

    def read(self, number):
        rng = random.Random(f"{self.seed} read {number}")
        batch = Batch(self.book)
        while time.monotonic() < self.end:
            with self.lock:
                known = set(self.confirmed)
            answer = batch.execute("Select BillID From 入库目录")
            if "result" in answer:
                lost = known - {row[0] for row in answer["result"]["rows"]}
                if lost:
                    self.complain(f"confirmed and not there: {sorted(lost)[:3]}")
            self.look(batch)
            self.report(rng.choice(WAREHOUSES))
        batch.close()

    def report(self, warehouse):
        """A report's rows are of one moment, too: what came in went out, and the stock is what it was."""
        done = self.run("report", "balance", self.book, "--month", str(MONTH), "--warehouse", str(warehouse), "-O", "json", ok=False)
        self.count("reports" if done.returncode == 0 else "refused reports")
        if done.returncode != 0:
            if not done.stderr.strip():
                self.complain("a report failed without a word")
            return
        shown = json.loads(done.stdout)
        names = [column["name"] for column in shown["columns"]]
        rows = [dict(zip(names, row)) for row in shown["rows"]]
        if [row["pdID"] for row in rows] != list(PRODUCTS) or any(
                row["本期入库数量"] != row["本期出库数量"] or row["本期库存数量"] != 100 or row["本期库存金额"] != "200" for row in rows):
            self.complain(f"a report of different moments: {done.stdout}")

    def guarded(self, work, number):
        try:
            work(number)
        except Exception as error:  # a thread's failure is a failure of the test
            self.complain(f"{work.__name__} {number}: {error!r}")

    def open(self):
        workers = [(self.enter, n) for n in range(1, 5)] + [(self.close, n) for n in (1, 2)] + [(self.read, n) for n in (1, 2)]
        threads = [threading.Thread(target=self.guarded, args=worker) for worker in workers]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()

    def settle(self):
        """Afterwards: every confirmed bill is there with its lines, and a last closing fits all of them."""
        self.run("close", self.book, "--month", str(MONTH), "--again", "--date", "2004-3-31", "--answer", "yes")
        batch = Batch(self.book)
        for table in ("入库目录", "入库记录", "出库目录", "出库记录"):
            found = {row[0] for row in batch.execute(f"Select BillID From {table}")["result"]["rows"]}
            if self.confirmed - found:
                self.complain(f"lost from {table}: {sorted(self.confirmed - found)[:3]}")
            if table == "入库目录":
                self.compare_figures(batch, found)
        self.look(batch)
        batch.close()
        check = self.run("check", self.book, ok=False)
        if check.returncode != 0:
            self.complain(f"kpbook check: {check.stdout[:500]}{check.stderr[:500]}")

    def compare_figures(self, batch, bills):
        """What one person would have come to who entered these bills alone: opening stock 100 at 2, all prices 2."""
        expected = {(warehouse, product): 0 for warehouse in WAREHOUSES for product in PRODUCTS}
        for bill in bills:
            warehouse, product, quantity = self.entered[bill]
            expected[warehouse, product] += quantity
        rows = batch.execute("Select dpID,pdID,本期入库数量,本期入库金额,本期出库数量,本期出库金额,本期库存数量,本期库存金额 "
                             f"From 仓库余额表 Where 月份={MONTH}")["result"]["rows"]
        figures = {(row[0], row[1]): [Decimal(str(figure)) for figure in row[2:]] for row in rows}
        wanted = {key: [moved, 2 * moved, moved, 2 * moved, 100, 200] for key, moved in expected.items()}
        if figures != wanted:
            self.complain(f"figures {figures} instead of {wanted}")


def main():
    seconds = float(sys.argv[1]) if len(sys.argv) > 1 else 20
    seed = sys.argv[2] if len(sys.argv) > 2 else "1"
    with tempfile.TemporaryDirectory() as folder:
        server = os.environ.get("KPTABLES_SERVER")
        shop = Shop(f"{server}&book=several" if server else str(pathlib.Path(folder) / "shop.kpbook"), seconds, seed)
        shop.prepare()
        shop.end = time.monotonic() + seconds
        shop.open()
        shop.settle()
    print(", ".join(f"{number} {what}" for what, number in shop.counts.items()), f"(seed {seed}, {seconds:g} s)")
    for what in shop.wrong[:20]:
        print("WRONG:", what)
    idle = [what for what in ("bills", "closings", "looks", "reports") if shop.counts[what] == 0]
    if idle:
        print("WRONG: there were no", ", ".join(idle))
    return 1 if shop.wrong or idle else 0


if __name__ == "__main__":
    sys.exit(main())
