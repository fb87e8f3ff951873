"""report: the component's reports with their filters, and the totals below their tables."""

import json
import os
import unittest
import zipfile

from report_case import BILLS, LINES, ReportCase

class BillsTest(ReportCase):
    def numbers(self, *options):
        return [row[0] for row in self.report("bills", "--direction", *options, columns=["单据编号"])]

    def test_filters(self):
        for options, expected in (
                (("in",), ["R002", "R001", "R003"]),
                (("入库",), ["R002", "R001", "R003"]),
                (("out",), ["C001", "C002"]),
                (("出库",), ["C001", "C002"]),
                (("in", "--from", "2004-03-06"), ["R002", "R003"]),
                (("in", "--to", "2004-03-20"), ["R002", "R001"]),
                (("in", "--from", "2004-3-6", "--to", "2004年3月31日"), ["R002"]),
                (("in", "--month", 3), ["R002", "R001"]),
                (("in", "--month", 4), ["R003"]),
                (("out", "--month", 2), []),
                (("in", "--from-number", "R002"), ["R002", "R003"]),
                (("in", "--to-number", "R002"), ["R002", "R001"]),
                (("in", "--from-number", "R003", "--to-number", "R009"), ["R003"]),
                (("in", "--warehouse", 2), ["R002"]),
                (("in", "--partner", 1), ["R001", "R003"]),
                (("out", "--project", 1), ["C001"]),
                (("in", "--type", "移库"), ["R002"]),
                (("in", "--handler", "张三"), ["R001"]),
                (("in", "--handler", "O'Neil"), ["R002"]),
                (("in", "--counterpart", "李四"), ["R002", "R001"]),
                (("in", "--packing", "箱"), ["R001"]),
                (("in", "--min-quantity", 3), ["R001"]),
                (("in", "--max-quantity", 3), ["R002"]),
                (("in", "--min-quantity", 2, "--max-quantity", 4.5), ["R002", "R001"]),
                (("in", "--min-amount", 14), ["R002", "R001"]),
                (("in", "--min-amount", "14.0001"), ["R001"]),
                (("in", "--max-amount", 14), ["R002"]),
                (("in", "--min-amount", "-.5", "--max-amount", "24.8765"), ["R002"]),
                (("in", "--min-amount", "-5"), ["R002", "R001"])):
            for dialect in ((), ("--sql",)):
                self.assertEqual(self.numbers(*options, *dialect), expected, (options, dialect))

    def test_only_matching_lines_are_summed(self):
        columns = ["数量", "金额", "税额", "合计", "仓库名称", "企业名称"]
        self.assertEqual(self.report("bills", "--direction", "in", "--type", "购货", columns=columns),
                         [[4.5, "24.8766", "4.1234", "29", "东库", "红星厂"], [None, None, None, None, "东库", "红星厂"]])
        self.assertEqual(self.report("bills", "--direction", "in", "--packing", "箱", columns=columns),
                         [[0.5, "0.8766", "0.1234", "1", "东库", "红星厂"]])

    def test_totals(self):
        self.assertEqual(self.totals("bills", "--direction", "in"), ["合计", "6.5", "38.88", "6.12", "45.00"])
        self.assertEqual(self.totals("bills", "--direction", "in", "--raw"), ["合计", "6.5", "38.8766", "6.1234", "45"])

    def test_bounds_that_are_none(self):
        for option, value, reason in (("--min-amount", "0", "sets no bound"), ("--max-amount", "0.00001", "sets no bound"),
                                      ("--min-amount", "much", "is no amount"), ("--max-amount", "1e99", "is no amount"),
                                      ("--max-quantity", "0", "sets no bound"), ("--min-quantity", "nan", "is no quantity"),
                                      ("--min-quantity", "3 t", "is no quantity")):
            done = self.run_kpbook("report", "bills", self.book, "--direction", "in", option, value, code=2)
            self.assertIn(f"{option}: '{value}' {reason}\n", done.stderr)


