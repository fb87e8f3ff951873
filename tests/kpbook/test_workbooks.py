"""import of workbooks (xlsx): as spreadsheet programs write them, as kpbook writes them, and damaged ones."""

import unittest
import zipfile

from kpbook_case import KpbookCase

MAIN = "http://schemas.openxmlformats.org/spreadsheetml/2006/main"
RELATIONS = "http://schemas.openxmlformats.org/officeDocument/2006/relationships"
# Styles 0 to 4: plain, a built-in date, a Chinese date, a number, time of day.
STYLES = ('<numFmts count="3"><numFmt numFmtId="164" formatCode="yyyy&quot;年&quot;m&quot;月&quot;d&quot;日&quot;;@"/>'
          '<numFmt numFmtId="165" formatCode="[Red]#,##0.00_);\\(&quot;day&quot;0\\)"/><numFmt numFmtId="166" formatCode="[h]:mm"/></numFmts>'
          '<cellStyleXfs count="1"><xf numFmtId="14"/></cellStyleXfs><cellXfs count="5"><xf numFmtId="0"/><xf numFmtId="14"/>'
          '<xf numFmtId="164"/><xf numFmtId="165"/><xf numFmtId="22"/></cellXfs>')


def cell(place, value, kind="", style=0):
    inner = f"<is><t>{value}</t></is>" if kind == "inlineStr" else f"<v>{value}</v>"
    return f'<c r="{place}" s="{style}"' + (f' t="{kind}"' if kind else "") + f">{inner}</c>"


class WorkbookCase(KpbookCase):
    def setUp(self):
        super().setUp()
        self.new_book()

    def workbook(self, rows, texts=(), properties="", parts=None, prefix=""):
        """A workbook with two sheets, 说明 and 数据; rows is the XML of the second, which stands first in the list."""
        files = {
            "xl/workbook.xml": f'<workbook xmlns="{MAIN}" xmlns:r="{RELATIONS}"><workbookPr {properties}/><sheets>'
                               '<sheet name="数据" sheetId="2" r:id="rId7"/><sheet name="说明" sheetId="1" r:id="rId1"/></sheets></workbook>',
            "xl/_rels/workbook.xml.rels":
                '<Relationships xmlns="http://schemas.openxmlformats.org/package/2006/relationships">'
                '<Relationship Id="rId1" Target="/xl/worksheets/sheet1.xml"/><Relationship Id="rId7" Target="worksheets/sheet2.xml"/></Relationships>',
            "xl/worksheets/sheet1.xml": f'<worksheet xmlns="{MAIN}"><sheetData><row r="1">{cell("A1", "仓库名称", "str")}</row>'
                                        f'<row r="2">{cell("A2", "说明库", "inlineStr")}</row></sheetData></worksheet>',
            "xl/worksheets/sheet2.xml": f'<?xml version="1.0" encoding="UTF-8"?>\n<worksheet xmlns="{MAIN}"><sheetData>{rows}</sheetData></worksheet>',
            "xl/sharedStrings.xml": f'<sst xmlns="{MAIN}">' + "".join(f"<si>{text}</si>" for text in texts) + "</sst>",
            "xl/styles.xml": f'<styleSheet xmlns="{MAIN}">{STYLES}</styleSheet>', **(parts or {})}
        path = self.folder / "f.xlsx"
        with zipfile.ZipFile(path, "w", zipfile.ZIP_DEFLATED) as archive:
            for name, text in files.items():
                if text is not None:
                    archive.writestr(name, text)
        return path

    def header(self, *names):
        return '<row r="1">' + "".join(cell(f"{chr(65 + i)}1", name, "inlineStr") for i, name in enumerate(names)) + "</row>"


