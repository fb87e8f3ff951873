"""call, methods, the output formats and the options of every command."""

import datetime
import json
import os
import subprocess
import unittest
import unittest.mock
import xml.etree.ElementTree
import zipfile

from kpbook_case import KPBOOK, KpbookCase, TradingCase


class CallTest(TradingCase):
    def test_text_result(self):
        self.assertEqual(self.run_kpbook("call", self.book, "Version").stdout, "10110\n")

    def test_name_without_regard_to_case(self):
        self.assertEqual(self.run_kpbook("call", self.book, "VERSION").stdout, "10110\n")

    def test_numbers_convert(self):
        # Net amounts of bill 1, and the quantity of bill 2.
        self.assertEqual(self.run_kpbook("call", self.book, "Get单据金额", "1", "出库").stdout, "40\n")
        self.assertEqual(self.run_kpbook("call", self.book, "Get单据数量", " 2 ", "入库").stdout, "2\n")

    def test_boolean_result(self):
        self.assertEqual(self.run_kpbook("call", self.book, "isSaled", "1", "1").stdout, "True\n")
        self.assertEqual(self.run_kpbook("call", self.book, "isSaled", "2", "1").stdout, "False\n")

    def test_method_without_a_result(self):
        done = self.run_kpbook("call", self.book, "Del仓库余额表", "1", "1")
        self.assertEqual((done.stdout, done.stderr), ("", ""))
        self.assertEqual(self.rows("Select Count(*) As n From 仓库余额表"), [[1]])

    def test_no_recordset(self):
        self.sql("Delete From 仓库余额表")
        done = self.run_kpbook("call", self.book, "rs余额记录")
        self.assertEqual(done.stdout, "")
        self.assertIn("no recordset", done.stderr)

    def test_written_back_is_shown(self):
        done = self.run_kpbook("call", self.book, "rs余额记录", "1", "0")
        self.assertIn("rMonth = 1\n", done.stderr)
        done = self.run_kpbook("call", self.book, "rs余额记录")
        self.assertIn("rMonth = 1\n", done.stderr)
        done = self.run_kpbook("call", self.book, "rs余额记录", "1", "1")
        self.assertNotIn("rMonth", done.stderr)

    def test_argument_forms(self):
        self.run_kpbook("call", self.book, "Close_DepotBalance", "1", "1", "False", "date:2004-01-31", "nothing:")
        self.assertEqual(self.rows("Select Distinct 备注 From 仓库余额表 Where 月份=2"), [["2004-1-31"]])
        self.assertEqual(self.run_kpbook("call", self.book, "Get单据中文日期", 'json:{"row":{"月份":3,"日子":7}}').stdout,
                         "03月07日\n")
        self.assertEqual(self.run_kpbook("call", self.book, "CalcPrice", "currency:1", "number:4").stdout, "0.25\n")
        self.assertEqual(self.run_kpbook("call", self.book, "CalcPrice", "null:", "5").stdout, "0\n")
        self.assertEqual(self.run_kpbook("call", self.book, "AllTrim", "text:a-B").stdout, "-B\n")

    def test_negative_and_bracketed_arguments(self):
        self.assertEqual(self.run_kpbook("call", self.book, "CalcPrice", "-5", "2").stdout, "-2.5\n")
        self.assertEqual(self.run_kpbook("call", self.book, "CalcPrice", "-.5", "2").stdout, "-0.25\n")
        self.assertEqual(self.run_kpbook("call", self.book, "AllTrim", "[A,B]").stdout, "AB\n")

    def test_arguments_that_look_like_something_else(self):
        for argument, kept in (("", ""), ("close", ""), ("sql", ""), ("A B", "AB"), ("{}", ""), ("%%A", "A"), ("A,B", "AB"),
                               ("A=B", "AB"), ("[]", ""), ("[A", "A"), ("++", ""), ("'A'", "A")):
            self.assertEqual(self.run_kpbook("call", self.book, "AllTrim", argument).stdout, kept + "\n", argument)
        self.assertEqual(self.run_kpbook("call", self.book, "AllTrim", "--", "-A").stdout, "-A\n")
        self.assertEqual(self.run_kpbook("call", "-O", "json", "--", self.book, "AllTrim", "--A").stdout, '"--A"\n')

    def test_properties(self):
        self.assertEqual(self.run_kpbook("call", self.book, "isSQL").stdout, "False\n")
        self.assertEqual(self.run_kpbook("--sql", "call", self.book, "isSQL").stdout, "True\n")
        self.run_kpbook("call", self.book, "Speciality", "x")

    def failed(self, part, *arguments):
        done = self.run_kpbook("call", self.book, *arguments, code=1)
        self.assertEqual(done.stdout, "")
        self.assertTrue(done.stderr.startswith("kpbook: "), done.stderr)
        self.assertIn(part, done.stderr)

    def test_failures(self):
        self.failed("rs没有", "rs没有")
        self.failed("Wrong number of arguments", "Version", "1")
        self.failed("Argument not optional: m_Which", "Get单据金额", "1")
        self.failed("Type mismatch: rBillID", "Get单据金额", "one", "入库")
        self.failed("Overflow: rBillID", "Get单据金额", "2147483648", "入库")
        self.failed("Overflow: rMonth", "rs仓库余额表", "1", "32768")
        self.failed("Invalid use of Null: rBillID", "Get单据金额", "null:", "入库")
        self.failed("date:tomorrow", "BillAdulting", "入库", "1", "李", "date:tomorrow")
        self.failed("connection", "Cnn")
        self.failed("connection", "Cnn", "x")

    def test_value_with_a_quote(self):
        audit = ["call", self.book, "BillAdulting", "入库", "1"]
        done = self.run_kpbook(*audit, "O'Hara", "date:2004-01-31", code=2)
        self.assertEqual(done.stdout, "")
        self.assertIn("rAdultor: BillAdulting ", done.stderr)
        self.assertIn("must be doubled: ''", done.stderr)
        done = self.run_kpbook(*audit, "O'Hara", "date:2004-01-31", "--raw", code=1)
        self.assertEqual(done.stdout, "False\n")
        self.assertEqual(self.rows("Select 审核员 From 入库目录 Where BillID=1"), [[None]])
        self.run_kpbook(*audit, "O''Hara", "date:2004-01-31")
        self.assertEqual(self.rows("Select 审核员 From 入库目录 Where BillID=1"), [["O'Hara"]])

    def test_quote_that_would_change_every_password(self):
        self.sql("Insert Into 操作员 (姓名,密码) Values ('甲','one')")
        self.sql("Insert Into 操作员 (姓名,密码) Values ('乙','two')")
        passwords = "Select 密码 From 操作员 Order by ID"
        self.run_kpbook("call", self.book, "Update_Password", "x' or 'a'='a", "pw", code=2)
        self.run_kpbook("call", self.book, "GetPassword", "x' or 'a'='a", code=2)
        self.assertEqual(self.rows(passwords), [["one"], ["two"]])
        self.run_kpbook("call", self.book, "Update_Password", "x' or 'a'='a", "pw", "--raw")
        self.assertEqual(self.rows(passwords), [["pw"], ["pw"]])

    def test_quote_in_an_array(self):
        query = ["call", self.book, "Get单据统计", "入库", "", "", "0", "0", "0"]
        array = ["json:" + json.dumps({"array": ["", "", "", "", handler, "", "", "=", "", "=", 0, "="]})
                 for handler in ("O'Hara", "O''Hara")]
        self.run_kpbook(*query, array[0], code=2)
        self.assertEqual(self.run_kpbook(*query, array[1]).stdout, "0\n")

    def test_quote_that_is_not_pasted(self):
        done = self.run_kpbook("call", self.book, "操作员_Append", "O'Hara")
        self.assertEqual(self.rows(f"Select 姓名 From 操作员 Where ID={done.stdout}"), [["O'Hara"]])

    def test_transaction(self):
        self.run_kpbook("call", self.book, "Update_Option", "A", "1", "--transaction")
        self.assertEqual(self.run_kpbook("call", self.book, "Get_Option", "A").stdout, "1\n")
        # The lines' table is missing, so that the header, which is deleted first, comes back.
        self.sql("Drop Table 入库记录")
        done = self.run_kpbook("call", self.book, "Del_单据", "1", "入库", "--transaction", code=1)
        self.assertIn("rolled back", done.stderr)
        self.assertEqual(self.rows("Select Count(*) As n From 入库目录"), [[2]])
        self.run_kpbook("call", self.book, "Del_单据", "1", "入库", code=1)
        self.assertEqual(self.rows("Select Count(*) As n From 入库目录"), [[1]])

    def test_trace(self):
        done = self.run_kpbook("--trace", "call", self.book, "rs月份列表")
        lines = done.stderr.splitlines()
        self.assertEqual(lines[0], "execute: Select Distinct 年份,月份 From 仓库余额表 Order by 年份,月份")
        self.assertRegex(lines[1], r"^  \d+\.\d{3} ms, 1 row$")
        done = self.run_kpbook("call", self.book, "rs仓库余额表", "--trace")
        self.assertIn("open table: 仓库余额表\n", done.stderr)
        done = self.run_kpbook("--trace", "sql", self.book, "Select x From 仓库设置", code=1)
        self.assertIn("execute: Select x From 仓库设置\n", done.stderr)
        self.assertRegex(done.stderr, r"\n  \d+\.\d{3} ms, failed: ")

    def test_dialect(self):
        text = ["UpdateDepotClosedFlag", "1", "2004-01-31", "True"]
        self.assertIn("结帐日期='2004-1-31',结帐标志=True Where dpID=1",
                      self.run_kpbook("--trace", "call", self.book, *text).stderr)
        self.assertIn("结帐日期='2004-1-31',结帐标志=1 Where dpID=1",
                      self.run_kpbook("--trace", "--sql", "call", self.book, *text).stderr)

    def test_question_on_a_pipe(self):
        self.add_line_without_balance()
        question = "检查入库记录: 入库记录中，有仓库余额表中没有的记录：1,是否修正？"
        done = self.run_kpbook("call", self.book, "CheckBnProduct", "1", code=1)
        self.assertIn(question, done.stderr)
        self.assertIn("--answer", done.stderr)
        done = self.run_kpbook("call", self.book, "CheckBnProduct", "1", "--answer", "no")
        self.assertIn(question + " no\n", done.stderr)
        self.assertEqual(self.rows("Select Count(*) As n From 仓库余额表 Where pdID=3"), [[0]])
        self.run_kpbook("call", self.book, "CheckBnProduct", "1", "--answer", "yes")
        self.assertEqual(self.rows("Select 年份,月份,dpID From 仓库余额表 Where pdID=3"), [[2004, 1, 1]])


