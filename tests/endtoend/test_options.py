"""System options on a real book: what is written, how it is found again, and the message when it cannot be written."""

import unittest

from bare_book import BareBookCase, insert

TITLE = "修改系统选项"
STORED = "Select Item,Discription From 系统选项"


class ReadingTest(BareBookCase):
    def test_a_value_reads_back_as_text(self):
        for value, text in (("1", "1"), ("", ""), ("  two words ", "two words"), ("it's", "it's"), (5, "5"), (-2.5, "-2.5"),
                            (True, "True"), (False, "False"), ({"currency": "12.50"}, "12.5"),
                            ({"date": "2004-03-07"}, "2004-3-7"), ({"empty": True}, "")):
            found = self.results(("Update_Option", "A", value), ("Get_Option", "A"))
            self.assertEqual(found, [{"empty": True}, text], value)
        self.assertEqual(self.rows("Select Count(*) From 系统选项"), [[1]])

    def test_an_item_is_found_without_regard_to_case_and_trailing_blanks(self):
        self.result("Update_Option", "Paper", "A4")
        for item, value in (("Paper", "A4"), ("pAPER", "A4"), ("Paper ", "A4"), ("paper   ", "A4"), (" Paper", ""),
                            ("Pape", ""), ("Papers", "")):
            self.assertEqual(self.result("Get_Option", item), value, item)

    def test_an_item_that_the_host_wrote_without_the_blank(self):
        self.execute(*insert("系统选项", "Item,Discription", ("纸张", "A4"), ("无", None)))
        self.assertEqual(self.results(("Get_Option", "纸张"), ("Get_Option", "纸张 "), ("Get_Option", "无")), ["A4", "A4", ""])
        self.result("Update_Option", "纸张", "A3")
        self.assertEqual(self.rows(STORED + " Where Item='纸张'"), [["纸张 ", "A3 "]])

    def test_a_missing_item_is_empty(self):
        self.assertEqual(self.results(("Get_Option", "A"), ("Get_Option", "")), ["", ""])

    def test_a_failing_read_is_empty_and_silent(self):
        answer = self.call("Get_Option", "O'Brien")
        self.assertEqual((answer["result"], "messages" in answer), ("", False))
        self.execute("Drop Table 系统选项")
        answer = self.call("Get_Option", "A")
        self.assertEqual((answer["result"], "messages" in answer), ("", False))


class WritingTest(BareBookCase):
    def test_a_blank_stands_behind_both_texts(self):
        self.results(("Update_Option", "A", "1"), ("Update_Option", "B", ""))
        self.assertEqual(self.rows(STORED + " Order by Item"), [["A ", "1 "], ["B ", " "]])

    def test_an_item_keeps_one_row_with_the_text_written_last(self):
        for item, value in (("Paper", 1), ("Paper", 2), ("paper", 3), ("PAPER  ", 4)):
            self.result("Update_Option", item, value)
            self.assertEqual(self.rows(STORED), [[item + " ", f"{value} "]])
            self.assertEqual(self.result("Get_Option", "Paper"), str(value))

    def test_an_item_is_written_where_it_is_found(self):
        for first, second in (("单位（元）", "单位(元)"), ("ＡＢＣ", "abc"), ("É", "é"), ("①", "1")):
            self.execute("Delete From 系统选项")
            self.result("Update_Option", first, "old")
            answer = self.call("Update_Option", second, "new")
            self.assertNotIn("messages", answer, second)
            self.assertEqual(self.rows(STORED), [[second + " ", "new "]])
            self.assertEqual(self.results(("Get_Option", first), ("Get_Option", second)), ["new", "new"])

    def test_other_items_stay_as_they_are(self):
        self.results(*(("Update_Option", item, item * 2) for item in "ABC"))
        for item in "ABC":
            self.result("Update_Option", item, "x")
        self.result("Update_Option", "D", "y")
        self.assertEqual(self.rows(STORED + " Order by Item"), [["A ", "x "], ["B ", "x "], ["C ", "x "], ["D ", "y "]])

    def test_a_leading_blank_makes_another_item(self):
        self.results(("Update_Option", "A", 1), ("Update_Option", " A", 2))
        self.assertEqual(self.results(("Get_Option", "A"), ("Get_Option", " A")), ["1", "2"])

    def test_no_item_name_does_nothing(self):
        answer = self.call("Update_Option", "", "x")
        self.assertEqual(answer, {"method": "Update_Option", "result": {"empty": True}, "args": ["", "x"], "sent": []})
        self.assertEqual(self.rows("Select Count(*) From 系统选项"), [[0]])

    def test_a_table_that_is_gone_is_told_in_the_errors_own_words(self):
        self.execute("Drop Table 系统选项", "Drop Table 仓库余额表")
        own = self.call("rs仓库余额表")["error"]["description"].replace("仓库余额表", "系统选项")
        self.assertIn("系统选项", own)
        answer = self.call("Update_Option", "A", "1")
        self.assertEqual(answer["messages"], [{"text": own, "title": TITLE, "buttons": 0, "answer": "ok"}])
        self.assertEqual(answer["result"], {"empty": True})

    def test_a_quote_in_the_item_breaks_the_search_alone(self):
        # Nothing is searched in an empty table, so the row is added.
        answer = self.call("Update_Option", "O'Brien", "1")
        self.assertNotIn("messages", answer)
        self.assertEqual(self.rows(STORED), [["O'Brien ", "1 "]])
        answer = self.call("Update_Option", "O'Hara", "2")
        self.assertEqual([(m["title"], m["buttons"]) for m in answer["messages"]], [(TITLE, 0)])
        self.assertIn("O'Hara", answer["messages"][0]["text"])
        self.assertEqual(self.rows(STORED), [["O'Brien ", "1 "]])

    def test_the_book_serves_on_after_a_message(self):
        self.result("Update_Option", "A", "1")
        found = self.results(("Update_Option", "O'Hara", "2"), ("Update_Option", "A", "3"), ("Get_Option", "A"))
        self.assertEqual(found[2], "3")


if __name__ == "__main__":
    unittest.main()
