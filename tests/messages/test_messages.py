#!/usr/bin/env python3
"""Every sentence of the sources is extracted as a message, and every message is translated."""

import pathlib
import re
import sys
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "tools"))
import messages  # noqa: E402

TOKEN = re.compile(r'//[^\n]*|/\*.*?\*/|^\s*#[^\n]*|"(?:[^"\\\n]|\\.)*"|\'(?:[^\'\\\n]|\\.)*\'|\w+|\s+|.', re.S | re.M)
STATEMENT = re.compile(r"\b(Select|From|Where|And|Or|Order by|Group by|Insert|Update|Delete|Set|Inner|Union|Having|Values|As|"
                       r"Into|Between|Like|SELECT|FROM|WHERE|ORDER BY|PRAGMA|NOCASE|SAVEPOINT|ROLLBACK|RELEASE|INTO|UPDATE|"
                       r"TABLE|INDEX|COLLATE|IN|AND|OR|NOT)\b")
# Files whose sentences are for programs (the lines of a batch), for the system (scripts of a shell), of another program's
# extension, or never shown.
NOT_FOR_PEOPLE = ["src/kpbook/batch/", "src/kpbook/commands/CompletionCommand.cpp", "src/sql/rewrite/Rules.cpp",
                  "src/sql/print/", "src/engines/sqlite/extension/", "src/engines/postgres/extension/"]
# The same for single texts: marks in another library's messages, patterns of dates, the trace, options, and what only the
# compiler or a host's own connection says.
OTHERS = {"this connection binds no values", "this connection reads one dialect only", "a gap without a value",
          "a value without a gap", "SQLite format 3\\0", "integer overflow", "no such table: ", "no such column: ",
          "the reader of standard output has gone", "The field", "open table", "rows on demand", "Complete the word",
          "a wide character is a code point", "th button", "余额表还没有本月的入库和出库，库存表 (kpbook stock) 有"}
NO_SENTENCE = re.compile(r"[dmy]{2,4}\W|--\w|<\w+[ >]")


def sentences(text):
    """The texts of two English words at least, with their lines; pieces that stand side by side are one."""
    joined, began, line = "", 0, 1
    for token in TOKEN.findall(text):
        if token.startswith('"'):
            joined, began = joined + token[1:-1], began or line
        elif not token.isspace() and not token.startswith(("//", "/*")):
            if joined:
                yield began, joined
            joined, began = "", 0
        line += token.count("\n")


class Messages(unittest.TestCase):
    def test_every_message_is_translated(self):
        self.assertEqual(list(messages.faults()), [])

    def test_no_sentence_is_left_out(self):
        known = {text for key in messages.extracted() for text in ([key] if isinstance(key, str) else key)}
        self.assertGreater(len(known), 500)
        left = []
        for path in messages.sources():
            if path.startswith(tuple(NOT_FOR_PEOPLE)):
                continue
            for line, literal in sentences((ROOT / path).read_text(encoding="utf-8")):
                text = re.sub(r"\\(.)", lambda found: {"n": "\n", "t": "\t"}.get(found.group(1), found.group(1)), literal)
                if (re.search(r"[a-z]{2,} [a-z]", text) and text not in known and literal not in OTHERS
                        and not STATEMENT.search(text) and not NO_SENTENCE.search(text)):
                    left.append(f"{path}:{line}: {text!r}")
        self.assertEqual(left, [])


if __name__ == "__main__":
    unittest.main()
