#!/usr/bin/env python3
"""Makes a small book with rows in every table: make_book.py KPBOOK OUT.gz [OPTIONS OF kpbook new]. See README.md."""

import csv
import gzip
import pathlib
import sqlite3
import subprocess
import sys
import tempfile

# Warehouses and products are referred to by everything else, so these rows are chosen; the others follow from the types.
CHOSEN = {
    "仓库设置": [{"dpID": 1, "仓库名称": "中心仓库"}, {"dpID": 3, "仓库名称": "阿大的仓库"}, {"dpID": 7, "仓库名称": "张三ＡＢ"}],
    "商品设置": [{"pdID": 1, "商品名称": "水泥", "商品编号": "01"}, {"pdID": 2, "商品名称": "螺栓", "商品编号": "02"},
              {"pdID": 9, "商品名称": "油漆", "商品编号": "03"}],
}
# Chinese, full width and both cases: the order of texts matters to their indexes.
TEXTS = ["重庆", "ａbC", "Zürich 长沙"]


def value(table, column, declared, row):
    chosen = CHOSEN.get(table)
    if chosen and column in chosen[row]:
        return chosen[row][column]
    kind = declared.split("(")[0].upper()
    if column in ("年份", "月份", "日子"):
        return {"年份": 2004, "月份": 1, "日子": 5}[column]
    if column in ("dpID", "pdID", "BillID", "CostID", "ListID"):
        return 1
    if kind in ("TEXT", "LONGTEXT"):
        return f"{TEXTS[row]}{column}"[:20]
    if kind in ("DOUBLE", "CURRENCY"):
        return (10.25, 0, -3.0001)[row]
    if kind == "DATETIME_TEXT":
        return ("2004-01-05", "2004-01-06 12:30:00", "")[row]
    if kind == "YESNO":
        return row % 2
    return (1, 5, 30000)[row]


def rows_of(book, table, row_id):
    columns = [(name, declared) for _, name, declared, *_ in book.execute(f'PRAGMA table_info("{table}")')]
    for row in range(3):
        yield {name: (1, 5, 42)[row] if name == row_id and table not in CHOSEN else value(table, name, declared, row)
               for name, declared in columns}


def main(kpbook, out, *options):
    with tempfile.TemporaryDirectory() as folder:
        path = pathlib.Path(folder) / "book"
        subprocess.run([kpbook, "new", path, "--bare", *options], check=True)
        book = sqlite3.connect(path)
        tables = [name for (name,) in book.execute(
            "SELECT name FROM sqlite_schema WHERE type = 'table' AND name NOT GLOB 'sqlite_*' AND name NOT GLOB 'kp_*'")]
        keys = {table: next((name for _, name, declared, _, _, key in book.execute(f'PRAGMA table_info("{table}")')
                             if key and declared == "INTEGER"), None) for table in tables}
        for table in tables:
            rows = list(rows_of(book, table, keys[table]))
            file = pathlib.Path(folder) / "rows.csv"
            with open(file, "w", newline="", encoding="utf-8") as stream:
                writer = csv.DictWriter(stream, rows[0])
                writer.writeheader()
                writer.writerows(rows)
            subprocess.run([kpbook, "import", path, table, file], check=True)
        # A number that was given is not given again, and rows are not numbered one after the other.
        for text in ("Delete From 出库目录 Where BillID=42", "Delete From 入库记录 Where 数量=0",
                     "Create Table 我的表 (id COUNTER PRIMARY KEY, 说明 TEXT(30))",
                     "Insert Into 我的表 (说明) Values ('自己的')", "Create Index 说明 On 我的表 (说明)",
                     "Alter Table 商品设置 Add Column 颜色 TEXT(10)", "Update 商品设置 Set 颜色='红' Where pdID=9",
                     "Create Index 颜色 On 商品设置 (颜色)"):
            subprocess.run([kpbook, "sql", path, text], check=True, stdout=subprocess.DEVNULL)
        book.close()
        with gzip.GzipFile(out, "wb", mtime=0) as packed:
            packed.write(path.read_bytes())


if __name__ == "__main__":
    main(*sys.argv[1:])