class BalanceTest(ReportCase):
    COLUMNS = ["pdID", "上期库存数量", "上期库存金额", "本期库存金额", "商品名称"]
    MARCH = [[1, 13.0, "65", "63.0001", "水泥"], [2, 100.0, "25", "25", "螺栓"]]

    def test_months_and_warehouses(self):
        for options, expected in (
                ((), self.MARCH),
                (("--month", 3), self.MARCH),
                (("--month", 4), [[1, 11.0, "48.0001", "0", "水泥"]]),
                (("--month", 3, "--warehouse", 2), [[1, 3.0, "15", "15", "水泥"]]),
                (("--month", 5), [])):
            self.assertEqual(self.report("balance", *options, columns=self.COLUMNS), expected, options)

    def test_says_which_month_was_taken(self):
        taken = self.run_kpbook("report", "balance", self.book)
        self.assertEqual(taken.stderr, "month 3, the first with balance rows\n2 rows\n")
        self.assertEqual(self.run_kpbook("report", "balance", self.book, "--month", 3).stderr, "2 rows\n")
        self.assertEqual(self.run_kpbook("report", "balance", self.book, "--raw").stderr, taken.stderr)

    def test_totals_are_amounts_alone(self):
        self.assertEqual(self.totals("balance"), ["合计", "90.00", "0.00", "0.00", "88.00"])
        self.assertEqual(self.totals("balance", "--raw"), ["合计", "90", "0", "0", "0", "0", "88.0001"])

    def test_book_without_balance_rows(self):
        self.sql("Delete From 仓库余额表")
        done = self.run_kpbook("report", "balance", self.book, "-O", "csv")
        self.assertTrue(done.stdout.startswith("pdID,上期库存单价,上期库存数量,"), done.stdout)
        self.assertEqual((done.stdout.count("\n"), done.stderr), (1, "0 rows\n"))


class SummaryTest(ReportCase):
    def test_products(self):
        columns = ["pdID", "数量", "金额", "商品名称"]
        cement, bolts = [1, 4.0, "24", "水泥"], [2, 0.5, "0.8766", "螺栓"]
        for options, expected in (
                (("in",), [[1, 6.0, "38", "水泥"], bolts]),
                (("in", "--from-month", 3, "--to-month", 3), [[1, 6.0, "38", "水泥"], bolts]),
                (("in", "--from-month", 4), []),
                (("in", "--warehouse", 2), [[1, 2.0, "14", "水泥"]]),
                (("in", "--partner", 1), [cement, bolts]),
                (("in", "--type", "购进"), [cement, bolts]),
                (("in", "--type", "调拨"), [[1, 2.0, "14", "水泥"]]),
                (("out", "--to-month", 3), [[1, 5.0, "40", "水泥"], [2, 0.25, "0.9", "螺栓"]]),
                (("out",), [[1, 6.0, "49", "水泥"], [2, 0.25, "0.9", "螺栓"]]),
                (("cost",), [[1, 5.0, "27.5", "水泥"], [2, 0.25, "0.05", "螺栓"]]),
                (("成本", "--warehouse", 2), [])):
            self.assertEqual(sorted(self.report("products", "--direction", *options, columns=columns)), expected, options)
        # Net amounts, tax, and both together.
        self.assertEqual(self.totals("products", "--direction", "in"), ["合计", "38.88", "6.12", "45.00"])
        self.assertEqual(self.totals("products", "--direction", "in", "--raw"), ["合计", "38.8766", "6.1234", "38.8766"])
        self.assertEqual(self.totals("products", "--direction", "cost"), ["合计", "27.55"])

    def test_partners(self):
        columns = ["ksID", "企业名称", "数量", "除税金额", "金额", "税额"]
        for options, expected in (
                (("in",), [[1, "红星厂", 4.5, "24.8766", "29", "4.1234"], [2, "O'Neil", 2.0, "14", "16", "2"]]),
                (("out",), [[1, "建工集团", 6.25, "49.9", "56", "6.1"]]),
                (("out", "--from-month", 4), [[1, "建工集团", 1.0, "9", "10", "1"]]),
                (("in", "--from-month", 4, "--to-month", 5), [])):
            self.assertEqual(sorted(self.report("partners", "--direction", *options, columns=columns)), expected, options)
        self.assertEqual(self.totals("partners", "--direction", "in"), ["合计", "6.5", "38.88", "6.12", "45.00"])
        self.assertEqual(self.totals("partners", "--direction", "in", "--raw"),
                         ["合计", "6.5", "38.8766", "45", "6.1234"])

    def test_costs(self):
        columns = ["pdID", "数量", "金额"]
        for options, expected in (
                ((), [[1, 5.0, "27.5"], [2, 0.25, "0.05"]]),
                (("--from-month", 3, "--to-month", 3, "--warehouse", 1), [[1, 5.0, "27.5"], [2, 0.25, "0.05"]]),
                (("--to-month", 2), [])):
            self.assertEqual(sorted(self.report("costs", *options, columns=columns)), expected, options)
        self.assertEqual(self.totals("costs"), ["合计", "27.55"])