class SqlTest(TradingCase):
    def test_query(self):
        done = self.run_kpbook("sql", self.book, "Select dpID,仓库名称 From 仓库设置 Order by dpID")
        self.assertEqual(done.stdout, "dpID  仓库名称\n----  --------\n   1  东库\n   2  西库\n")
        self.assertEqual(done.stderr, "2 rows\n")

    def test_change(self):
        done = self.sql("Update 仓库设置 Set 仓库名称='南库' Where dpID=2")
        self.assertEqual((done.stdout, done.stderr), ("", "1 row changed\n"))
        self.assertEqual(self.sql("Delete From 仓库设置").stderr, "2 rows changed\n")

    def test_statements_that_cannot_be_run_change_nothing(self):
        for text in ("Select", "Selct * From 仓库设置", "Select * From 仓库设置 Where", "Delete From 没有",
                     "Select 没有 From 仓库设置", "Delete From 仓库设置; Delete From 没有", "Delete From 仓库设置 x y",
                     "Update 仓库设置 Set 仓库名称='O'Hara'", "Insert Into 仓库设置 (dpID) Values (2147483648)",
                     "Insert Into 仓库设置 (dpID) Values (1)", "", "   "):
            done = self.run_kpbook("sql", self.book, text, code=1)
            self.assertTrue(done.stderr.startswith("kpbook: "), f"{text}: {done.stderr}")
        self.assertEqual(self.rows("Select dpID,仓库名称 From 仓库设置 Order by dpID"), [[1, "东库"], [2, "西库"]])
        self.assertEqual(self.rows("Select Count(*) As n From 商品设置"), [[3]])

    def test_ids_at_the_limits(self):
        self.sql("Insert Into 入库记录 (BillID,pdID) Values (2147483647,-2147483648)")
        self.assertEqual(self.rows("Select BillID From 入库记录 Where pdID=-2147483648"), [[2147483647]])

    def test_bill_entered_in_jets_dialect(self):
        self.sql("Insert Into 入库目录 (BillID,年份,月份,日子,单据类型,dpID,录入日期) Values (9,2004,2,3,'入库单',1,#2004-2-3#)")
        self.sql("Insert Into 入库记录 (BillID,pdID,dpID,数量,除税单价,除税金额) Values (9,1,1,2.5,1.2345,3.0863)")
        self.sql("Update 入库目录 Set 说明='急' & '件' Where BillID=9 And 录入日期=#2004-2-3#")
        self.assertEqual(self.rows("Select 录入日期,说明 From 入库目录 Where BillID=9"), [["2004-02-03", "急件"]])
        self.assertEqual(self.rows("Select Sum(除税金额) As s From 入库记录"), [["41.0863"]])


