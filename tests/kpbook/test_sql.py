"""Statements: one, and scripts from files and standard input; values that are bound to their names."""

import json
import unittest

from kpbook_case import TradingCase


class DialectTest(TradingCase):
    def test_the_option_decides_where_a_text_means_two_things(self):
        text = "Select 7/2, 3 Between 5 And 1, LEN('a ')"
        self.assertEqual(self.run_kpbook("sql", self.book, text, "-O", "csv").stdout.splitlines()[1], "3.5,True,2")
        done = self.run_kpbook("--sql", "sql", self.book, text, "-O", "csv")
        self.assertEqual(done.stdout.splitlines()[1], "3,False,1")
        done = self.run_kpbook("shell", self.book, text="Select 7/2 As a;\n.dialect sql\nSelect 7/2 As a;\n.dialect jet\nSelect 7/2 As a;\n")
        self.assertEqual([line.strip() for line in done.stdout.splitlines() if line.strip()[:1] == "3"], ["3.5", "3", "3.5"])

    def test_what_is_no_function_is_refused_with_its_place(self):
        for text, message in (("Select DLookup('a','b','c' & 'd)')", "inside of the text: Syntax error at line 1, column 3"),
                              ("Select TRY_PARSE('1' AS int)", "TRY_PARSE is not supported (line 1, column 8)"),
                              ("Select CONVERT(varchar(10), 5, 1)", "CONVERT takes a style for dates and amounts of money only")):
            done = self.run_kpbook("sql", self.book, text, code=1)
            self.assertIn(message, done.stderr)


class ScriptTest(TradingCase):
    SCRIPT = """-- two payments; and a question
Insert Into 仓库设置 (dpID,仓库名称) Values (7,'南;库');
/* the new one */ Select 仓库名称 From 仓库设置
    Where dpID=7;
Select Count(*) As n From 仓库设置
"""

    def test_from_a_file_and_from_standard_input(self):
        path = self.write("a.sql", b"\xef\xbb\xbf" + self.SCRIPT.encode())
        done = self.run_kpbook("sql", self.book, "-f", path, "-O", "csv")
        self.assertEqual(done.stdout, "仓库名称\n南;库\nn\n3\n")
        self.assertIn("1 row changed", done.stderr)
        done = self.run_kpbook("sql", self.book, "-", "-O", "csv", text=self.SCRIPT.replace("7", "8"))
        self.assertEqual(done.stdout, "仓库名称\n南;库\nn\n4\n")

    def test_results_in_a_file(self):
        one, two = self.folder / "one.json", self.folder / "two.json"
        self.run_kpbook("sql", self.book, "-", "-O", "json", "-o", one, text="Select 1 As a;")
        self.assertEqual(json.loads(one.read_text())["rows"], [[1]])
        self.run_kpbook("sql", self.book, "-", "-O", "json", "-o", two, text="Select 1 As a;\nSelect 2 As a;")
        self.assertEqual({k: v["rows"] for k, v in json.loads(two.read_text()).items()}, {"line 1": [[1]], "line 2": [[2]]})

    def test_an_error_says_its_line_and_what_stays(self):
        bad = "Delete From 商品设置 Where pdID=3;\n\nSelect *\nFro 商品设置;\nDelete From 商品设置;"
        done = self.run_kpbook("sql", self.book, "-f", self.write("bad.sql", bad), code=1)
        self.assertRegex(done.stderr, r"kpbook: .*bad\.sql: Syntax error at line 4, column 1 near \"Fro\"")
        self.assertEqual(done.stderr.count("Syntax error"), 1)
        self.assertIn("before line 3 did is kept", done.stderr)
        self.assertEqual(self.rows("Select Count(*) From 商品设置"), [[2]])
        done = self.run_kpbook("sql", self.book, "-", "--transaction", text=bad.replace("3;", "1;", 1), code=1)
        self.assertNotIn("is kept", done.stderr)
        self.assertEqual(self.rows("Select Count(*) From 商品设置"), [[2]])
        done = self.run_kpbook("sql", self.book, "-", code=1, text="\n\nInsert Into 商品设置 (pdID) Values (1)")
        self.assertIn("standard input: line 3: ", done.stderr)

    def test_a_transaction_keeps_all(self):
        self.run_kpbook("sql", self.book, "-", "--transaction", text="Delete From 商品设置 Where pdID=1;Delete From 商品设置 Where pdID=2")
        self.assertEqual(self.rows("Select pdID From 商品设置"), [[3]])

    def test_usage(self):
        for arguments in ((), ("Select 1", "-f", "x.sql")):
            self.assertIn("either TEXT or --file", self.run_kpbook("sql", self.book, *arguments, code=2).stderr)
        self.run_kpbook("sql", self.book, "-f", self.folder / "none.sql", code=1)
        self.assertIn("not valid UTF-8", self.run_kpbook("sql", self.book, "-", text=b"Select '\xff'", code=1).stderr)


