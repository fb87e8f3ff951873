#!/usr/bin/env python3
"""Makes docs/methods.md of the late-bound table: make_methods_docs.py KPBOOK DOCUMENT [--check]."""

import itertools
import json
import pathlib
import subprocess
import sys

HEAD = """# Methods of CTables

Made by tools/make_methods_docs.py of the table `_CTables`, which calls by name go through: do not edit it here. Types are Visual
Basic's: Integer has 16 bits, Long 32; in/out parameters may be written back. include/kpTables/CTables.h tells more about each:
what it answers in every case, and which errors it traps.

The object raises one event, `TableChanged(ProcName As String, TableName As String, ID As Long)`, and only through `Update`.
"""


def members(kpbook):
    done = subprocess.run([kpbook, "methods", "-O", "json"], check=True, capture_output=True, encoding="utf-8")
    return json.loads(done.stdout)["rows"]


def document(rows):
    parts = [HEAD]
    for subsystem, group in itertools.groupby(rows, key=lambda row: row[0]):
        parts.append(f"\n## {subsystem}\n\n| Member | What it answers or does |\n| --- | --- |\n")
        for _, _, kind, signature, answers in group:
            parts.append(f"| `{signature if kind == 'Method' else kind + ' ' + signature}` | {answers} |\n")
    return "".join(parts)


def main():
    kpbook, target = sys.argv[1], pathlib.Path(sys.argv[2])
    made = document(members(kpbook))
    if sys.argv[3:] != ["--check"]:
        target.write_text(made, encoding="utf-8")
    elif target.read_text(encoding="utf-8") != made:
        sys.exit(f"{target} is not what {kpbook} makes; run tools/make_methods_docs.py {kpbook} {target}")


if __name__ == "__main__":
    main()