class FormatTest(TradingCase):
    QUERY = "Select dpID,仓库名称,结帐日期,结帐标志 From 仓库设置 Order by dpID"

    def setUp(self):
        super().setUp()
        self.sql("Update 仓库设置 Set 仓库名称='a|b, \"c\"',结帐日期=#2004-1-31#,结帐标志=True Where dpID=2")

    def output(self, *options):
        return self.run_kpbook("sql", self.book, self.QUERY, *options).stdout

    def test_table(self):
        expected = ("dpID  仓库名称  结帐日期    结帐标志\n"
                    "----  --------  ----------  --------\n"
                    "   1  东库                  False\n"
                    "   2  a|b, \"c\"  2004-01-31  True\n")
        self.assertEqual(self.output(), expected)
        self.assertEqual(self.output("-O", "table"), expected)

    def test_csv(self):
        self.assertEqual(self.output("-O", "csv"), "dpID,仓库名称,结帐日期,结帐标志\n1,东库,,False\n"
                                                   "2,\"a|b, \"\"c\"\"\",2004-01-31,True\n")

    def test_json(self):
        self.assertEqual(json.loads(self.output("-O", "json")), {
            "columns": [{"name": "dpID", "type": "Long"}, {"name": "仓库名称", "type": "String"},
                        {"name": "结帐日期", "type": "Date"}, {"name": "结帐标志", "type": "Boolean"}],
            "rows": [[1, "东库", None, False], [2, 'a|b, "c"', "2004-01-31", True]]})

    def test_json_of_single_values(self):
        self.assertEqual(self.run_kpbook("call", self.book, "Get单据金额", "1", "出库", "-O", "json").stdout,
                         '{"currency":"40"}\n')
        self.assertEqual(self.run_kpbook("call", self.book, "Get单据数量", "1", "出库", "-O", "json").stdout, "5.0\n")
        self.assertEqual(self.run_kpbook("-O", "json", "call", self.book, "Version").stdout, '"10110"\n')

    def test_markdown(self):
        self.assertEqual(self.output("-O", "markdown"),
                         "| dpID | 仓库名称 | 结帐日期 | 结帐标志 |\n| ---: | --- | --- | --- |\n"
                         "| 1 | 东库 |  | False |\n| 2 | a\\|b, \"c\" | 2004-01-31 | True |\n")

    def test_single_value_in_columns(self):
        self.assertEqual(self.run_kpbook("call", self.book, "Version", "-O", "csv").stdout, "Version\n10110\n")

    def test_file(self):
        path = self.folder / "out.csv"
        self.assertEqual(self.output("-O", "csv", "-o", path), "")
        self.assertEqual(path.read_text().splitlines()[0], "dpID,仓库名称,结帐日期,结帐标志")

    def test_file_that_cannot_be_written(self):
        done = self.run_kpbook("sql", self.book, self.QUERY, "-o", self.folder / "none" / "out.txt", code=1)
        self.assertIn("cannot be written", done.stderr)
        done = self.run_kpbook("sql", self.book, self.QUERY, "-O", "xlsx", "-o", self.folder / "none" / "out.xlsx", code=1)
        self.assertIn("cannot be written", done.stderr)

    def test_full_disk(self):
        done = self.run_kpbook("sql", self.book, self.QUERY, "-o", "/dev/full", code=1)
        self.assertIn("cannot be written", done.stderr)

    def test_csv_comes_back_as_it_was(self):
        before = self.rows("Select * From 仓库余额表 Order by dpID,pdID")
        path = self.folder / "balance.csv"
        self.run_kpbook("sql", self.book, "Select * From 仓库余额表", "-O", "csv", "-o", path)
        self.sql("Delete From 仓库余额表")
        self.run_kpbook("import", self.book, "仓库余额表", path)
        after = self.rows("Select * From 仓库余额表 Order by dpID,pdID")
        # A Null text comes back as an empty one.
        self.assertEqual([row[:-1] for row in after], [row[:-1] for row in before])
        self.assertEqual(len(after), 3)

    def cells(self, path):
        """Cells of the first sheet: type, value and number format."""
        space = {"m": "http://schemas.openxmlformats.org/spreadsheetml/2006/main"}
        with zipfile.ZipFile(path) as archive:
            sheet = xml.etree.ElementTree.fromstring(archive.read("xl/worksheets/sheet1.xml"))
            styles = xml.etree.ElementTree.fromstring(archive.read("xl/styles.xml"))
        codes = {f.get("numFmtId"): f.get("formatCode") for f in styles.iterfind(".//m:numFmt", space)}
        formats = [codes.get(x.get("numFmtId"), "") for x in styles.find("m:cellXfs", space)]
        found = {}
        for cell in sheet.iterfind(".//m:c", space):
            value = "".join(cell.itertext())
            found[cell.get("r")] = (cell.get("t", "n"), value, formats[int(cell.get("s", 0))])
        return found

    def test_xlsx(self):
        path = self.folder / "out.xlsx"
        self.assertEqual(self.output("-O", "xlsx", "-o", path), "")
        cells = self.cells(path)
        self.assertEqual([cells[c][1] for c in ("A1", "B1", "C1", "D1")], ["dpID", "仓库名称", "结帐日期", "结帐标志"])
        self.assertEqual(cells["A2"], ("n", "1", ""))
        self.assertEqual(cells["B3"][1], 'a|b, "c"')
        days = (datetime.date(2004, 1, 31) - datetime.date(1899, 12, 30)).days
        self.assertEqual(cells["C3"], ("n", str(days), "yyyy-mm-dd"))
        self.assertEqual(cells["D3"][:2], ("b", "1"))
        self.assertNotIn("C2", cells)

    def test_only_xlsx_needs_its_library(self):
        self.write("libxlsxwriter.so.4", "no library")
        with unittest.mock.patch.dict(os.environ, LD_LIBRARY_PATH=str(self.folder)):
            self.run_kpbook("sql", self.book, self.QUERY, "-O", "csv")
            path = self.folder / "out.xlsx"
            done = self.run_kpbook("sql", self.book, self.QUERY, "-O", "xlsx", "-o", path, code=1)
        self.assertRegex(done.stderr, "^kpbook: xlsx cannot be written: .*libxlsxwriter.so.4")
        self.assertFalse(path.exists())

    def test_xlsx_of_money(self):
        self.sql("Update 出库记录 Set 单价=922337203685477.5807")
        path = self.folder / "out.xlsx"
        self.run_kpbook("sql", self.book, "Select 除税金额,数量,单价 From 出库记录", "-O", "xlsx", "-o", path)
        cells = self.cells(path)
        self.assertEqual(cells["A2"], ("n", "40", "#,##0.00"))
        self.assertEqual(cells["B2"], ("n", "5", ""))
        # A number in a sheet keeps 15 digits; more are written as text.
        self.assertEqual(cells["C2"][1], "922337203685477.5807")
        self.assertNotEqual(cells["C2"][0], "n")

    def test_closed_pipe_ends_quietly(self):
        self.import_text("入库记录", "BillID,pdID\n" + "1,2\n" * 20000)
        for form in ("table", "csv", "json", "markdown"):
            process = subprocess.Popen([KPBOOK, "sql", str(self.book), "Select * From 入库记录", "-O", form],
                                       stdout=subprocess.PIPE, stderr=subprocess.PIPE)
            process.stdout.readline()
            process.stdout.close()
            stderr = process.stderr.read().decode()
            process.stderr.close()
            self.assertEqual((process.wait(), stderr), (0, ""), form)