class SeveralStatementsTest(TradingCase):
    def sql(self, text, *options, code=0):
        return self.run_kpbook("sql", self.book, text, "-O", "csv", *options, code=code)

    def count(self):
        return self.rows("Select Count(*) From 商品设置")[0][0]

    def test_one_text(self):
        done = self.sql("SET NOCOUNT ON; Insert Into 仓库设置 (仓库名称) Values ('新'); Select SCOPE_IDENTITY() As id")
        self.assertEqual(done.stdout, "id\n3\n")
        done = self.sql("DECLARE @n INT = 2; IF EXISTS (Select * From 商品设置 Where pdID=@n) Select @n As yes ELSE Select @n As no")
        self.assertEqual(done.stdout, "yes\n2\n")
        done = self.sql("Delete From 商品设置 Where pdID=1;\nDelete From 商品 Where pdID=2", code=1)
        self.assertIn("(line 2, column 13)", done.stderr)
        self.assertEqual(self.count(), 3)

    def test_transactions(self):
        self.sql("BEGIN TRAN; Delete From 商品设置; ROLLBACK")
        self.assertEqual(self.count(), 3)
        done = self.sql("BEGIN TRAN; Delete From 商品设置", code=1)
        self.assertIn("ended inside a transaction that it began, which is rolled back", done.stderr)
        done = self.sql("Delete From 商品设置; COMMIT", "--transaction", code=1)
        self.assertIn("COMMIT and ROLLBACK end only a transaction that the same text has begun", done.stderr)
        self.assertEqual(self.count(), 3)
        script = "BEGIN TRAN;\nDelete From 商品设置 Where pdID=1;\nCOMMIT;\nSelect Count(*) As n From 商品设置;"
        self.assertEqual(self.run_kpbook("sql", self.book, "-", "-O", "csv", text=script).stdout, "n\n2\n")

    def test_in_a_batch_and_in_the_shell(self):
        several = {"several": True}
        answers = self.batch({"execute": "BEGIN TRAN"}, {"execute": "Delete From 商品设置; Select @@ROWCOUNT, @@TRANCOUNT", **several},
                             {"rollback": True}, {"execute": "Select Count(*) From 商品设置; Select 1", **several},
                             {"execute": "Select 1; Select x From 商品设置", **several},
                             {"execute": "Select 1; Delete From 商品设置"}, {"execute": "BEGIN TRAN; Delete From 商品设置"},
                             {"execute": "Select 1", "several": 1}, {"begin": True, **several})
        self.assertEqual([a["result"].get("rows") for a in answers[1:4:2]], [[[3, 1]], [[3]]])
        self.assertEqual(answers[2]["result"], 0)
        self.assertIn("line 1, column 18", answers[4]["error"]["description"])
        self.assertNotIn("failed", answers[4])
        for answer, error in zip(answers[5:], ("one statement only", "one statement only", "takes true or false", "goes with")):
            self.assertIn(error, answer["error"]["description"])
        done = self.run_kpbook("shell", self.book, text="BEGIN TRAN;\nDelete From 商品设置;\n", code=1)
        self.assertIn("the shell ended inside a transaction", done.stderr)
        self.assertEqual(self.count(), 3)


