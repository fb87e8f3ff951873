"""pgbouncer between hosts and a server: one that keeps a connection for each host, and ones that do not, which are refused."""

import os
import pathlib
import shutil
import subprocess
import tempfile
import time
import unittest

import private_server
import failing_server_case
from failing_server_case import FailingServer, ServerCase
from several_processes import Shop

PROGRAM = shutil.which("pgbouncer") or "/usr/sbin/pgbouncer"
USERS = ("kp", "李明")
NAME = "Select 仓库名称 From 仓库设置 Where dpID=1"
SHARED = "set pool_mode = session and server_reset_query = DISCARD ALL"


class Pooler:
    """A pgbouncer before a server, on a socket of its own."""

    def __init__(self, folder, server, **settings):
        self.folder = pathlib.Path(folder)
        private_server.give_to_server(self.folder)
        self.socket = self.folder / ".s.PGSQL.5432"
        settings = {"listen_addr": "", "listen_port": "5432", "unix_socket_dir": self.folder, "auth_type": "trust",
                    "auth_file": self.folder / "users", "logfile": self.folder / "log", "admin_users": "kp",
                    "server_login_retry": "1", **settings}
        lines = ["[databases]", f"postgres = host={server.folder}", "[pgbouncer]",
                 *(f"{name} = {value}" for name, value in settings.items())]
        self.write("settings", "\n".join(lines) + "\n")
        self.write("users", "".join(f'"{user}" ""\n' for user in USERS))

    def write(self, name, text):
        (self.folder / name).write_text(text, encoding="utf-8")
        (self.folder / name).chmod(0o644)

    def __enter__(self):
        self.process = subprocess.Popen(private_server.as_server([PROGRAM, str(self.folder / "settings")]),
                                        stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, cwd=self.folder)
        end = time.monotonic() + 30
        while not self.socket.exists():
            if self.process.poll() is not None or time.monotonic() > end:
                raise RuntimeError((self.folder / "log").read_text())
            time.sleep(0.01)
        return self

    def __exit__(self, *_):
        self.process.terminate()
        self.process.wait(30)

    def url(self, user="kp"):
        return f"postgresql:///postgres?host={self.folder}&user={user}"

    def psql(self, text, database="postgres"):
        """database pgbouncer: the pooler's own."""
        done = subprocess.run(["psql", "-X", "-A", "-t", "-h", str(self.folder), "-U", "kp", "-d", database, "-c", text],
                              capture_output=True, text=True, check=True)
        return done.stdout.strip()