class MethodsTest(KpbookCase):
    def test_list(self):
        text = self.run_kpbook("methods").stdout
        self.assertLess(text.index("Component frame\n"), text.index("\nBills\n"))
        self.assertIn("  rs月份列表(rDESC As Boolean (optional)) As Recordset\n", text)
        self.assertIn("  Get单据金额(rBillID As Long, m_Which As String) As Currency\n", text)

    def test_one(self):
        text = self.run_kpbook("methods", "close_depotbalance").stdout
        self.assertTrue(text.startswith("Close_DepotBalance(rdpID As Long, rMonth As Integer, "), text)
        self.assertIn("    rMonth  Integer\n", text)
        self.assertIn("    rCostUsed  Boolean, written back\n", text)
        self.assertIn("    rpgBar  Object, optional\n", text)

    def test_property(self):
        text = self.run_kpbook("methods", "isSQL").stdout
        self.assertIn("Property Get", text)
        self.assertIn("Property Let", text)

    def test_as_data(self):
        found = json.loads(self.run_kpbook("methods", "Version", "-O", "json").stdout)
        self.assertEqual([c["name"] for c in found["columns"]], ["subsystem", "name", "kind", "signature", "answers", "pasted"])
        self.assertEqual(found["rows"][0][:4], ["Component frame", "Version", "Method", "Version() As String"])

    def test_unknown(self):
        done = self.run_kpbook("methods", "rs没有", code=1)
        self.assertIn("kpbook: there is no method rs没有", done.stderr)


