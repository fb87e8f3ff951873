"""A book's bills and balance in exact fractions, kept beside the real one; it never asks the book for a figure."""

import dataclasses
from fractions import Fraction

PRICES = ["上期库存单价", "本期入库单价", "本期出库单价", "本期库存单价"]
QUANTITIES = ["上期库存数量", "本期入库数量", "累计入库数量", "本期出库数量", "累计出库数量", "本期库存数量"]
AMOUNTS = ["上期库存金额", "本期入库金额", "累计入库金额", "本期出库金额", "累计出库金额", "本期库存金额"]
FIGURES = PRICES + QUANTITIES + AMOUNTS


@dataclasses.dataclass
class Bill:
    family: str
    number: int
    month: int
    warehouse: int
    lines: list  # product, price, quantity, amount


class Ledger:
    def __init__(self, year, bills):
        self.year, self.bills, self.rows = year, bills, []

    def add(self, month, product, warehouse, note=None, **figures):
        self.rows.append({"年份": self.year, "月份": month, "pdID": product, "dpID": warehouse, "备注": note,
                          **dict.fromkeys(FIGURES, Fraction(0)), **figures})

    def open(self, month, product, warehouse, price, quantity, amount):
        self.add(month, product, warehouse, 上期库存单价=Fraction(price), 上期库存数量=Fraction(quantity), 上期库存金额=Fraction(amount))

    def lines(self, family, warehouse, product, months):
        return [tuple(map(Fraction, line[1:])) for bill in self.bills for line in bill.lines
                if bill.family == family and bill.warehouse == warehouse and bill.month in months and line[0] == product]

    def moved(self, family, warehouse, product, months):
        """Average price, quantity and amount; None without lines."""
        lines = self.lines(family, warehouse, product, months)
        if not lines:
            return None
        price, quantity, amount = (sum(each) for each in zip(*lines))
        return price / len(lines), quantity, amount

    def figure(self, family, warehouse, product, months):
        """Quantity and amount; 0 without lines."""
        return (self.moved(family, warehouse, product, months) or (0, Fraction(0), Fraction(0)))[1:]

    def unknown(self, family, month):
        """Product and warehouse of the lines up to a month whose product has no balance row up to it."""
        known = {row["pdID"] for row in self.rows if row["月份"] <= month}
        return sorted({(line[0], bill.warehouse) for bill in self.bills for line in bill.lines
                       if bill.family == family and bill.month <= month and line[0] not in known})

    def repair(self, month):
        for family in ("入库", "出库"):
            for product, warehouse in self.unknown(family, month):
                self.add(month, product, warehouse)

    def delete_bill(self, family, number):
        self.bills = [bill for bill in self.bills if (bill.family, bill.number) != (family, number)]

    def of(self, month, warehouse=None):
        return [row for row in self.rows if row["月份"] == month and warehouse in (None, row["dpID"])]

    def delete_month(self, warehouse, month):
        self.rows = [row for row in self.rows if (row["dpID"], row["月份"]) != (warehouse, month)]

    def close(self, warehouse, month, costs, note):
        for row in self.of(month, warehouse):
            self.fill(row, costs)
            if month < 12:
                carried = {f"{when}库存{what}": row[f"本期库存{what}"] for when in ("上期", "本期") for what in ("单价", "数量", "金额")}
                self.add(month + 1, row["pdID"], warehouse, note, **carried)

    def fill(self, row, costs):
        def read(family, months):
            return self.moved(family, row["dpID"], row["pdID"], months)

        month, so_far = [row["月份"]], range(1, row["月份"] + 1)
        for family in ("入库", "出库"):
            if found := read(family, month):
                row[f"本期{family}单价"], row[f"本期{family}数量"], row[f"本期{family}金额"] = found
            if found := read(family, so_far):
                row[f"累计{family}数量"], row[f"累计{family}金额"] = found[1:]
        if costs and (found := read("成本", month)):
            row["本期出库金额"] = found[2]
        if costs and (found := read("成本", so_far)):
            row["累计出库金额"] = found[2]
        for what in ("数量", "金额"):
            row["本期库存" + what] = row["上期库存" + what] + row["本期入库" + what] - row["本期出库" + what]
        quantity = row["本期库存数量"]
        row["本期库存单价"] = row["本期库存金额"] / quantity if quantity > 0 else Fraction(0)

    def report(self, month, warehouse=None):
        """One row a product: prices averaged over the warehouses, the rest summed up."""
        found = {}
        for row in self.of(month, warehouse):
            found.setdefault(row["pdID"], []).append(row)
        return {product: {name: sum(row[name] for row in rows) / (len(rows) if name in PRICES else 1) for name in FIGURES}
                for product, rows in found.items()}
