"""Every command's --help shows three examples or more, and each of them works.

The examples of a command run in the order of the help, in a folder of their own that holds the sample year (shop.kpbook, its first
two months closed, and prepare.sql run) and the files of tests/endtoend/examples, or what prepare/COMMAND.sh makes of them first. A new
command needs nothing here, but the files that it names.
"""

import atexit
import os
import pathlib
import re
import shutil
import subprocess
import tempfile
import unittest

KPBOOK = os.environ["KPBOOK"]
KPSAMPLE = os.environ["KPSAMPLE"]
FILES = pathlib.Path(__file__).parent / "examples"
LEAST = 3

# What is typed for examples that ask, by a part of the example.
TYPED = {"set-password": "a new one\n"}
# Commands of which every example begins without a book.
FROM_NOTHING = {"new"}

_scratch = tempfile.TemporaryDirectory()
atexit.register(_scratch.cleanup)
SCRATCH = pathlib.Path(_scratch.name)


def kpbook(*arguments):
    return subprocess.run([KPBOOK, *map(str, arguments)], capture_output=True, encoding="utf-8", check=True).stdout


def commands(*parent):
    """The words of every command that the help lists, and of their own commands: ("bill", "add")."""
    parts = kpbook(*parent, "--help").split("Subcommands:\n")
    names = re.findall(r"^  (\S+)", parts[1].split("\n\n")[0], re.M) if len(parts) > 1 else []
    return [words for name in names for words in ((*parent, name), *commands(*parent, name))]


def examples(command):
    text = kpbook(*command, "--help")
    found = re.search(r"^Examples?:\n((?:  .*\n)+)", text, re.M)
    return [line.strip() for line in found[1].splitlines()] if found else []


def sample_book():
    """The sample year; its files are where a user would have them."""
    book, sample = SCRATCH / "shop.kpbook", SCRATCH / "sample"
    if book.exists():
        return book
    subprocess.run([KPSAMPLE, sample], check=True, capture_output=True)
    kpbook("new", book, "--bare")
    for file in sorted(sample.glob("*.csv")):
        kpbook("import", book, file.stem, file)
    for date in ("2003-1-31", "2003-2-28"):
        kpbook("close", book, "--month", date.split("-")[1], "--cost", "--date", date, "--answer", "yes")
    kpbook("sql", book, "-f", FILES / "prepare.sql")
    return book


class ExamplesTest(unittest.TestCase):
    def folder_for(self, command, book):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        place = pathlib.Path(folder.name)
        shutil.copytree(FILES, place, dirs_exist_ok=True)
        (place / "bin").mkdir()
        # A program that writes rows, for examples that read standard input.
        (place / "bin" / "produce").write_text(f"#!/bin/sh\ncat {place}/produced.csv\n")
        (place / "bin" / "produce").chmod(0o755)
        (place / "bin" / "kpbook").symlink_to(KPBOOK)
        preparation = place / "prepare" / f"{command[0]}.sh"
        begins = preparation.exists() and "kpbook new shop.kpbook" in preparation.read_text()
        if command[0] not in FROM_NOTHING and not begins:
            shutil.copy(book, place / "shop.kpbook")
        if preparation.exists():
            self.run_example(f"set -e; . prepare/{preparation.name}", place)
        return place

    def run_example(self, example, place):
        typed = next((text for part, text in TYPED.items() if part in example), "")
        path = f"{place / 'bin'}:{os.environ['PATH']}"
        done = subprocess.run(["bash", "-c", f"set -o pipefail; {example}"], cwd=place, input=typed.encode(), capture_output=True,
                              env={**os.environ, "PATH": path, "XDG_STATE_HOME": str(place / "state")}, timeout=60)
        self.assertEqual(done.returncode, 0, f"{example}\n{done.stdout.decode()}\n{done.stderr.decode()}")

    def test_each(self):
        book = sample_book()
        names = commands()
        self.assertGreater(len(names), 15)
        for command in names:
            found = examples(command)
            with self.subTest(command=command):
                self.assertGreaterEqual(len(found), LEAST, f"kpbook {' '.join(command)} --help shows {found}")
            place = self.folder_for(command, book)
            for example in found:
                if example.endswith(".pdf") and not shutil.which("chromium"):
                    continue
                # They run in tests/postgres/test_users.py.
                if "postgresql://" in example:
                    continue
                with self.subTest(example=example):
                    self.run_example(example, self.folder_for(command, book) if command[0] in FROM_NOTHING else place)


if __name__ == "__main__":
    unittest.main()
