"""call --batch: the protocol, line by line."""

import contextlib
import json
import sqlite3
import subprocess
import unittest

from kpbook_case import KPBOOK, KpbookCase, TradingCase

INBOUND_CHECK = ("Select Distinct pdID,dpID From 入库记录 Where pdID not in (Select Distinct pdID From 仓库余额表 Where 月份<=1) "
                 "And BillID In (Select BillId From 入库目录 Where 月份<=1)")
OUTBOUND_CHECK = ("Select Distinct pdID,dpID From 出库记录 Where pdID not in (Select Distinct  pdID From 仓库余额表 Where 月份<=1) "
                  "And BillID In (Select BillId From 出库目录 Where 月份<=1)")


def execute(text):
    return {"op": "execute", "text": text, "kind": "text"}


class LineTest(KpbookCase):
    def setUp(self):
        super().setUp()
        self.new_book()

    def raw(self, text):
        """Standard output of a batch."""
        return self.run_kpbook("call", self.book, "--batch", text=text).stdout

    def test_one_answer_a_line_in_order(self):
        self.assertEqual(self.raw('{"method":"Version"}\n{"method":"version","args":[]}\n'),
                         '{"method":"Version","result":"10110","args":[],"sent":[]}\n'
                         '{"method":"version","result":"10110","args":[],"sent":[]}\n')

    def test_nothing_in_nothing_out(self):
        self.assertEqual(self.raw(""), "")

    def test_blank_lines_are_skipped(self):
        self.assertEqual(len(self.raw('\n \t\n{"method":"Version"}\r\n\r\n{"method":"Version"}').splitlines()), 2)

    def test_keys_in_order(self):
        self.import_text("仓库余额表", "年份,月份,pdID,dpID\n2004,1,1,1\n")
        answer = json.loads(self.raw('{"answer":"yes","args":[1,1,false,null,{"progress":true}],"method":"Close_DepotBalance"}'))
        self.assertEqual(list(answer), ["method", "result", "args", "sent", "progress"])
        answer = json.loads(self.raw('{"method":"Update","args":["x","y",5]}'))
        self.assertEqual(list(answer), ["method", "result", "args", "sent", "events"])
        answer = json.loads(self.raw('{"execute":"Select 1 As a"}'))
        self.assertEqual(list(answer), ["execute", "result", "sent"])

    def test_text_is_unescaped_utf8(self):
        self.sql("Insert Into 仓库设置 (仓库名称) Values ('东库 \"A\" é')")
        self.assertIn('"rows":[["东库 \\"A\\" é"]]', self.raw('{"execute":"Select 仓库名称 From 仓库设置"}'))

    def test_invalid_utf8_of_a_book_is_replaced(self):
        connection = sqlite3.connect(self.book)
        connection.execute("Insert Into 仓库余额表 (年份,备注) Values (1,CAST(x'41B2FF42' AS TEXT))")
        connection.commit()
        connection.close()
        answer = self.batch({"execute": "Select 备注 From 仓库余额表"})[0]
        self.assertEqual(answer["result"]["rows"], [["A\ufffd\ufffdB"]])

    def errors(self, *lines):
        """The errors of lines that cannot be understood; the batch goes on after each."""
        answers = self.batch(*lines, {"method": "Version"})
        self.assertEqual(answers[-1]["result"], "10110")
        for answer in answers[:-1]:
            self.assertEqual(answer["error"]["number"], 5, answer)
            self.assertNotIn("result", answer)
        return [answer["error"]["description"] for answer in answers[:-1]]

    def test_lines_that_are_no_json(self):
        found = self.errors("{", "hello", '{"method":"Version"} x', '{"method":"Version",}', "\ufffd")
        for number, description in enumerate(found, 1):
            self.assertIn(f"line {number}: not JSON at column ", description)

    def test_line_numbers_count_blank_lines(self):
        done = self.run_kpbook("call", self.book, "--batch", text="\n\n{\n")
        self.assertIn("line 3: ", json.loads(done.stdout)["error"]["description"])

    def test_invalid_utf8_in_a_line(self):
        done = self.run_kpbook("call", self.book, "--batch",
                               text=b'{"method":"AllTrim","args":["\xb2\xd6"]}\n{"method":"Version"}\n')
        first, second = map(json.loads, done.stdout.splitlines())
        self.assertEqual(first["error"]["number"], 5)
        self.assertEqual(second["result"], "10110")

    def test_lines_that_are_no_request(self):
        found = self.errors("5", "[]", "{}", '"Version"', {"method": 5}, {"method": "Version", "execute": "Select 1"},
                            {"args": []}, {"method": "Version", "arg": []}, {"execute": "Select 1", "args": []},
                            {"method": "Version", "args": 1}, {"method": "Version", "isSQL": "yes"},
                            {"method": "Version", "today": "2004-02-30"}, {"method": "Version", "answer": "maybe"})
        self.assertIn('unknown key "arg"', found[7])

    def test_refused_request_names_its_method(self):
        answer = self.batch({"method": "Version", "x": 1})[0]
        self.assertEqual(answer["method"], "Version")
        self.assertEqual(answer["error"]["number"], 5)

    def test_unknown_value_form(self):
        found = self.errors({"method": "AllTrim", "args": [{"colour": 1}]}, {"method": "AllTrim", "args": [[1]]})
        for description in found:
            self.assertIn("no such value form", description)

    def test_answers_come_line_by_line(self):
        process = subprocess.Popen([KPBOOK, "call", str(self.book), "--batch"], stdin=subprocess.PIPE,
                                   stdout=subprocess.PIPE, text=True)
        for _ in range(3):
            process.stdin.write('{"method":"Version"}\n')
            process.stdin.flush()
            self.assertEqual(json.loads(process.stdout.readline())["result"], "10110")
        process.stdin.close()
        self.assertEqual(process.wait(), 0)
        process.stdout.close()

    def test_closed_pipe_ends_quietly(self):
        process = subprocess.Popen([KPBOOK, "call", str(self.book), "--batch"], stdin=subprocess.PIPE,
                                   stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)
        process.stdin.write('{"method":"Version"}\n')
        process.stdin.flush()
        process.stdout.readline()
        process.stdout.close()
        with contextlib.suppress(BrokenPipeError):
            for _ in range(20000):
                process.stdin.write('{"method":"Version"}\n')
        with contextlib.suppress(BrokenPipeError):
            process.stdin.close()
        stderr = process.stderr.read()
        process.stderr.close()
        self.assertEqual((process.wait(), stderr), (0, ""))

    def test_file(self):
        path = self.write("calls.jsonl", '{"method":"Version"}\n')
        done = self.run_kpbook("call", self.book, "--batch", path)
        self.assertEqual(json.loads(done.stdout)["result"], "10110")
        done = self.run_kpbook("call", self.book, "--batch", "-", text='{"method":"Version"}\n')
        self.assertEqual(json.loads(done.stdout)["result"], "10110")
        done = self.run_kpbook("call", self.book, "--batch", self.folder / "none", code=1)
        self.assertIn("none: cannot be opened", done.stderr)

    def test_long_line(self):
        text = "AB" * 15000
        self.assertEqual(self.call("AllTrim", text)["result"], text)

    def test_trace_goes_to_standard_error(self):
        done = self.run_kpbook("--trace", "call", self.book, "--batch", text='{"method":"rs月份列表"}\n')
        self.assertIn("execute: Select Distinct 年份,月份", done.stderr)
        self.assertEqual(len(json.loads(done.stdout)["sent"]), 1)


