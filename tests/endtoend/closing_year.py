"""A year's closing through `kpbook call --batch`, checked against a calculation of its own in exact fractions.

Usage: closing_year.py KPBOOK FOLDER [--months 12] [--cost]

FOLDER holds one CSV file a table. The calculation below works on those files alone: it never asks the book for a figure that it
compares. Amounts must agree to the last ten-thousandth, quantities and prices to 1e-9.
"""

import argparse
import csv
import json
import pathlib
import subprocess
import sys
import tempfile
from collections import defaultdict
from fractions import Fraction

QUANTITY_OR_PRICE = [
    "上期库存单价", "上期库存数量", "本期入库单价", "本期入库数量", "累计入库数量",
    "本期出库单价", "本期出库数量", "累计出库数量", "本期库存单价", "本期库存数量",
]
AMOUNT = ["上期库存金额", "本期入库金额", "累计入库金额", "本期出库金额", "累计出库金额", "本期库存金额"]
FIGURES = QUANTITY_OR_PRICE + AMOUNT


def read(folder, table):
    path = folder / f"{table}.csv"
    if not path.exists():
        return []
    with open(path, encoding="utf-8-sig", newline="") as file:
        return list(csv.DictReader(file))


class Movements:
    """Sums of one family's lines by (warehouse of the header, month, product)."""

    def __init__(self, headers, lines, key, price, amount):
        where = {h[key]: (int(h["dpID"]), int(h["月份"])) for h in headers}
        self.quantity = defaultdict(Fraction)
        self.amount = defaultdict(Fraction)
        self.prices = defaultdict(list)
        for line in lines:
            if line[key] not in where:
                continue
            at = (*where[line[key]], int(line["pdID"]))
            self.quantity[at] += Fraction(line["数量"])
            self.amount[at] += Fraction(line[amount])
            self.prices[at].append(Fraction(line[price]))

    def month(self, depot, month, product):
        at = (depot, month, product)
        if at not in self.prices:
            return None
        prices = self.prices[at]
        return sum(prices) / len(prices), self.quantity[at], self.amount[at]

    def year_to_date(self, depot, month, product):
        keys = [(depot, m, product) for m in range(1, month + 1) if (depot, m, product) in self.prices]
        if not keys:
            return None
        return sum(self.quantity[k] for k in keys), sum(self.amount[k] for k in keys)


class Year:
    def __init__(self, folder):
        self.depots = sorted(int(d["dpID"]) for d in read(folder, "仓库设置"))
        self.inbound_headers, self.inbound_lines = read(folder, "入库目录"), read(folder, "入库记录")
        self.outbound_headers, self.outbound_lines = read(folder, "出库目录"), read(folder, "出库记录")
        self.inbound = Movements(self.inbound_headers, self.inbound_lines, "BillID", "除税单价", "除税金额")
        self.outbound = Movements(self.outbound_headers, self.outbound_lines, "BillID", "除税单价", "除税金额")
        self.cost = Movements(read(folder, "成本目录"), read(folder, "成本记录"), "CostID", "单价", "金额")
        self.rows = []
        for row in read(folder, "仓库余额表"):
            self.rows.append(self.row(int(row["年份"]), int(row["月份"]), int(row["pdID"]), int(row["dpID"]),
                                      {f: Fraction(row.get(f) or 0) for f in FIGURES}))

    @staticmethod
    def row(year, month, product, depot, figures=None):
        base = {f: Fraction(0) for f in FIGURES}
        base.update(figures or {})
        return {"年份": year, "月份": month, "pdID": product, "dpID": depot, **base}

    def repair(self, month):
        """Adds rows for products on bills up to the month that have no balance row up to the month."""
        for headers, lines in ((self.inbound_headers, self.inbound_lines), (self.outbound_headers, self.outbound_lines)):
            known = {r["pdID"] for r in self.rows if r["月份"] <= month}
            bills = {h["BillID"] for h in headers if int(h["月份"]) <= month}
            pairs = {(int(l["pdID"]), int(l["dpID"])) for l in lines
                     if l["BillID"] in bills and int(l["pdID"]) not in known}
            year = max(r["年份"] for r in self.rows)
            self.rows += [self.row(year, month, product, depot) for product, depot in sorted(pairs)]

    def close(self, depot, month, cost_used):
        own = [r for r in self.rows if r["dpID"] == depot and r["月份"] == month]
        for r in own:
            product = r["pdID"]
            for family, price, quantity, amount, total_quantity, total_amount in (
                    (self.inbound, "本期入库单价", "本期入库数量", "本期入库金额", "累计入库数量", "累计入库金额"),
                    (self.outbound, "本期出库单价", "本期出库数量", "本期出库金额", "累计出库数量", "累计出库金额")):
                found = family.month(depot, month, product)
                if found:
                    r[price], r[quantity], r[amount] = found
                found = family.year_to_date(depot, month, product)
                if found:
                    r[total_quantity], r[total_amount] = found
            if cost_used:
                found = self.cost.month(depot, month, product)
                if found:
                    r["本期出库金额"] = found[2]
                found = self.cost.year_to_date(depot, month, product)
                if found:
                    r["累计出库金额"] = found[1]
            r["本期库存数量"] = r["上期库存数量"] + r["本期入库数量"] - r["本期出库数量"]
            r["本期库存金额"] = r["上期库存金额"] + r["本期入库金额"] - r["本期出库金额"]
            r["本期库存单价"] = r["本期库存金额"] / r["本期库存数量"] if r["本期库存数量"] > 0 else Fraction(0)
        if month < 12:
            for r in own:
                self.rows.append(self.row(r["年份"], month + 1, r["pdID"], depot, {
                    "上期库存单价": r["本期库存单价"], "上期库存数量": r["本期库存数量"], "上期库存金额": r["本期库存金额"],
                    "本期库存单价": r["本期库存单价"], "本期库存数量": r["本期库存数量"], "本期库存金额": r["本期库存金额"]}))


