"""The public header against the late-bound table: every method, its parameters, and that both say what it is for."""

import json
import pathlib
import re
import unittest

from kpbook_case import KpbookCase

HEADER = pathlib.Path(__file__).parents[2] / "include/kpTables/CTables.h"

# A comment of its own, then a declaration up to its semicolon.
DECLARATION = re.compile(r"((?:^ {4}/// .*\n)+)^ {4}([\w:<>& ]+?) (\w+)\(([^;]*?)\)(?: const)?;", re.MULTILINE)

TYPES = {
    "std::int16_t": "Integer", "std::int32_t": "Long", "double": "Double", "Currency": "Currency", "Date": "Date",
    "std::string": "String", "bool": "Boolean", "Variant": "Variant", "std::shared_ptr<VariantArray>": "Variant()",
    "GridPtr": "Object", "ProgressBar*": "Object", "Recordset*": "Object", "RecordsetPtr": "Recordset",
}


def split_parameters(text):
    """Cuts at the commas outside of angle brackets."""
    return [part.strip() for part in re.split(r",(?![^<]*>)", " ".join(text.split())) if part.strip()]


def parameter(text):
    declared, _, default = text.partition(" = ")
    declared, name = declared.rsplit(" ", 1)
    marks = []
    if declared.startswith("InOut<"):
        declared = declared[len("InOut<"):-1]
        marks.append("in/out")
    if default:
        marks.append("optional")
    declared = declared.removeprefix("const ").removesuffix("&")
    return f"{name} As {TYPES[declared]}" + (f" ({', '.join(marks)})" if marks else "")


def signature(result, name, parameters):
    text = f"{name}({', '.join(map(parameter, split_parameters(parameters)))})"
    return text if result == "void" else f"{text} As {TYPES[result]}"


class HeaderTest(KpbookCase):
    def table(self):
        rows = json.loads(self.run_kpbook("methods", "-O", "json").stdout)["rows"]
        return [(name, text, answers) for _, name, kind, text, answers in rows if kind == "Method"]

    def test_every_method_is_declared_with_the_same_parameters_and_a_comment(self):
        text = HEADER.read_text(encoding="utf-8")
        public = text[text.index("class CTables {"):text.index("\nprivate:")]
        declared = {name: signature(result, name, parameters)
                    for _, result, name, parameters in DECLARATION.findall(public)
                    if name not in ("Cnn", "Speciality", "isSQL", "Advise", "Unadvise", "CTables")}
        self.assertEqual(declared, {name: text for name, text, _ in self.table()})

    def test_every_method_says_what_it_is_for(self):
        for name, _, answers in self.table():
            self.assertGreater(len(answers), 5, name)


if __name__ == "__main__":
    unittest.main()
