"""Tests of includes.py: what is missing is found, each in a small tree."""

import pathlib
import tempfile
import unittest

import includes

GOOD = {
    "include/kpTables/Currency.h": "#include <cstdint>\nnamespace kpTables {\nclass Currency {\n    std::int64_t scaled;\n};\n}\n",
    "include/kpTables/Stock.h": '#include <string>\n#include "kpTables/Currency.h"\nstruct StockLine {\n    std::string name;\n'
                                "    Currency amount;\n};\n",
    "src/stock/Shelf.h": '#include "kpTables/Stock.h"\nclass ShelfList;\nenum class Kind { Currency, Other };\n',
    "src/stock/Shelf.cpp": '#include "stock/Shelf.h"\n#include <vector>\nstd::vector<StockLine> Of(ShelfList&);\n'
                           'const char* kText = "std::map StockLine"; // std::optional\nstd::string name;\nstd::int32_t count;\n',
    "src/stock/Order.cpp": '#include <string>\n#include "stock/Shelf.h"\nauto kind = Kind::Currency;\nstd::string_view name;\n',
    "src/text/Case.h": "#include <string_view>\nnamespace kpTables::text {\nbool IsUpper(std::string_view text);\n}\n",
    "src/stock/Name.cpp": '#include "text/Case.h"\nbool upper = text::IsUpper("A");\n',
    "tests/StockTest.cpp": "#include <string>\n#include \"Unknown.h\"\nStockLine line;\nstd::string name;\n",
}


class IncludesTest(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.addCleanup(self.folder.cleanup)
        self.root = pathlib.Path(self.folder.name)

    def found(self, changes=None):
        for path, text in {**GOOD, **(changes or {})}.items():
            file = self.root / path
            file.parent.mkdir(parents=True, exist_ok=True)
            file.write_text(text, encoding="utf-8")
        return [(found.path, found.line, found.message) for found in includes.violations(self.root)]

    def test_good_tree(self):
        self.assertEqual(self.found(), [])

    def test_no_sources(self):
        self.assertEqual(len(includes.violations(self.root)), 1)

    def test_missing_header_of_the_standard_library(self):
        self.assertEqual(self.found({"src/stock/Shelf.cpp": '#include "stock/Shelf.h"\n\nstd::vector<std::string> names;\n'}),
                         [("src/stock/Shelf.cpp", 3, "std::vector needs <vector>")])
        self.assertEqual(self.found({"src/stock/Shelf.cpp": "/* a\nb */ auto at = std::ranges::find(names, 1);\n"}),
                         [("src/stock/Shelf.cpp", 2, "std::find needs <algorithm>")])

    def test_each_header_is_told_once(self):
        self.assertEqual(self.found({"tests/StockTest.cpp": "std::vector<int> a;\nstd::vector<int> b;\nstd::list<int> c;\n"}),
                         [("tests/StockTest.cpp", 1, "std::vector needs <vector>"), ("tests/StockTest.cpp", 3, "std::list needs <list>")])

    def test_missing_header_of_the_project(self):
        self.assertEqual(self.found({"src/stock/Shelf.cpp": "const StockLine* line;\n"}),
                         [("src/stock/Shelf.cpp", 1, "StockLine is declared in include/kpTables/Stock.h, which is not included")])
        self.assertEqual(self.found({"src/stock/Shelf.cpp": "#include <string>\nkpTables::Currency amount;\n"}),
                         [("src/stock/Shelf.cpp", 2, "Currency is declared in include/kpTables/Currency.h, which is not included")])

    def test_missing_header_of_a_function(self):
        self.assertEqual(self.found({"src/text/Trim.cpp": 'bool Both() {\n    return kOne && IsUpper("B");\n}\n'}),
                         [("src/text/Trim.cpp", 2, "IsUpper is declared in src/text/Case.h, which is not included")])
        own = 'bool IsUpper(char sign);\nbool upper = IsUpper(kSign) || text.IsUpper();\n'
        self.assertEqual(self.found({"src/text/Trim.cpp": own}), [])

    def test_missing_header_of_a_namespace(self):
        self.assertEqual(self.found({"src/stock/Name.cpp": '#include <string>\nbool upper = text::IsUpper("A") || text::IsUpper("B");\n'}),
                         [("src/stock/Name.cpp", 2, "text::IsUpper is declared in src/text/Case.h, which is not included")])

    def test_header_is_looked_at_alone(self):
        self.assertEqual(self.found({"include/kpTables/Stock.h": "#include <string>\nstruct StockLine {\n    Currency amount;\n};\n",
                                     "src/stock/Order.cpp": '#include "kpTables/Currency.h"\n#include "kpTables/Stock.h"\n',
                                     "src/stock/Shelf.cpp": '#include "stock/Shelf.h"\n'}),
                         [("include/kpTables/Stock.h", 3,
                           "Currency is declared in include/kpTables/Currency.h, which is not included")])


if __name__ == "__main__":
    unittest.main()
