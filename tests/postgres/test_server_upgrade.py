"""A server's book of an earlier format, and an earlier schema kp, brought up to date; and the printed schemas."""

import os
import subprocess
import unittest

from kpbook_case import SERVER
from server_case import ServerCase, psql

# What an earlier program may have left: a table, columns, indexes and lengths of another kind.
EARLIER = """
    SET search_path = "{0}";
    DROP TABLE "派遣记录";
    ALTER TABLE "入库目录" DROP COLUMN "项目ID", DROP COLUMN "BillType";
    ALTER TABLE "商品设置" ALTER COLUMN "商品名称" TYPE kp."text(20)", ALTER COLUMN "默认单价" DROP DEFAULT;
    DROP INDEX "商品设置.商品条码";
    DROP INDEX "入库记录.BillID"; CREATE INDEX "入库记录.BillID" ON "入库记录" ("BillID" NULLS FIRST);
    CREATE INDEX "自己" ON "商品设置" ("规格");
    UPDATE kp_book SET format = 1, version = version + 1;
"""
# As version 1 of the functions might have been: one is missing, one answers otherwise, one with another type.
EARLIER_FUNCTIONS = """
    DROP FUNCTION kp."weekdayname"(double precision);
    CREATE OR REPLACE FUNCTION kp."abs"(bigint) RETURNS bigint LANGUAGE sql IMMUTABLE AS 'SELECT -7::bigint';
    DROP FUNCTION kp."instr"(bpchar, bpchar);
    CREATE FUNCTION kp."instr"(bpchar, bpchar) RETURNS bigint LANGUAGE sql IMMUTABLE AS 'SELECT 7::bigint';
    COMMENT ON SCHEMA kp IS 'kpTables 1';
"""


