#!/usr/bin/env python3
"""claims.py ROOT: checks the tables of docs/robustness.md. Every row names tests, every test that it names exists, and every
sentence of README's Limits begins with the first column of one row."""

import pathlib
import re
import sys


def table_rows(text, heading):
    """The rows of the table below a heading, each as (claim, names)."""
    section = re.search(rf"^## {re.escape(heading)}$(.*?)(?=^## |\Z)", text, re.M | re.S)
    if not section:
        raise SystemExit(f"docs/robustness.md has no section '{heading}'")
    rows = [re.split(r" \| ", line.strip("| \n")) for line in section[1].splitlines() if line.startswith("|")]
    return [(row[0], re.findall(r"`([^`]+)`", row[1])) for row in rows[2:]]


def sentences(text):
    """The sentences of the list below README's heading Limits."""
    section = re.search(r"^## Limits$(.*?)(?=^## |\Z)", text, re.M | re.S)[1]
    items = [" ".join(item.split()) for item in re.split(r"^- ", section, flags=re.M)[1:]]
    return [sentence for item in items for sentence in re.split(r"(?<=[.;]) (?=[A-Z`])", item)]


class Sources:
    """The tests that the sources define."""

    def __init__(self, root):
        tests = root / "tests"
        # Two folders may have files of one name.
        self.files = {}
        for path in tests.rglob("*"):
            if path.suffix in (".cpp", ".py"):
                self.files[path.name] = self.files.get(path.name, "") + path.read_text(encoding="utf-8")
        self.cases = set()
        for text in self.files.values():
            self.cases |= {f"{suite}.{name}" for suite, name in re.findall(r"\bTEST(?:_F|_P)?\(\s*(\w+),\s*(\w+)\)", text)}
        for path in tests.rglob("CMakeLists.txt"):
            text = path.read_text(encoding="utf-8")
            self.cases |= set(re.findall(r"(?:\bNAME |add_fault_test\(|add_server_test\()([\w.]+)", text))
            # A family of tests: foreach(area IN ITEMS a b), then add_test(NAME family.${area}.
            for variable, items, rest in re.findall(r"foreach\((\w+) IN ITEMS ([^)]*)\)(.*?)endforeach", text, re.S):
                for family in re.findall(r"NAME ([\w.]+)\$\{" + variable + r"\}", rest):
                    self.cases |= {family + item for item in items.split()}
        self.commands = {"./" + name for name in ("test", "run") if (root / name).is_file()}

    def have(self, name):
        if name in self.cases or name in self.files or name in self.commands:
            return True
        file, colon, test = name.partition(":")
        return bool(colon) and re.search(rf"def {re.escape(test)}\(", self.files.get(file, "")) is not None


def check(root):
    text = (root / "docs/robustness.md").read_text(encoding="utf-8")
    promises = table_rows(text, "What is promised")
    limits = table_rows(text, "Limits, as README states them")
    stated = sentences((root / "README.md").read_text(encoding="utf-8"))
    sources = Sources(root)
    faults = []
    if not promises or not limits or not stated:
        faults.append("a table or README's Limits is empty")
    for claim, names in promises + limits:
        if not names:
            faults.append(f"no test is named for: {claim}")
        faults += [f"there is no test {name}, named for: {claim}" for name in names if not sources.have(name)]
    for sentence in stated:
        if not any(sentence.startswith(claim) for claim, _ in limits):
            faults.append(f"README's Limits state without a test: {sentence}")
    for claim, _ in limits:
        if not any(sentence.startswith(claim) for sentence in stated):
            faults.append(f"README's Limits have no sentence that begins: {claim}")
    return faults


def main():
    faults = check(pathlib.Path(sys.argv[1]))
    for fault in faults:
        print(fault)
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
