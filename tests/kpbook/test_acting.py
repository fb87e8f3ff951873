"""--operator and operators: who may do what, and what the log says about it."""

import os
import unittest

from kpbook_case import KPBOOK, KpbookCase


class ActingCase(KpbookCase):
    """系统操作员 (all rights, password 8801); 李明 (manages 钢材货场; enters goods in, may close), without a password."""

    def setUp(self):
        super().setUp()
        self.copy_of("operators", self.make_book)
        self.addCleanup(os.environ.pop, "KPBOOK_PASSWORD_FILE", None)
        self.password("8801")

    def make_book(self):
        self.run_kpbook("new", self.book, "--today", "2026-01-01")
        for name in ("中心仓库", "钢材货场"):
            self.run_kpbook("add", self.book, "warehouse", f"仓库名称={name}")
        self.operators("add", "系统操作员")
        self.operators("set-password", "系统操作员", text="8801\n")
        self.operators("add", "李明", "仓库=钢材货场", "入库处理", "月末结帐=yes", "商品管理")
        self.import_text("商品设置", "pdID,商品编号,商品名称\n1,01001,水泥\n")
        self.import_text("仓库余额表", "年份,月份,pdID,dpID,上期库存数量,上期库存金额\n2026,1,1,1,10,50\n2026,1,1,2,3,15\n")

    def password(self, text):
        os.environ["KPBOOK_PASSWORD_FILE"] = str(self.write("password", text + "\n"))

    def operators(self, *words, **options):
        return self.run_kpbook("operators", self.book, *words, **options)

    def as_ming(self, *words, code=0):
        return self.run_kpbook(*words[:1], self.book, *words[1:], "--operator", "李明", code=code)

    def as_system(self, *words, code=0):
        return self.run_kpbook(*words[:1], self.book, *words[1:], "--operator", "系统操作员", code=code)

    def log(self):
        """Who did what, the first first."""
        return self.rows("Select Operator,内容 From Log Order by logID")


class LoginTest(ActingCase):
    def test_passwords(self):
        self.as_system("info")
        for name, password in (("系统操作员", "8802"), ("系统操作员", ""), ("系统操作员", "8801 "), ("张三", "8801")):
            self.password(password)
            done = self.run_kpbook("info", self.book, "--operator", name, code=1)
            self.assertEqual((done.stdout, done.stderr), ("", "kpbook: the operator's name or password is wrong\n"))
        self.as_ming("info")
        os.environ["KPBOOK_PASSWORD_FILE"] = str(self.folder / "none")
        self.assertIn("cannot be read", self.as_system("info", code=1).stderr)
        self.as_ming("info")

    def test_at_the_terminal(self):
        del os.environ["KPBOOK_PASSWORD_FILE"]
        for typed, code in (("8801", 0), ("8802", 1)):
            shown, ended = self.on_terminal("stock", self.book, "--month", "1", "--operator", "系统操作员", answers=[typed],
                                            asks="Password of 系统操作员: ".encode())
            self.assertEqual(ended, code, shown)
            self.assertIn("Password of 系统操作员: ", shown)
            self.assertNotIn("8801", shown)
        self.password("8801")

    def test_a_broken_table_lets_nobody_in(self):
        self.sql("Drop Table 操作员")
        self.sql("Create Table 操作员 (ID COUNTER PRIMARY KEY, 姓名 TEXT(255))")
        self.sql("Insert Into 操作员 (姓名) Values ('李明')")
        self.as_ming("info", code=1)

    def test_where_no_operator_goes(self):
        self.run_kpbook("methods", "--operator", "李明", code=2)
        self.run_kpbook("upgrade", self.book, "--operator", "李明", code=2)
        self.run_kpbook("info", self.book, "--operator", "", code=2)


