"""A primary server and its standby: the primary dies and the standby takes its place; reports from the standby."""

import subprocess
import threading
import time
import unittest

import private_server
import failing_server_case
from failing_server_case import DURABLE, FailingServer, ServerCase
from several_processes import Shop


class StandbyServer(FailingServer):
    """Copies the primary server and follows it."""

    def __init__(self, folder, bin_folder, primary):
        super().__init__(folder, bin_folder, {**DURABLE, "log_statement": "all"})
        self.primary = primary

    def __enter__(self):
        private_server.give_to_server(self.folder)
        self.run([self.bin / "pg_basebackup", "-h", self.primary.folder, "-U", "kp", "-D", self.data, "-R", "-c", "fast"])
        self.start()
        return self

    def promote(self):
        self.run([self.pg_ctl, "-D", self.data, "-w", "promote"])

    def statements(self):
        """How many statements it has run for programs that ask for bills."""
        return (self.folder / "log").read_text(encoding="utf-8", errors="replace").count('FROM "入库目录"')


class StandbyTest(ServerCase):
    def setUp(self):
        self.primary = self.server(**DURABLE)
        self.standby = self.enterContext(StandbyServer(self.folder(), private_server.programs(), self.primary))

    def wait_for_standby(self):
        for _ in range(200):
            if self.primary.psql("SELECT count(*) FROM pg_stat_replication WHERE state = 'streaming'") == "1":
                return
            time.sleep(0.05)
        self.fail("the standby does not follow")

    def synchronous(self, commit):
        self.wait_for_standby()
        self.primary.psql("ALTER SYSTEM SET synchronous_standby_names = '*'")
        self.primary.psql(f"ALTER SYSTEM SET synchronous_commit = '{commit}'")
        self.primary.psql("SELECT pg_reload_conf()")

    def test_standby_takes_the_primarys_place(self):
        # What the server's command line says would come before its files.
        self.primary.settings.pop("synchronous_commit")
        self.primary.restart()
        self.synchronous("on")
        url = (f"postgresql:///postgres?host={self.primary.folder},{self.standby.folder}&user=kp"
               "&target_session_attrs=read-write&book=shop")
        shop = Shop(url, 3600, "standby")
        shop.prepare()
        threads = [threading.Thread(target=shop.guarded, args=(shop.enter, number)) for number in range(1, 4)]
        for thread in threads:
            thread.start()
        self.wait_for(lambda: len(shop.confirmed) > 50, "no bills were entered")
        self.synchronous("remote_apply")
        self.own_changes_are_on_the_standby(f"{self.primary.url()}&book=shop&reports={self.standby.folder}")
        self.primary.kill()
        self.standby.promote()
        before = len(shop.confirmed)
        self.wait_for(lambda: len(shop.confirmed) > before + 50, "nobody went on")
        shop.end = 0
        for thread in threads:
            thread.join()
        shop.settle()
        self.assertEqual(shop.wrong, [])

    def own_changes_are_on_the_standby(self, url):
        """What is confirmed is there, without waiting for it, while others enter bills as well."""
        self.wait_for(lambda: self.primary.psql("SHOW synchronous_commit") == "remote_apply", "the setting is not taken")
        host = self.host(url)
        for number in range(1, 11):
            self.done(host, {"execute": f"Insert Into 商品设置 (pdID,商品名称) Values ({100 + number},'商品')"})
            self.assertEqual(self.standby.psql('SELECT count(*) FROM shop."商品设置" WHERE "pdID" > 100'), str(number))
        # In a transaction nothing is read from there.
        before = self.standby.statements()
        for request in ({"begin": True}, {"execute": "Select Count(*) From 入库目录"}, {"rollback": True}):
            self.done(host, request)
        self.assertEqual(self.standby.statements(), before)
        shown = self.run_kpbook("report", "bills", url, "--direction", "in", "-O", "csv").stdout
        self.assertGreater(shown.count("入库单"), 50)
        self.assertGreater(self.standby.statements(), before, "the standby was not asked")

    def wait_for(self, condition, complaint):
        end = time.monotonic() + 30
        while not condition():
            self.assertLess(time.monotonic(), end, complaint)
            time.sleep(0.01)

    def test_reports_from_the_standby(self):
        book = f"{self.primary.url()}&book=shop"
        reporting = f"{book}&reports={self.standby.folder}"
        self.run_kpbook("new", reporting, "--company", "测试商行", "--year", "2026", "--month", "1", "--warehouse", "东库")
        self.run_kpbook("add", reporting, "product", "商品编号=01", "商品名称=水泥")
        self.wait_for_standby()
        enter = ("bill", "add", reporting, "in", "--date", "2026-1-5", "--warehouse", "东库", "--line", "商品=01,数量=2,单价=3")
        report = ("report", "bills", reporting, "--direction", "in", "-O", "csv")
        for bills in (1, 2):
            self.run_kpbook(*enter)
            before = self.standby.statements()
            shown = self.run_kpbook(*report).stdout
            self.assertEqual(shown.count("2026-01-05"), bills, shown)
            self.assertGreater(self.standby.statements(), before, "the standby was not asked")
        with self.subTest("a standby that lags is waited for"):
            self.standby.psql("SELECT pg_wal_replay_pause()")
            self.run_kpbook(*enter)
            coming = threading.Timer(0.5, self.standby.psql, ["SELECT pg_wal_replay_resume()"])
            coming.start()
            before = self.standby.statements()
            self.assertEqual(self.run_kpbook(*report).stdout.count("2026-01-05"), 3)
            self.assertGreater(self.standby.statements(), before)
            coming.join()
        with self.subTest("one that does not come so far is not asked"):
            self.standby.psql("SELECT pg_wal_replay_pause()")
            self.run_kpbook(*enter)
            before = self.standby.statements()
            self.assertEqual(self.run_kpbook(*report).stdout.count("2026-01-05"), 4)
            self.assertEqual(self.standby.statements(), before)
            self.standby.psql("SELECT pg_wal_replay_resume()")
        with self.subTest("one that is gone neither"):
            self.standby.stop("immediate")
            self.assertEqual(self.run_kpbook(*report).stdout.count("2026-01-05"), 4)
            self.run_kpbook("report", "bills", f"{book}&reports=a:b", "--direction", "in", code=1)


if __name__ == "__main__":
    failing_server_case.main()