class ValueTest(KpbookCase):
    """Every value form on its way in and out; CalcPrice writes back nothing else than what it was given."""

    def setUp(self):
        super().setUp()
        self.new_book()

    def test_forms_come_back_as_they_were(self):
        values = [None, 0, -5, 2147483647, -2147483648, 2147483648.0, 25.0, 0.1, 1e300, 1e-7, True, False, "", "文字 \"q\" \\ \n",
                  {"empty": True}, {"date": "2004-03-07"}, {"date": "2004-03-07T12:30:00"}, {"currency": "12.5"},
                  {"currency": "-0.0001"}, {"currency": "922337203685477.5807"}, {"missing": True}]
        for value in values:
            answer = self.call("CalcPrice", value, value)
            if value == {"missing": True}:
                self.assertEqual(answer["error"]["number"], 449)
            self.assertEqual(answer["args"], [value, value], answer)
            self.assertEqual([type(a) for a in answer["args"]], [type(value)] * 2)

    def test_whole_numbers_beyond_32_bits_are_doubles(self):
        text = self.run_kpbook("call", self.book, "--batch",
                               text='{"method":"CalcPrice","args":[2147483648,-9007199254740993]}\n').stdout
        self.assertIn('"args":[2147483648.0,-9007199254740992.0]', text)

    def test_double_keeps_reading_as_one(self):
        for account, number, written in ((50, 2, "25.0"), (1, 3, "0.3333333333333333"), (200, 3, "66.66666666666667"),
                                         (0, 5, "0.0"), (1e300, 1, "1e+300")):
            line = json.dumps({"method": "CalcPrice", "args": [account, number]}) + "\n"
            text = self.run_kpbook("call", self.book, "--batch", text=line).stdout
            self.assertIn(f'"result":{written},', text)

    def test_double_that_is_not_finite(self):
        answer = self.call("CalcPrice", 1e308, 1e-10)
        self.assertEqual(answer["error"]["number"], 6)
        self.assertNotIn("result", answer)

    def test_currency_as_a_number(self):
        self.assertEqual(self.call("CalcPrice", {"currency": 12.5}, {"currency": 2})["args"],
                         [{"currency": "12.5"}, {"currency": "2"}])

    def test_objects(self):
        answer = self.call("Get单据中文日期", {"row": {"月份": 3, "日子": 7, "价": {"currency": "0.5"}, "无": None}})
        self.assertEqual(answer["result"], "03月07日")
        self.assertEqual(answer["args"], [{"row": {"月份": 3, "日子": 7, "价": {"currency": "0.5"}, "无": None}}])
        answer = self.call("Get单据中文日期", {"nothing": True})
        self.assertEqual(answer["error"]["number"], 91)
        self.assertEqual(answer["args"], [{"nothing": True}])
        answer = self.call("Get单据中文日期", {"row": {"月份": 3}})
        self.assertEqual(answer["error"]["number"], 3265)
        answer = self.call("Get单据中文日期", {"progress": True})
        self.assertEqual(answer["error"]["number"], 13)
        self.assertEqual(answer["args"], [{"progress": True}])

    def test_a_grid_comes_back_as_the_method_leaves_it(self):
        given = {"grid": {"cols": [{"key": "a", "title": "甲", "width": 1.5}, {"hidden": True}], "rows": [["x"], [None, 2]]}}
        answer = self.call("Header", given, "L", "F", True)
        self.assertEqual(answer["args"][0], {"grid": {
            "FixedRows": 1, "cols": [{"key": "a", "title": "甲", "hidden": False, "width": 1.5},
                                     {"key": "", "title": "", "hidden": True, "width": 0}],
            "rows": [["x", ""], [None, 2]]}})
        again = self.call("Header", answer["args"][0], "L", "F", True)
        self.assertEqual(again["args"], answer["args"])

    def test_what_is_no_grid(self):
        for value in (5, None, "x", {"array": []}):
            answer = self.call("Header", value, "L")
            self.assertEqual(answer["error"], {"number": 13, "description": "Type mismatch: rfg"})
            self.assertEqual(answer["sent"], [])
        for other in ({"progress": True}, {"row": {"a": 1}}):  # an object fails where it is first used
            self.assertNotIn("error", self.call("Header", other, "L"))
            answer = self.call("Header", other, "L", "F", True)
            self.assertEqual(answer["error"]["number"], 438)
            self.assertEqual([each["text"][:6] for each in answer["sent"]], ["Delete", "Header"])
        for grid, part in (({"FixedRows": -1}, '"FixedRows" takes a number from 0 to 1000, not -1'),
                           ({"cols": [{"label": "a"}]}, 'unknown key "label" of a grid\'s column'),
                           ({"rows": [[1]]}, "a grid's row has more cells than there are columns: [1]")):
            answer = self.call("Header", {"grid": grid}, "L")
            self.assertEqual(answer["error"], {"number": 5, "description": f"line 1: {part}"})

    def test_arrays(self):
        answer = self.call("CalcPrice", {"array": [1, "a", {"currency": "2"}, {"array": []}]}, 1)
        self.assertEqual(answer["args"], [{"array": [1, "a", {"currency": "2"}, {"array": []}]}, 1])

    def test_bad_values(self):
        for value, number in (({"date": "2004-02-30"}, 5), ({"date": 5}, 5), ({"currency": "x"}, 13),
                              ({"currency": "1e20"}, 13), ({"currency": "922337203685477.5808"}, 6), ({"empty": False}, 5),
                              ({"array": 1}, 5), ({"row": [1]}, 5)):
            answer = self.call("CalcPrice", value, 1)
            self.assertEqual(answer["error"]["number"], number, answer)
            self.assertIn("line 1: ", answer["error"]["description"])

    def test_recordset_columns_of_every_type(self):
        self.sql("Insert Into 仓库设置 (仓库名称,结帐日期,结帐标志) Values ('东库',#2004-3-7 12:30:00#,True)")
        self.sql("Insert Into 仓库余额表 (年份,pdID,本期库存数量,本期库存金额) Values (2004,70000,25,12.5)")
        answer = self.batch({"execute": "Select 仓库名称,结帐日期,结帐标志,年份,pdID,本期库存数量,本期库存金额,备注,Null As 无 "
                                        "From 仓库设置,仓库余额表"})[0]
        self.assertEqual([c["type"] for c in answer["result"]["columns"]],
                         ["String", "Date", "Boolean", "Integer", "Long", "Double", "Currency", "String", "Empty"])
        self.assertEqual([c["name"] for c in answer["result"]["columns"]],
                         ["仓库名称", "结帐日期", "结帐标志", "年份", "pdID", "本期库存数量", "本期库存金额", "备注", "无"])
        self.assertEqual(answer["result"]["rows"],
                         [["东库", "2004-03-07T12:30:00", True, 2004, 70000, 25.0, "12.5", None, None]])
        self.assertIsInstance(answer["result"]["rows"][0][5], float)

    def test_columns_of_one_name(self):
        answer = self.batch({"execute": "Select dpID,dpID From 仓库设置"})[0]
        self.assertEqual([c["name"] for c in answer["result"]["columns"]], ["dpID", "dpID"])


