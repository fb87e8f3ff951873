"""docs.glossary: docs/glossary.md has each table and column of the schema, in its order, and no other; with its type."""

import pathlib
import re
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
TYPES = {"COUNTER": "number, counted", "LONG": "whole number", "SHORT": "whole number", "DOUBLE": "number", "CURRENCY": "amount",
         "YESNO": "yes/no", "DATETIME": "date", "MEMO": "text", "TEXT(255)": "text"}


def schema():
    """[(table, [(column, type)])] of the CREATE TABLE statements."""
    text = re.sub(r"--.*", "", (ROOT / "schema" / "book.sql").read_text("utf-8"))
    return [(table, [(name.strip("[]"), TYPES[kind]) for name, kind in re.findall(r"^\s+(\S+) ([A-Z]+(?:\(\d+\))?)", body, re.MULTILINE)])
            for table, body in re.findall(r"^CREATE TABLE (\S+) \(\n(.*?)\n\);", text, re.MULTILINE | re.DOTALL)]


def glossary():
    """[(table, what it is, [(column, meaning, type, unit)])] of the page."""
    found = []
    for section in (ROOT / "docs" / "glossary.md").read_text("utf-8").split("\n## ")[1:]:
        table, _, rest = section.partition("\n")
        rows = [[cell.strip() for cell in line.strip("|").split("|")] for line in rest.splitlines() if line.startswith("|")]
        found.append((table, rest.strip().splitlines()[0], [tuple(row) for row in rows[2:]]))
    return found


class GlossaryTest(unittest.TestCase):
    maxDiff = None

    def test_tables_and_columns_of_the_schema(self):
        self.assertEqual([(table, [(row[0], row[2]) for row in rows]) for table, _, rows in glossary()], schema())
        self.assertEqual(len(schema()), 31)

    def test_each_has_a_meaning_in_english(self):
        for table, meaning, rows in glossary():
            for text in (meaning, *(row[1] for row in rows)):
                self.assertRegex(text, r"^[A-Za-z][\x20-\x7e]{2}", table)

    def test_amounts_and_ids_say_their_unit_or_link(self):
        columns = {table for table, _, _ in glossary()}
        for table, _, rows in glossary():
            for column, _, kind, unit in rows:
                if kind == "amount":
                    self.assertEqual(unit, "yuan, four decimals", f"{table}.{column}")
                for linked in re.findall(r"id of (\S+)", unit):
                    self.assertIn(linked, columns, f"{table}.{column}")


if __name__ == "__main__":
    unittest.main()