class PoolerTest(ServerCase):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        if not pathlib.Path(PROGRAM).exists():
            raise unittest.SkipTest("pgbouncer is not installed")
        folder = cls.enterClassContext(tempfile.TemporaryDirectory(prefix="kpTablesServer-"))
        os.chmod(folder, 0o755)
        cls.postgres = cls.enterClassContext(FailingServer(folder, private_server.programs(), {"max_connections": "40"}))

    def pooler(self, mode, **settings):
        return self.enterContext(Pooler(self.folder(), self.postgres, pool_mode=mode, **settings))

    def backends(self):
        return int(self.postgres.psql("SELECT count(*) FROM pg_stat_activity WHERE backend_type = 'client backend' "
                                     "AND pid <> pg_backend_pid()"))

    def test_session(self):
        """Two books through one pool, whose connections go from hand to hand."""
        pooler = self.pooler("session", default_pool_size=12)
        with self.subTest("a book's life"):
            book = f"{pooler.url()}&book=ours"
            self.run_kpbook("new", book, "--company", "测试商行", "--year", "2026", "--month", "1", "--warehouse", "东库")
            self.run_kpbook("new", f"{pooler.url()}&book=theirs", "--company", "别家", "--year", "2026", "--month", "1",
                            "--warehouse", "西库")
            self.run_kpbook("add", book, "product", "商品编号=01", "商品名称=水泥")
            self.run_kpbook("bill", "add", book, "in", "--date", "2026-1-5", "--warehouse", "东库", "--line", "商品=01,数量=2,单价=3")
            self.run_kpbook("close", book, "--month", "1", "--answer", "yes")
            self.assertIn("别家", self.run_kpbook("books", pooler.url()).stdout)
            stock = self.run_kpbook("sql", book, "Select 本期库存数量,本期库存金额 From 仓库余额表 Where 月份=1", "-O", "csv").stdout
            self.assertEqual(stock.splitlines()[1], "2,6")
            self.run_kpbook("check", book)
            copy = self.folder() / "copy.kpbook"
            self.run_kpbook("copy", book, copy)
            self.run_kpbook("operators", book, "add", "李明", "入库处理")
            self.run_kpbook("grant", book, "李明", text="secret\n")
            self.run_kpbook("info", f"{pooler.url('李明')}&book=ours")
        with self.subTest("hosts side by side"):
            hosts = [self.host(f"{pooler.url()}&book={name}") for name in ("ours", "theirs", "ours")]
            names = ["东库", "西库", "东库"]
            for _ in range(3):
                self.assertEqual([self.value(host, NAME) for host in hosts], names)
            # A change of the tables is told.
            self.done(hosts[0], {"execute": "Alter Table 仓库设置 Add Column 电话 Text(20)"})
            self.assertIsNone(self.value(hosts[2], "Select 电话 From 仓库设置 Where dpID=1"))
        with self.subTest("the server restarts"):
            self.postgres.restart()
            self.assertEqual([self.value(host, NAME) for host in hosts], names)
            self.done(hosts[0], {"begin": True})
            self.done(hosts[0], {"execute": "Update 商品设置 Set 商品名称='x'"})
            self.postgres.restart()
            self.assertIn("nothing of the change was saved", self.refused(hosts[0], {"execute": "Update 商品设置 Set 商品名称='y'"}))
            self.done(hosts[0], {"rollback": True})
            self.assertEqual(self.value(hosts[0], "Select 商品名称 From 商品设置"), "水泥")

    def test_session_under_load(self):
        pooler = self.pooler("session", default_pool_size=12)
        shop = Shop(f"{pooler.url()}&book=several", 3600, "pooler")
        shop.prepare()
        shop.end = time.monotonic() + 2
        shop.open()
        shop.settle()
        self.assertEqual(shop.wrong, [])
        self.assertGreater(min(shop.counts[what] for what in ("bills", "closings", "reports")), 0)
        self.assertLessEqual(self.backends(), 12)

    def value(self, host, text):
        return self.done(host, {"execute": text})["result"]["rows"][0][0]

    def test_connections_that_are_shared_are_refused(self):
        self.run_kpbook("new", f"{self.postgres.url()}&book=refused", "--bare")
        for settings in ({"mode": "transaction"}, {"mode": "transaction", "server_round_robin": 1, "min_pool_size": 3},
                         {"mode": "statement"}):
            with self.subTest(**settings):
                pooler = self.pooler(**settings)
                for words in (("info", f"{pooler.url()}&book=refused"), ("new", f"{pooler.url()}&book=mine", "--bare"),
                              ("books", pooler.url())):
                    self.assertIn(SHARED, self.run_kpbook(*words, code=1).stderr)
                # The settings of the refused book do not stay with the pool.
                self.assertEqual(pooler.psql("SHOW search_path"), '"$user", public')
        self.assertEqual(self.postgres.psql("SELECT count(*) FROM pg_namespace WHERE nspname = 'mine'"), "0")

    def test_the_last_connection_of_a_pool(self):
        pooler = self.pooler("session", default_pool_size=1)
        self.run_kpbook("new", f"{self.postgres.url()}&book=last", "--bare")
        begin = time.monotonic()
        self.run_kpbook("info", f"{pooler.url()}&book=last")
        self.assertLess(time.monotonic() - begin, 20, "the command waits for a second connection")

    def test_a_busy_pool_is_noticed_by_the_statement(self):
        """A pool that begins to share connections when the book is open already: no statement runs in another's."""
        pooler = self.pooler("session")
        for name in ("firm", "other"):
            self.run_kpbook("new", f"{self.postgres.url()}&book={name}", "--bare")
        host, other = (self.host(f"{pooler.url()}&book={name}") for name in ("firm", "other"))
        count = {"execute": "Select Count(*) From 商品设置"}
        self.done(host, count)
        self.done(other, count)
        pooler.psql("SET pool_mode = transaction", "pgbouncer")
        # Both give their connections back; the one that was used last is taken first.
        self.done(other, count)
        self.done(host, count)
        for request in ({"execute": "Insert Into 商品设置 (pdID,商品名称) Values (1,'x')"}, count, {"begin": True}):
            self.assertIn(SHARED, self.refused(other, request))
            self.done(host, count)
        self.assertEqual(self.postgres.psql('SELECT count(*) FROM firm."商品设置"'), "0")


if __name__ == "__main__":
    failing_server_case.main()
