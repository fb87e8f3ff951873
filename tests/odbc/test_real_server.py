"""A book's life on a real server behind ODBC: KPTABLES_ODBC is the URL of an empty database there, KPTABLES_ODBC_SQL=1 says
that it is SQL Server, else Jet's dialect counts. Its tables are made before and removed behind."""

import os
import re
import subprocess
import sys
import unittest

from kpbook_case import KPBOOK
import test_book_life

URL = os.environ.get("KPTABLES_ODBC")
ENGINE_TESTS = os.environ.get("ODBC_TESTS")
IS_SQL = os.environ.get("KPTABLES_ODBC_SQL") == "1"
LIFE = test_book_life.ServerDialectLifeTest if IS_SQL else test_book_life.BookLifeTest
SKIPPED = 77


class EngineTest(unittest.TestCase):
    def test_what_any_server_promises(self):
        done = subprocess.run([ENGINE_TESTS, "--gtest_filter=*/Real", "--gtest_brief=1"], check=False)
        self.assertEqual(done.returncode, 0)


class RealServerTest(LIFE):
    def setUp(self):
        self.schema = subprocess.run([KPBOOK, "schema", "--dialect", "sqlserver" if IS_SQL else "jet"], capture_output=True,
                                     check=True).stdout.decode()
        self.tables = re.findall(r"CREATE TABLE \[?(\w+)", self.schema)
        self.with_counter = [table for table, columns in re.findall(r"CREATE TABLE \[?(\w+)([^;]*)", self.schema)
                             if re.search("IDENTITY|COUNTER", columns)]
        super().setUp()
        self.addCleanup(self.drop_tables)

    def new_book(self):
        self.book = URL
        self.drop_tables()
        self.run_kpbook("sql", self.book, "-f", self.write("schema.sql", self.schema))

    def drop_tables(self):
        self.close_host()
        for table in self.tables:
            subprocess.run([KPBOOK, "sql", URL, f"Drop Table {table}"], capture_output=True, check=False)

    def execute(self, *texts):
        """SQL Server takes values for a counter only where it is told so before."""
        for text in texts:
            found = re.match(r"Insert into (\w+)", text)
            told = IS_SQL and found and found.group(1) in self.with_counter
            around = [f"SET IDENTITY_INSERT {found.group(1)} {on}" for on in ("ON", "OFF")] if told else ["", ""]
            super().execute(*filter(None, [around[0], text, around[1]]))


del LIFE, test_book_life.BookLifeTest, test_book_life.ServerDialectLifeTest

if __name__ == "__main__":
    if not URL:
        print("KPTABLES_ODBC names no server: skipped")
        sys.exit(SKIPPED)
    unittest.main()
