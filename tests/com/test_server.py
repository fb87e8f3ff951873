#!/usr/bin/env python3
"""The COM server under Wine: registration, scripts, the native client, and what removal leaves behind."""

import os
import pathlib
import shutil
import subprocess
import tempfile
import unittest

HERE = pathlib.Path(__file__).resolve().parent
ROOT = HERE.parents[1]
EXAMPLES = ROOT / "examples" / "com"
SERVER = pathlib.Path(os.environ["SERVER"])
CLIENT = pathlib.Path(os.environ["CLIENT"])
PREFIX = pathlib.Path(os.environ["PREFIX"])
# The class of the recordsets' double in the native client.
ADO_CLASS = "HKLM\\Software\\Classes\\ADODB.Recordset\\CLSID"
DOUBLE = "{5F1F3A52-9F1D-4C38-9A51-6E0D2B7C1142}"
# 64-bit programs are run by wine64, 32-bit ones need a Wine of their own.
WINE = shutil.which("wine64") or shutil.which("wine64", path="/usr/lib/wine")
ENVIRONMENT = {**os.environ, "WINEPREFIX": str(PREFIX), "WINEDEBUG": "-all", "WINEDLLOVERRIDES": "mscoree,mshtml=",
               "LC_ALL": "zh_CN.UTF-8", "LOCPATH": str(PREFIX) + "-locale", "DISPLAY": ""}


def wine(*arguments, timeout=60, **more):
    return subprocess.run([WINE, *map(str, arguments)], env=ENVIRONMENT, timeout=timeout, capture_output=True, **more)


def quiet_wine(*arguments):
    """For what may be the first program: the system's own that it starts would keep its pipes open."""
    subprocess.run([WINE, *arguments], env=ENVIRONMENT, timeout=120, check=True, stdin=subprocess.DEVNULL,
                   stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)


def windows_path(path):
    return "Z:" + str(path).replace("/", "\\")


def classes(root):
    """The classes in the prefix's registry, for the machine (HKLM) or the user (HKCU), with all that stands under them."""
    with tempfile.TemporaryDirectory() as folder:
        file = pathlib.Path(folder) / "classes.reg"
        wine("reg", "export", root + "\\Software\\Classes", windows_path(file), "/y")
        return set(file.read_text(encoding="utf-16").splitlines())


def regsvr32(*arguments):
    result = wine("regsvr32", "/s", *arguments, windows_path(SERVER))
    if result.returncode:
        raise AssertionError(f"regsvr32 {arguments}: {result.returncode}")


def make_prefix():
    # A locale of its own, of which Wine takes code page 936 and the encoding of file names.
    locale = pathlib.Path(ENVIRONMENT["LOCPATH"])
    if not locale.exists():
        locale.mkdir(parents=True)
        subprocess.run(["localedef", "-i", "zh_CN", "-f", "UTF-8", locale / "zh_CN.UTF-8"], check=True)
    ready = PREFIX / "ready"
    if ready.exists():
        return
    quiet_wine("wineboot", "-i")
    # Every user of Windows has these.
    quiet_wine("reg", "add", "HKCU\\Software\\Classes\\CLSID", "/f")
    quiet_wine("reg", "add", "HKCU\\Software\\Wine\\Drivers", "/v", "Graphics", "/d", "null", "/f")
    # Until everything that belongs to it has ended, the prefix changes.
    subprocess.run([WINE.replace("wine64", "wineserver64"), "-w"], env=ENVIRONMENT, timeout=120)
    ready.touch()


def script(source, suffix=".vbs", timeout=60):
    """Runs a script, saved in GBK, and answers the lines that its Say wrote."""
    say = {".vbs": """
Dim sayFile
Set sayFile = CreateObject("Scripting.FileSystemObject").CreateTextFile("{out}", True, True)
Sub Say(text)
    sayFile.WriteLine text
End Sub
""", ".js": """
var sayFile = new ActiveXObject("Scripting.FileSystemObject").CreateTextFile("{out}", true, true);
function Say(text) {{ sayFile.WriteLine(text); }}
"""}[suffix]
    with tempfile.TemporaryDirectory() as folder:
        out = pathlib.Path(folder) / "out.txt"
        path = pathlib.Path(folder) / ("script" + suffix)
        out_name = windows_path(out).replace("\\", "\\\\") if suffix == ".js" else windows_path(out)
        path.write_text(say.format(out=out_name) + source, encoding="gbk", newline="\r\n")
        result = wine("cscript", "//nologo", windows_path(path), timeout=timeout)
        text = out.read_text(encoding="utf-16") if out.exists() and out.stat().st_size else ""
        return text.splitlines(), result


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
        lines, result = script(source, suffix)
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
        """A program as it stands, saved in GBK; what it echoed."""
        with tempfile.TemporaryDirectory() as folder:
            path = pathlib.Path(folder) / "program.vbs"
            path.write_text(source, encoding="gbk", newline="\r\n")
            result = wine("cscript", "//nologo", windows_path(path), *arguments)
            self.assertEqual(result.returncode, 0, (result.stdout[-2000:], result.stderr[-500:]))
            return result.stdout.decode("gbk").splitlines()

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


class Native(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        regsvr32()
        # Wine has recordsets of its own, which lack much; the prefix has them again when the tests are done.
        own = wine("reg", "query", ADO_CLASS, "/ve").stdout.decode("gbk").split()[-1]
        cls.addClassCleanup(wine, "reg", "add", ADO_CLASS, "/ve", "/d", own, "/f")
        wine("reg", "add", ADO_CLASS, "/ve", "/d", DOUBLE, "/f")

    @classmethod
    def tearDownClass(cls):
        regsvr32("/u")

    def test_client(self):
        result = wine(CLIENT, "--gtest_brief=1", timeout=120)
        self.assertEqual(result.returncode, 0, result.stdout.decode(errors="replace")[-6000:] +
                         result.stderr.decode(errors="replace")[-2000:])
        self.assertIn(b"PASSED", result.stdout)


if __name__ == "__main__":
    if not WINE:
        print("no Wine: the COM server was not tested")
    else:
        make_prefix()
        # While a program runs, the next one starts without the system's own programs.
        with subprocess.Popen([WINE, "cmd"], env=ENVIRONMENT, stdin=subprocess.PIPE, stdout=subprocess.DEVNULL,
                              stderr=subprocess.DEVNULL) as session:
            quiet_wine("cmd", "/c", "exit")
            result = unittest.main(exit=False).result
            session.communicate(b"exit\r\n", timeout=60)
        raise SystemExit(not result.wasSuccessful())
