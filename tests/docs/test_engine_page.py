"""docs.engine_page: docs/adding-an-engine.md has a row for every function that an engine may implement, and for no other."""

import pathlib
import re
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
PAGE = ROOT / "docs" / "adding-an-engine.md"
INTERFACES = ["src/sql/print/Engine.h", *(f"src/engines/common/{name}.h" for name in
                                          ["Driver", "Catalog", "Statement", "RowWriter", "Transaction"])]


def functions():
    """The virtual functions of the interfaces."""
    texts = [re.sub(r"//.*", "", (ROOT / path).read_text("utf-8")) for path in INTERFACES]
    return {name for text in texts for name in re.findall(r"\bvirtual (?!~)[^;{]*?\b(\w+)\(", text)}


def rows():
    """The names in the first column of the page's tables of functions."""
    cells = re.findall(r"^\| ([^|]*) \|", PAGE.read_text("utf-8"), re.MULTILINE)
    return {name for cell in cells for name in re.findall(r"`([A-Z]\w+)`", cell)}


class EnginePageTest(unittest.TestCase):
    maxDiff = None

    def test_every_function_has_a_row(self):
        self.assertGreater(len(functions()), 60)
        self.assertEqual(functions() - rows(), set())

    def test_every_row_is_of_a_function(self):
        headings = {"Driver", "Catalog", "Statement", "RowWriter", "Transaction"}
        self.assertEqual(rows() - functions() - headings, set())


if __name__ == "__main__":
    unittest.main()