class DailyTest(ReportCase):
    def test_daily(self):
        self.assertEqual(
            self.table("daily", "--month", 3),
            "库存日报表  2004年3月  全部仓库  出库按出库单计价\n"
            "3月未结帐 (not closed)：东库、西库；数字来自已录入的单据\n"
            "\n"
            "日子  期初数量  期初金额  入库数量  入库金额  出库数量  出库金额  库存数量  库存金额\n"
            "----  --------  --------  --------  --------  --------  --------  --------  --------\n"
            "   5       113     90.00       4.5     24.88         0      0.00     117.5    114.88\n"
            "  10     117.5    114.88         0      0.00      5.25     40.90    112.25     73.98\n"
            "  20    112.25     73.98         2     14.00         0      0.00    114.25     87.98\n"
            "----  --------  --------  --------  --------  --------  --------  --------  --------\n"
            "合计                           6.5     38.88      5.25     40.90\n")

    def test_raw_daily(self):
        # The method puts a day with outbound movements alone last.
        self.assertEqual(
            self.table("daily", "--month", 3, "--raw"),
            "日子  期初数量  期初金额  入库数量  入库金额  出库数量  出库金额  库存数量  库存金额\n"
            "----  --------  --------  --------  --------  --------  --------  --------  --------\n"
            "   5       113        90       4.5   24.8766         0         0     117.5  114.8766\n"
            "  20     117.5  114.8766         2        14         0         0     119.5  128.8766\n"
            "  10     119.5  128.8766         0         0      5.25      40.9    114.25   87.9766\n"
            "----  --------  --------  --------  --------  --------  --------  --------  --------\n"
            "合计                           6.5   38.8766      5.25      40.9\n")

    def test_daily_of_a_warehouse(self):
        self.assertEqual(self.report("daily", "--month", 3, "--warehouse", 2),
                         [[20, 3.0, 15.0, 2.0, 14.0, 0.0, 0.0, 5.0, 29.0]])

    def test_day(self):
        columns = ["pdID", "数量", "金额", "税额", "合计"]
        fifth = [[1, 4.0, "24", "4", "28"], [2, 0.5, "0.8766", "0.1234", "1"]]
        for options, expected in (
                (("--direction", "in", "--date", "2004-03-05"), fifth),
                (("--direction", "in", "--date", "2004-03-05", "--partner", 2), []),
                (("--direction", "in", "--date", "2004-03-20", "--before"), fifth),
                (("--direction", "in", "--date", "2004-03-01", "--before"), []),
                (("--direction", "in", "--date", "2004-03-20", "--warehouse", 2), [[1, 2.0, "14", "2", "16"]]),
                (("--direction", "in", "--date", "2004-03-20", "--warehouse", 1), []),
                (("--direction", "out", "--date", "2004-03-10"), [[1, 5.0, "40", "5", "45"], [2, 0.25, "0.9", "0.1", "1"]]),
                (("--direction", "out", "--date", "2004-03-05"), [])):
            self.assertEqual(self.report("day", *options, columns=columns), expected, options)
        fifth = ("day", "--direction", "in", "--date", "2004-03-05")
        self.assertEqual(self.totals(*fifth), ["合计", "24.88", "4.12", "29.00"])
        self.assertEqual(self.totals(*fifth, "--raw"), ["合计", "24.8766", "4.1234", "29"])

    def test_day_in_sql_servers_dialect_is_outbound(self):
        note = "in SQL Server's dialect these are outbound figures, whatever the direction\n"
        for direction, expected in (("in", note + "2 rows\n"), ("out", "2 rows\n")):
            done = self.run_kpbook("report", "day", self.book, "--direction", direction, "--date", "2004-03-10", "--sql",
                                   "-O", "json")
            self.assertEqual(done.stderr, expected)
            self.assertEqual([row[10] for row in json.loads(done.stdout)["rows"]], [5.0, 0.25])


