"""Python with pywin32, late bound: python stock.py BOOK MONTH prints a month's closing stock."""

import sys

import win32com.client


class Listener:
    """Hears the component's event."""

    def OnTableChanged(self, procedure, table, row):
        print(f"{table}: row {row} changed by {procedure}")


def main():
    book, month = sys.argv[1], int(sys.argv[2])
    connection = win32com.client.Dispatch("kpTables.Connection")
    connection.Open(book)
    tables = win32com.client.DispatchWithEvents("kpTables.CTables", Listener)
    tables.Cnn = connection

    rows = tables.rs余额记录(0, month)
    names = [rows.Fields.Item(i).Name for i in range(rows.Fields.Count)]
    wanted = [names.index(name) for name in ("商品编号", "商品名称", "本期库存数量", "本期库存金额")]
    while not rows.EOF:
        print(*(rows.Fields.Item(i).Value for i in wanted))
        rows.MoveNext()
    rows.Close()
    tables.Update("main", "仓库余额表", month)
    connection.Close()


if __name__ == "__main__":
    main()
