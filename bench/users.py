#!/usr/bin/env python3
"""Measures what a server's book bears: bench/users.py [SECONDS]. KPBOOK names the program, built with optimization.

bench/users.py --commit measures instead what it is worth that a change gives the book's lock back before the disk has it.

On a private PostgreSQL server that keeps what it confirms (fsync on), 1 to 8 hosts enter bills of five lines into one book,
then the same number into a book each. It prints the figures of docs/scaling.md: a table of bills a second and of the time a
bill takes, the bytes that a bill, a balance row, an empty book and an idle connection take, and what follows from them.
"""

import os
import pathlib
import random
import re
import statistics
import subprocess
import sys
import tempfile
import threading
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent
sys.path[:0] = [str(ROOT / "tests/postgres"), str(ROOT / "tests/faults")]
import private_server  # noqa: E402
from failing_server_case import DURABLE, FailingServer  # noqa: E402
from several_processes import Batch  # noqa: E402

LINES = 5
PRODUCTS = 200
USERS = (1, 2, 4, 8)
WORKING_DAYS = 300
BUSIEST_HOUR = 0.2  # of a day's bills


def ask(batch, request):
    answer = batch.ask(request)
    if "error" in answer or "failed" in answer:
        raise RuntimeError(f"{request}: {answer}")


def new_book(server, name):
    url = f"{server.url()}&book={name}"
    subprocess.run([os.environ["KPBOOK"], "new", url, "--bare"], check=True, stderr=subprocess.DEVNULL)
    batch = Batch(url)
    ask(batch, {"begin": True})
    ask(batch, {"execute": "Insert Into 仓库设置 (dpID,仓库名称) Values (1,'仓库')"})
    for product in range(1, PRODUCTS + 1):
        ask(batch, {"execute": f"Insert Into 商品设置 (pdID,商品名称,商品编号) Values ({product},'商品{product}','{product:05}')"})
    ask(batch, {"commit": True})
    batch.close()
    return url


class Entering:
    """Hosts that enter bills as fast as the server takes them."""

    def __init__(self, urls, seconds):
        self.urls, self.seconds = urls, seconds
        self.times = []

    def enter(self, url, first, begin):
        batch = Batch(url)
        rng = random.Random(first)
        times = []
        begin.wait()
        end = time.monotonic() + self.seconds
        bill = first
        while time.monotonic() < end:
            bill += 1
            since = time.monotonic()
            ask(batch, {"begin": True})
            ask(batch, {"execute": "Insert Into 出库目录 (BillID,年份,月份,日子,单据类型,单据编号,dpID,说明) "
                                   f"Values ({bill},2026,1,{rng.randint(1, 28)},'出库单','CK-{bill}',1,'送到工地')"})
            for _ in range(LINES):
                product, quantity = rng.randint(1, PRODUCTS), rng.randint(1, 9)
                ask(batch, {"execute": "Insert Into 出库记录 (BillID,pdID,dpID,数量,除税单价,除税金额) "
                                       f"Values ({bill},{product},1,{quantity},2,{2 * quantity})"})
            ask(batch, {"commit": True})
            times.append(time.monotonic() - since)
        batch.close()
        self.times += times

    def run(self):
        begin = threading.Barrier(len(self.urls))
        threads = [threading.Thread(target=self.enter, args=(url, (number + 1) * 1000000, begin))
                   for number, url in enumerate(self.urls)]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()
        return len(self.times) / self.seconds, statistics.median(self.times), statistics.quantiles(self.times, n=20)[-1]


def book_bytes(server, name):
    return int(server.psql("SELECT sum(pg_total_relation_size(oid)) FROM pg_class WHERE relkind = 'r' AND relnamespace = "
                           f"'{name}'::regnamespace"))


def balance_row_bytes(server, name, url):
    """Of a product's month in a warehouse, with its index."""
    batch = Batch(url)
    ask(batch, {"execute": "Insert Into 仓库余额表 (年份,月份,pdID,dpID) Select 2026,1,pdID,1 From 商品设置"})
    batch.close()
    return int(server.psql(f"SELECT pg_total_relation_size('{name}.\"仓库余额表\"')")) / PRODUCTS


def connection_bytes(server, url):
    """What the server's process of an idle connection holds for itself."""
    batch = Batch(url)
    ask(batch, {"execute": "Select Count(*) From 出库目录"})
    process = server.psql("SELECT pid FROM pg_stat_activity WHERE backend_type = 'client backend' AND pid <> pg_backend_pid()")
    shares = pathlib.Path(f"/proc/{process}/smaps_rollup").read_text()
    batch.close()
    return sum(int(line.split()[1]) * 1024 for line in shares.splitlines() if line.startswith(("Private_Dirty", "Private_Clean")))


def rounded(number):
    """To two digits."""
    return f"{float(f'{number:.2g}'):,g}"