class CallTest(TradingCase):
    def test_single_results(self):
        for method, arguments, result in (("Get单据金额", [1, "出库"], {"currency": "40"}),
                                          ("Get单据数量", [1, "出库"], 5.0), ("isSaled", [1, 1], True),
                                          ("Del仓库余额表", [9, 9], {"empty": True})):
            answer = self.call(method, *arguments)
            self.assertEqual(answer["result"], result)
            self.assertEqual(answer["args"], arguments)
            self.assertNotIn("error", answer)

    def test_recordset(self):
        answer = self.call("rs月份列表", True)
        self.assertEqual(answer["result"], {"columns": [{"name": "年份", "type": "Integer"}, {"name": "月份", "type": "Integer"}],
                                            "rows": [[2004, 1]]})
        self.assertEqual(answer["sent"], [execute("Select Distinct 年份,月份 From 仓库余额表 Order by 年份,月份 DESC")])

    def test_editable_recordset(self):
        answer = self.call("rs仓库余额表")
        self.assertEqual(answer["sent"], [{"op": "open", "text": "仓库余额表", "kind": "table"}])
        self.assertEqual(len(answer["result"]["rows"]), 3)
        answer = self.call("rs仓库余额表", 2)
        self.assertEqual(answer["sent"], [{"op": "open", "text": "Select * From 仓库余额表 Where True  And dpID=2",
                                           "kind": "text"}])
        self.assertEqual(len(answer["result"]["rows"]), 1)

    def test_written_back(self):
        self.assertEqual(self.call("rs余额记录", 1, 0)["args"], [1, 1])
        self.assertEqual(self.call("rs余额记录", 1, {"empty": True})["args"], [1, 1])
        self.assertEqual(self.call("rs余额记录", 1)["args"], [1])

    def test_written_back_before_a_failure(self):
        self.sql("Drop Table 出库记录")
        answer = self.call("rs项目汇总表", "重量")
        self.assertEqual(answer["error"]["number"], -2147217865)
        self.assertEqual(answer["args"], ["数量"])

    def test_no_recordset(self):
        self.sql("Delete From 仓库余额表")
        answer = self.call("rs余额记录", 0, 0)
        self.assertEqual(answer["result"], {"nothing": True})
        self.assertEqual(answer["sent"], [execute("Select TOP 1 月份 From 仓库余额表  ORDER BY 月份")])

    def test_execute(self):
        answers = self.batch({"execute": "Update 仓库设置 Set 仓库名称='南库' Where dpID=2"},
                             {"execute": "Select 仓库名称 From 仓库设置 Where dpID=2"})
        self.assertEqual(answers, [
            {"execute": "Update 仓库设置 Set 仓库名称='南库' Where dpID=2", "result": {"nothing": True},
             "sent": [execute("Update 仓库设置 Set 仓库名称='南库' Where dpID=2")]},
            {"execute": "Select 仓库名称 From 仓库设置 Where dpID=2",
             "result": {"columns": [{"name": "仓库名称", "type": "String"}], "rows": [["南库"]]},
             "sent": [execute("Select 仓库名称 From 仓库设置 Where dpID=2")]}])

    def test_failed_statement(self):
        text = "Update 仓库设置 Set 仓库名称='O'Hara'"
        answers = self.batch({"execute": text}, {"execute": "Select 没有 From 仓库设置"}, {"execute": "Select * From 没有"},
                             {"execute": "Delete From 仓库设置; Delete From 商品设置"},
                             {"execute": "Select Count(*) As n From 仓库设置"})
        # ADO's numbers: 0x80040E14 syntax, 0x80040E10 unknown column, 0x80040E37 unknown table.
        self.assertEqual([a["error"]["number"] for a in answers[:4]], [-2147217900, -2147217904, -2147217865, -2147217900])
        for answer in answers[:4]:
            self.assertNotIn("result", answer)
            self.assertTrue(answer["error"]["description"])
        self.assertEqual(answers[0]["sent"], [execute(text)])
        self.assertEqual(answers[4]["result"]["rows"], [[2]])

    def test_trapped_failure_is_listed(self):
        answer = self.call("BillAdulting", "入库", 1, "O'Hara", {"date": "2004-01-31"})
        self.assertEqual(answer["result"], False)
        self.assertNotIn("error", answer)
        self.assertEqual(len(answer["sent"]), 1)
        self.assertIn("O'Hara", answer["sent"][0]["text"])

    def test_calls_that_cannot_be_made(self):
        for method, arguments, number in (("rs没有", [], 438), ("", [], 438), ("Version", [1], 450), ("Get单据金额", [1], 449),
                                          ("Get单据金额", ["one", "入库"], 13), ("Get单据金额", [2147483648, "入库"], 6),
                                          ("rs仓库余额表", [1, 32768], 6), ("Get单据金额", [None, "入库"], 94),
                                          ("Get单据金额", [{"progress": True}, "入库"], 13),
                                          ("Get单据金额", [{"array": []}, "入库"], 13)):
            answers = self.batch({"method": method, "args": arguments}, {"method": "Version"})
            self.assertEqual(answers[0]["error"]["number"], number, answers[0])
            self.assertNotIn("result", answers[0])
            self.assertEqual(answers[0]["args"], arguments)
            self.assertEqual(answers[0]["sent"], [])
            self.assertEqual(answers[1]["result"], "10110")

    def test_conversions(self):
        for argument in ("1", 1.0, 0.6, True, {"currency": "1"}, " 1 "):
            expected = "Select * From 仓库余额表 Where True  And dpID=1"
            sent = self.call("rs仓库余额表", argument)["sent"]
            # True is -1, which is no warehouse and so selects all.
            if argument is True:
                self.assertEqual(sent, [{"op": "open", "text": "仓库余额表", "kind": "table"}])
            else:
                self.assertEqual(sent, [{"op": "open", "text": expected, "kind": "text"}])

    def test_ids_at_the_limits(self):
        sent = self.call("rs仓库余额表", 2147483647, 32767)["sent"]
        self.assertEqual(sent[0]["text"], "Select * From 仓库余额表 Where True  And dpID=2147483647 And 月份=32767")
        sent = self.call("Del仓库余额", -2147483648)["sent"]
        self.assertEqual(sent[0]["text"], "Delete From 仓库余额表 Where dpID=-2147483648")

    def test_months_that_are_none(self):
        for month in (0, 13, -1):
            answer = self.call("Close_DepotBalance", 1, month, False, None)
            self.assertEqual(answer["result"], True)
            self.assertEqual(answer["sent"], [{"op": "open", "kind": "text",
                                               "text": f"Select * From 仓库余额表 Where dpID=1 And 月份={month}"}])

    def test_events(self):
        answer = self.call("Update", "x", "y", 5)
        self.assertEqual(answer["events"], [{"name": "TableChanged", "args": ["x", "y", 5]}])
        self.assertEqual(answer["result"], {"empty": True})
        self.assertEqual(answer["sent"], [])
        self.assertNotIn("events", self.call("Version"))

    def test_properties(self):
        answers = self.batch({"method": "isSQL"}, {"method": "isSQL", "args": [True]}, {"method": "ISSQL"},
                             {"method": "Speciality"}, {"method": "speciality", "args": ["建材"]}, {"method": "Speciality"})
        self.assertEqual([a["result"] for a in answers],
                         [False, {"empty": True}, True, "", {"empty": True}, "建材"])

    def test_connection_is_not_the_callers(self):
        answers = self.batch({"method": "Cnn"}, {"method": "Cnn", "args": [{"nothing": True}]}, {"method": "rs月份列表"})
        for answer in answers[:2]:
            self.assertIn("error", answer)
        self.assertEqual(answers[2]["result"]["rows"], [[2004, 1]])

    def dialects(self, *requests, options=()):
        """The flag that each UpdateDepotClosedFlag of a batch wrote: True in Jet's dialect, 1 in SQL Server's."""
        flag = {"method": "UpdateDepotClosedFlag", "args": [1, {"date": "2004-01-31"}, True]}
        lines = [flag if r is None else {**flag, "isSQL": r} if isinstance(r, bool) else r for r in requests]
        found = []
        for answer in self.batch(*lines, options=options):
            if answer["method"] == "UpdateDepotClosedFlag":
                found.append(answer["sent"][0]["text"].split("结帐标志=")[1].split(" ")[0])
        return found

    def test_dialect_holds_for_its_line(self):
        self.assertEqual(self.dialects(None, True, None, False, None), ["True", "1", "True", "True", "True"])

    def test_dialect_set_as_a_property_stays(self):
        set_it = {"method": "isSQL", "args": [True]}
        self.assertEqual(self.dialects(None, set_it, None, False, None), ["True", "1", "True", "1"])

    def test_dialect_set_in_a_line_with_a_dialect_stays(self):
        set_it = {"method": "isSQL", "args": [True], "isSQL": False}
        self.assertEqual(self.dialects(set_it, None), ["1"])

    def test_dialect_comes_back_after_an_error(self):
        wrong = {"method": "rs没有", "isSQL": True}
        self.assertEqual(self.dialects(wrong, None), ["True"])

    def test_dialect_of_the_hosts_own_statement(self):
        half = {"execute": "Select 7/2 As a, 'a^' Like 'a[!b]' As b"}
        lines = half, {**half, "isSQL": True}, half, {"execute": "Select x", "isSQL": True}, half
        rows = [answer.get("result", {}).get("rows") for answer in self.batch(*lines)]
        self.assertEqual(rows, [[[3.5, True]], [[3, False]], [[3.5, True]], None, [[3.5, True]]])
        rows = [answer["result"]["rows"] for answer in self.batch(half, {**half, "isSQL": False}, options=("--sql",))]
        self.assertEqual(rows, [[[3, False]], [[3.5, True]]])

    def test_dialect_of_the_whole_batch(self):
        self.assertEqual(self.dialects(None, False, None, options=("--sql",)), ["1", "True", "1"])