class ProjectsTest(ReportCase):
    MASTER = ["pjID", "ClassCode", "项目名称", "工程名称", "项目编号", "工程性质"]

    def found(self, *options):
        done = self.run_kpbook("report", "projects", self.book, *options, "-O", "json")
        found = json.loads(done.stdout)
        names = [column["name"] for column in found["columns"]]
        self.assertEqual(names[:6], self.MASTER)
        return names[6:], {row[2]: row[6:] for row in found["rows"]}, done.stderr

    def test_quantities(self):
        for options in ((), ("--measure", "quantity"), ("--measure", "数量")):
            self.assertEqual(self.found(*options, "--raw")[:2], (["合计", "月合计", "3", "4"],
                             {"大桥": [5.25, 5.25, 5.25, None], None: [1.0, 1.0, None, 1.0]}), options)
            self.assertEqual(self.found(*options)[:2], (["合计", "月合计", "3", "4", "类别"],
                             {"大桥": [5.25, 5.25, 5.25, None, "桥梁"], "(无项目)": [1.0, 1.0, None, 1.0, ""]}), options)
        self.assertEqual(self.totals("projects"), ["合计", "5.25", "1", "6.25"])
        self.assertEqual(self.totals("projects", "--raw"), ["合计", "6.25", "6.25", "5.25", "1"])

    def test_amounts(self):
        for measure in ("amount", "金额"):
            self.assertEqual(self.found("--measure", measure, "--raw")[1],
                             {"大桥": [5.25, "46", "46", None], None: [1.0, "10", None, "10"]})
        self.assertEqual(self.totals("projects", "--measure", "amount"), ["合计", "46.00", "10.00", "6.25", "56.00"])
        self.assertEqual(self.totals("projects", "--measure", "amount", "--raw"), ["合计", "6.25", "56", "46", "10"])

    def test_sql_servers_dialect(self):
        note = "in SQL Server's dialect the months are quantities, whatever the measure\n"
        months = ["一", "二", "三", "四", "五", "六", "七", "八", "九", "十", "十一", "十二", "合计"]
        rows = {"大桥": [0, 0, 5.25] + [0] * 9 + [5.25], None: [0, 0, 0, 1] + [0] * 8 + [1]}
        self.assertEqual(self.found("--sql", "--raw"), (months, rows, "2 rows\n"))
        self.assertEqual(self.found("--sql", "--raw", "--measure", "amount"), (months, rows, note + "2 rows\n"))
        self.assertEqual(self.totals("projects", "--sql"),
                         ["合计", "0", "0", "5.25", "1", "0", "0", "0", "0", "0", "0", "0", "0", "6.25"])