class UpgradeTest(ServerCase):
    def definition(self, name):
        """Columns and indexes of the schema, as the server tells them."""
        columns = psql(f"""SELECT relname, attname, format_type(atttypid, atttypmod), attnotnull, pg_get_expr(adbin, adrelid)
            FROM pg_class JOIN pg_attribute ON attrelid = pg_class.oid LEFT JOIN pg_attrdef ON adrelid = attrelid AND adnum = attnum
            WHERE relnamespace = '"{name}"'::regnamespace AND relkind = 'r' AND attnum > 0 AND NOT attisdropped
            ORDER BY 1, 2""")
        indexes = psql(f"SELECT indexdef FROM pg_indexes WHERE schemaname = '{name}' AND indexname <> '自己' ORDER BY 1")
        triggers = psql(f"""SELECT tgrelid::regclass, tgname FROM pg_trigger JOIN pg_class ON pg_class.oid = tgrelid
            WHERE relnamespace = '"{name}"'::regnamespace ORDER BY 1, 2""")
        return columns, indexes, triggers

    def test_earlier_format(self):
        name, book = self.copied("earlier")
        rows, definition = self.exported(book), self.definition(name)
        psql(EARLIER.format(name))
        told = self.run_kpbook("info", book, code=1).stderr
        self.assertIn("its format is 1, an earlier one than 2; kpbook upgrade brings it up to date", told)
        done = self.run_kpbook("upgrade", book)
        for change in ("made the table 派遣记录", "added the column 入库目录.项目ID", "added the column 入库目录.BillType",
                       "changed the columns of 商品设置: 商品名称", "changed the columns of 商品设置: 默认单价",
                       "made the index 商品设置.商品条码", "changed the index 入库记录.BillID", "upgraded from format 1 to 2"):
            self.assertIn(change, done.stderr)
        self.assertEqual(len(done.stderr.splitlines()), 9, done.stderr)
        self.assertEqual(self.definition(name), definition)
        self.assertEqual(self.exported(book).keys(), rows.keys())
        self.assertEqual({table: sorted(text.split(",")[0] for text in lines.splitlines())
                          for table, lines in self.exported(book).items() if table != "manifest.json"},
                         {table: sorted(text.split(",")[0] for text in lines.splitlines())
                          for table, lines in rows.items() if table != "manifest.json"})
        self.assertEqual(psql(f"SELECT count(*) FROM pg_indexes WHERE schemaname = '{name}' AND indexname = '自己'"), ["1"])
        self.run_kpbook("check", book)
        self.assertIn("is up to date, format 2", self.run_kpbook("upgrade", book).stderr)
        self.assertEqual(psql("SELECT count(*) FROM pg_namespace WHERE nspname = 'kp_wanted'"), ["0"])

    def test_failing_upgrade_changes_nothing(self):
        name, book = self.copied("failing")
        psql(EARLIER.format(name))
        psql(f'CREATE VIEW "{name}"."看" AS SELECT "商品名称" FROM "{name}"."商品设置"')
        definition = self.definition(name)
        done = self.run_kpbook("upgrade", book, code=1)
        self.assertIn("nothing was changed", done.stderr)
        self.assertEqual(self.definition(name), definition)
        self.assertEqual(psql(f'SELECT format FROM "{name}".kp_book'), ["1"])
        psql(f'DROP VIEW "{name}"."看"')
        self.run_kpbook("upgrade", book)

    def test_dropped_column_of_a_present_book(self):
        name, book = self.copied("dropped")
        self.run_kpbook("sql", book, "Alter Table 商品设置 Drop Column 存放地点")
        self.assertIn("lacks the column 商品设置.存放地点", self.run_kpbook("info", book).stderr)
        self.assertIn("has everything of format 2 again", self.run_kpbook("upgrade", book).stderr)
        self.assertNotIn("lacks", self.run_kpbook("info", book).stderr)

    def test_later_format_is_refused(self):
        name, book = self.copied("later")
        psql(f'UPDATE "{name}".kp_book SET format = 99')
        for words in (("info", book), ("upgrade", book)):
            self.assertIn("open it with a newer version", self.run_kpbook(*words, code=1).stderr)

    def test_another_icu(self):
        """Under another version of ICU texts may sort otherwise: the owner's next command makes the indexes anew."""
        name, book = self.copied("icu")
        for operator in ("系统操作员", "吴九"):
            self.run_kpbook("operators", book, "add", operator)
        self.run_kpbook("grant", book, "吴九", text="secret\n")
        guest = book.replace("user=kp", "user=吴九")
        files = f"SELECT relname, relfilenode FROM pg_class WHERE relkind = 'i' AND relnamespace = '\"{name}\"'::regnamespace ORDER BY 1"
        before, noted = psql(files), psql(f'SELECT icu FROM "{name}".kp_book')
        self.run_kpbook("info", book)
        self.assertEqual(psql(files), before)
        psql(f"UPDATE \"{name}\".kp_book SET icu = '1.0'")
        self.assertIn("the book's owner has to open it once with this program", self.run_kpbook("info", guest, code=1).stderr)
        self.run_kpbook("info", book)
        self.assertEqual(psql(f'SELECT icu FROM "{name}".kp_book'), noted)
        after = psql(files)
        self.assertEqual(len(after), len(before))
        self.assertEqual(set(after) & set(before), set())
        self.run_kpbook("info", guest)

    def test_earlier_functions(self):
        _, book = self.copied("functions")
        present = psql("SELECT obj_description('kp'::regnamespace, 'pg_namespace')")
        functions = psql("SELECT p.oid::regprocedure, prorettype::regtype, prosrc FROM pg_proc AS p "
                         "WHERE pronamespace = 'kp'::regnamespace ORDER BY p.oid::regprocedure::text")
        query = "Select Abs(-2) As a, InStr('abc','c') As b, WeekDayName(2) As c From AccInfo"
        answer = self.run_kpbook("sql", book, query, "-O", "csv").stdout
        self.assertEqual(answer.splitlines()[1], "2,3,Monday")
        for renew in (lambda: self.run_kpbook("info", book), lambda: self.run_kpbook("upgrade", book)):
            psql(EARLIER_FUNCTIONS)
            renew()
            self.assertEqual(psql("SELECT obj_description('kp'::regnamespace, 'pg_namespace')"), present)
            self.assertEqual(psql("SELECT p.oid::regprocedure, prorettype::regtype, prosrc FROM pg_proc AS p "
                                  "WHERE pronamespace = 'kp'::regnamespace ORDER BY p.oid::regprocedure::text"), functions)
            self.assertEqual(self.run_kpbook("sql", book, query, "-O", "csv").stdout, answer)
        psql("COMMENT ON SCHEMA kp IS 'kpTables 1'")
        self.assertIn("brought the functions in the schema kp up to date", self.run_kpbook("upgrade", book).stderr)


class SchemaTest(ServerCase):
    def test_script_makes_a_book(self):
        script = self.run_kpbook("schema", "--dialect", "postgres").stdout
        psql("CREATE SCHEMA \"脚本\"")
        done = subprocess.run(["psql", "-X", "-q", "-v", "ON_ERROR_STOP=1", "-d", SERVER], input=script, text=True, capture_output=True,
                              env={**os.environ, "PGOPTIONS": "-c search_path=\"脚本\" -c client_min_messages=warning"}, timeout=60)
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        made = self.url("%E8%84%9A%E6%9C%AC")
        self.run_kpbook("check", made)
        bare = self.url("bare")
        self.run_kpbook("new", bare, "--bare")
        self.assertEqual(UpgradeTest.definition(self, "脚本")[0], UpgradeTest.definition(self, "bare")[0])
        self.assertIn("is up to date, format 2", self.run_kpbook("upgrade", made).stderr)
        self.run_kpbook("sql", made, "Insert Into 仓库设置 (仓库名称) Values ('东库')")


if __name__ == "__main__":
    unittest.main()
