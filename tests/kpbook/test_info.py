"""new and info: a book made ready, and what a book is and holds."""

import json
import os
import resource
import subprocess
import unittest
import zipfile

from kpbook_case import KPBOOK, KpbookCase, TradingCase

NOBODY = 65534


class InfoCase(KpbookCase):
    def info(self):
        """The sections' rows by title."""
        found = json.loads(self.run_kpbook("info", self.book, "-O", "json").stdout)
        return {title: section["rows"] for title, section in found.items()}

    def items(self):
        return dict(self.info()["information"])


class ReadyBookTest(InfoCase):
    def test_names_date_and_payment_methods(self):
        done = self.run_kpbook("new", self.book, "--today", "2004-03-07")
        self.assertEqual(done.stdout, "")
        self.assertEqual(self.rows("Select Item,Discription From 系统选项 Order by Item"),
                         [["单位名称 ", "(新单位) "], ["建帐日期 ", "2004年03月07日 "], ["帐簿名称 ", "新帐簿 "]])
        self.assertEqual(self.rows("Select * From 收付款方式 Order by 科目代码"),
                         [[" ", " ", " "], ["现金", "现金", "101"]])
        self.assertEqual(self.call("Get_AccInfo", "建帐日期")["result"], {"date": "2004-03-07"})

    def test_bare(self):
        self.run_kpbook("new", self.book, "--bare", "--today", "2004-03-07")
        self.assertEqual(self.rows("Select Count(*) As n From 系统选项"), [[0]])
        self.assertEqual(self.rows("Select Count(*) As n From 收付款方式"), [[0]])

    def test_existing_book_is_left_as_it_is(self):
        self.run_kpbook("new", self.book, "--today", "2004-03-07")
        before = self.book.read_bytes()
        self.run_kpbook("new", self.book, "--today", "2005-01-01", code=1)
        self.assertEqual(self.book.read_bytes(), before)

    def test_all_or_nothing(self):
        self.run_kpbook("new", self.book, "--today", "2004-03-07")
        size = self.book.stat().st_size
        failed = made = 0
        for limit in [*range(4096, size, size // 12), size, size * 3]:
            book = self.folder / f"limited-{limit}"

            def limit_files(most=limit):
                resource.setrlimit(resource.RLIMIT_FSIZE, (most, most))

            # Python ignores the signal of a file that grows too large, and so does the program then.
            done = subprocess.run([KPBOOK, "new", book, "--today", "2004-03-07"], capture_output=True, timeout=60,
                                  preexec_fn=limit_files, restore_signals=False)
            if done.returncode == 0:
                self.book = book
                self.assertEqual(self.items()["建帐日期"], "2004-03-07")
                made += 1
            else:
                self.assertEqual(done.returncode, 1, done.stderr)
                self.assertTrue(done.stderr.startswith(b"kpbook: "), done.stderr)
                self.assertEqual([name for name in os.listdir(self.folder) if name.startswith(book.name)], [])
                failed += 1
        self.assertGreater(failed, 0)
        self.assertGreater(made, 0)


    def test_book_that_cannot_be_filled_is_removed(self):
        # The log's index cannot be made, so the tables are made but nothing can be written into them.
        (self.folder / "shop.kpbook-shm" / "x").mkdir(parents=True)
        done = self.run_kpbook("new", self.book, "--today", "2004-03-07", code=1)
        self.assertIn("cannot be changed", done.stderr)
        self.assertEqual(os.listdir(self.folder), ["shop.kpbook-shm"])
        self.run_kpbook("new", self.book, "--bare")


class InfoTest(InfoCase):
    def test_ready_book(self):
        self.run_kpbook("new", self.book, "--today", "2004-03-07")
        self.assertEqual(self.info(), {
            "information": [["帐簿名称", "新帐簿"], ["单位名称", "(新单位)"], ["建帐日期", "2004-03-07"], ["当前日期", None],
                            ["建帐月份", "3"], ["帐簿年份", None], ["当前月份", None]],
            "tables": [["收付款方式", 2], ["系统选项", 3]],
            "balance months": [],
            "warehouses": []})

    def test_says_that_a_date_is_not_set(self):
        self.new_book()
        text = self.run_kpbook("info", self.book).stdout
        self.assertIn("建帐日期  (not set)\n当前日期  (not set)\n", text)
        self.assertIn("| 当前日期 | (not set) |\n", self.run_kpbook("info", self.book, "-O", "markdown").stdout)

    def test_items_that_are_set(self):
        self.new_book()
        names = ["帐簿名称", "单位名称", "财务主管", "法人代表", "帐簿编号", "单位地址", "联系电话", "电子邮件", "网络地址", "工商登记号",
                 "税务登记号", "企业代码", "企业类型"]
        self.batch(*({"method": "Update_AccInfo", "args": [name, f"值{number}"]} for number, name in enumerate(names)),
                   {"method": "Update_Option", "args": ["当前日期", "2004-5-1"]},
                   {"method": "Update_Option", "args": ["我的选项", "x"]})
        expected = {name: f"值{number}" for number, name in enumerate(names)}
        expected |= {"建帐日期": None, "当前日期": "2004-05-01", "建帐月份": None, "帐簿年份": "2004", "当前月份": "5"}
        self.assertEqual(self.items(), expected)
        self.call("Update_AccInfo", "法人代表", "")
        self.assertNotIn("法人代表", self.items())

    def test_text_that_is_no_date(self):
        self.new_book()
        self.call("Update_Option", "当前日期", "明天")
        done = self.run_kpbook("info", self.book)
        self.assertIn("当前日期: 明天 is no date\n", done.stderr)
        self.assertEqual((self.items()["当前日期"], self.items()["当前月份"]), ("明天", None))

    def test_unknown_year_is_shown_as_stored(self):
        # Get_BuiltDate would replace a date before 2000.
        self.new_book()
        self.call("Update_Option", "建帐日期", "1999年05月01日")
        self.assertEqual(self.items()["建帐日期"], "1999-05-01")
        self.assertEqual(self.rows("Select Discription From 系统选项"), [["1999年05月01日 "]])

    def test_damaged_settings_are_an_error(self):
        self.new_book()
        self.sql("Drop Table 系统选项")
        done = self.run_kpbook("info", self.book, code=1)
        self.assertTrue(done.stderr.startswith("kpbook: "), done.stderr)
        self.assertEqual(done.stdout, "")


class HoldingsTest(InfoCase, TradingCase):
    def test_tables_months_and_warehouses(self):
        self.import_text("仓库余额表", "年份,月份,pdID,dpID\n2004,2,1,1\n2004,2,2,1\n2003,12,1,1\n")
        self.batch({"method": "UpdateDepotClosedFlag", "args": [2, {"date": "2004-01-31"}, True]})
        found = self.info()
        self.assertEqual(found["tables"], [["仓库设置", 2], ["商品设置", 3], ["入库目录", 2], ["入库记录", 2], ["出库目录", 1],
                                           ["出库记录", 1], ["仓库余额表", 6]])
        self.assertEqual(found["balance months"], [[2003, 12, 1], [2004, 1, 3], [2004, 2, 2]])
        self.assertEqual(found["warehouses"], [[1, "东库", False, None, 1], [2, "西库", True, "2004-01-31", 1]])

    def test_book_does_not_change(self):
        before, files = self.book.read_bytes(), os.listdir(self.folder)
        for form in ("table", "csv", "json", "markdown"):
            self.run_kpbook("info", self.book, "-O", form)
        self.assertEqual(self.book.read_bytes(), before)
        self.assertEqual(os.listdir(self.folder), files)

    def test_book_where_nothing_can_be_written(self):
        before = self.run_kpbook("info", self.book).stdout
        self.book.chmod(0o444)
        self.folder.chmod(0o555)
        self.addCleanup(self.folder.chmod, 0o755)
        # Permissions do not hold root back.
        user = {"user": NOBODY} if os.geteuid() == 0 else {}
        for command in (("info",), ("stock", "--month", "1")):
            done = subprocess.run([KPBOOK, command[0], self.book, *command[1:]], capture_output=True, timeout=60, **user)
            self.assertEqual(done.returncode, 0, done.stderr)
            if command == ("info",):
                self.assertEqual(done.stdout.decode(), before)
        changed = subprocess.run([KPBOOK, "sql", self.book, "Delete From 仓库设置"], capture_output=True, timeout=60, **user)
        self.assertEqual(changed.returncode, 1)

    def test_sends_only_questions(self):
        done = self.run_kpbook("info", self.book, "--trace")
        sent = [line for line in done.stderr.splitlines() if line.startswith(("execute", "open"))]
        self.assertGreater(len(sent), 0)
        self.assertEqual([line for line in sent if ": Select" not in line], [])

    def test_csv_has_a_part_a_section(self):
        parts = self.run_kpbook("info", self.book, "-O", "csv").stdout.split("\n\n")
        self.assertEqual([part.split("\n")[0] for part in parts],
                         ["information", "tables", "balance months", "warehouses"])
        self.assertEqual(parts[3], "warehouses\ndpID,仓库名称,结帐标志,结帐日期,closed through\n1,东库,False,,\n2,西库,False,,\n")

    def test_workbook_has_a_sheet_a_section(self):
        path = self.folder / "info.xlsx"
        self.run_kpbook("info", self.book, "-O", "xlsx", "-o", path)
        workbook = zipfile.ZipFile(path).read("xl/workbook.xml").decode()
        for title in ("information", "tables", "balance months", "warehouses"):
            self.assertIn(f'<sheet name="{title}"', workbook)


if __name__ == "__main__":
    unittest.main()
