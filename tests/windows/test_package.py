#!/usr/bin/env python3
"""The zip for Windows: what is in it, for which machines, and that its server works where it was unpacked. ZIP is its path;
COMPILER and OBJDUMP are for programs of WIDTH."""

import calendar
import hashlib
import os
import pathlib
import struct
import subprocess
import tempfile
import unittest
import zipfile

import wine_prefix
from wine_prefix import WIDTH, windows_path, wine

ROOT = pathlib.Path(__file__).resolve().parents[2]
EXAMPLES = ROOT / "examples" / "com"
ZIP = pathlib.Path(os.environ["ZIP"])
# Of the PE header: the machine that a program is for, and the kind of system in a type library.
MACHINES = {"x64": 0x8664, "x86": 0x014C}
SYSTEMS = {"x64": 3, "x86": 1}
# What every Windows has.
SYSTEM_LIBRARIES = {"advapi32.dll", "kernel32.dll", "msvcrt.dll", "odbc32.dll", "ole32.dll", "oleaut32.dll", "shell32.dll",
                    "user32.dll", "version.dll", "ws2_32.dll"}


class PackageCase(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        with zipfile.ZipFile(ZIP) as package:
            package.extractall(folder.name)
            cls.time = package.infolist()[0].date_time
        cls.folder = pathlib.Path(folder.name) / ZIP.stem


@unittest.skipUnless(WIDTH == "x64", "seen by the tests of 64 bits")
class Contents(PackageCase):
    def files(self):
        return {path.relative_to(self.folder).as_posix() for path in self.folder.rglob("*") if path.is_file()}

    def of_project(self, folder, suffix):
        return {path.relative_to(ROOT).as_posix() for path in (ROOT / folder).rglob("*" + suffix)}

    def test_everything_is_there_and_nothing_else(self):
        expected = {"CHANGELOG.md", "README.md", "README.zh.md", "SHA256SUMS", "kpTables.manifest"}
        for folder in ("", "x86/"):
            expected |= {folder + "kpbook.exe", folder + "locale/zh_CN/LC_MESSAGES/kpbook.mo"}
        for width in MACHINES:
            expected |= {f"{width}/kpTables.dll", *(f"lib/{width}/kpTables.{kind}" for kind in ("def", "lib", "tlb"))}
        expected |= self.of_project("include", ".h") | self.of_project("docs", ".md") | self.of_project("examples/com", "")
        self.assertEqual(self.files(), {name for name in expected if not (ROOT / name).is_dir()})

    def test_the_checksums_are_those_of_the_files(self):
        lines = (self.folder / "SHA256SUMS").read_text(encoding="utf-8").splitlines()
        told = {name: digest for digest, name in (line.split("  ", 1) for line in lines)}
        self.assertEqual(set(told), self.files() - {"SHA256SUMS"})
        for name, digest in told.items():
            self.assertEqual(hashlib.sha256((self.folder / name).read_bytes()).hexdigest(), digest, name)

    def test_nothing_tells_where_and_when_it_was_made(self):
        with zipfile.ZipFile(ZIP) as package:
            entries = package.infolist()
        self.assertEqual({(entry.date_time, entry.external_attr, entry.extra) for entry in entries},
                         {(self.time, 0o100644 << 16, b"")})
        names = [entry.filename for entry in entries]
        self.assertEqual(names, sorted(names, key=str.encode))

    def test_programs_are_for_their_machines_and_need_only_the_system(self):
        for name, width in (("kpbook.exe", "x64"), ("x86/kpbook.exe", "x86"), ("x64/kpTables.dll", "x64"),
                            ("x86/kpTables.dll", "x86")):
            program = (self.folder / name).read_bytes()
            at = struct.unpack_from("<I", program, 0x3C)[0]
            signature, machine, _, time = struct.unpack_from("<IHHI", program, at)
            self.assertEqual((signature, machine), (0x4550, MACHINES[width]), name)
            self.assertLess(abs(calendar.timegm((*self.time, 0, 0, 0)) - time), 2, "the time of the last change")
            told = subprocess.run([os.environ["OBJDUMP"], "-p", self.folder / name], capture_output=True, text=True, check=True)
            needed = {line.split()[-1].lower() for line in told.stdout.splitlines() if "DLL Name:" in line}
            self.assertTrue(needed)
            self.assertLessEqual(needed, SYSTEM_LIBRARIES, name)

    def test_the_type_libraries_names_are_in_code_page_936(self):
        for width, system in SYSTEMS.items():
            library = (self.folder / "lib" / width / "kpTables.tlb").read_bytes()
            self.assertTrue(library.startswith(b"MSFT"))
            self.assertEqual(struct.unpack_from("<I", library, 20)[0] & 0xF, system, width)
            for name in ("rs仓库列表", "Get单据金额", "TableChanged"):
                self.assertIn(name.encode("gbk"), library)


class Server(PackageCase):
    def test_a_registered_server_creates_its_objects(self):
        server = self.folder / WIDTH / "kpTables.dll"
        wine_prefix.regsvr32(server)
        try:
            book = windows_path(self.folder / "shop.kpbook")
            lines, result = wine_prefix.run_program((EXAMPLES / "first-month.vbs").read_text(encoding="utf-8"), book)
            self.assertEqual(lines, ["01001 10 3205"], result.stderr[-500:])
        finally:
            wine_prefix.regsvr32(server, "/u")

    def test_a_program_links_the_import_library(self):
        place = self.folder / WIDTH
        program = place / "Stock.exe"
        # As the first lines of the example say.
        subprocess.run([os.environ["COMPILER"], "-municode", "-static", self.folder / "examples/com/Stock.cpp",
                        self.folder / "lib" / WIDTH / "kpTables.lib", "-loleaut32", "-lole32", "-luuid", "-o", program], check=True)
        book = self.folder / "host.kpbook"
        kpbook = self.folder / {"x64": "kpbook.exe", "x86": "x86/kpbook.exe"}[WIDTH]
        wine_prefix.wine(kpbook, "new", windows_path(book), "--company", "测试商行", "--year", "2026",
                         "--month", "1", "--warehouse", "中心仓库")
        wine_prefix.wine(kpbook, "add", windows_path(book), "product", "商品编号=01001", "商品名称=水泥")
        stock = self.folder / "stock.csv"
        stock.write_text("仓库,商品编号,数量,金额\n中心仓库,01001,10,3205\n", encoding="utf-8")
        wine_prefix.wine(kpbook, "opening", windows_path(book), windows_path(stock))
        result = wine(program, windows_path(book), "1")
        self.assertEqual((result.returncode, result.stdout.decode().split()), (0, ["01001", "水泥", "10", "3205"]), result.stderr)
        result = wine(program, windows_path(book), "99999")
        self.assertEqual(result.returncode, 1)
        self.assertTrue(result.stderr)


if __name__ == "__main__":
    if not ZIP.exists():
        print("no zip: ./package-windows makes it")
    elif not wine_prefix.has_wine():
        print(f"no Wine for {WIDTH}: the zip was not tested")
    else:
        with wine_prefix.session():
            result = unittest.main(exit=False).result
        raise SystemExit(not result.wasSuccessful())
