"""import: what is taken, what is refused, and that nothing is half done."""

import subprocess
import unittest

from kpbook_case import KPBOOK, KpbookCase


class ImportTest(KpbookCase):
    def setUp(self):
        super().setUp()
        self.new_book()

    def test_counts_and_values(self):
        done = self.import_text("入库记录", "BillID,pdID,dpID,单价,数量,除税金额,经手人\n"
                                            "1,7,1,14.7420,11,138.6000,Andrew\n2,8,3,-0.0001,0.1,922337203685477.5807,李\n")
        self.assertEqual(done.stderr, "入库记录: 2 rows imported\n")
        self.assertEqual(self.rows("Select BillID,pdID,dpID,单价,数量,除税金额,经手人 From 入库记录 Order by BillID"),
                         [[1, 7, 1, "14.742", 11.0, "138.6", "Andrew"],
                          [2, 8, 3, "-0.0001", 0.1, "922337203685477.5807", "李"]])

    def test_one_row(self):
        self.assertEqual(self.import_text("仓库设置", "仓库名称\n东库\n").stderr, "仓库设置: 1 row imported\n")
        self.assertEqual(self.rows("Select dpID,仓库名称 From 仓库设置"), [[1, "东库"]])

    def test_header_alone(self):
        self.assertEqual(self.import_text("仓库设置", "dpID,仓库名称\n").stderr, "仓库设置: 0 rows imported\n")

    def test_header_without_regard_to_case_and_blanks(self):
        self.import_text("仓库设置", " DPID , 仓库名称\n5,东库\n")
        self.assertEqual(self.rows("Select dpID From 仓库设置"), [[5]])

    def test_columns_in_any_order(self):
        self.import_text("仓库设置", "仓库名称,dpID\n东库,5\n")
        self.assertEqual(self.rows("Select dpID,仓库名称 From 仓库设置"), [[5, "东库"]])

    def test_table_without_regard_to_case(self):
        self.assertIn("AccInfo: 1 row", self.import_text("accinfo", "帐簿名称\n东方\n").stderr)

    def test_tables_named_like_keywords(self):
        self.import_text("Header", "Table,Index,Flag,Hidden,Width\n入库,3,a,True,100\n")
        self.assertEqual(self.rows("Select [Table],[Index],Hidden,Width From Header"), [["入库", 3, True, 100.0]])

    def test_empty_fields(self):
        # Text: empty text. A figure: its default. A number or a date without a default: Null.
        self.import_text("入库目录", "BillID,年份,ksID,录入员,录入日期\n1,,,,\n")
        self.import_text("入库记录", "BillID,数量,金额\n1,,\n")
        self.assertEqual(self.rows("Select 年份,ksID,录入员,录入日期 From 入库目录"), [[None, 0, "", None]])
        self.assertEqual(self.rows("Select 数量,金额 From 入库记录"), [[0.0, "0"]])

    def test_empty_counter_is_filled(self):
        self.import_text("仓库设置", "dpID,仓库名称\n7,东库\n,西库\n")
        self.assertEqual(self.rows("Select dpID,仓库名称 From 仓库设置 Order by dpID"), [[7, "东库"], [8, "西库"]])

    def test_dates_and_flags(self):
        self.import_text("仓库设置", "仓库名称,结帐日期,结帐标志\na,2004-03-07,True\nb,2004/3/7 12:30:00,0\nc,2004年3月7日,-1\n")
        self.assertEqual(self.rows("Select 结帐日期,结帐标志 From 仓库设置 Order by 仓库名称"),
                         [["2004-03-07", True], ["2004-03-07T12:30:00", False], ["2004-03-07", True]])

    def test_byte_order_mark_and_crlf(self):
        self.import_text("仓库设置", "\ufeffdpID,仓库名称\r\n1,东库\r\n2,西库\r\n")
        self.assertEqual(self.rows("Select dpID,仓库名称 From 仓库设置 Order by dpID"), [[1, "东库"], [2, "西库"]])

    def test_quotes_and_line_breaks_inside_fields(self):
        self.import_text("入库目录", '说明,单据编号\n"say ""hi"", then\nleave",it\'s\n"a\r\nb",2\n')
        self.assertEqual(self.rows("Select 说明,单据编号 From 入库目录 Order by BillID"),
                         [['say "hi", then\nleave', "it's"], ["a\r\nb", "2"]])

    def test_standard_input(self):
        done = self.run_kpbook("import", self.book, "仓库设置", "-", text="仓库名称\n东库\n")
        self.assertEqual(done.stderr, "仓库设置: 1 row imported\n")

    def test_ids_at_the_limits(self):
        self.import_text("入库记录", "BillID,pdID\n2147483647,-2147483648\n")
        self.assertEqual(self.rows("Select BillID,pdID From 入库记录"), [[2147483647, -2147483648]])

    def test_many_rows(self):
        lines = "".join(f"{n},{n % 77},1,{n % 13},{n % 9999}.25\n" for n in range(20000))
        done = self.import_text("入库记录", "BillID,pdID,dpID,数量,除税金额\n" + lines)
        self.assertEqual(done.stderr, "入库记录: 20000 rows imported\n")
        # Sum of 0..9998 twice and of 0, 1: 99970002 + 1, and a quarter for each row.
        self.assertEqual(self.rows("Select Count(*) As n,Sum(除税金额) As s From 入库记录"), [[20000, "99975003"]])


