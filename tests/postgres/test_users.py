"""Operators as users of the server: what they may, and what the server refuses them; passwords."""

import os
import pathlib
import re
import subprocess
import unittest
import uuid

from kpbook_case import KPBOOK, SERVER
from server_case import FIRM_BOOK, ServerCase, kpbook, psql


class UsersTest(ServerCase):
    def setUp(self):
        super().setUp()
        self.name, self.book = self.copied("users")

    def operator(self, name, *rights):
        self.run_kpbook("operators", self.book, "add", name, *rights)
        self.run_kpbook("operators", self.book, "set-password", name, text=f"{name} 1\n")

    def granted(self, name, *options):
        """The book's URL as the user."""
        self.run_kpbook("grant", self.book, name, *options, text="server secret\n")
        return self.book.replace("user=kp", f"user={name}")

    def refused(self, *words):
        done = self.run_kpbook(*words, code=1)
        self.assertIn("permission denied", done.stderr)
        self.assertNotIn("server secret", done.stderr)

    def run_may(self, url, may):
        """Each of these changes works or is refused by the server, whatever kpbook's own rights would say."""
        line = ["--date", "2026-2-3", "--warehouse", "中心仓库", "--line", "商品=01001,数量=1,单价=2"]
        changes = {
            "入库处理": ["bill", "add", url, "in", "--partner", "江南水泥厂", *line],
            "出库处理": ["bill", "add", url, "out", "--partner", "杭州宏图", *line],
            "成本处理": ["bill", "add", url, "cost", *line],
            "商品管理": ["add", url, "product", f"商品编号={uuid.uuid4()}", f"商品名称={uuid.uuid4()}"],
            "仓库管理": ["add", url, "warehouse", "仓库名称=南库"],
            "项目管理": ["add", url, "project", "项目名称=大桥"],
            "发货单位": ["add", url, "supplier", "企业名称=厂"],
            "收货单位": ["add", url, "customer", "企业名称=客"],
            "月末结帐": ["close", url, "--month", "2", "--cost", "--answer", "yes"],
            "系统设置": ["add", url, "employee", "姓名=赵"],
        }
        for right, words in changes.items():
            with self.subTest(right=right):
                if right in may:
                    self.run_kpbook(*words)
                else:
                    self.refused(*words)

    def test_rights(self):
        self.operator("系统操作员")
        self.operator("李明", "入库处理", "商品管理", "库存查询")
        self.operator("王会计", "月末结帐", "成本处理", "发货单位", "收货单位")
        url = self.granted("李明")
        before = self.exported(self.book)
        self.run_may(url, {"入库处理", "商品管理"})
        after = self.exported(self.book)
        self.assertEqual(sorted(table for table in after if after[table] != before[table]),
                         ["manifest.json", "入库目录.csv", "入库记录.csv", "商品设置.csv"])
        self.run_may(self.granted("王会计"), {"月末结帐", "成本处理", "发货单位", "收货单位"})
        # Everybody reads, but of the operators the own row alone; the own password can be changed, a right cannot.
        self.run_kpbook("stock", url, "--month", "1")
        self.assertIn("1 row", self.run_kpbook("sql", url, "Select 姓名 From 操作员 Where 姓名='李明'").stderr)
        self.assertIn("1 row", self.run_kpbook("sql", url, "Select * From 操作员").stderr)
        self.run_kpbook("sql", url, "Update 操作员 Set 密码='x'")
        self.assertEqual([row[0] for row in self.rows("Select 姓名 From 操作员 Where 密码='x'")], ["李明"])
        for text in ("Update 操作员 Set 系统设置=True", "Delete From Log", "Update 入库目录 Set 审核员='李明'",
                     "Delete From 入库目录 Where BillID=1", "Update 系统选项 Set Discription='x'",
                     "Update 仓库余额表 Set 本期库存数量=0"):
            self.refused("sql", url, text)
        self.assertIn("must be owner", self.run_kpbook("sql", url, "Drop Table 备忘", code=1).stderr)
        self.operator("张审", "单据审核", "单据删除")
        auditor = self.granted("张审")
        for text in ("Update 入库目录 Set 审核员='张审',审核日期=#2026-2-4# Where 月份=2", "Update 出库目录 Set 审核员='张审' Where BillID=1",
                     "Delete From 入库记录 Where BillID In (Select BillID From 入库目录 Where 月份=2)", "Delete From 入库目录 Where 月份=2"):
            self.run_kpbook("sql", auditor, text)
        self.assertEqual(self.rows("Select 审核员 From 出库目录 Where BillID=1"), [["张审"]])
        for text in ("Update 入库目录 Set 说明='x'", "Insert Into 入库目录 (月份) Values (1)", "Update 入库记录 Set 数量=0"):
            self.refused("sql", auditor, text)
        # The lock is no way into the book's own table.
        server = url.split("&book=")[0]
        psql(f'UPDATE "{self.name}".kp_book SET format = 99', server)
        self.assertEqual(psql(f'SELECT format FROM "{self.name}".kp_book'), ["2"])
        # A part of the rows is no copy.
        for command in ("copy", "backup"):
            self.assertIn("only the book's owner sees all of its rows", self.run_kpbook(command, url, self.folder / "part.kpbook", code=1).stderr)
        self.assertFalse((self.folder / "part.kpbook").exists())
        listed = self.run_kpbook("books", url, "-O", "csv")
        self.assertIn(f"{self.name},测试商行,2026,1,", listed.stdout)
        self.assertEqual(listed.stderr.count("\n"), 1, listed.stderr)
        made = self.run_kpbook("new", url.replace(url.split("&book=")[1], "mine"), "--bare", code=1)
        self.assertIn("the user needs the right to create schemas there", made.stderr)
        # As an operator, with the log.
        password = self.write("password", "x\n")
        done = subprocess.run([KPBOOK, "add", url, "product", "商品编号=S2", "商品名称=石子", "--operator", "李明"], capture_output=True,
                              env={**os.environ, "KPBOOK_PASSWORD_FILE": str(password)}, timeout=60)
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertIn("石子", self.run_kpbook("log", self.book).stdout)

    def test_rights_change_and_are_taken(self):
        self.operator("系统操作员")
        self.operator("孙七", "商品管理")
        url = self.granted("孙七")
        def product():
            return ["add", url, "product", f"商品编号={uuid.uuid4()}", f"商品名称={uuid.uuid4()}"]

        self.run_kpbook(*product())
        self.run_kpbook("operators", self.book, "rights", "孙七", "商品管理=no", "系统设置=yes")
        self.run_kpbook(*product())
        self.run_kpbook("grant", self.book, "孙七")
        self.run_kpbook("add", url, "employee", "姓名=赵")
        self.assertIn("2 rows", self.run_kpbook("sql", url, "Select * From 操作员").stderr)
        # Where the server checks each row it takes none by COPY.
        self.run_kpbook("import", url, "操作员", self.write("operators.csv", "姓名,库存查询\n甲,yes\n乙,no\n丙,yes\n"))
        self.assertEqual(self.rows("Select Count(*) From 操作员 Where 姓名 In ('甲','乙','丙')"), [[3]])
        self.run_kpbook("operators", self.book, "rights", "孙七", "none")
        self.run_kpbook("grant", self.book, "孙七")
        self.refused(*product())
        # One who works in two books stays until the second is taken, too.
        other, second = self.copied("second")
        self.run_kpbook("operators", second, "add", "孙七")
        self.run_kpbook("grant", second, "孙七")
        self.assertNotIn("removed", self.run_kpbook("revoke", self.book, "孙七").stderr)
        self.run_kpbook("info", url, code=1)
        self.run_kpbook("info", second.replace("user=kp", "user=孙七"))
        self.assertIn("removed from the server", self.run_kpbook("revoke", second, "孙七").stderr)
        self.assertEqual(psql("SELECT count(*) FROM pg_roles WHERE rolname = '孙七'"), ["0"])
        # Somebody else's users are not removed, and who has all rights is no operator.
        psql("CREATE ROLE guest LOGIN")
        self.run_kpbook("grant", self.book, "系统操作员", "--user", "guest")
        self.assertNotIn("removed", self.run_kpbook("revoke", self.book, "guest").stderr)
        self.assertEqual(psql("SELECT count(*) FROM pg_roles WHERE rolname = 'guest'"), ["1"])
        self.run_kpbook("grant", self.book, "系统操作员", "--user", "kp", code=1)
        self.assertIn("kpbook operators BOOK lists them", self.run_kpbook("grant", self.book, "没有", code=1).stderr)
        self.run_kpbook("operators", self.book, "add", "赵钱")
        self.assertIn("a new user of the server needs one", self.run_kpbook("grant", self.book, "赵钱", text="", code=1).stderr)
        self.run_kpbook("revoke", self.book, "没有", code=1)

    def test_password(self):
        self.operator("周八", "商品管理")
        url = self.granted("周八")
        folder = pathlib.Path(re.search(r"host=([^&]+)", SERVER)[1])
        rules = folder / "data" / "pg_hba.conf"
        kept = rules.read_text()
        self.addCleanup(lambda: (rules.write_text(kept), psql("SELECT pg_reload_conf()")))
        rules.write_text("local all kp trust\nlocal all all scram-sha-256\n")
        psql("SELECT pg_reload_conf()")
        password = self.write("password", "server secret\r\n")
        wrong = self.write("wrong", "another\n")
        environment = {"PGPASSFILE": str(self.folder / "none")}

        def run(*options, **more):
            return subprocess.run([KPBOOK, "list", url, "product", *options], capture_output=True, text=True, timeout=60,
                                  env={**os.environ, **environment, **more}, start_new_session=True)

        self.assertEqual(run("--password-file", password).returncode, 0)
        for options, told in (((), "wants a password"),
                              (("--password-file", wrong), "The server refuses the connection: connection to server on socket"),
                              (("--password-file", self.folder / "no"), "cannot be read")):
            done = run(*options)
            self.assertEqual(done.returncode, 1)
            self.assertIn(told, done.stderr)
        passfile = self.write("pgpass", "*:*:*:*:server secret\n")
        passfile.chmod(0o600)
        self.assertEqual(run(PGPASSFILE=str(passfile)).returncode, 0)
        shown, code = self.on_terminal("list", url, "product", answers=["server secret"], asks=b"server: ",
                                       environment=environment)
        self.assertEqual(code, 0, shown)
        self.assertNotIn("secret", shown)


