"""What a book holds, read with SQLite alone."""

import contextlib
import sqlite3


def stored_cells(book):
    """Every cell of every table as it is stored, with its type, in the order of the rows."""
    with contextlib.closing(sqlite3.connect(f"file:{book}?mode=ro", uri=True)) as connection:
        names = [row[0] for row in connection.execute(
            "Select name From sqlite_master Where type='table' And Not name Glob 'sqlite*' And Not name Glob 'kp_*'")]
        found = {}
        for name in names:
            columns = [row[1] for row in connection.execute(f'Pragma table_info("{name}")')]
            shown = ",".join(f'typeof("{column}"),"{column}"' for column in columns)
            found[name] = connection.execute(f'Select {shown} From "{name}" Order by rowid').fetchall()
        return found