class BadImportTest(KpbookCase):
    HEADER = "BillID,pdID,数量,金额\n"

    def setUp(self):
        super().setUp()
        self.new_book()

    def refused(self, content, *parts, table="入库记录"):
        """Nothing is imported; every part stands in the messages."""
        done = self.import_text(table, content, code=1)
        for part in parts:
            self.assertIn(part, done.stderr)
        self.assertEqual(self.rows(f"Select Count(*) As n From {table}"), [[0]])
        self.assertIn("kpbook: ", done.stderr)
        self.assertNotIn("rows imported", done.stderr)
        return done.stderr

    def test_empty_file(self):
        self.refused("", "no header line")

    def test_unknown_columns(self):
        self.refused("BillID,颜色,pdID,Größe\n1,2,3,4\n", "no such column in 入库记录: 颜色, Größe")

    def test_repeated_columns(self):
        self.refused("BillID,pdID,billid\n1,2,3\n", "given more than once: billid")

    def test_empty_column_name(self):
        self.refused("BillID,,pdID\n1,2,3\n", "no such column")

    def test_missing_key(self):
        self.refused("ClassName\n饮料\n", "missing: ClassCode", table="商品分类")

    def test_every_header_problem_at_once(self):
        self.refused("ClassName,classname,x\n饮料,a,b\n", "no such column in 商品分类: x", "given more than once: classname",
                     "missing: ClassCode", table="商品分类")

    def test_too_few_and_too_many_fields(self):
        self.refused(self.HEADER + "1,2,3,4\n1,2,3\n1,2,3,4,5\n", "line 3: too few fields: 3 instead of 4",
                     "line 4: too many fields: 5 instead of 4", "2 bad rows, nothing was imported")

    def test_text_in_a_number_column(self):
        self.refused(self.HEADER + "1,two,3,4\n1,2,drei,4\n1,2,3,四\n", "line 2, column pdID: 'two' is no whole number",
                     "line 3, column 数量: 'drei' is no number", "line 4, column 金额: '四' is no plain decimal number",
                     "3 bad rows")

    def test_every_bad_field_of_a_row(self):
        self.refused(self.HEADER + "x,y,3,4\n", "line 2, column BillID: 'x'", "line 2, column pdID: 'y'", "1 bad row,")

    def test_whole_numbers_out_of_range(self):
        self.refused("BillID,年份\n2147483648,1997\n-2147483649,1997\n1,32768\n",
                     "line 2, column BillID: '2147483648' is out of range",
                     "line 3, column BillID: '-2147483649' is out of range",
                     "line 4, column 年份: '32768' is out of range", table="入库目录")

    def test_decimals_in_a_whole_number(self):
        self.refused(self.HEADER + "1.5,2,3,4\n", "line 2, column BillID: '1.5' has decimals")

    def test_too_many_decimals_of_money(self):
        self.refused(self.HEADER + "1,2,3,0.12345\n", "line 2, column 金额: '0.12345' has more than four decimals")

    def test_dates_that_are_none(self):
        self.refused("录入日期\n1997-02-30\nnever\n", "line 2, column 录入日期: '1997-02-30' is no date",
                     "line 3, column 录入日期: 'never' is no date", table="入库目录")

    def test_flag_that_is_none(self):
        self.refused("仓库名称,结帐标志\na,maybe\n", "line 2, column 结帐标志: 'maybe' is no flag", table="仓库设置")

    def test_invalid_utf8(self):
        self.refused("仓库名称\n".encode() + "东库\n".encode("gbk"), "line 2, column 仓库名称", "is not valid UTF-8",
                     table="仓库设置")

    def test_header_in_another_encoding(self):
        self.refused("倉庫名稱\n東庫\n".encode("big5"), "no such column", table="仓库设置")

    def test_quote_in_the_middle_of_a_field(self):
        self.refused('仓库名称\nab"c\ngood\n', "line 2: field 1: a quote in the middle of a field without quotes",
                     table="仓库设置")

    def test_quote_never_closed(self):
        self.refused('仓库名称\ngood\n"open\nand on\n', "line 3: field 1: the quote that opens on line 3 is never closed",
                     table="仓库设置")

    def test_line_number_after_a_line_break_in_a_field(self):
        self.refused('说明,月份\n"two\nlines",1\nplain,x\n', "line 4, column 月份: 'x'", table="入库目录")

    def test_duplicate_key(self):
        stderr = self.refused("dpID,仓库名称\n1,东库\n2,西库\n1,again\nx,bad\n2,again\n", "line 4: ", "line 5, column dpID: 'x'",
                              "line 6: ", "3 bad rows, nothing was imported", table="仓库设置")
        self.assertNotIn("line 3", stderr)

    def test_duplicate_of_a_row_that_was_there(self):
        self.import_text("仓库设置", "dpID,仓库名称\n1,东库\n")
        done = self.import_text("仓库设置", "dpID,仓库名称\n2,西库\n1,again\n", code=1)
        self.assertIn("line 3: ", done.stderr)
        self.assertEqual(self.rows("Select dpID,仓库名称 From 仓库设置"), [[1, "东库"]])

    def test_stops_telling_after_a_hundred(self):
        stderr = self.refused(self.HEADER + "x,2,3,4\n" * 130)
        self.assertEqual(stderr.count("is no whole number"), 100)
        self.assertIn("and 30 more", stderr)
        self.assertIn("130 bad rows, nothing was imported", stderr)

    def test_unknown_table(self):
        done = self.import_text("没有", "a\n1\n", code=1)
        self.assertIn("kpbook: the book has no table 没有", done.stderr)

    def test_file_that_is_not_there(self):
        done = self.run_kpbook("import", self.book, "仓库设置", self.folder / "none.csv", code=1)
        self.assertIn("none.csv: cannot be opened", done.stderr)

    def test_directory(self):
        done = self.run_kpbook("import", self.book, "仓库设置", self.folder, code=1)
        self.assertIn("cannot be read", done.stderr)

    def test_killed_in_the_middle_leaves_nothing(self):
        process = subprocess.Popen([KPBOOK, "import", str(self.book), "仓库设置", "-"], stdin=subprocess.PIPE)
        process.stdin.write(("仓库名称\n" + "东库\n" * 50000).encode())
        process.stdin.flush()
        process.kill()
        process.stdin.close()
        process.wait()
        self.assertEqual(self.rows("Select Count(*) As n From 仓库设置"), [[0]])


if __name__ == "__main__":
    unittest.main()