class ClosingTest(TradingCase):
    def test_closing(self):
        answer = self.call("Close_DepotBalance", 1, 1, False, {"date": "2004-01-31"}, {"progress": True})
        self.assertEqual(answer["result"], True)
        self.assertEqual(answer["args"], [1, 1, False, {"date": "2004-01-31"}, {"progress": True}])
        # Two rows: a quarter of the bar each while filling, and again while adding the next month's.
        self.assertEqual(answer["progress"], [["Visible", True], ["Value", 25.0], ["Value", 50.0], ["Value", 75.0],
                                              ["Value", 100.0], ["Value", 100], ["Visible", False]])
        movements = ("Select pdID,Avg(除税单价) As 单价,Sum(数量) As 数量,Sum(除税金额) As 金额 From {0}记录 Where BillID in "
                     "(Select BillID From {0}目录 Where dpID=1 And 月份=1) Group by pdID")
        totals = ("Select pdID,Sum(数量) As 数量,Sum(除税金额) As 金额 From {0}记录 Where BillID in "
                  "(Select BillID From {0}目录 Where dpID=1 And 月份<=1) Group by pdID")
        self.assertEqual(answer["sent"], [
            {"op": "open", "text": "Select * From 仓库余额表 Where dpID=1 And 月份=1", "kind": "text"},
            execute(movements.format("入库")), execute(movements.format("出库")),
            execute(totals.format("入库")), execute(totals.format("出库")),
            execute("Select * From 仓库余额表 Where 月份=1 And dpID=1")])
        self.assertEqual(self.balance(1, 1), {1: [10.0, "50", 6.0, "38", 5.0, "40", 11.0, "48"],
                                              2: [100.0, "25", 0.0, "0", 0.0, "0", 100.0, "25"]})
        self.assertEqual(self.balance(1, 2), {1: [11.0, "48", 0.0, "0", 0.0, "0", 11.0, "48"],
                                              2: [100.0, "25", 0.0, "0", 0.0, "0", 100.0, "25"]})

    def test_nothing_to_close(self):
        answer = self.call("Close_DepotBalance", 9, 1, False, None, {"progress": True})
        self.assertEqual(answer["result"], True)
        self.assertNotIn("progress", answer)
        self.assertEqual(len(answer["sent"]), 1)

    def test_failed_closing_leaves_the_bar_visible(self):
        self.sql("Update 仓库余额表 Set 上期库存金额=Null Where dpID=1 And pdID=2")
        answer = self.call("Close_DepotBalance", 1, 1, False, None, {"progress": True})
        self.assertEqual(answer["result"], False)
        self.assertEqual(answer["progress"], [["Visible", True], ["Value", 25.0], ["Value", 50.0]])
        self.assertNotIn("error", answer)

    def test_messages(self):
        self.add_line_without_balance()
        text = "入库记录中，有仓库余额表中没有的记录：1,是否修正？"
        message = {"text": text, "title": "检查入库记录", "buttons": 4}
        answer = self.call("CheckBnProduct", 1)
        self.assertEqual(answer["error"]["number"], 5)
        self.assertEqual(answer["messages"], [{**message, "answer": None}])
        self.assertEqual(answer["sent"], [execute(INBOUND_CHECK)])
        answer = self.call("CheckBnProduct", 1, answer="no")
        self.assertEqual(answer["messages"], [{**message, "answer": "no"}])
        self.assertEqual(answer["sent"], [execute(INBOUND_CHECK), execute(OUTBOUND_CHECK)])
        answer = self.call("CheckBnProduct", 1, answer="yes")
        self.assertEqual(answer["messages"], [{**message, "answer": "yes"}])
        self.assertEqual(answer["sent"], [
            execute(INBOUND_CHECK), execute("Select Top 2 年份 From 仓库余额表 Order by 年份 DESC"),
            execute("Insert into 仓库余额表 (年份,月份,pdID,dpID) Values (2004,1,3,1)"), execute(OUTBOUND_CHECK)])
        self.assertEqual(answer["result"], {"empty": True})
        self.assertNotIn("messages", self.call("CheckBnProduct", 1))

    def test_answer_holds_for_its_line(self):
        self.add_line_without_balance()
        check = {"method": "CheckBnProduct", "args": [1]}
        answers = self.batch({**check, "answer": "no"}, check)
        self.assertEqual(answers[1]["error"]["number"], 5)

    def test_answer_of_the_whole_batch(self):
        self.add_line_without_balance()
        check = {"method": "CheckBnProduct", "args": [1]}
        answers = self.batch(check, {**check, "answer": "yes"}, check, options=("--answer", "no"))
        self.assertEqual([a["messages"][0]["answer"] for a in answers[:2]], ["no", "yes"])
        self.assertNotIn("messages", answers[2])

    def test_error_keeps_what_was_sent_before(self):
        self.sql("Delete From 仓库余额表")
        self.add_line_without_balance()
        answer = self.call("CheckBnProduct", 1, answer="yes")
        self.assertEqual(answer["error"]["number"], -2147217900)
        # The table is empty, so there is no year to insert.
        self.assertEqual(answer["sent"][-1]["text"], "Insert into 仓库余额表 (年份,月份,pdID,dpID) Values (,1,1,1)")
        self.assertEqual(answer["messages"][0]["answer"], "yes")


