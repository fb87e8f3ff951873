"""The statements that make a book's tables on a server, for tests: from schema/book.sql, in Jet's words or SQL Server's."""

import pathlib
import re

SCHEMA = pathlib.Path(__file__).parents[2] / "schema" / "book.sql"
TYPES = {"COUNTER": "INT IDENTITY(1,1)", "LONG": "INT", "SHORT": "SMALLINT", "DOUBLE": "FLOAT", "CURRENCY": "MONEY", "DATETIME": "DATETIME",
         "YESNO": "BIT", "MEMO": "NVARCHAR(MAX)"}
# Names of the table Header that SQL Server reserves.
RENAMED = {"Table": "TableName", "Index": "ColIndex"}


def statements():
    text = re.sub(r"--.*", "", SCHEMA.read_text(encoding="utf-8"))
    return [each.strip() for each in text.split(";\n") if each.strip()]


def for_server(statement):
    """A statement of the schema in SQL Server's words."""
    if not statement.startswith("CREATE TABLE"):
        return re.sub(r"\[(\w+)\]", lambda name: f"[{RENAMED.get(name.group(1), name.group(1))}]", statement)
    lines = statement.splitlines()
    for at, line in enumerate(lines[1:], 1):
        found = re.match(r"(\s+)(\[?\w+\]?) (\w+)(\(\d+\))?(.*)", line)
        if not found or found.group(2) == "CONSTRAINT":
            continue
        blanks, name, kind, length, rest = found.groups()
        column = name.strip("[]")
        column = RENAMED.get(column, column) if " Header " in lines[0] else column
        lines[at] = f"{blanks}[{column}] {'NVARCHAR' + length if length else TYPES[kind]}{rest}"
    return "\n".join(lines)


def tables():
    return [each.split()[2] for each in statements() if each.startswith("CREATE TABLE")]


def with_counter():
    """The tables whose key is a counter."""
    return [each.split()[2] for each in statements() if "COUNTER" in each]