def measure(server, seconds):
    print("| hosts | one book: bills/s | ms a bill (median, 95%) | a book each: bills/s | ms a bill (median, 95%) |")
    print("|---|---|---|---|---|")
    for users in USERS:
        cells = []
        for shared in (True, False):
            names = [f"{'one' if shared else 'own'}{users}"] if shared else [f"own{users}_{n}" for n in range(users)]
            urls = [new_book(server, name) for name in names]
            empty = book_bytes(server, names[0])
            rate, median, high = Entering(urls * users if shared else urls, seconds).run()
            cells += [f"{rate:.0f}", f"{1000 * median:.1f}, {1000 * high:.1f}"]
            if shared:
                bills = int(server.psql(f"SELECT count(*) FROM {names[0]}.\"出库目录\""))
                size = (book_bytes(server, names[0]) - empty) / bills
        print(f"| {users} | " + " | ".join(cells) + " |", flush=True)
    balance, connection = balance_row_bytes(server, names[0], urls[0]), connection_bytes(server, urls[0])
    print(f"\nA bill of {LINES} lines takes {size:.0f} bytes with its indexes, a product's month in a warehouse {balance:.0f}, an "
          f"empty book {empty}, an idle connection {connection} bytes of the server's memory.\n")
    print("| bills a day | in the busiest hour, a second | GB a year |\n|---|---|---|")
    for bills in (1_000, 10_000, 100_000, 1_000_000):
        print(f"| {bills:,} | {rounded(bills * BUSIEST_HOUR / 3600)} | {rounded(bills * WORKING_DAYS * size / 1e9)} |")
    print(f"\n5,000 products in 4 warehouses: {rounded(5000 * 4 * 12 * balance / 1e9)} GB a year; 8 GB of memory: "
          f"{rounded(8e9 / connection)} connections; a thousand empty books: {rounded(1000 * empty / 1e9)} GB.")


def statements_of_a_change(server, url):
    """The first and the last message of a change, as a host sends them: taken from the server's log."""
    host = Batch(url)
    ask(host, {"begin": True})
    ask(host, {"rollback": True})
    server.psql("ALTER SYSTEM SET log_statement = 'all'")
    server.psql("SELECT pg_reload_conf()")
    while server.psql("SHOW log_statement") != "all":
        time.sleep(0.01)
    log = server.folder / "log"
    before = log.stat().st_size
    ask(host, {"begin": True})
    ask(host, {"execute": "Update 商品设置 Set 备注='x' Where pdID=1"})
    ask(host, {"commit": True})
    host.close()
    server.psql("ALTER SYSTEM RESET log_statement")
    server.psql("SELECT pg_reload_conf()")
    sent = re.findall(r"LOG:  (?:statement|execute [^:]*): (.*)", log.read_bytes()[before:].decode())
    begin = next(place for place, text in enumerate(sent) if text.startswith("BEGIN"))
    commit = next(text for text in sent[begin:] if "COMMIT" in text)
    return sent[begin], commit


def as_one_message(text):
    """For pgbench, which sends statements one by one unless it is told otherwise."""
    return text.rstrip("; ").replace(";", "\\;") + ";\n"


def measure_commit(server, seconds, runs=3):
    begin, commit = statements_of_a_change(server, new_book(server, "shop"))
    print(f"A change begins with\n    {begin}\nand ends with\n    {commit}\n")
    server.psql("CREATE TABLE shop.line (id bigint GENERATED ALWAYS AS IDENTITY PRIMARY KEY, amount float8)")
    change = as_one_message(begin) + "INSERT INTO line (amount) VALUES (random());\n" * (LINES + 1)
    ways = {"early": change + as_one_message(commit), "at the end": change + "COMMIT;\n"}
    print("| connections | early: changes/s | at the end: changes/s |\n|---|---|---|")
    for connections in (1, 8):
        rates = {way: [] for way in ways}
        for _ in range(runs):
            for way, script in ways.items():
                done = subprocess.run([str(server.bin / "pgbench"), "-h", str(server.folder), "-U", "kp", "-n", "-c", str(connections),
                                       "-T", str(int(seconds)), "-f", "-", "postgres"], input=script, capture_output=True,
                                      text=True, check=True, env={**os.environ, "PGOPTIONS": "-c search_path=shop"})
                rates[way].append(float(re.search(r"tps = ([\d.]+)", done.stdout)[1]))
        print(f"| {connections} | {statistics.median(rates['early']):.0f} | {statistics.median(rates['at the end']):.0f} |", flush=True)


def main():
    words = [word for word in sys.argv[1:] if word != "--commit"]
    seconds = float(words[0]) if words else 10
    bin_folder = private_server.programs()
    if bin_folder is None:
        sys.exit("PostgreSQL is not installed (Debian's package postgresql)")
    with tempfile.TemporaryDirectory(prefix="kpTablesServer-") as folder:
        os.chmod(folder, 0o755)
        with FailingServer(folder, bin_folder, {**DURABLE, "max_connections": "50"}) as server:
            (measure_commit if "--commit" in sys.argv else measure)(server, seconds)


if __name__ == "__main__":
    main()