class TransactionTest(KpbookCase):
    COUNT = {"execute": "Select Count(*) As n From 仓库设置"}

    def setUp(self):
        super().setUp()
        self.new_book()

    @staticmethod
    def insert(name):
        return {"execute": f"Insert Into 仓库设置 (仓库名称) Values ('{name}')"}

    def test_commit_and_rollback(self):
        answers = self.batch({"begin": True}, self.insert("甲"), {"commit": True}, {"begin": True}, self.insert("乙"),
                             self.COUNT, {"rollback": True}, self.COUNT)
        self.assertEqual(answers[0], {"begin": True, "result": 1})
        self.assertEqual(answers[2], {"commit": True, "result": 0})
        self.assertEqual(answers[5]["result"]["rows"], [[2]])
        self.assertEqual(answers[6], {"rollback": True, "result": 0})
        self.assertEqual(answers[7]["result"]["rows"], [[1]])

    def test_batch_that_ends_inside_a_transaction(self):
        lines = "\n".join(map(json.dumps, [{"begin": True}, self.insert("甲")]))
        done = self.run_kpbook("call", self.book, "--batch", text=lines, code=1)
        self.assertEqual(len(done.stdout.splitlines()), 2)
        self.assertIn("inside a transaction", done.stderr)
        self.assertEqual(self.rows(self.COUNT["execute"]), [[0]])

    def test_steps_without_a_transaction(self):
        for answer in self.batch({"commit": True}, {"rollback": True}):
            self.assertIn("error", answer)
            self.assertNotIn("result", answer)

    def test_transaction_that_does_not_begin(self):
        with contextlib.closing(sqlite3.connect(self.book, isolation_level=None)) as other:
            other.execute("BEGIN IMMEDIATE")
            answers = self.batch({"begin": True}, self.insert("甲"), self.COUNT, {"commit": True}, self.COUNT)
        self.assertEqual(["error" in answer for answer in answers], [True, True, True, True, False])
        self.assertIn("did not begin", answers[1]["error"]["description"])
        self.assertEqual(answers[1]["sent"], [])
        self.assertEqual(answers[4]["result"]["rows"], [[0]])

    def test_lines_that_are_no_step(self):
        for answer in self.batch({"begin": False}, {"begin": 1}, {"begin": True, "commit": True},
                                 {"begin": True, "method": "Version"}, {"begin": True, "args": []}):
            self.assertEqual(answer["error"]["number"], 5, answer)
        self.assertEqual(self.batch({"begin": None, "method": "Version"})[0]["result"], "10110")


