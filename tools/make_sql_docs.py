#!/usr/bin/env python3
"""Makes docs/sql.md of the cases that the tests run: make_sql_docs.py CASES DOCUMENT [--check]."""

import pathlib
import sys

HEAD = """# SQL that the embedded engine takes

Made by tools/make_sql_docs.py of tests/sqlite/EverydaySql.txt, whose every line is a test: do not edit it here.

An expression is shown as it stands behind `Select`. An answer's fields are joined with `|`, its rows with ` / `; `done` is a
statement that answers no rows. [Dialects and storage](dialects.md) tells how texts are read and values kept.
"""


def code(text):
    """A code span in a cell of a table, where a bar would end the cell."""
    return "`" + text.replace("|", "\\|") + "`"


def document(lines):
    parts, block, text = [HEAD], None, None

    def begin(wanted, opening):
        """Begins a block unless it goes on."""
        nonlocal block
        if block != wanted:
            parts.append(opening)
            block = wanted

    for number, line in enumerate(lines, 1):
        if not line or line == "#" or line.startswith("# "):
            continue
        if line.startswith("= "):
            begin(line, f"\n## {line[2:]}\n")
        elif line.startswith("["):
            begin("preparation", "\n")
            parts.append(f"    {line[1:-1]}\n")
        elif line.startswith("-> "):
            if text is None:
                sys.exit(f"line {number}: an answer without a text")
            begin("table", "\n| SQL | answer |\n| --- | --- |\n")
            parts.append(f"| {code(text)} | {code(line[3:])} |\n")
            text = None
        else:
            if text is not None:
                sys.exit(f"line {number}: the text before it has no answer")
            text = line
    if text is not None:
        sys.exit("the last text has no answer")
    return "".join(parts)


def main():
    cases, target = map(pathlib.Path, sys.argv[1:3])
    made = document(cases.read_text(encoding="utf-8").splitlines())
    if sys.argv[3:] != ["--check"]:
        target.write_text(made, encoding="utf-8")
    elif target.read_text(encoding="utf-8") != made:
        sys.exit(f"{target} is not what {cases} makes; run tools/make_sql_docs.py {cases} {target}")


if __name__ == "__main__":
    main()
