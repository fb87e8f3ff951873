#!/usr/bin/env python3
"""The COM server under Wine: registration, scripts, the native client, and what removal leaves behind."""

import os
import pathlib
import tempfile
import unittest

import wine_prefix
from wine_prefix import SYSTEM, windows_path, wine

HERE = pathlib.Path(__file__).resolve().parent
ROOT = HERE.parents[1]
EXAMPLES = ROOT / "examples" / "com"
SERVER = pathlib.Path(os.environ["SERVER"])
CLIENT = pathlib.Path(os.environ["CLIENT"])
PASCAL_HOST = os.environ.get("PASCAL_HOST", "")
# The class of the recordsets' double in the native client.
ADO_CLASS = "HKLM\\Software\\Classes\\ADODB.Recordset\\CLSID"
DOUBLE = "{5F1F3A52-9F1D-4C38-9A51-6E0D2B7C1142}"


def classes(root):
    """The classes in the prefix's registry, for the machine (HKLM) or the user (HKCU), with all that stands under them."""
    with tempfile.TemporaryDirectory() as folder:
        file = pathlib.Path(folder) / "classes.reg"
        wine("reg", "export", root + "\\Software\\Classes", windows_path(file), "/y")
        return set(file.read_text(encoding="utf-16").splitlines())


def regsvr32(*arguments):
    wine_prefix.regsvr32(SERVER, *arguments)


class Registration(unittest.TestCase):
    """First by name, so that it runs before the server is registered for the others."""

    def test_registration_and_removal_leave_nothing_behind(self):
        scopes = {"HKLM": [], "HKCU": ["/n", "/i:user"]}
        before = {root: classes(root) for root in scopes}
        for root, scope in scopes.items():
            regsvr32(*scope)
            added = classes(root) - before[root]
            self.assertTrue(any("kpTables.CTables" in line for line in added), root)
            self.assertTrue(any("kpTables.dll" in line for line in added), root)
            # Wine registers type libraries for the machine, whatever is asked for.
            self.assertTrue(root == "HKCU" or any("kpTables.tlb" in line for line in added))
            regsvr32("/u", *scope)
        for root in scopes:
            self.assertEqual(classes(root), before[root])
        self.assertFalse(SERVER.with_suffix(".tlb").exists())


class Scripts(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        regsvr32()

    @classmethod
    def tearDownClass(cls):
        regsvr32("/u")

    def said(self, source, suffix=".vbs"):
        lines, result = wine_prefix.script(source, suffix)
        self.assertEqual(result.returncode, 0, (lines, result.stdout[-500:], result.stderr[-500:]))
        return lines

    def test_vbscript_calls_by_name(self):
        self.assertEqual(self.said((HERE / "calls.vbs").read_text(encoding="utf-8")), [
            "10110", "-CD号", "2.5", "建材", "-1", "String", "Double", "449 kpTables", "438", "91 kpTables",
            "13 -1", "0 5"])

    def test_jscript_calls_by_name(self):
        self.assertEqual(self.said((HERE / "calls.js").read_text(encoding="utf-8"), ".js"), [
            "10110", "-CD号", "2.5", "建材", "true", "449"])

    def test_an_ado_shaped_connection_in_vbscript(self):
        self.assertEqual(self.said((HERE / "connection.vbs").read_text(encoding="utf-8")), [
            "Select Distinct 生产厂家 From 商品设置 Order by 生产厂家|-1", "-1 200",
            "Update 操作员 set 姓名='张三' Where ID=3|-1", "-1", "Select * From 工资表 Where 月份=1|-1",
            "-2147217900"])

    def run_program(self, source, *arguments):
        lines, result = wine_prefix.run_program(source, *arguments)
        self.assertEqual(result.returncode, 0, (lines[-40:], result.stderr[-500:]))
        return lines

    def test_the_programs_in_the_readme_and_in_the_checklist(self):
        with tempfile.TemporaryDirectory() as folder:
            book = windows_path(pathlib.Path(folder) / "帐簿.kpbook")
            readme = (ROOT / "README.md").read_text(encoding="utf-8")
            program = (EXAMPLES / "first-month.vbs").read_text(encoding="utf-8")
            self.assertIn("```vb\n" + program + "```", readme)
            self.assertEqual(self.run_program(program, book), ["01001 10 3205"])
            self.assertEqual(self.said(f'Const BOOK = "{book}"\n' + (HERE / "book.vbs").read_text(encoding="utf-8")), [
                "0", "1 Long", "1", "-1", "商品名称=普通硅酸盐水泥;商品编号=01001;", "普通硅酸盐水泥 01001 202 200 1", "-1", "2",
                "杭州宏图", "1 1 上海建工 宏图", "1", "-1", "2", "-2147217900 kpTables", "-2147217904", "3265", "3704"])
        echoed = self.run_program((EXAMPLES / "checklist.vbs").read_text(encoding="utf-8"))
        self.assertEqual([line for line in echoed if not line.startswith("PASS ")], [])
        self.assertGreater(len(echoed), 12)


    @unittest.skipUnless(PASCAL_HOST, "there is no Free Pascal for this width")
    def test_a_host_in_free_pascal(self):
        with tempfile.TemporaryDirectory() as folder:
            book = windows_path(pathlib.Path(folder) / "shop.kpbook")
            self.run_program((EXAMPLES / "first-month.vbs").read_text(encoding="utf-8"), book)
            for arguments, code, shown, told in (((book, "1"), 0, "01001 普通硅酸盐水泥 10 3205\n", ""),
                                                 ((book, "99999"), 1, "", "800A0006 "), (("Z:\\nowhere.kpbook", "1"), 1, "", "80004005 ")):
                result = wine(PASCAL_HOST, *arguments)
                self.assertEqual((result.returncode, result.stdout.decode()), (code, shown), result.stderr)
                self.assertTrue(result.stderr.decode().startswith(told), result.stderr)


class Native(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        regsvr32()
        # Wine has recordsets of its own, which lack much; the prefix has them again when the tests are done.
        own = wine(SYSTEM + "reg.exe", "query", ADO_CLASS, "/ve").stdout.decode("gbk").split()[-1]
        cls.addClassCleanup(wine, SYSTEM + "reg.exe", "add", ADO_CLASS, "/ve", "/d", own, "/f")
        wine(SYSTEM + "reg.exe", "add", ADO_CLASS, "/ve", "/d", DOUBLE, "/f")

    @classmethod
    def tearDownClass(cls):
        regsvr32("/u")

    def test_client(self):
        result = wine(CLIENT, "--gtest_brief=1", timeout=120)
        self.assertEqual(result.returncode, 0, result.stdout.decode(errors="replace")[-6000:] +
                         result.stderr.decode(errors="replace")[-2000:])
        self.assertIn(b"PASSED", result.stdout)


if __name__ == "__main__":
    if not wine_prefix.has_wine():
        print(f"no Wine for {wine_prefix.WIDTH}: the COM server was not tested")
    else:
        with wine_prefix.session():
            result = unittest.main(exit=False).result
        raise SystemExit(not result.wasSuccessful())