class DuplicateKeyTest(KpbookCase):
    def setUp(self):
        super().setUp()
        self.new_book()

    def test_at_any_depth(self):
        for line in ('{"method":"Version","method":"Version"}',
                     '{"method":"Get单据中文日期","args":[{"row":{"月份":1,"日子":2,"月份":3}}]}',
                     '{"method":"AllTrim","args":[{"date":"2004-01-01","date":"2004-01-02"}]}',
                     '{"method":"Version","m\\u0065thod":"Version"}'):
            answer, version = self.batch(line, {"method": "Version"})
            self.assertEqual(answer["error"]["number"], 5, line)
            self.assertIn("twice", answer["error"]["description"])
            self.assertEqual(version["result"], "10110")

    def test_equal_keys_of_different_objects(self):
        row = {"row": {"月份": 3, "日子": 7}}
        self.assertEqual(self.call("Get单据中文日期", row)["result"], "03月07日")
        answer = self.batch('{"method":"Header","args":[{"grid":{"cols":[{"key":"a"},{"key":"b"}]}},"x"]}')[0]
        self.assertNotIn("error", answer)


class QuoteTest(TradingCase):
    PASSWORD = {"method": "Update_Password", "args": ["x' or 'a'='a", "pw"]}

    def setUp(self):
        super().setUp()
        self.sql("Insert Into 操作员 (姓名,密码) Values ('甲','one')")

    def test_values_as_they_are(self):
        self.assertEqual(self.batch(self.PASSWORD)[0]["result"], True)
        self.assertEqual(self.rows("Select 密码 From 操作员"), [["pw"]])

    def test_clean(self):
        refused, doubled = self.batch(self.PASSWORD, {"method": "GetPassword", "args": ["x'' or"]}, options=("--clean",))
        self.assertEqual(refused["error"]["number"], 5)
        self.assertIn("rName", refused["error"]["description"])
        self.assertEqual(refused["sent"], [])
        self.assertEqual(doubled["result"], "")
        self.assertEqual(self.rows("Select 密码 From 操作员"), [["one"]])


if __name__ == "__main__":
    unittest.main()
