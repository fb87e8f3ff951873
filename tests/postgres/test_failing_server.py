"""Servers that restart, that are killed, and whose disk is full: what a host that stays open sees, and what is in the book."""

import os
import shutil
import subprocess
import threading
import time
import unittest

import private_server
import failing_server_case
from failing_server_case import DURABLE, ServerCase
from several_processes import Shop

PRODUCT = "Insert Into 商品设置 (pdID,商品名称) Values ({},'商品')"
COUNT = {"execute": "Select Count(*) From 商品设置"}


class FailingServerTest(ServerCase):
    def new_book(self, server):
        book = f"{server.url()}&book=shop"
        self.run_kpbook("new", book, "--bare")
        return book

    def count(self, host):
        return self.done(host, COUNT)["result"]["rows"][0][0]

    def test_restart(self):
        server = self.server()
        host = self.host(self.new_book(server))
        self.done(host, {"execute": PRODUCT.format(1)})
        with self.subTest("while a host is idle"):
            server.restart()
            self.done(host, {"execute": PRODUCT.format(2)})
            self.assertEqual(self.count(host), 2)
            server.restart()
            self.assertEqual(self.count(host), 2)
        with self.subTest("in a transaction"):
            self.done(host, {"begin": True})
            self.done(host, {"execute": PRODUCT.format(3)})
            server.restart()
            self.assertIn("nothing of the change was saved", self.refused(host, {"execute": PRODUCT.format(4)}))
            self.refused(host, COUNT)
            self.refused(host, {"commit": True})
            self.done(host, {"rollback": True})
            self.assertEqual(self.count(host), 2)
            self.done(host, {"execute": PRODUCT.format(3)})
            self.assertEqual(self.count(host), 3)
        with self.subTest("the administrator ends a connection"):
            server.psql("SELECT pg_terminate_backend(pid) FROM pg_stat_activity WHERE pid <> pg_backend_pid() "
                        "AND backend_type = 'client backend'")
            self.assertEqual(self.count(host), 3)
        with self.subTest("the server comes back later"):
            server.stop()
            coming = threading.Timer(1, server.start)
            coming.start()
            self.assertEqual(self.count(host), 3)
            coming.join()

    def test_command(self):
        """A command that waits in its transaction for another program's lock when the server drops the connection."""
        server = self.server()
        book = self.new_book(server)
        other = subprocess.Popen([str(server.bin / "psql"), "-X", "-q", "-h", server.folder, "-U", "kp", "-d", "postgres"],
                                 stdin=subprocess.PIPE, stdout=subprocess.DEVNULL)
        other.stdin.write('BEGIN; LOCK TABLE shop."商品设置";\n'.encode())
        other.stdin.flush()
        script = f"{PRODUCT.format(1)};\n{PRODUCT.format(2)};\n"
        waits = "FROM pg_stat_activity WHERE wait_event_type = 'Lock'"
        ending = threading.Thread(target=lambda: (
            self.wait(lambda: server.psql(f"SELECT count(*) {waits}") == "1", "nobody waits"),
            server.psql(f"SELECT pg_terminate_backend(pid) {waits}")))
        self.wait(lambda: server.psql("SELECT count(*) FROM pg_locks WHERE mode = 'AccessExclusiveLock' AND granted") != "0",
                  "nothing is locked")
        ending.start()
        failed = self.run_kpbook("sql", book, "-", "--transaction", text=script, code=1)
        ending.join()
        other.communicate(b"ROLLBACK;\n")
        self.assertIn("The connection to the server failed", failed.stderr)
        self.assertIn("nothing of the change was saved: enter it again", failed.stderr)
        self.run_kpbook("sql", book, "-", "--transaction", text=script)
        self.assertEqual(self.count(self.host(book)), 2)

    def test_stopped(self):
        server = self.server()
        book = self.new_book(server)
        host = self.host(book)
        self.assertEqual(self.count(host), 0)
        server.stop()
        begin = time.monotonic()
        for _ in range(3):
            self.assertIn("The server cannot be reached", self.refused(host, COUNT))
        self.assertLess(time.monotonic() - begin, 30, "each statement waits for the server anew")
        self.assertIn("The server cannot be reached", self.run_kpbook("sql", book, COUNT["execute"], code=1).stderr)
        server.start()
        self.assertEqual(self.count(host), 0)

    def test_killed_while_bills_are_saved(self):
        server = self.server(**DURABLE)
        kills = int(os.environ.get("KPTABLES_KILLS", "2"))
        shop = Shop(f"{server.url()}&book=shop", 3600, "kill")
        shop.prepare()
        threads = [threading.Thread(target=shop.guarded, args=(shop.enter, number)) for number in range(1, 4)]
        for thread in threads:
            thread.start()
        for number in range(kills + 20):
            before = len(shop.confirmed)
            self.wait(lambda: len(shop.confirmed) > before + 20, "no bills were entered")
            # A kill that meets nobody in a transaction refuses no bill: the hosts connect again.
            if number >= kills and shop.counts["refused bills"] > 0:
                break
            server.kill()
            self.start_again(server)
        shop.end = 0
        for thread in threads:
            thread.join()
        shop.settle()
        self.assertEqual(shop.wrong, [])
        self.assertGreater(shop.counts["refused bills"], 0)

    def wait(self, condition, complaint):
        end = time.monotonic() + 30
        while not condition():
            self.assertLess(time.monotonic(), end, complaint)
            time.sleep(0.01)

    def start_again(self, server):
        """The last of the killed processes may still hold the server's memory."""
        for _ in range(50):
            try:
                return server.start()
            except SystemExit:
                time.sleep(0.1)
        return server.start()

    def test_full_disk(self):
        server = self.server()
        disk = self.small_disk(30)
        server.psql(f"CREATE TABLESPACE small LOCATION '{disk}'")
        server.psql("CREATE DATABASE small TABLESPACE small")
        book = f"{server.url()}&book=shop".replace("/postgres?", "/small?")
        self.run_kpbook("new", book, "--bare")
        host = self.host(book)
        self.done(host, {"execute": PRODUCT.format(1)})
        rows = self.folder() / "rows.csv"
        rows.write_text("pdID,商品名称\n" + "".join(f"{n},{'长' * 20}{n}\n" for n in range(2, 3002)), encoding="utf-8")
        with open(disk / "other", "wb") as other:
            other.write(bytes(shutil.disk_usage(disk).free - 200000))
        failed = self.run_kpbook("import", book, "商品设置", rows, code=1)
        self.assertIn("The server's disk is full", failed.stderr)
        self.assertEqual(self.count(host), 1)
        (disk / "other").unlink()
        self.run_kpbook("import", book, "商品设置", rows)
        self.assertEqual(self.count(host), 3001)
        self.run_kpbook("check", book)

    def small_disk(self, megabytes):
        """A file system of that size; skips the test where none may be mounted."""
        disk = self.folder()
        mounted = subprocess.run(["mount", "-t", "tmpfs", "-o", f"size={megabytes}m", "tmpfs", disk], capture_output=True,
                                 text=True, check=False)
        if mounted.returncode != 0:
            self.skipTest(f"a small disk cannot be mounted here: {mounted.stderr.strip()}")
        self.addCleanup(subprocess.run, ["umount", "--lazy", disk], check=False)
        private_server.give_to_server(disk)
        return disk


if __name__ == "__main__":
    failing_server_case.main()
