"""Tables as files: the encodings and separators that import takes, --update, export, and what comes back from it."""

import csv
import json
import os
import random
import stat
import unittest

from book_cells import stored_cells
from kpbook_case import KpbookCase, TradingCase


class FormatTest(KpbookCase):
    TEXT = "dpID,仓库名称\n1,东库\n2,西库𠮷\n"

    def setUp(self):
        super().setUp()
        self.new_book()

    def imported(self, content, *options, said="仓库设置: 2 rows imported\n"):
        done = self.run_kpbook("import", self.book, "仓库设置", self.write("f.csv", content), *options)
        self.assertEqual(done.stderr, said)
        self.assertEqual(self.rows("Select dpID,仓库名称 From 仓库设置 Order by dpID"), [[1, "东库"], [2, "西库𠮷"]])
        self.sql("Delete From 仓库设置")

    def test_encodings(self):
        self.imported(self.TEXT.encode("utf-8-sig"))
        self.imported(self.TEXT.encode("gb18030"), said="仓库设置: 2 rows imported, read as GB18030\n")
        self.imported(self.TEXT.encode("gb18030"), "--encoding", "gb18030")
        tabs = self.TEXT.replace(",", "\t").replace("\n", "\r\n")
        self.imported(tabs.encode("utf-16"), said="仓库设置: 2 rows imported, read as UTF-16LE\n")
        self.imported(("\ufeff" + tabs).encode("utf-16-be"), said="仓库设置: 2 rows imported, read as UTF-16BE\n")
        self.imported(tabs.encode("utf-16-le"), "--encoding", "UTF-16LE")

    def test_separators(self):
        for separator in "\t;":
            self.imported(self.TEXT.replace(",", separator))
        self.imported(self.TEXT.replace(",", "|"), "--separator", "|")
        self.imported(self.TEXT.replace(",", "\t"), "--separator", "tab")
        self.imported("dpID;\"仓库名称\"\r\n1;东库\r\n2;\"西库𠮷\"\r\n", "--separator", "semicolon")

    def test_wrong_usage(self):
        file = self.write("f.csv", self.TEXT)
        for options, said in ((("--encoding", "no such"), "there is no encoding no such"),
                              (("--separator", "ab"), "--separator takes"), (("--separator", '"'), "--separator takes"),
                              (("--key", "dpID"), "--update")):
            done = self.run_kpbook("import", self.book, "仓库设置", file, *options, code=2)
            self.assertIn(said, done.stderr)
        self.assertIn("there is no folder", self.run_kpbook("import", self.book, "仓库设置", code=2).stderr)
        self.assertEqual(self.rows("Select Count(*) As n From 仓库设置"), [[0]])

    def refused(self, content, *parts, options=()):
        done = self.run_kpbook("import", self.book, "仓库设置", self.write("f.csv", content), *options, code=1)
        for part in parts:
            self.assertIn(part, done.stderr)
        self.assertEqual(self.rows("Select Count(*) As n From 仓库设置"), [[0]])

    def test_bad_files(self):
        self.refused(self.TEXT.encode("gb18030") + b"3,\xff\xff\n4,\xb6\xab\xbf\n", "line 4, column 仓库名称", "is not valid GB18030",
                     "line 5, column 仓库名称", "2 bad rows, nothing was imported")
        self.refused(self.TEXT.encode() + b"3,\xb6\xab\n", "line 4, column 仓库名称", "is not valid UTF-8")
        self.refused("dpID,仓库名称\n1,".encode() + "东库\n".encode("gb18030") * 3, "is not valid utf-8",
                     options=("--encoding", "utf-8"))
        self.refused(self.TEXT.encode() + b"3,a\0b\n", "line 4, column 仓库名称", "holds a NUL character")
        self.refused(self.TEXT.encode("utf-16-le"), "line 1", "NUL", "--encoding UTF-16LE")
        self.refused(self.TEXT + "3,a,b\n", "line 4: too many fields: 3 instead of 2")
        self.refused("dpID\t仓库名称\tDPID\n1\ta\t1\n", "line 1: wrong header; given more than once: DPID")

    def test_null(self):
        self.run_kpbook("import", self.book, "仓库设置", "-", text='dpID,仓库名称,结帐标志\n1,\\N,\n2,"\\N",\\N\n3,,True\n')
        self.assertEqual(self.rows("Select 仓库名称,结帐标志 From 仓库设置 Order by dpID"),
                         [[None, False], ["\\N", None], ["", True]])
        done = self.run_kpbook("import", self.book, "商品分类", "-", text="ClassCode\n\\N\n", code=1)
        self.assertIn("line 2, column ClassCode: Null, but the column needs a value", done.stderr)