def run(kpbook, *arguments, text=None):
    done = subprocess.run([kpbook, *map(str, arguments)], input=text, capture_output=True, text=True, encoding="utf-8")
    if done.returncode != 0:
        sys.exit(f"kpbook {' '.join(map(str, arguments))}: exit code {done.returncode}\n{done.stderr}")
    return done.stdout


def close_through_kpbook(kpbook, folder, book, depots, months, cost_used):
    run(kpbook, "new", book, "--bare")
    for path in sorted(folder.glob("*.csv")):
        run(kpbook, "import", book, path.stem, path)
    calls = []
    for month in range(1, months + 1):
        calls.append({"method": "CheckBnProduct", "args": [month], "answer": "yes"})
        for depot in depots:
            calls.append({"method": "Close_DepotBalance",
                          "args": [depot, month, cost_used, {"date": "1997-12-31"}, {"progress": True}]})
    calls.append({"execute": "Select * From 仓库余额表 Order by 月份,dpID,pdID"})
    answers = [json.loads(line) for line in run(kpbook, "call", book, "--batch",
                                                text="".join(json.dumps(c) + "\n" for c in calls)).splitlines()]
    assert len(answers) == len(calls), f"{len(calls)} calls, {len(answers)} answers"
    for call, answer in zip(calls, answers):
        assert "error" not in answer, (call, answer["error"])
        if call.get("method") == "Close_DepotBalance":
            assert answer["result"] is True, (call, answer)
            if answer.get("progress"):
                assert answer["progress"][0] == ["Visible", True] and answer["progress"][-1] == ["Visible", False], call
    result = answers[-1]["result"]
    names = [c["name"] for c in result["columns"]]
    return [dict(zip(names, row)) for row in result["rows"]]


def compare(expected, found):
    differences, compared = [], 0
    key = lambda r: (r["月份"], r["dpID"], r["pdID"])  # noqa: E731
    expected, found = sorted(expected, key=key), sorted(found, key=key)
    if [(*key(r), r["年份"]) for r in expected] != [(*key(r), r["年份"]) for r in found]:
        sys.exit(f"other rows than calculated: {len(expected)} expected, {len(found)} found")
    for e, f in zip(expected, found):
        for name in FIGURES:
            compared += 1
            if name in AMOUNT:
                assert isinstance(f[name], str), f"{name} is no exact amount: {f[name]!r}"
                same = Fraction(f[name]) == e[name]
            else:
                same = abs(Fraction(f[name]) - e[name]) <= Fraction(1, 10**9)
            if not same:
                differences.append(f"{key(e)} {name}: calculated {float(e[name])}, found {f[name]}")
    return compared, differences


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("kpbook")
    parser.add_argument("folder", type=pathlib.Path)
    parser.add_argument("--months", type=int, default=12)
    parser.add_argument("--cost", action="store_true")
    options = parser.parse_args()

    year = Year(options.folder)
    with tempfile.TemporaryDirectory() as scratch:
        found = close_through_kpbook(options.kpbook, options.folder, pathlib.Path(scratch) / "year.kpbook",
                                     year.depots, options.months, options.cost)
    for month in range(1, options.months + 1):
        year.repair(month)
        for depot in year.depots:
            year.close(depot, month, options.cost)
    compared, differences = compare(year.rows, found)
    if not compared:
        sys.exit("nothing was compared")
    for difference in differences[:20]:
        print(difference)
    print(f"{len(found)} balance rows, {compared} figures compared, {len(differences)} differ")
    sys.exit(1 if differences else 0)


if __name__ == "__main__":
    main()
