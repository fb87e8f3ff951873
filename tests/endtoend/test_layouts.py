"""Column layouts of grids and saved report settings on a real book."""

import unittest

from small_book import SmallBookCase

SERVER_TABLE = ["Drop Table Header",
                "Create Table Header (TableName TEXT(64), ColIndex LONG, Flag TEXT(64), colkey TEXT(64), "
                "Header TEXT(100), Hidden YESNO, Width DOUBLE)"]


def column(key, title, hidden=False, width=0):
    return {"key": key, "title": title, "hidden": hidden, "width": width}


def grid(*columns, rows=(), fixed=1):
    return {"grid": {"FixedRows": fixed, "cols": list(columns), "rows": list(rows)}}


THREE = (column("code", "编号", False, 100), column("name", "名称", True, 200), column("price", "单价", False, 50.5))


class LayoutCase(SmallBookCase):
    def save(self, given, table="商品", flag="我的", **others):
        answer = self.call("Header", given, table, flag, True, **others)
        self.assertNotIn("error", answer)
        self.assertIs(answer["result"], False)
        self.assertEqual(answer["args"][0], given, "saving leaves the grid alone")

    def apply(self, given, table="商品", flag="我的", **others):
        """The grid's columns afterwards."""
        answer = self.call("Header", given, table, flag, **others)
        self.assertNotIn("error", answer)
        self.assertIs(answer["result"], False)
        return answer["args"][0]["grid"]["cols"]

    def put(self, key, title, width, position=0, hidden=False):
        """A row of a layout, as the host may have written it."""
        self.sql("Insert into Header ([Table],[Index],Flag,colkey,Header,Hidden,Width) "
                 f"Values ('商品',{position},'我的','{key}','{title}',{hidden},{width})")

    def saved(self):
        return self.rows("Select [Table],[Index],Flag,colkey,Header,Hidden,Width From Header Order by Flag,[Index]")


class SavingTest(LayoutCase):
    def test_a_row_for_each_keyed_column(self):
        self.save(grid(THREE[0], column("", "无"), THREE[2], rows=[["a1", "", 5]]))
        self.assertEqual(self.saved(), [["商品", 0, "我的", "code", "编号", False, 100.0],
                                        ["商品", 2, "我的", "price", "单价", False, 50.5]])

    def test_saving_again_replaces(self):
        self.save(grid(*THREE))
        self.save(grid(THREE[1]))
        self.assertEqual(self.saved(), [["商品", 0, "我的", "name", "名称", True, 200.0]])

    def test_a_grid_without_keys_deletes_the_layout(self):
        self.save(grid(*THREE))
        self.save(grid(column("", "编号", False, 100), column("", "名称")))
        self.assertEqual(self.saved(), [])

    def test_flags_and_lists_do_not_disturb_each_other(self):
        self.save(grid(THREE[0]))
        self.save(grid(THREE[1]), flag="他的")
        self.save(grid(THREE[2]), table="客户")
        self.save(grid(column("code", "号", True, 1)))
        self.assertEqual(self.apply(grid(*THREE), flag="他的")[0], THREE[1])
        self.assertEqual(self.apply(grid(*THREE), table="客户")[0], THREE[2])
        self.assertEqual(self.apply(grid(*THREE))[0], column("code", "号", True, 1))
        self.save(grid(column("", "")), flag="他的")
        self.assertEqual(sorted(row[:4] for row in self.saved()),
                         sorted([["商品", 0, "我的", "code"], ["客户", 0, "我的", "price"]]))

    def test_no_flag_is_default_and_comes_back(self):
        answer = self.call("Header", grid(THREE[0]), "商品", "", True)
        self.assertEqual(answer["args"][1:3], ["商品", "Default"])
        self.assertEqual([row[2] for row in self.saved()], ["Default"])
        answer = self.call("Header", grid(column("code", "x")), "商品", "")
        self.assertEqual(answer["args"][2], "Default")
        self.assertEqual(answer["args"][0]["grid"]["cols"], [THREE[0]])
        self.assertEqual(self.apply(grid(column("code", "x")), flag="Default"), [THREE[0]])
        left_out = self.batch({"method": "Header", "args": [grid(column("code", "x")), "商品"]})[0]
        self.assertEqual(left_out["args"][0]["grid"]["cols"], [THREE[0]])