class UpdateTest(TradingCase):
    def update(self, table, content, *options, code=0):
        return self.run_kpbook("import", self.book, table, self.write("f.csv", content), "--update", *options, code=code).stderr

    def test_by_the_primary_key(self):
        said = self.update("商品设置", "pdID,商品名称,最低库存\n1,水泥,5\n2,螺栓,0\n,玻璃,2.5\n")
        self.assertEqual(said, "商品设置: 1 added, 1 changed, 1 unchanged\n")
        self.assertEqual(self.rows("Select pdID,商品名称,ClassCode,最低库存 From 商品设置 Order by pdID"),
                         [[1, "水泥", "01", 5.0], [2, "螺栓", "02", 0.0], [3, "油漆", "03", 0.0], [4, "玻璃", None, 2.5]])

    def test_by_named_columns(self):
        said = self.update("商品设置", "商品名称;ClassCode\n水泥;09\n螺栓;02\n", "--key", "商品名称")
        self.assertEqual(said, "商品设置: 0 added, 1 changed, 1 unchanged\n")
        said = self.update("商品设置", "商品名称,ClassCode,备注\n水泥,09,x\n水泥,01,y\n", "--key", "商品名称,ClassCode")
        self.assertEqual(said, "商品设置: 1 added, 1 changed, 0 unchanged\n")
        self.assertEqual(self.rows("Select 商品名称,ClassCode,备注 From 商品设置 Where ClassCode<>'02' Order by pdID"),
                         [["水泥", "09", "x"], ["油漆", "03", None], ["水泥", "01", "y"]])

    def test_refused(self):
        before = self.rows("Select * From 商品设置 Order by pdID")
        for content, options, said in (
                ("商品名称\n水泥\n", (), "line 1: Invalid procedure call or argument: the key's column pdID of 商品设置 is not given"),
                ("商品名称\n水泥\n", ("--key", "商品编号"), "the key's column 商品编号 of 商品设置 is not given"),
                ("商品名称,备注\n水泥,x\n水泥,y\n", ("--key", "商品名称"), "line 3: the key stands above already"),
                ("商品名称,备注\n水泥,x\n,y\n", ("--key", "商品名称"), "line 3: the key 商品名称 is empty"),
                ("pdID,备注\n1,x\n2,x\nx,y\n", (), "line 4, column pdID: 'x' is no whole number")):
            self.assertIn(said.removeprefix("line 1: Invalid procedure call or argument: "),
                          self.update("商品设置", content, *options, code=1))
            self.assertEqual(self.rows("Select * From 商品设置 Order by pdID"), before)
        self.assertIn("no primary key", self.update("入库记录", "BillID,数量\n1,1\n", code=1))

    def test_closed_months(self):
        self.run_kpbook("close", self.book, "--month", "1", "--warehouse", "1", "--answer", "yes", "--date", "2004-01-31")
        said = self.update("入库目录", "BillID,说明\n1,x\n", code=1)
        self.assertIn("line 2: month 1 of 东库 is closed", said)
        said = self.update("入库记录", "BillID,pdID,数量\n1,1,5\n", "--key", "BillID,pdID", code=1)
        self.assertIn("line 2: month 1 of 东库 is closed", said)
        self.assertEqual(self.update("入库记录", "BillID,pdID,数量\n1,1,4\n", "--key", "BillID,pdID"),
                         "入库记录: 0 added, 0 changed, 1 unchanged\n")