class ReadingTest(WorkbookCase):
    def test_cells_of_every_kind(self):
        texts = ("<t>水泥</t>", "<r><t xml:space=\"preserve\">螺 </t></r><r><rPr><b/></rPr><t>栓&amp;</t></r><rPh sb=\"0\" eb=\"1\"><t>luo</t></rPh>", "<t/>")
        rows = (self.header("商品名称", "pdID", "最低库存", "备注")
                + '<row r="2">' + cell("A2", 0, "s") + cell("B2", 7) + cell("C2", "2.5000000000000001E-2") + cell("D2", 1, "b") + "</row>"
                + '<row r="3"/><row r="5">' + cell("A5", 1, "s") + cell("B5", "8.0") + cell("D5", 2, "s") + "</row>"
                + '<row r="6">' + cell("A6", "=&quot;x&quot;", "str") + cell("C6", "16033.090099999999", style=3) + cell("D6", "1E+15") + "</row>")
        done = self.run_kpbook("import", self.book, "商品设置", self.workbook(rows, texts))
        self.assertEqual(done.stderr, "商品设置: 3 rows imported\n")
        self.assertEqual(self.rows("Select 商品名称,pdID,最低库存,备注 From 商品设置 Order by pdID"),
                         [["水泥", 7, 0.025, "True"], ["螺 栓&", 8, 0.0, ""], ['="x"', 9, 16033.0901, "1000000000000000"]])

    def test_dates(self):
        # 38053 is 2004-03-07; 59 is the 28th of February 1900, after which sheets count a day that there was not.
        for properties, serial in (("", 38053), ('date1904="1"', 38053 - 1462)):
            rows = self.header("仓库名称", "结帐日期", "结帐标志") + "".join(
                f'<row r="{n}">' + cell(f"A{n}", name, "inlineStr") + cell(f"B{n}", value, style=style) + cell(f"C{n}", 1, "b") + "</row>"
                for n, name, value, style in ((2, "a", serial, 1), (3, "b", serial, 2), (4, "c", serial + 0.5, 4)))
            if not properties:
                rows += '<row r="5">' + cell("A5", "d", "inlineStr") + cell("B5", 59, style=1) + "</row>"
            self.run_kpbook("import", self.book, "仓库设置", self.workbook(rows, properties=properties))
            found = self.rows("Select 结帐日期,结帐标志 From 仓库设置 Order by 仓库名称")
            self.assertEqual(found[:3], [["2004-03-07", True], ["2004-03-07", True], ["2004-03-07T12:00:00", True]])
            self.assertEqual(found[3:], [] if properties else [["1900-02-28", False]])
            self.sql("Delete From 仓库设置")

    def test_a_sheet_by_its_name(self):
        path = self.workbook(self.header("仓库名称") + '<row r="2">' + cell("A2", "数据库", "inlineStr") + "</row>")
        self.run_kpbook("import", self.book, "仓库设置", path, "--sheet", "说明")
        self.run_kpbook("import", self.book, "仓库设置", "-", text=path.read_bytes())
        self.assertEqual(self.rows("Select 仓库名称 From 仓库设置 Order by dpID"), [["说明库"], ["数据库"]])
        done = self.run_kpbook("import", self.book, "仓库设置", path, "--sheet", "x", code=1)
        self.assertIn("has no sheet x; it has 数据, 说明", done.stderr)
        self.run_kpbook("import", self.book, "仓库设置", self.write("f.csv", "仓库名称\n"), "--sheet", "x", code=2)

    def test_what_kpbook_wrote(self):
        self.import_text("商品设置", "pdID,商品名称,最低库存\n1,水泥,0.1\n2,\"two\nlines\",1234567.25\n3,007,-3\n")
        self.import_text("入库记录", "BillID,pdID,金额,数量\n1,1,1234567.8901,2\n1,2,-0.0001,0.5\n")
        self.import_text("入库目录", "BillID,录入日期,年份,说明\n1,2004-03-07,2004,x\n2,2004-03-07 12:30:01,2004,\n")
        for table, columns in (("商品设置", "pdID,商品名称,最低库存"), ("入库记录", "BillID,pdID,金额,数量"), ("入库目录", "BillID,录入日期,年份")):
            before = self.rows(f"Select {columns} From {table}")
            path = self.folder / f"{table}.xlsx"
            self.run_kpbook("sql", self.book, f"Select {columns} From {table}", "-o", path)
            self.sql(f"Delete From {table}")
            self.run_kpbook("import", self.book, table, path)
            self.assertEqual(self.rows(f"Select {columns} From {table}"), before)

    def test_many_rows(self):
        rows = self.header("BillID", "金额") + "".join(
            f'<row r="{n}"><c r="A{n}"><v>{n}</v></c><c r="B{n}"><v>{n}.25</v></c></row>' for n in range(2, 30002))
        self.run_kpbook("import", self.book, "入库记录", self.workbook(rows))
        # 2 to 30001 and a quarter each: 450045000 - 1 + 30001 and 7500.
        self.assertEqual(self.rows("Select Count(*) As n,Sum(金额) As s From 入库记录"), [[30000, str(sum(range(2, 30002)) + 7500)]])


