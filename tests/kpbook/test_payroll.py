"""payroll: the drivers' sheets and their sums."""

import json
import unittest

from kpbook_case import KpbookCase


class PayrollTest(KpbookCase):
    def setUp(self):
        super().setUp()
        self.copy_of("payroll", self.make_payroll_book)

    def make_payroll_book(self):
        self.new_book()
        self.import_text("工资表", "年份,月份,姓名,总收入,油费,实发工资,备注\n2004,3,张三,1000.5,200.25,800.25, \n"
                                   "2004,3,李四,500,0,500.0001, \n2004,4,张三,100,1,99, \n2004,5,张三,10,0,10,新车\n")
        self.import_text("派遣目录", "BillID,年份,月份,日子,司机,货款\n1,2004,4,1,张三,300.0001\n2,2004,4,2,李四,50\n"
                                     "3,2004,4,3,张三,0.9\n4,2004,3,3,张三,7\n")

    def rows(self, *options):
        """Driver, income, fuel and net pay, sorted by driver."""
        found = json.loads(self.run_kpbook("payroll", self.book, *options, "-O", "json").stdout)
        names = [column["name"] for column in found["columns"]]
        return sorted([row[names.index(name)] for name in ("姓名", "总收入", "油费", "实发工资")] for row in found["rows"])

    def test_saved_month_and_sums(self):
        lisi = ["李四", "500", "0", "500.0001"]
        for options, expected in (
                (("--month", 3), [["张三", "1000.5", "200.25", "800.25"], lisi]),
                (("--month", 4), [["张三", "100", "1", "99"]]),
                (("--month", 6), []),
                (("--to-month", 3), [["张三", "1000.5", "200.25", "800.25"], lisi]),
                (("--to-month", 4), [["张三", "1100.5", "201.25", "899.25"], lisi]),
                # Another remark makes another row.
                ((), [["张三", "10", "0", "10"], ["张三", "1100.5", "201.25", "899.25"], lisi])):
            self.assertEqual(self.rows(*options), expected, options)

    def test_totals(self):
        for options, income, fuel, pay in ((("--month", 3), "1500.5", "200.25", "1300.2501"),
                                           (("--to-month", 4), "1600.5", "201.25", "1399.2501"),
                                           ((), "1610.5", "201.25", "1409.2501")):
            lines = self.run_kpbook("payroll", self.book, *options, "--raw").stdout.splitlines()
            self.assertEqual(lines[-2], lines[1])
            self.assertEqual(lines[-1].split(), ["合计", income, fuel, *["0"] * 22, pay], options)

    def test_people_read_columns_with_figures(self):
        self.assertEqual(self.run_kpbook("payroll", self.book, "--month", 3).stdout,
                         "年份  月份  姓名    总收入    油费  实发工资\n"
                         "----  ----  ----  --------  ------  --------\n"
                         "2004     3  张三  1,000.50  200.25    800.25\n"
                         "2004     3  李四    500.00    0.00    500.00\n"
                         "----  ----  ----  --------  ------  --------\n"
                         "合计              1,500.50  200.25  1,300.25\n")
        wide = self.run_kpbook("payroll", self.book, "--month", 3, "--wide").stdout.splitlines()
        self.assertEqual(wide[-1].split(), ["合计", "1,500.50", "200.25", *["0.00"] * 22, "1,300.25"])

    def test_new_sheet(self):
        lines = self.run_kpbook("payroll", self.book, "--month", 4, "--new").stdout.splitlines()
        self.assertEqual(lines[:2], ["姓名  总收入", "----  ------"])
        self.assertEqual(sorted(lines[2:4]), ["张三  300.90", "李四   50.00"])
        self.assertEqual(lines[4:], ["----  ------", "合计  350.90"])

    def test_nothing_saved(self):
        done = self.run_kpbook("payroll", self.book, "--month", 6)
        self.assertEqual((done.stdout.count("\n"), done.stderr), (2, "0 rows\n"))

    def test_formats(self):
        new = ("payroll", self.book, "--month", 4, "--new", "-O")
        self.assertTrue(self.run_kpbook(*new, "markdown").stdout.endswith("| 合计 | 350.90 |\n"))
        for form in ("csv", "json"):
            self.assertNotIn("合计", self.run_kpbook(*new, form).stdout)

    def test_statements(self):
        for options, expected in (
                (("--month", 3), "execute: Select * From 工资表 Where 月份=3\n"),
                (("--month", 3, "--new"), "execute: SELECT Lst.司机 As 姓名, Sum(Lst.货款) As 总收入 FROM 派遣目录 AS Lst "
                                          "Where (Lst.月份) = 3 GROUP BY Lst.司机\n"),
                (("--to-month", 6), "s.Flag, s.备注 FROM 工资表 AS s  Where s.月份<=6 GROUP BY s.姓名, s.Flag, s.备注\n"),
                ((), "s.Flag, s.备注 FROM 工资表 AS s  GROUP BY s.姓名, s.Flag, s.备注\n")):
            self.assertIn(expected, self.run_kpbook("payroll", self.book, *options, "--trace").stderr)

    def test_wrong_usage(self):
        for options in (("--new",), ("--month", 0), ("--month", 13), ("--to-month", -1), ("--month", 3, "--to-month", 4),
                        ("--to-month", 4, "--new"), ("--year", 2004)):
            self.assertEqual(self.run_kpbook("payroll", self.book, *options, code=2).stdout, "", options)
        self.run_kpbook("payroll", code=2)

    def test_book_that_cannot_be_read(self):
        self.book.write_text("no book at all\n" * 100)
        for book in (self.book, self.folder / "none"):
            done = self.run_kpbook("payroll", book, "--month", 3, code=1)
            self.assertTrue(done.stderr.startswith("kpbook: "), done.stderr)
            self.assertEqual(done.stdout, "")

    def test_book_does_not_change(self):
        before = self.book.read_bytes()
        for options in ((), ("--month", 3), ("--month", 4, "--new"), ("--to-month", 4)):
            self.run_kpbook("payroll", self.book, *options)
        self.assertEqual(self.book.read_bytes(), before)


if __name__ == "__main__":
    unittest.main()