class FormatTest(ReportCase):
    def test_markdown_has_totals(self):
        out = ("report", "partners", self.book, "--direction", "out", "-O", "markdown")
        self.assertEqual(self.run_kpbook(*out).stdout,
                         "## 客户汇总\n\n"
                         "| 客户 | 类别 | 数量 | 除税均价 | 除税金额 | 税额 | 均价 | 价税合计 |\n"
                         "| --- | --- | ---: | ---: | ---: | ---: | ---: | ---: |\n"
                         "| 建工集团 | 施工 | 6.25 | 7.984 | 49.90 | 6.10 | 8.96 | 56.00 |\n"
                         "| 合计 |  | 6.25 |  | 49.90 | 6.10 |  | 56.00 |\n")
        self.assertEqual(self.run_kpbook(*out, "--raw").stdout,
                         "| ksID | ClassCode | 企业名称 | 数量 | 除税单价 | 除税金额 | 单价 | 金额 | 税额 |\n"
                         "| ---: | --- | --- | ---: | ---: | ---: | ---: | ---: | ---: |\n"
                         "| 1 | 02 | 建工集团 | 6.25 | 7 | 49.9 | 23 | 56 | 6.1 |\n"
                         "| 合计 |  |  | 6.25 |  | 49.9 |  | 56 | 6.1 |\n")

    def test_formats_for_programs_have_none(self):
        for form in ("csv", "json"):
            self.assertNotIn("合计", self.run_kpbook("report", "costs", self.book, "-O", form).stdout)

    def test_a_workbook_has_totals(self):
        path = self.folder / "costs.xlsx"
        self.run_kpbook("report", "costs", self.book, "-o", path)
        archive = zipfile.ZipFile(path)
        sheet = archive.read("xl/worksheets/sheet1.xml").decode()
        self.assertEqual(sheet.count("<row "), 4)
        self.assertIn("合计", sheet)
        self.assertIn("<v>27.55</v>", sheet)
        self.assertIn('<sheet name="costs"', archive.read("xl/workbook.xml").decode())

    def test_nothing_found_has_no_totals(self):
        for form, lines in (("table", 4), ("markdown", 4), ("csv", 1)):
            done = self.run_kpbook("report", "costs", self.book, "--to-month", 2, "-O", form)
            self.assertEqual((done.stdout.count("\n"), done.stderr), (lines, "0 rows\n"), form)
            self.assertNotIn("合计", done.stdout)

    def test_totals_of_fractions_show_no_more_digits_than_they_have(self):
        self.import_text("出库目录", BILLS + "7,2004,7,1,普通发票,销售,C007,1,1,0\n8,2004,7,2,普通发票,销售,C008,1,1,0\n")
        self.import_text("出库记录", LINES + "7,1,1,0.1,0,0,0,0,0.1,,,\n8,1,1,0.2,0,0,0,0,0.2,,,\n")
        self.assertEqual(self.totals("daily", "--month", 7), ["合计", "0", "0.00", "0.3", "0.30"])
        self.assertEqual(self.totals("daily", "--month", 7, "--raw"), ["合计", "0", "0", "0.3", "0.3"])

    def test_list(self):
        text = self.run_kpbook("report", "--list").stdout
        self.assertIn("daily  rs日报列表\n      Opening stock, movements and closing stock per day of a month\n"
                      "      --month M (required), --warehouse D\n", text)
        self.assertLessEqual(max(len(line) for line in text.splitlines()), 100)
        rows = json.loads(self.run_kpbook("report", "--list", "-O", "json").stdout)["rows"]
        self.assertEqual([row[:2] for row in rows], [
            ["bills", "rs单据列表"], ["balance", "rs余额记录"], ["products", "rs商品汇总"], ["partners", "rs单位汇总"],
            ["costs", "rs成本汇总"], ["daily", "rs日报列表"], ["day", "rs日报记录"], ["projects", "rs项目汇总表"]])
        self.assertEqual(rows[6][3], "--date DATE (required), --direction in|out (required), --before, --warehouse D, "
                                     "--partner K")