class UsageTest(KpbookCase):
    def test_wrong_usage(self):
        cases = [(), ("bogus",), ("--bogus",), ("new",), ("new", "a", "b"), ("import",), ("import", "a", "b"),
                 ("import", "a", "b", "c", "d"), ("call",), ("call", "a"), ("call", "a", "--bogus"), ("sql", "a"),
                 ("sql", "a", "b", "c"), ("close", "a"), ("close", "--month", "1"), ("methods", "a", "b"),
                 ("close", "a", "--month", "0"), ("close", "a", "--month", "13"), ("close", "a", "--month", "-1"),
                 ("close", "a", "--month", "x"), ("close", "a", "--month", "1.5"),
                 ("close", "a", "--month", "1", "--date", "never"), ("sql", "a", "b", "-O", "pdf"),
                 ("sql", "a", "b", "-O", "xlsx"), ("sql", "a", "b", "--today", "2004-02-30"),
                 ("sql", "a", "b", "--answer", "maybe"), ("call", "a", "--batch", "b", "c"),
                 ("call", "a", "--batch", "-O", "csv"), ("call", "a", "--batch", "-o", "x"),
                 ("sql", "a", b"Select '\xb2\xd6'"), ("call", "a", "AllTrim", b"\xff")]
        for arguments in cases:
            done = self.run_kpbook(*arguments, code=2)
            self.assertTrue(done.stderr.startswith("kpbook: "), f"{arguments}: {done.stderr}")
            self.assertEqual(done.stdout, "")

    def test_wrong_usage_is_named(self):
        self.assertIn("bogus", self.run_kpbook("bogus", code=2).stderr)
        self.assertIn("13", self.run_kpbook("close", "a", "--month", "13", code=2).stderr)
        self.assertIn("-o FILE", self.run_kpbook("sql", "a", "b", "-O", "xlsx", code=2).stderr)

    def test_helps(self):
        self.assertIn("Examples:", self.run_kpbook("--help").stdout)
        for command in ("new", "import", "call", "sql", "close", "methods"):
            done = self.run_kpbook(command, "--help")
            self.assertIn("Example", done.stdout)
            self.assertEqual(done.stderr, "")

    def test_version(self):
        self.assertEqual(self.run_kpbook("--version").stdout, "kpbook 1.0.0.110\n")


if __name__ == "__main__":
    unittest.main()