class ExportTest(KpbookCase):
    # What a spreadsheet, a CSV reader or a decimal point may trip over.
    TEXTS = ("", "\\N", "N", '"', '""', "'", ",", ";", "\t", "\n", "\r\n", "\r", "a\rb", " ", "  two  ", "007", "1e5", "=1+1", "-", "@",
             "中文，全角", "𠮷野家", "😀👍🏽", "\ufeff", "é", "True", "2004-03-07", "a" * 255, '"quoted", with\nlines', "\\", "\\n")
    DOUBLES = (0.0, -0.0, 0.1, 0.1 + 0.2, 1 / 3, 1e-300, 5e-324, 1.7976931348623157e308, 123456789012345.6, 2**53 + 2.0, -1e16, 66.6666666666667)
    MONEY = ("0", "0.0001", "-0.0001", "922337203685477.5807", "-922337203685477.5808", "12.5", "1234567.8901")

    def export(self, *arguments, code=0):
        return self.run_kpbook("export", self.book, *arguments, code=code)

    def comes_back(self, folder, *options):
        copy = self.folder / "copy.kpbook"
        copy.unlink(missing_ok=True)
        self.run_kpbook("new", copy, "--bare")
        done = self.run_kpbook("import", copy, folder, *options)
        self.assertEqual(stored_cells(copy), stored_cells(self.book))
        return copy, done.stderr

    def fill(self, seed):
        """Random values in tables with and without a counter, entered without import."""
        choose = random.Random(seed)
        text = lambda: choose.choice((None, choose.choice(self.TEXTS), "".join(choose.choices("a,\";\t\n'中\U00020000 0", k=choose.randrange(12)))))
        number = lambda: choose.choice((choose.choice(self.DOUBLES), choose.uniform(-1e6, 1e6), round(choose.uniform(-1e4, 1e4), 3)))
        requests = [{"begin": True}]
        for n in choose.sample(range(1, 10000), 60):
            params = {"n": n, "a": text(), "b": text(), "c": choose.choice((None, n % 7)), "d": number(), "e": number()}
            money = choose.choice((*self.MONEY, f"{choose.randrange(-10**12, 10**12)}.{choose.randrange(10**4):04}"))
            day = choose.choice(("Null", "#2004-03-07#", "#1999-12-31 23:59:59#", f"#{choose.randrange(1900, 2100)}-2-28 1:02:03#"))
            literal = lambda value: "Null" if value is None else "'" + value.replace("'", "''") + "'" if isinstance(value, str) else repr(value)
            p = {key: literal(value) for key, value in params.items()}
            requests += [
                {"execute": f"Insert Into 商品设置 (pdID,商品名称,备注,KSID,最低库存,最高库存) Values ({p['n']},{p['a']},{p['b']},{p['c']},{p['d']},{p['e']})"},
                {"execute": f"Insert Into 入库记录 (BillID,包装,货位,金额,数量) Values ({p['c']},{p['a']},{p['b']},{money},{p['d']})"},
                {"execute": f"Insert Into 派遣目录 (BillID,说明,录入日期,外用车) Values ({p['n']},{p['b']},{day},{choose.choice(('True', 'False', 'Null'))})"}]
        requests.append({"commit": True})
        for answer in self.batch(*requests):
            self.assertNotIn("error", answer, answer)

    def test_random_values_come_back(self):
        for seed in range(4):
            with self.subTest(seed=seed):
                self.book.unlink(missing_ok=True)
                self.run_kpbook("new", self.book, *(("--bare",) if seed % 2 else ()))
                self.fill(seed)
                folder = self.folder / f"exported{seed}"
                said = self.export(folder, *(("--excel",) if seed % 3 == 0 else ())).stderr
                rows = sum(len(table) for table in stored_cells(self.book).values())
                self.assertIn(f"tables: {rows} rows exported", said)
                copy, said = self.comes_back(folder)
                self.assertIn(f"tables, {rows} rows imported", said)
                # Table by table, as well, and after the files went through a CSV reader of another make.
                self.new_table_by_table(folder)
                highest = self.rows("Select Max(pdID) As n From 商品设置")[0][0]
                self.run_kpbook("sql", copy, "Insert Into 商品设置 (商品名称) Values ('next')")
                found = self.run_kpbook("sql", copy, "Select Max(pdID) As n From 商品设置", "-O", "csv").stdout
                self.assertEqual(found, f"n\n{highest + 1}\n")

    def new_table_by_table(self, folder):
        copy = self.folder / "tables.kpbook"
        copy.unlink(missing_ok=True)
        self.run_kpbook("new", copy, "--bare")
        for name in ("商品设置", "入库记录", "派遣目录"):
            self.run_kpbook("import", copy, name, folder / f"{name}.csv")
        ours, theirs = stored_cells(self.book), stored_cells(copy)
        for name in ("商品设置", "入库记录", "派遣目录"):
            self.assertEqual(theirs[name], ours[name], name)

    def test_what_stands_in_a_file(self):
        self.new_book()
        self.run_kpbook("import", self.book, "仓库设置", "-", text="dpID,仓库名称,结帐日期\n3,\\N,2004-3-7\n4,\"a\nb\",\n5,\"\\N\",\n6,,\n")
        shown = self.export("仓库设置", "-").stdout
        self.assertEqual(shown, 'dpID,仓库名称,结帐日期,结帐标志\n3,\\N,2004-03-07,False\n4,"a\nb",,False\n5,"\\N",,False\n6,,,False\n')
        self.export("仓库设置", self.folder / "one", "--excel")
        self.assertEqual((self.folder / "one" / "仓库设置.csv").read_text("utf-8"), "\ufeff" + shown)
        self.assertEqual([file.name for file in (self.folder / "one").iterdir()], ["仓库设置.csv"])
        # Excel and its like read the same cells.
        with open(self.folder / "one" / "仓库设置.csv", encoding="utf-8-sig", newline="") as file:
            self.assertEqual(list(csv.reader(file))[2], ["4", "a\nb", "", "False"])

    def test_manifest(self):
        self.new_book()
        self.run_kpbook("import", self.book, "仓库设置", "-", text="仓库名称\na\nb\n")
        folder = self.folder / "exported"
        self.export(folder)
        manifest = json.loads((folder / "manifest.json").read_text())
        entry = next(table for table in manifest["tables"] if table["table"] == "仓库设置")
        self.assertEqual((entry["file"], entry["rows"]), ("仓库设置.csv", 2))
        self.assertEqual([column["type"] for column in entry["columns"]], ["Long", "String", "Date", "Boolean"])
        self.assertEqual({table["file"] for table in manifest["tables"]} | {"manifest.json"}, {file.name for file in folder.iterdir()})
        self.assertEqual(stat.S_IMODE(folder.stat().st_mode), 0o700)

    def test_bad_folders(self):
        self.new_book()
        self.run_kpbook("import", self.book, "仓库设置", "-", text="仓库名称\na\nb\n")
        folder = self.folder / "exported"
        self.export(folder)
        said = self.run_kpbook("import", self.book, folder, code=1).stderr
        self.assertIn("the book has rows in 仓库设置", said)
        empty = self.folder / "empty.kpbook"
        self.run_kpbook("new", empty, "--bare")
        file, manifest = folder / "仓库设置.csv", folder / "manifest.json"
        good = file.read_text(), manifest.read_text()
        for bad_file, bad_manifest, said in (
                (good[0].replace("2,b", "x,b"), good[1], ("line 3, column dpID: 'x'", "1 bad file, nothing was imported")),
                (good[0][:good[0].index("2,b")], good[1], ("1 row, but manifest.json counts 2", "1 bad file")),
                (good[0], good[1][:-5], ("manifest.json: ", "not JSON")),
                (good[0], good[1].replace("仓库设置", "没有", 1), ("the book has no table 没有",)),
                (good[0], good[1].replace("仓库设置.csv", "../x.csv"), ("the name of a file in the folder",))):
            file.write_text(bad_file)
            manifest.write_text(bad_manifest)
            done = self.run_kpbook("import", empty, folder, code=1)
            for part in said:
                self.assertIn(part, done.stderr)
            self.assertTrue(all(not rows for rows in stored_cells(empty).values()))
        file.unlink()
        manifest.write_text(good[1])
        self.assertIn("cannot be opened", self.run_kpbook("import", empty, folder, code=1).stderr)
        self.run_kpbook("import", empty, folder, "--update", code=2)
        (self.folder / "none").mkdir()
        self.assertIn("holds no tables", self.run_kpbook("import", empty, self.folder / "none", code=1).stderr)

    def test_wrong_usage(self):
        self.new_book()
        self.export("-", code=2)
        self.export(self.folder / "x", "-O", "json", code=2)
        self.export(self.folder / "x", "-o", "y", code=2)
        self.assertIn("no table 没有", self.export("没有", self.folder / "x", code=1).stderr)
        self.assertFalse((self.folder / "x").exists())
        self.write("file", "")
        self.assertIn("no folder can be made", self.export(self.folder / "file", code=1).stderr)

    def test_a_book_is_not_written_over(self):
        self.new_book()
        before = self.book.read_bytes()
        (self.folder / "x").mkdir()
        os.link(self.book, self.folder / "x" / "仓库设置.csv")
        self.assertIn("belongs to a book", self.export(self.folder / "x", code=2).stderr)
        self.assertEqual(self.book.read_bytes(), before)
        self.assertEqual(len(list((self.folder / "x").iterdir())), 1)

    def test_failure_leaves_the_old_files(self):
        self.new_book()
        folder = self.folder / "x"
        self.export(folder)
        old = {file.name: file.read_bytes() for file in folder.iterdir()}
        self.run_kpbook("import", self.book, "仓库设置", "-", text="仓库名称\na\n")
        (folder / "系统选项.csv").unlink()
        (folder / "系统选项.csv").mkdir()
        self.export(folder, code=1)
        (folder / "系统选项.csv").rmdir()
        del old["系统选项.csv"]
        self.assertEqual({file.name: file.read_bytes() for file in folder.iterdir()}, old)


