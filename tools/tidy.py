#!/usr/bin/env python3
"""Runs clang-tidy over the sources of src, samples and bench: tools/tidy.py BUILD [JOBS [SIZE]].

BUILD has a compile_commands.json. SIZE is that of the largest functions whose calls the analyzer follows, in its own measure,
4 unless told: with its own default, 100, all of it takes twice as long.

Most of clang-tidy's time goes into the headers that a source includes. So the sources of a library are copied into one
file, and what is found is told with the place in the source. Including them in one file would not do: the analyzer, and
some checks, look at the main file alone.
"""

import json
import pathlib
import re
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
CHECKED = tuple(f"{ROOT}/{folder}/" for folder in ("src", "samples", "bench"))
INCLUDE = re.compile(r'#include "([^"]+)"')


def sources(entry):
    """The sources that a compilation reads as one."""
    file = pathlib.Path(entry["file"])
    if file.suffix != ".cxx":
        return [file]
    return [pathlib.Path(name) for name in INCLUDE.findall(file.read_text(encoding="utf-8"))]


def include_of(line):
    return line if line.startswith("#include ") else None


def join(files, target):
    """Writes the files into one; returns of each line its source, its number there and what it includes."""
    places = []
    with target.open("w", encoding="utf-8") as joined:
        for file in files:
            lines = file.read_text(encoding="utf-8").splitlines()
            joined.write("\n".join(lines) + "\n")
            places += [(file, number, include_of(line)) for number, line in enumerate(lines, 1)]
    return places


def libraries(entries):
    """Each library's sources, and the compiler's options for them."""
    found = {}
    seen = set()
    for entry in entries:
        files = [file for file in sources(entry) if str(file).startswith(CHECKED) and file not in seen]
        seen.update(files)
        options, library = re.fullmatch(r"(.*) -o (\S+\.dir)/\S+ -c \S+", entry["command"]).groups()
        found.setdefault((library, options), []).extend(files)
    return [(options, files) for (_, options), files in found.items() if files]


def prepare(build, folder, size):
    """Joins the sources of each library in the folder and lists the compilations there; returns the places by file."""
    folder.mkdir(parents=True, exist_ok=True)
    entries = json.loads((build / "compile_commands.json").read_text(encoding="utf-8"))
    analyzer = f"-Xclang -analyzer-config -Xclang max-inlinable-size={size}"
    compilations = []
    places = {}
    for options, files in libraries(entries):
        target = folder / f"{len(compilations)}.cpp"
        places[str(target)] = join(files, target)
        # A source includes headers of its own folder by their names alone.
        folders = " ".join(f"-iquote {parent}" for parent in dict.fromkeys(file.parent for file in files))
        compilations.append({
            "directory": str(build), "command": f"{options} {analyzer} {folders} -c {target}", "file": str(target)})
    # The longest first, so that none is left alone at the end.
    compilations.sort(key=lambda compilation: len(places[compilation["file"]]), reverse=True)
    (folder / "compile_commands.json").write_text(json.dumps(compilations), encoding="utf-8")
    return places


def duplicate_includes(places):
    """Prints each header that a source includes twice; returns whether there was none."""
    seen = set()
    duplicates = [
        (file, number, include)
        for lines in places.values() for file, number, include in lines
        if include and ((file, include) in seen or seen.add((file, include)))
    ]
    for file, number, include in duplicates:
        print(f"{file}:{number}: {include} stands twice")
    return not duplicates


def check(folder, jobs, places):
    """Runs clang-tidy and prints what it finds; returns whether it found nothing."""

    def place(match):
        file, line, _ = places[match[1]][int(match[2]) - 1]
        return f"{file}:{line}:"

    run = subprocess.run(
        ["run-clang-tidy", "-quiet", "-j", jobs, "-p", folder],
        stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, check=False)
    noise = re.compile(r"clang-tidy|\d+ warnings? generated|Suppressed|Use -header-filter|\s*$")
    joined = re.compile(rf"({re.escape(str(folder))}/\d+\.cpp):(\d+):")
    for line in run.stdout.splitlines():
        if run.returncode != 0 and not noise.match(line):
            print(joined.sub(place, line))
    return run.returncode == 0


def main():
    build = pathlib.Path(sys.argv[1]).resolve()
    jobs = sys.argv[2] if len(sys.argv) > 2 else "1"
    size = sys.argv[3] if len(sys.argv) > 3 else "4"
    folder = build / "tidy"
    places = prepare(build, folder, size)
    if not places:
        sys.exit(f"{build}/compile_commands.json has none of the sources")
    unique = duplicate_includes(places)
    sys.exit(0 if check(folder, jobs, places) and unique else 1)


main()
