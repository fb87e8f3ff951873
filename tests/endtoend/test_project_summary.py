"""Outbound goods per project and month on a real book, with figures worked out from its rows."""

import unittest

from report_book import (BILLS, DIALECTS, PROJECTS, Bill, ReportCase, grouped, insert_bill, insert_line, joined, line,
                         total)


class ProjectSummaryTest(ReportCase):
    KEYS = "pjID,ClassCode,项目名称,工程名称,项目编号,工程性质"
    NAMES = "一,二,三,四,五,六,七,八,九,十,十一,十二"

    def groups(self):
        """Key columns and lines of each project, by project."""
        found = []
        for project, rows in sorted(grouped(joined("出库"), lambda bill, row: bill.project).items()):
            number, name, works, nature, class_code = PROJECTS.get(project, (None,) * 5)
            found.append(((project, class_code, name, works, number, nature), rows))
        return found

    def test_jets_columns_are_the_months_that_occur_in_order(self):
        for measure, figure, kind in (("数量", "quantity", "Double"), ("金额", "amount", "Currency")):
            found = self.result("rs项目汇总表", measure)
            self.assertEqual([(c["name"], c["type"]) for c in found["columns"]][6:],
                             [("合计", "Double"), ("月合计", kind), ("1", kind), ("2", kind), ("12", kind)])
            expected = []
            for key, rows in self.groups():
                months = [[pair for pair in rows if pair[0].month == m] for m in (1, 2, 12)]
                expected.append((*key, total(rows, "quantity"), total(rows, figure),
                                 *(total(month, figure) if month else None for month in months)))
            self.assert_same_rows(found, f"{self.KEYS},合计,月合计,1,2,12", expected)

    def test_sql_servers_twelve_months_are_quantities_whatever_the_measure(self):
        for measure in ("数量", "金额", "合计"):
            found = self.result("rs项目汇总表", measure, isSQL=True)
            self.assertEqual([c["name"] for c in found["columns"]], [*self.KEYS.split(","), *self.NAMES.split(","),
                                                                     "合计"])
            self.assertEqual({c["type"] for c in found["columns"][6:]}, {"Double"})
            expected = [(*key, *(total([p for p in rows if p[0].month == m], "quantity") for m in range(1, 13)),
                         total(rows, "quantity")) for key, rows in self.groups()]
            self.assert_same_rows(found, f"{self.KEYS},{self.NAMES},合计", expected)

    def test_the_measure_is_written_back(self):
        for dialect in DIALECTS:
            for given, after in (("金额", "金额"), ("数量", "数量"), ("", "数量"), ("除税金额", "数量"), ("金额 ", "数量")):
                self.assertEqual(self.call("rs项目汇总表", given, isSQL=dialect)["args"], [after])
            self.assertEqual(self.result("rs项目汇总表", isSQL=dialect),
                             self.result("rs项目汇总表", "数量", isSQL=dialect))

    def test_the_dialects_agree_on_the_totals(self):
        for measure in ("数量", "金额"):
            jet, server = (self.result("rs项目汇总表", measure, isSQL=d) for d in DIALECTS)
            self.assertEqual(sorted(self.values(jet, "pjID", "合计")), sorted(self.values(server, "pjID", "合计")))

    def test_bills_without_a_project_are_one_group_with_null_columns(self):
        self.assertGreater(sum(bill.project == 0 for bill in BILLS["出库"]), 1)
        for dialect in DIALECTS:
            found = self.values(self.result("rs项目汇总表", isSQL=dialect), *self.KEYS.split(","))
            self.assertEqual([row for row in found if row[0] == 0], [(0, None, None, None, None, None)])

    def test_a_month_without_lines_has_no_column_in_jet_and_0_in_sql_server(self):
        self.execute(insert_bill("出库", Bill(80, 2003, 6, 1, "", "", "", 1, 9, 1)))
        jet = self.result("rs项目汇总表")
        self.assertNotIn("6", self.types(jet))
        server = self.result("rs项目汇总表", isSQL=True)
        self.assertEqual({row[0] for row in self.values(server, "六")}, {0.0})

    def test_all_years_are_added(self):
        years = {b.year for b, _ in joined("出库") if b.project == 1}
        self.assertEqual(years, {2002, 2003})
        self.execute(insert_bill("出库", Bill(81, 2001, 1, 1, "", "", "", 1, 9, 1)),
                     insert_line("出库", line(81, 2, 1, "0.5", "1")))
        self.assertIn((1, 2.5), self.values(self.result("rs项目汇总表"), "pjID", "1"))
        self.assertIn((1, 2.5), self.values(self.result("rs项目汇总表", isSQL=True), "pjID", "一"))

    def test_no_lines_no_rows(self):
        self.execute("Delete From 出库记录")
        self.assertEqual(self.result("rs项目汇总表")["rows"], [])
        self.assertEqual(self.result("rs项目汇总表", isSQL=True)["rows"], [])


if __name__ == "__main__":
    unittest.main()