class ParameterTest(TradingCase):
    def value(self, text, *parameters):
        words = [word for each in parameters for word in ("--param", each)]
        return json.loads(self.run_kpbook("sql", self.book, text, *words, "-O", "json").stdout)["rows"]

    def test_values_are_bound(self):
        self.assertEqual(self.value("Select pdID From 商品设置 Where 商品名称=@名", "名=水泥"), [[1]])
        self.assertEqual(self.value("Select pdID From 商品设置 Where 商品名称=:名", "名=水泥"), [[1]])
        self.assertEqual(self.value("Select pdID From 商品设置 Where pdID=@id", "id=2"), [[2]])
        self.assertEqual(self.value("Select pdID From 商品设置 Where ClassCode=@c", "c=01"), [[1]])
        self.assertEqual(self.value("Select Top @n pdID From 商品设置 Order by pdID", "n=number:2"), [[1], [2]])
        self.assertEqual(self.value("Select @a & @b", "a=x=y", "b=[1,2]"), [["x=y[1,2]"]])
        self.assertEqual(self.value("Select IIf(IsNull(@a),1,2), @d", "a=null:", "d=date:2004-03-07")[0][1], "2004-03-07")

    def test_they_are_never_part_of_the_text(self):
        self.run_kpbook("sql", self.book, "Update 商品设置 Set 商品名称=@名 Where pdID=1",
                        "--param", "名=x', ClassCode='9' Where '1'='1")
        self.assertEqual(self.rows("Select 商品名称 From 商品设置 Where pdID=1"), [["x', ClassCode='9' Where '1'='1"]])
        self.assertEqual(self.rows("Select Count(*) From 商品设置 Where ClassCode='9'"), [[0]])

    def test_in_scripts(self):
        done = self.run_kpbook("sql", self.book, "-", "--param", "a=水泥", "--param", "b=2", "-O", "csv",
                               text="Select pdID From 商品设置 Where 商品名称=@a;\nSelect 商品名称 From 商品设置 Where pdID=@b;")
        self.assertEqual(done.stdout, "pdID\n1\n商品名称\n螺栓\n")

    def test_refusals(self):
        self.assertIn("no value is given", self.run_kpbook("sql", self.book, "Select @a", code=1).stderr)
        self.assertIn("NAME=VALUE", self.run_kpbook("sql", self.book, "Select @a", "--param", "a", code=2).stderr)
        done = self.run_kpbook("sql", self.book, "Select @a", "--param", "a=1", "--param", "A=2", code=1)
        self.assertIn("given twice", done.stderr)

    def test_in_a_batch(self):
        answers = self.batch(
            {"execute": "Select pdID From 商品设置 Where 商品名称=@名 And pdID<@top", "params": {"名": "水泥", "top": 9}},
            {"execute": "Update 商品设置 Set 商品名称=:n Where pdID=1", "params": {"n": "it's"}},
            {"execute": "Select 商品名称 From 商品设置 Where pdID=:id", "params": {"id": 1}},
            {"execute": "Select @d, @c", "params": {"d": {"date": "2004-03-07"}, "c": {"currency": "12.5"}}},
            {"execute": "Select @x", "params": {"x": [1]}},
            {"execute": "Select @x", "params": {"x": {"array": [1]}}},
            {"execute": "Select @x"},
            {"method": "Get单据金额", "args": [1, "入库"], "params": {"x": 1}})
        self.assertEqual(answers[0]["result"]["rows"], [[1]])
        self.assertEqual(answers[2]["result"]["rows"], [["it's"]])
        self.assertEqual(answers[3]["result"]["rows"][0][0], "2004-03-07")
        for answer in answers[4:]:
            self.assertIn("error", answer)
        self.assertIn('"params" go with "execute" only', answers[7]["error"]["description"])


if __name__ == "__main__":
    unittest.main()
