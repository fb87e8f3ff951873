#!/usr/bin/env python3
"""export_sample.py KPBOOK SAMPLE: the sample year with two closed months, written as CSV and read again, is the same book.

SAMPLE is the folder that kpsample makes. Each cell of each table is compared as it is stored, and what is asked of both books.
"""

import pathlib
import subprocess
import sys
import tempfile

from book_cells import stored_cells


def run(*words):
    return subprocess.run([str(word) for word in words], check=True, stdout=subprocess.PIPE, text=True).stdout


def main(kpbook, sample):
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        book, copy, exported = folder / "a.kpbook", folder / "b.kpbook", folder / "exported"
        run(kpbook, "new", book, "--bare")
        run(kpbook, "import", book, sample)
        for month, end in ((1, "2003-1-31"), (2, "2003-2-28")):
            run(kpbook, "close", book, "--month", month, "--date", end, "--answer", "yes")
        # A text that is Null, one that is empty, and one that only looks like Null.
        for text in ("Null", "''", "'\\N'", "' a,\"b\"'"):
            run(kpbook, "sql", book, f"Insert Into 商品设置 (商品名称,备注) Values ('x',{text})")
        run(kpbook, "export", book, exported)
        run(kpbook, "new", copy, "--bare")
        run(kpbook, "import", copy, exported)
        ours, theirs = stored_cells(book), stored_cells(copy)
        assert ours.keys() == theirs.keys()
        for table, rows in ours.items():
            assert rows == theirs[table], table
        assert sum(map(len, ours.values())) > 20_000
        assert run(kpbook, "check", copy) == run(kpbook, "check", book)
        for words in (("info", "-O", "json"), ("report", "bills", "--direction", "out"), ("stock", "--month", "3")):
            answers = [run(kpbook, words[0], *(words[1:2] if words[0] == "report" else ()), each,
                           *words[2 if words[0] == "report" else 1:]) for each in (book, copy)]
            assert answers[0].replace(str(book), "") == answers[1].replace(str(copy), ""), words


if __name__ == "__main__":
    main(*sys.argv[1:])