class BadWorkbookTest(WorkbookCase):
    def refused(self, path, *parts):
        done = self.run_kpbook("import", self.book, "仓库设置", path, code=1)
        for part in ("f.xlsx: ", *parts):
            self.assertIn(part, done.stderr)
        self.assertEqual(self.rows("Select Count(*) As n From 仓库设置"), [[0]])

    def test_bad_rows_are_named(self):
        rows = (self.header("dpID", "仓库名称")
                + '<row r="2">' + cell("A2", "x", "inlineStr") + "</row>"
                + '<row r="4">' + cell("A4", 1) + cell("B4", "#DIV/0!", "e") + "</row>"
                + '<row r="9">' + cell("A9", 1) + cell("D9", "beyond", "inlineStr") + "</row>")
        self.refused(self.workbook(rows), "line 2, column dpID: 'x' is no whole number", "line 4: field 2: the sheet's error #DIV/0!",
                     "line 9: too many fields: 4 instead of 2", "3 bad rows")
        self.refused(self.workbook(self.header("dpID", "DPID")), "given more than once: DPID")
        self.refused(self.workbook(""), "no header line")

    def test_damaged(self):
        good = self.workbook(self.header("仓库名称") + '<row r="2">' + cell("A2", "a", "inlineStr") + "</row>").read_bytes()
        for size in (4, 30, len(good) // 2, len(good) - 40):
            self.refused(self.write("f.xlsx", good[:size]), "is no workbook, or a damaged one")
        sheet = good.index(b"xl/worksheets/sheet2.xml") + 60
        self.refused(self.write("f.xlsx", good[:sheet] + bytes([good[sheet] ^ 255]) + good[sheet + 1:]))
        for parts, said in (({"xl/workbook.xml": None}, "is no workbook"), ({"xl/worksheets/sheet2.xml": None}, "a sheet is missing"),
                            ({"xl/_rels/workbook.xml.rels": None}, "a sheet is missing"),
                            ({"xl/worksheets/sheet2.xml": "<worksheet><sheetData>"}, "line 1 of its XML"),
                            ({"xl/worksheets/sheet2.xml": '<!DOCTYPE x [<!ENTITY e "e">]><worksheet/>'}, "document type")):
            self.refused(self.workbook("", parts=parts), said)
        self.refused(self.workbook('<row r="1">' + cell("A1", 5, "s") + "</row>"), "has a text that is not there")
        self.refused(self.workbook('<row r="1">' + cell("ZZZZ1", 5) + "</row>"), "there is no cell ZZZZ1")
        self.refused(self.write("f.xlsx", b"\xd0\xcf\x11\xe0\xa1\xb1\x1a\xe1"), "of an old format; save it as xlsx or CSV")


if __name__ == "__main__":
    unittest.main()