class RightsTest(ActingCase):
    def test_what_a_right_allows(self):
        self.as_ming("close", "--month", "1")
        self.as_ming("add", "product", "商品编号=01003", "商品名称=油漆")
        self.as_ming("list", "warehouse")
        before = self.book.read_bytes()
        for right, words in (("库存查询", ("stock", "BOOK", "--month", "1")), ("报表打印", ("report", "balance", "BOOK", "--month", "1")),
                             ("仓库管理", ("add", "BOOK", "warehouse", "仓库名称=东库")), ("发货单位", ("add", "BOOK", "supplier", "企业名称=厂")),
                             ("收货单位", ("edit", "BOOK", "customer", "1", "企业名称=厂")), ("系统设置", ("remove", "BOOK", "payment", "现金")),
                             ("系统设置", ("sql", "BOOK", "Select 1 As a")), ("系统设置", ("call", "BOOK", "Version")), ("系统设置", ("log", "BOOK")),
                             ("系统设置", ("operators", "BOOK", "add", "王芳")), ("系统设置", ("operators", "BOOK", "rights", "李明", "all")),
                             ("系统设置", ("operators", "BOOK", "require", "on")), ("系统设置", ("backup", "BOOK", self.folder / "copy"))):
            arguments = [self.book if word == "BOOK" else word for word in words]
            done = self.run_kpbook(*arguments, "--operator", "李明", code=1)
            self.assertEqual((done.stdout, done.stderr), ("", f"kpbook: the operator 李明 does not have the right {right}\n"))
        self.assertEqual(self.book.read_bytes(), before)
        self.as_system("stock", "--month", "1")

    def test_the_managed_warehouse_is_the_default(self):
        self.assertEqual(self.as_ming("close", "--month", "1").stderr, "钢材货场 2026-1: 1 product closed\n")
        self.assertEqual(self.as_ming("close", "--month", "1", "--warehouse", "中心仓库").stderr, "中心仓库 2026-1: 1 product closed\n")
        self.assertEqual(self.as_ming("reopen", "--month", "1", "--warehouse", "全部").stderr,
                         "中心仓库 2026-1: reopened\n钢材货场 2026-1: reopened\n")
        self.assertIn("the book has no warehouse 东库", self.as_ming("close", "--month", "1", "--warehouse", "东库", code=1).stderr)
        self.operators("rights", "李明", "库存查询")
        stock = ("stock", "--month", "1", "-O", "csv")
        everything = self.as_system(*stock).stdout
        self.assertEqual(self.as_ming(*stock, "--warehouse", "全部").stdout, everything)
        managed = self.as_ming(*stock).stdout
        self.assertEqual(managed, self.as_system(*stock, "--warehouse", "钢材货场").stdout)
        self.assertNotEqual(managed, everything)

    def test_the_log(self):
        self.as_ming("close", "--month", "1")
        self.as_ming("add", "product", "商品编号=01003", "商品名称=油漆")
        self.as_ming("add", "product", "商品编号=01003", "商品名称=油漆", code=1)
        self.as_system("sql", "Update 商品设置 Set 规格='425#' Where pdID=1")
        self.as_system("import", "雇员资料", self.write("staff.csv", "姓名\n李明\n王芳\n"))
        self.as_system("call", "Update_Option", "a", "1")
        self.as_system("operators", "rights", "李明", "none", "入库处理")
        self.assertEqual(self.log(), [["2", "结帐 钢材货场 2026-1"], ["2", "增加 商品设置 2 商品编号=01003 商品名称=油漆"],
                                      ["1", "执行 Update 商品设置 Set 规格='425#' Where pdID=1"], ["1", "导入 雇员资料 2"],
                                      ["1", "调用 Update_Option"], ["1", "操作员 rights 李明 none 入库处理"]])
        when = self.rows("Select Top 1 logDate From Log")[0][0]
        self.run_kpbook("add", self.book, "product", "商品编号=01005", "商品名称=螺栓", "--operator", "李明", "--today", "2004-02-29", code=1)
        self.as_system("operators", "rights", "李明", "商品管理")
        self.run_kpbook("add", self.book, "product", "商品编号=01005", "商品名称=螺栓", "--operator", "李明", "--today", "2004-02-29")
        self.assertEqual(self.rows("Select Top 1 logDate From Log Order by logID DESC")[0][0][:11], "2004-02-29T")
        self.assertRegex(when, r"^20\d\d-\d\d-\d\dT\d\d:\d\d:\d\d$")

    def test_a_change_that_cannot_be_logged_is_not_made(self):
        self.sql("Drop Table Log")
        before = self.rows("Select * From 商品设置")
        self.as_ming("add", "product", "商品编号=01003", "商品名称=油漆", code=1)
        self.as_system("import", "商品设置", self.write("products.csv", "商品编号\n01003\n"), code=1)
        self.assertEqual(self.rows("Select * From 商品设置"), before)

    def test_a_batch_is_logged(self):
        requests = ('{"method":"Update_Option","args":["b","2"]}\n{"method":"Get_Option","args":["b"]}\n'
                    '{"execute":"Update 商品设置 Set 规格=\'a\'"}\n')
        self.run_kpbook("call", self.book, "--batch", "--operator", "系统操作员", text=requests)
        self.assertEqual(self.log(), [["1", "调用 Update_Option"], ["1", "执行 Update 商品设置 Set 规格='a'"]])


