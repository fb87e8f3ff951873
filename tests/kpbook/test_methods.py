"""The public header against the late-bound table: every member in order, its subsystem, kind, parameters and comment."""

import json
import pathlib
import re
import unittest

from kpbook_case import KpbookCase

HEADER = pathlib.Path(__file__).parents[2] / "include/kpTables/CTables.h"

# A comment that begins a section, a member's comment, or a declaration up to its semicolon.
PIECE = re.compile(r"\n\n {4}// (?P<section>[^.\n]+)|^ {4}/// (?P<comment>.*)|"
                   r"^ {4}(?P<result>[\w:<>& ]+?) (?P<name>\w+)\((?P<parameters>[^;]*?)\)(?: const)?;", re.MULTILINE)

SUBSYSTEMS = {
    "Properties": "Component frame",
    "Component frame": "Component frame",
    "Value helpers": "Component frame",
    "System options": "Component frame",
    "Account book information": "Component frame",
    "Account book creation and clearing": "Component frame",
    "Reference lists and lookups": "Master data",
    "Product catalogue": "Master data",
    "Bills": "Bills",
    "Finding bills": "Bills",
    "Ad-hoc queries": "Bills",
    "Warehouse balance and month-end closing": "Warehouse balance and month-end closing",
    "Per-product stock figures": "Warehouse balance and month-end closing",
    "Reports": "Reports",
    "Operators and log": "Operators and log",
    "Grid layout and report history": "Grid layout and report history",
    "Haulage": "Haulage dispatch and pay",
}
NOT_LATE_BOUND = "Events"

TYPES = {
    "std::int16_t": "Integer", "std::int32_t": "Long", "double": "Double", "Currency": "Currency", "Date": "Date",
    "std::string": "String", "bool": "Boolean", "Variant": "Variant", "std::shared_ptr<VariantArray>": "Variant()",
    "GridPtr": "Object", "ProgressBar*": "Object", "Recordset*": "Object", "RecordsetPtr": "Recordset",
    "ConnectionPtr": "Connection",
}
OBJECTS = ("Connection", "Recordset", "Object")


def type_name(declared):
    return TYPES[declared.removeprefix("const ").removesuffix("&")]


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
    return f"{name} As {type_name(declared)}" + (f" ({', '.join(marks)})" if marks else "")


def signature(result, name, parameters):
    text = f"{name}({', '.join(map(parameter, parameters))})"
    return text if result == "void" else f"{text} As {type_name(result)}"


def property_kind(parameters):
    if not parameters:
        return "Property Get"
    value = type_name(parameters[0].rsplit(" ", 1)[0])
    return "Property Set" if value in OBJECTS else "Property Let"


def declared_members():
    """Subsystem, name, kind, signature and whether a comment stands before it, in the order of the header."""
    text = HEADER.read_text(encoding="utf-8")
    section, commented, members = None, False, []
    for piece in PIECE.finditer(text, text.index("\n\n    // Properties\n"), text.index("\nprivate:")):
        if piece["section"]:
            section = piece["section"].strip()
        elif piece["comment"]:
            commented = True
        else:
            if section != NOT_LATE_BOUND:
                parameters = split_parameters(piece["parameters"])
                kind = property_kind(parameters) if section == "Properties" else "Method"
                members.append((SUBSYSTEMS[section], piece["name"], kind,
                                signature(piece["result"], piece["name"], parameters), commented))
            commented = False
    return members


class HeaderTest(KpbookCase):
    def rows(self):
        return json.loads(self.run_kpbook("methods", "-O", "json").stdout)["rows"]

    def test_the_table_lists_every_declared_member_in_the_headers_order(self):
        declared = [list(member[:4]) for member in declared_members()]
        self.assertGreater(len(declared), 100)
        self.assertEqual([row[:4] for row in self.rows()], declared)

    def test_every_member_has_a_comment_in_the_header_and_a_line_in_the_table(self):
        for _, name, kind, _, commented in declared_members():
            self.assertTrue(commented or kind in ("Property Let", "Property Set"), name)
        for _, name, _, _, answers, _ in self.rows():
            self.assertGreater(len(answers), 5, name)


if __name__ == "__main__":
    unittest.main()
