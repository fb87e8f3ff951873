"""Tests of arrows.py: every kind of violation is found, each in a small tree."""

import pathlib
import subprocess
import sys
import tempfile
import unittest

import arrows

SCHEMA = "-- 商品 in a comment is no name.\nCREATE TABLE 仓库设置 (dpID COUNTER, 仓库名称 TEXT(255), 年 LONG);\n"
GOOD = {
    "schema/book.sql": SCHEMA,
    "schema/BookSchema.h": "#include <string>\n",
    "include/kpTables/CTables.h": "#pragma once\n",
    "src/text/Case.h": "#include <cstdint>\n",
    "src/sql/Tree.h": '#include "text/Case.h"\n',
    "src/sql/parse/Parser.h": '#include "sql/Tree.h"\n',
    "src/sql/print/sqlite/Printer.cpp": '// For SQLite.\n#include "sql/Tree.h"\n',
    "src/engines/common/RowStore.h": '#include "kpTables/CTables.h"\n#include "sql/parse/Parser.h"\n',
    "src/engines/sqlite/Database.cpp": '#include <sqlite3.h>\n\n#include "BookSchema.h"\n'
                                       '#include "engines/common/RowStore.h"\n// 年 and 商品 are words.\n',
    "src/kpTables/Balance.cpp": '#include "kpTables/CTables.h"\n#include "text/Case.h"\n// 仓库设置\n',
    "src/kpbook/Workspace.h": '#include "kpTables/CTables.h"\n',
    "src/kpbook/output/Output.h": "#include <cstdio>\n",
    "src/kpbook/commands/Call.cpp": '#include "kpbook/Workspace.h"\n#include "kpbook/output/Output.h"\n',
}


class ArrowsTest(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.addCleanup(self.folder.cleanup)
        self.root = pathlib.Path(self.folder.name)
        self.write(GOOD)

    def write(self, files):
        for path, text in files.items():
            file = self.root / path
            file.parent.mkdir(parents=True, exist_ok=True)
            file.write_text(text, encoding="utf-8")

    def expect(self, rule, path, line, part, exceptions=()):
        """Expects exactly this violation."""
        found = arrows.violations(self.root, exceptions)
        self.assertEqual([(v.rule, v.path, v.line) for v in found], [(rule, path, line)], found)
        self.assertIn(part, found[0].message)

    def test_good_tree(self):
        self.assertEqual(arrows.violations(self.root, []), [])

    def test_arrow_that_runs_back(self):
        for path, header in [("src/text/Like.cpp", "sql/Tree.h"), ("src/sql/Type.h", "engines/common/RowStore.h"),
                             ("src/sql/Type.h", "kpTables/CTables.h"), ("src/kpTables/Stock.cpp", "sql/Tree.h"),
                             ("src/functions/Format.h", "kpTables/CTables.h"),
                             ("src/engines/common/Row.h", "kpbook/Workspace.h"),
                             ("src/bookkeeping/Check.h", "text/Case.h"), ("examples/host/main.cpp", "text/Case.h"),
                             ("src/kpbook/output/Csv.cpp", "kpbook/commands/Options.h"),
                             ("include/kpTables/Grid.h", "text/Case.h")]:
            with self.subTest(path=path, header=header):
                self.write({"src/kpbook/commands/Options.h": "\n", path: f'// One.\n  #  include "{header}"\n'})
                self.expect("arrow", path, 2, header)
                (self.root / path).unlink()

    def test_engine_that_includes_the_component(self):
        self.write({"src/kpTables/db/FindIndex.h": "\n",
                    "src/engines/sqlite/Reader.h": '#include "kpTables/db/FindIndex.h"\n'})
        self.expect("arrow", "src/engines/sqlite/Reader.h", 1, "kpTables/db/FindIndex.h")

    def test_later_stage_in_an_earlier_one(self):
        self.write({"src/sql/bind/Binder.h": "\n", "src/sql/parse/Lexer.cpp": '#include "sql/bind/Binder.h"\n'})
        self.expect("arrow", "src/sql/parse/Lexer.cpp", 1, "sql/bind/Binder.h")

    def test_include_that_is_not_written_from_a_root(self):
        for header in ["Tree.h", "../sql/Tree.h", "sql/Missing.h"]:
            with self.subTest(header=header):
                self.write({"src/sql/Type.h": f'#include "{header}"\n'})
                self.expect("rooted", "src/sql/Type.h", 1, header)

    def test_library_in_another_folder(self):
        for header in ["libpq-fe.h", "unicode/ucol.h", "boost/any.hpp", "unistd.h"]:
            with self.subTest(header=header):
                self.write({"src/kpTables/Stock.cpp": f"#include <{header}>\n"})
                self.expect("library", "src/kpTables/Stock.cpp", 1, header)

    def test_engine_in_a_neutral_folder(self):
        for word in ["SQLite", "PostgreSQL", "an ODBC driver", "compares case-blind", "CaseBlind", "sqlite_row"]:
            with self.subTest(word=word):
                self.write({"src/engines/common/Text.h": f"\n\n// {word}\n"})
                self.expect("engine", "src/engines/common/Text.h", 3, "engine")

    def test_engine_in_a_path(self):
        self.write({"src/sql/SqliteText.h": "\n"})
        self.expect("engine", "src/sql/SqliteText.h", 1, "path")

    def test_business_in_the_front_end_or_an_engine(self):
        for path in ["src/sql/bind/Binder.cpp", "src/engines/sqlite/Book.cpp"]:
            with self.subTest(path=path):
                self.write({path: 'x = "Select 仓库名称 From T";\n'})
                self.expect("business", path, 1, "仓库名称")
                (self.root / path).unlink()

    def test_schema_without_names(self):
        self.write({"schema/book.sql": "-- 仓库设置\nCREATE TABLE T (a LONG);\n"})
        self.expect("business", arrows.SCHEMA, 1, "no name")

    def test_folder_without_rules(self):
        self.write({"src/extra/New.h": "\n"})
        self.expect("folder", "src/extra/New.h", 1, "no rule")
        self.write({"src/kpbook/Workspace.h": '#include "extra/New.h"\n'})
        self.assertEqual({v.rule for v in arrows.violations(self.root, [])}, {"arrow", "folder"})

    def test_empty_tree(self):
        with tempfile.TemporaryDirectory() as empty:
            self.assertEqual([v.rule for v in arrows.violations(empty, [])], ["folder"])

    def test_exception(self):
        self.write({"src/text/Like.cpp": '#include "sql/Tree.h"\n// sqlite\n'})
        self.expect("engine", "src/text/Like.cpp", 2, "sqlite", [("arrow", "src/text/", "sql/Tree.h")])

    def test_exception_that_nothing_needs(self):
        self.expect("exception", "src/text/", 1, "no longer needed", [("arrow", "src/text/", "sql/Tree.h")])

    def test_program_prints_and_fails(self):
        self.write({"src/text/Like.cpp": '\n#include "sql/Tree.h"\n'})
        done = subprocess.run([sys.executable, "-B", arrows.__file__, self.root], capture_output=True, text=True)
        self.assertIn("src/text/Like.cpp:2: src/text may not include sql/Tree.h\n", done.stdout)
        self.assertEqual(done.returncode, 1)


if __name__ == "__main__":
    unittest.main()