class ApplyingTest(LayoutCase):
    def test_a_saved_layout_on_another_grid(self):
        self.save(grid(*THREE))
        other = grid(column("price", "p", True, 1), column("", "free", False, 7), column("name", "n"),
                     column("code", "c"), rows=[["5", "f", "水泥", "a1"]])
        answer = self.call("Header", other, "商品", "我的")
        self.assertEqual(answer["args"][0], grid(*THREE, column("", "free", False, 7),
                                                 rows=[["a1", "水泥", "5", "f"]]))

    def test_nothing_saved_changes_nothing(self):
        self.assertEqual(self.apply(grid(*THREE)), list(THREE))

    def test_width_0_only_retitles_and_hides(self):
        self.put("code", "号", 0, position=2, hidden=True)
        self.put("name", "名", 0, position=0)
        self.put("无", "无", 0)
        self.assertEqual(self.apply(grid(*THREE)),
                         [column("code", "号", True, 100), column("name", "名", False, 200), THREE[2]])

    def test_a_null_width_counts_as_0(self):
        self.put("code", "号", "Null", position=2)
        self.assertEqual(self.apply(grid(*THREE))[0], column("code", "号", False, 100))

    def test_a_key_that_the_grid_lacks_is_added_at_the_end(self):
        self.put("stock", "库存", 80, position=0, hidden=True)
        self.assertEqual(self.apply(grid(*THREE)), [*THREE, column("stock", "库存", True, 80)])

    def test_a_negative_width_moves_and_retitles_only(self):
        self.put("price", "价", -1, position=0, hidden=True)
        self.assertEqual(self.apply(grid(*THREE)), [column("price", "价", True, 50.5), THREE[0], THREE[1]])

    def test_a_position_beyond_the_end_adds_columns(self):
        self.put("code", "号", 10, position=4)
        self.assertEqual(self.apply(grid(*THREE)),
                         [THREE[1], THREE[2], column("", ""), column("", ""), column("code", "号", False, 10)])

    def test_rows_and_header_rows_stay(self):
        self.put("code", "号", 10)
        answer = self.call("Header", grid(THREE[0], rows=[["a1"], [5]], fixed=2), "商品", "我的")
        self.assertEqual(answer["args"][0], grid(column("code", "号", False, 10), rows=[["a1"], [5]], fixed=2))


class ServerNamesTest(LayoutCase):
    def setUp(self):
        super().setUp()
        for answer in self.batch(*({"execute": text} for text in SERVER_TABLE)):
            self.assertNotIn("error", answer)

    def header(self, given, saving):
        answer = self.call("Header", given, "商品", "我的", saving, True)
        self.assertNotIn("error", answer)
        return answer["args"][0]["grid"]["cols"]

    def test_the_argument_decides(self):
        self.header(grid(*THREE), True)
        self.assertEqual(self.rows("Select TableName,ColIndex,colkey From Header Order by ColIndex"),
                         [["商品", 0, "code"], ["商品", 1, "name"], ["商品", 2, "price"]])
        turned = grid(column("price", ""), column("name", ""), column("code", ""))
        self.assertEqual(self.header(turned, False), list(THREE))

    def test_the_property_does_not(self):
        answer = self.call("Header", grid(*THREE), "商品", "我的", True, isSQL=True)
        self.assertIn("Table", answer["error"]["description"])
        self.assertEqual(answer["sent"][0]["text"], "Delete From Header Where Table='商品' And Flag='我的'")


class ReportTest(SmallBookCase):
    def save(self, number, caption="月报", setting="month=3;kind='入库'", date="2004-03-07"):
        """The answer and the id as it comes back."""
        answer = self.call("History_Update", number, caption, setting, {"date": date})
        self.assertNotIn("error", answer)
        return [answer["result"], answer["args"][0]]

    def test_a_new_entry_brings_its_id_back(self):
        self.assertEqual(self.save(0), [-1, 1])
        self.assertEqual(self.save(0, "年报", ""), [-1, 2])
        self.assertEqual(self.result("rsHistory")["rows"], [[1, "月报", "month=3;kind='入库'", "2004-03-07"],
                                                            [2, "年报", "", "2004-03-07"]])

    def test_an_entry_changed_keeps_its_id(self):
        self.save(0)
        self.save(0, "年报")
        self.assertEqual(self.save(1, "新", "x", "2005-01-31"), [-1, 1])
        self.assertEqual(self.result("rsHistory")["rows"], [[1, "新", "x", "2005-01-31"],
                                                            [2, "年报", "month=3;kind='入库'", "2004-03-07"]])

    def test_an_id_that_is_not_there_fails(self):
        self.save(0)
        self.assertEqual(self.save(9), [0, 9])
        self.assertEqual(self.save(-1), [0, -1])
        self.assertEqual(len(self.result("rsHistory")["rows"]), 1)

    def test_the_setting(self):
        self.save(0)
        self.assertEqual(self.result("GetHistorySetting", 1), "month=3;kind='入库'")
        self.assertEqual(self.result("GetHistorySetting", 9), "")
        self.sql("Update History Set setting=Null")
        self.assertEqual(self.result("GetHistorySetting", 1), "")

    def test_deleting(self):
        self.save(0)
        self.save(0, "年报")
        self.assertIs(self.result("History_Del", 1), True)
        self.assertIs(self.result("History_Del", 9), True)
        self.assertEqual(self.columns(self.result("rsHistory"), "rpID", "Caption"), [[2, "年报"]])


if __name__ == "__main__":
    unittest.main()