class UsageTest(ReportCase):
    def test_wrong_usage(self):
        way, month = ("--direction", "in"), ("--month", "3")
        for words, expected in (
                ((), "NAME or --list"),
                (("bills",), "report bills needs --direction; its filters: --direction in|out (required), --from DATE"),
                (("daily",), "report daily needs --month; its filters: --month M (required), --warehouse D"),
                (("day", "--date", "2004-03-05"), "report day needs --direction"),
                (("day", *way), "report day needs --date"),
                (("products",), "report products needs --direction"),
                (("partners",), "report partners needs --direction"),
                (("bills", *way, *month, "--to", "2004-03-31"), "report bills takes --month, or --from and --to; its filters: --direction in|out"),
                (("partners", *way, *month), "report partners takes no --month; its filters: --direction in|out"),
                (("balance", "--from-month", "3"), "report balance takes no --from-month; its filters: --month M, --wareh"),
                (("balance", *way), "report balance takes no --direction"),
                (("costs", "--partner", "1"), "report costs takes no --partner"),
                (("projects", "--before"), "report projects takes no --before"),
                (("daily", *month, "--measure", "amount"), "report daily takes no --measure"),
                (("partners", "--direction", "cost"), "report partners knows the directions in and out; its filters"),
                (("products", "--direction", "cost", "--partner", "1"), "takes no --partner and no --type for cost bills"),
                (("products", "--direction", "cost", "--type", "购进"), "takes no --partner and no --type for cost bills"),
                (("products", *way, "--type", "销售"), "report products knows the types 购进 and 调拨"),
                (("bills", *way, "--handler", ""), "--handler is empty"),
                (("bills", "--direction", "up"), "--direction"),
                (("bills", *way, "--from", "2004-02-30"), "'2004-02-30' is no day"),
                (("bills", *way, "--to", "2004-02-28 12:00"), "'2004-02-28 12:00' is no day"),
                (("daily", "--month", "0"), "--month"),
                (("daily", "--month", "13"), "--month"),
                (("daily", "--month", "-1"), "--month"),
                (("products", *way, "--to-month", "-1"), "--to-month"),
                (("sales",), "there is no report sales; kpbook report --list")):
            # Wrong usage is told before a book is looked for.
            done = self.run_kpbook("report", *words[:1], "nowhere" if words else "--trace", *words[1:], code=2)
            self.assertEqual(done.stdout, "")
            self.assertIn(expected, done.stderr, words)
        self.assertIn("BOOK", self.run_kpbook("report", "costs", code=2).stderr)
        self.run_kpbook("report", "--list", "costs", code=2)
        self.run_kpbook("report", "--list", *month, code=2)

    def test_unknown_ids(self):
        for words, expected in (
                (("balance", "--warehouse", 9), "warehouse 9"), (("costs", "--warehouse", 0), "warehouse 0"),
                (("bills", "--direction", "in", "--partner", 9), "supplier 9"),
                (("bills", "--direction", "out", "--partner", 2), "customer 2"),
                (("bills", "--direction", "out", "--project", -1), "project -1")):
            done = self.run_kpbook("report", words[0], self.book, *words[1:], code=1)
            self.assertEqual((done.stdout, done.stderr), ("", f"kpbook: the book has no {expected}\n"))

    def test_book_that_cannot_be_read(self):
        self.book.write_text("no book at all\n" * 100)
        for book in (self.book, self.folder / "none"):
            done = self.run_kpbook("report", "costs", book, code=1)
            self.assertTrue(done.stderr.startswith("kpbook: "), done.stderr)
            self.assertEqual(done.stdout, "")
        self.assertFalse((self.folder / "none").exists())

    def test_figures_come_from_the_method(self):
        done = self.run_kpbook("report", "costs", self.book, "--from-month", 3, "--to-month", 3, "--warehouse", 1, "--raw", "--trace")
        sent = [line for line in done.stderr.splitlines() if line.startswith(("execute", "open"))]
        self.assertEqual(sent[-1:], [
            "execute: SELECT Rec.pdID, Avg(Rec.单价) AS 单价, Sum(Rec.数量) AS 数量, Sum(Rec.金额) AS 金额 FROM 成本记录 As Rec "
            "INNER JOIN 成本目录 As Lst ON Rec.CostID = Lst.CostID  Where  (Lst.月份=3) And dpID=1 GROUP BY Rec.pdID "])

    def test_book_does_not_change(self):
        before, files = self.book.read_bytes(), sorted(os.listdir(self.folder))
        way = ("--direction", "in")
        for words in (("bills", *way), ("balance",), ("products", *way), ("partners", *way), ("costs",),
                      ("daily", "--month", 3), ("day", *way, "--date", "2004-03-05"), ("projects",)):
            self.table(*words)
        self.assertEqual(self.book.read_bytes(), before)
        self.assertEqual(sorted(os.listdir(self.folder)), files)


if __name__ == "__main__":
    unittest.main()