class OperatorsTest(ActingCase):
    def test_setting_a_firm_up(self):
        self.assertEqual(self.operators("add", "王芳", "出库处理", "发货单位").stdout, "3\n")
        self.operators("edit", "王芳", "姓名=王方", "仓库=2")
        self.operators("rights", "王方", "出库处理=no", "库存查询")
        self.assertEqual(self.operators("-O", "csv").stdout.splitlines()[2:],
                         ["2,李明,not set,2,钢材货场,入库处理、月末结帐、商品管理、凭证处理",
                          "3,王方,not set,2,钢材货场,库存查询、凭证处理、资产处理"])
        self.assertIn("库存查询,True\n", self.operators("rights", "王方", "-O", "csv").stdout)
        self.operators("clear-password", "系统操作员")
        self.assertEqual(self.operators("remove", "王方").stderr, "王方: removed\n")
        before = self.book.read_bytes()
        for reason, words in (("has the name 李明 already", ("add", "李明")), ("did you mean 入库处理?", ("add", "王芳", "入库处里")),
                              ("no warehouse 东库", ("add", "王芳", "仓库=东库")), ("no operator 赵六", ("remove", "赵六"))):
            self.assertIn(reason, self.operators(*words, code=1).stderr)
        for words in (("add",), ("remove",), ("edit", "李明"), ("edit", "李明", "入库处理"), ("remove", "李明", "all"),
                      ("rights", "李明", "入库处理=perhaps"), ("require", "perhaps"), ("become", "李明")):
            self.operators(*words, code=2)
        self.assertEqual(self.book.read_bytes(), before)

    def test_ones_own_password(self):
        self.run_kpbook("operators", self.book, "set-password", "李明", "--operator", "李明", text="new one\n")
        self.as_ming("info", code=1)
        self.password("new one")
        self.as_ming("info")
        done = self.run_kpbook("operators", self.book, "set-password", "系统操作员", "--operator", "李明", text="x\n", code=1)
        self.assertIn("does not have the right 系统设置", done.stderr)
        self.assertEqual(self.log(), [["2", "操作员 set-password 李明"]])

    def test_a_book_that_demands_an_operator(self):
        self.as_system("operators", "require", "on")
        before = self.book.read_bytes()
        for words in (("add", "product", "商品编号=2", "商品名称=b"), ("sql", "Update 商品设置 Set 规格='a'"), ("close", "--month", "1"),
                      ("operators", "require", "off"), ("operators", "add", "王芳"), ("call", "Update_Option", "操作员登录", "不必"),
                      ("call", "--batch")):
            done = self.run_kpbook(*words[:1], self.book, *words[1:], code=1)
            self.assertEqual(done.stderr, "kpbook: the book demands an operator for every change: --operator NAME\n")
        self.assertIn("no operator would have the right 系统设置", self.as_system("operators", "rights", "系统操作员", "none", code=1).stderr)
        self.run_kpbook("stock", self.book, "--month", "1")
        self.assertEqual(self.book.read_bytes(), before)
        self.as_ming("add", "product", "商品编号=2", "商品名称=b")
        self.as_system("operators", "require", "off")
        self.run_kpbook("add", self.book, "product", "商品编号=3", "商品名称=c")


if __name__ == "__main__":
    unittest.main()