class SheetsOfAFirmTest(KpbookCase):
    """Opening stock and bills from files as a Chinese spreadsheet program saves them."""

    def test_opening_and_bills(self):
        self.run_kpbook("new", self.book, "--company", "测试商行", "--year", "2026", "--month", "1", "--warehouse", "中心仓库")
        self.import_text("商品设置", "pdID,商品编号,商品名称\n1,01001,水泥\n")
        opening = "仓库\t商品编号\t数量\t金额\r\n中心仓库\t01001\t10\t4000.5\r\n"
        self.run_kpbook("opening", self.book, self.write("opening.txt", opening.encode("utf-16")))
        bill = "日期;仓库;商品编号;数量;单价\n2026-1-20;中心仓库;01001;2;400.25\n"
        self.run_kpbook("bill", "add", self.book, "in", self.write("bill.csv", bill.encode("gbk")), "--today", "2026-01-20")
        self.assertEqual(self.rows("Select 上期库存数量,上期库存金额 From 仓库余额表"), [[10.0, "4000.5"]])
        self.assertEqual(self.rows("Select 数量,除税单价,除税金额 From 入库记录"), [[2.0, "400.25", "800.5"]])


class ClosedBookTest(TradingCase):
    def test_comes_back_with_its_closed_months(self):
        self.run_kpbook("close", self.book, "--month", "1", "--answer", "yes", "--date", "2004-01-31")
        folder = self.folder / "exported"
        self.run_kpbook("export", self.book, folder)
        for manifest in (True, False):
            if not manifest:
                (folder / "manifest.json").unlink()
            copy = self.folder / f"copy{manifest}.kpbook"
            self.run_kpbook("new", copy, "--bare")
            self.run_kpbook("import", copy, folder)
            self.assertEqual(stored_cells(copy), stored_cells(self.book))
            self.run_kpbook("check", copy)
            self.run_kpbook("close", copy, "--month", "1", code=1)


if __name__ == "__main__":
    unittest.main()