class FilesTest(ServerCase):
    def test_files_have_no_users(self):
        file = self.folder / "file.kpbook"
        kpbook("copy", FIRM_BOOK, file)
        kpbook("operators", file, "add", "李明")
        done = self.run_kpbook("grant", file, "李明", text="x\n", code=1)
        self.assertIn("not on a server", done.stderr)


class HelpTest(ServerCase):
    def test_examples(self):
        """The examples of --help that need a server."""
        ran = 0
        _, book = self.copied("help")
        for name in ("系统操作员", "李明"):
            self.run_kpbook("operators", book, "add", name)
        for command in ("grant", "revoke", "books", "copy"):
            text = self.run_kpbook(command, "--help").stdout
            found = [line.strip() for line in text.split("Examples:\n")[1].split("\n\n")[0].splitlines()]
            self.assertGreaterEqual(len(found), 3)
            for example in found:
                if "postgresql://" not in example:
                    continue
                for user in ([] if command != "revoke" else ["李明", "liming"]):
                    self.run_kpbook("grant", book, "李明", "--user", user, text="x\n")
                ready = re.sub(r"postgresql://kp@shop-server/books\?book=2026", book, example)
                ready = re.sub(r"postgresql://kp@shop-server/books\?book=shop", self.url("shop"), ready)
                ready = ready.replace("shop.kpbook", str(FIRM_BOOK))
                ready = re.sub(r"'postgresql://kp@shop-server/books\?sslmode=require'", f"'{SERVER}'", ready)
                ready = ready.replace("postgresql://kp@shop-server/books", f"'{SERVER}'").replace("kpbook ", f"'{KPBOOK}' ", 1)
                self.write("password.txt", "x\n")
                done = subprocess.run(["bash", "-c", ready], cwd=self.folder, input=b"x\n", capture_output=True, timeout=60)
                self.assertEqual(done.returncode, 0, f"{example}\n{done.stderr.decode()}")
                ran += 1
        self.assertEqual(ran, 10)


if __name__ == "__main__":
    unittest.main()
