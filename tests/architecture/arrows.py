#!/usr/bin/env python3
"""Checks the dependencies between folders: arrows.py ROOT. Prints file:line of every violation; exits with 1 if there is one.

The rules come first, as data. A file belongs to the innermost folder that the rules name.
"""

import collections
import pathlib
import re
import sys

# What the ground floor offers: its own headers, and those that hosts see too.
TEXT = ["src/text", "include/kpTables/text"]

# A folder, and the folders beside itself whose headers it may include; "/*" is a folder with all of its parts.
MAY_INCLUDE = {
    "include/kpTables": [],
    "include/kpTables/text": [],
    "include/kpTables/bookkeeping": ["include/kpTables"],
    "schema": [],
    "src/text": ["include/kpTables/text"],
    "src/sql": ["src/sql/*", *TEXT],
    "src/sql/parse": ["src/sql", *TEXT],
    "src/sql/bind": ["src/sql", *TEXT],
    "src/sql/rewrite": ["src/sql", "src/sql/bind", *TEXT],
    "src/sql/print": ["src/sql", "src/sql/bind", *TEXT],
    "src/sql/print/sqlite": ["src/sql", "src/sql/bind", "src/sql/print", *TEXT],
    "src/sql/print/postgres": ["src/sql", "src/sql/bind", "src/sql/print", *TEXT],
    "src/platform": ["src/platform/*", *TEXT],
    "src/functions": [*TEXT],
    "src/recordset": ["include/kpTables", *TEXT],
    "src/engines": ["include/kpTables", "src/engines/*", "src/platform", *TEXT],
    "src/engines/common": ["include/kpTables", "schema", "src/recordset", "src/sql/*", "src/functions", "src/platform", *TEXT],
    "src/engines/sqlite": ["include/kpTables", "schema", "src/recordset", "src/engines/common", "src/sql/*", "src/functions",
                           "src/platform", *TEXT],
    "src/engines/postgres": ["include/kpTables", "schema", "src/recordset", "src/engines/common", "src/sql/*", "src/functions",
                             "src/platform", *TEXT],
    "src/engines/postgres/extension": ["src/functions", "src/sql/print/postgres", *TEXT],
    "src/engines/odbc": ["include/kpTables", "schema", "src/recordset", "src/engines/common", "src/sql/*", "src/functions",
                         "src/platform", *TEXT],
    "src/kpTables": ["include/kpTables", *TEXT],
    "src/bookkeeping": ["include/kpTables/*"],
    # The virtual table of the server's interface is made from the same rows as the late-bound table.
    "src/com": ["include/kpTables/*", "src/kpTables", "src/bookkeeping", "src/engines/*", "src/text"],
    "src/kpbook": ["include/kpTables/*", "src/bookkeeping", "src/engines/*", "src/platform", "src/text", "src/kpbook/*"],
    "src/kpbook/commands": ["include/kpTables/*", "src/bookkeeping", "src/engines/*", "src/platform", "src/text", "src/kpbook",
                            "src/kpbook/batch", "src/kpbook/input", "src/kpbook/output"],
    "src/kpbook/shell": ["include/kpTables/*", "src/bookkeeping", "src/platform", "src/text", "src/kpbook", "src/kpbook/commands",
                         "src/kpbook/input", "src/kpbook/output"],
    "src/kpbook/batch": ["include/kpTables/*", "src/bookkeeping", "src/text", "src/kpbook", "src/kpbook/input",
                         "src/kpbook/output"],
    "src/kpbook/input": ["include/kpTables/*", "src/bookkeeping", "src/platform", "src/text", "src/kpbook"],
    "src/kpbook/output": ["include/kpTables", "src/platform", *TEXT, "src/kpbook"],
    "examples": ["include/kpTables/*"],
}

# Headers from outside the project, except the C++ standard library's (which have neither a suffix nor a folder), and
# the folders that may include them.
LIBRARIES = {
    "sqlite3.h": ["src/engines/sqlite"],
    "sqlite3ext.h": ["src/engines/sqlite"],
    "libpq-fe.h": ["src/engines/postgres"],
    **dict.fromkeys(["postgres.h", "fmgr.h", "catalog/", "mb/", "utils/"], ["src/engines/postgres/extension"]),
    "sql.h": ["src/engines/odbc"],
    "sqlext.h": ["src/engines/odbc"],
    "CLI/": ["src/kpbook"],
    "nlohmann/": ["src/kpbook/batch", "src/kpbook/input"],
    "utf8proc.h": ["src/kpbook"],
    "xlsxwriter.h": ["src/kpbook/output"],
    "histedit.h": ["src/kpbook/shell"],
    "langinfo.h": ["src/kpbook/shell"],
    "dlfcn.h": ["src/platform/posix"],
    "expat.h": ["src/kpbook/input"],
    "minizip/": ["src/kpbook/input"],
    "poll.h": ["src/platform/posix"],
    "dirent.h": ["src/platform/posix"],
    "fcntl.h": ["src/platform"],
    "iconv.h": ["src/platform/posix"],
    "pwd.h": ["src/platform/posix"],
    "sys/": ["src/platform/posix"],
    "termios.h": ["src/platform/posix"],
    "unistd.h": ["src/platform/posix"],
    "winsock2.h": ["src/platform/windows"],
    "windows.h": ["examples", "src/com", "src/engines/odbc", "src/platform/windows"],
    "oleauto.h": ["examples", "src/com"],
    "io.h": ["src/platform/windows"],
    "lmcons.h": ["src/platform/windows"],
    "shellapi.h": ["src/platform/windows"],
    **dict.fromkeys(["dispex.h", "guiddef.h", "oaidl.h", "objbase.h", "ocidl.h", "olectl.h", "unknwn.h", "winerror.h"], ["src/com"]),
}

# Folders that serve every engine, and what names one: no path, code or comment in these folders may contain it.
NEUTRAL = ["include/kpTables", "src/text", "src/sql", "src/functions", "src/recordset", "src/engines/common", "src/kpTables",
           "src/bookkeeping"]
NOT_NEUTRAL = ["src/sql/print/sqlite", "src/sql/print/postgres", "src/sql/print/odbc"]
ENGINE_NAMES = r"sqlite|postgres|odbc|case[- ]?blind"

# Folders that serve every business: no name from the book's schema that is written in Chinese may stand there.
WITHOUT_BUSINESS = ["src/sql", "src/engines", "src/text", "src/functions"]
SCHEMA = "schema/*.sql"

# ---------------------------------------------------------------------------------------------------------------------
# TEMPORARY EXCEPTIONS, to be removed: (rule, beginning of the path, end of the message). An exception that is no longer
# needed is itself a violation.
EXCEPTIONS = []
# ---------------------------------------------------------------------------------------------------------------------

Violation = collections.namedtuple("Violation", "rule path line message")

SOURCES = [".h", ".cpp", ".in"]
# The folders that an include in quotes is relative to.
INCLUDE_ROOTS = ["include", "src", "schema"]
# Headers generated by the build, and the folders that they belong to.
GENERATED = {"kpTables/Version.h": "src/kpTables"}
INCLUDE = re.compile(r'\s*#\s*include\s*(?:"([^"]+)"|<([^>]+)>)')
HAN = "[\u3400-\u9fff]"


def is_under(path, folder):
    return path == folder or path.startswith(folder + "/")


def folder_of(path):
    """The innermost folder of MAY_INCLUDE that contains the path, or None."""
    return max((folder for folder in MAY_INCLUDE if is_under(path, folder)), key=len, default=None)


def is_allowed(folder, included):
    if included is None:
        return False
    return included == folder or any(
        is_under(included, other[:-2]) if other.endswith("/*") else included == other for other in MAY_INCLUDE[folder])


class Tree:
    """The sources under a root."""

    def __init__(self, root):
        self.root = pathlib.Path(root)
        self.lines = {}
        for top in sorted({folder.split("/")[0] for folder in MAY_INCLUDE}):
            for file in sorted((self.root / top).rglob("*")):
                if file.suffix in SOURCES and file.is_file():
                    path = file.relative_to(self.root).as_posix()
                    self.lines[path] = file.read_text(encoding="utf-8").splitlines()

    def resolved(self, header):
        """The path of an include in quotes; None when it is not relative to one of the roots."""
        if header in GENERATED:
            return f"{GENERATED[header]}/{header}"
        if ".." in header.split("/"):
            return None
        return next((f"{root}/{header}" for root in INCLUDE_ROOTS if (self.root / root / header).is_file()), None)

    def business_names(self):
        """The names in the schema that have a Chinese character; single characters are left out, as they are common words."""
        names = set()
        for file in self.root.glob(SCHEMA):
            statements = re.sub(r"--.*", "", file.read_text(encoding="utf-8"))
            names.update(name for name in re.findall(r"\w+", statements) if re.search(HAN, name) and len(name) > 1)
        return names


def include_violations(tree):
    for path, lines in tree.lines.items():
        folder = folder_of(path)
        if folder is None:
            yield Violation("folder", path, 1, "no rule says what this folder may include")
            continue
        for number, line in enumerate(lines, 1):
            if not (found := INCLUDE.match(line)):
                continue
            if quoted := found.group(1):
                included = tree.resolved(quoted)
                if included is None:
                    yield Violation("rooted", path, number, f"not relative to src/, include/ or schema/: {quoted}")
                elif not is_allowed(folder, folder_of(included)):
                    yield Violation("arrow", path, number, f"{folder} may not include {quoted}")
            elif not library_is_allowed(path, header := found.group(2)):
                yield Violation("library", path, number, f"{folder} may not include <{header}>")


def library_is_allowed(path, header):
    if "/" not in header and "." not in header:
        return True
    return any(is_under(path, folder) for known, folders in LIBRARIES.items() for folder in folders
               if header == known or known.endswith("/") and header.startswith(known))


def engine_violations(tree):
    name = re.compile(ENGINE_NAMES, re.IGNORECASE)
    for path, lines in tree.lines.items():
        if not any(is_under(path, folder) for folder in NEUTRAL) or any(is_under(path, f) for f in NOT_NEUTRAL):
            continue
        if name.search(path):
            yield Violation("engine", path, 1, "the file's path names an engine")
        for number, line in enumerate(lines, 1):
            if found := name.search(line):
                yield Violation("engine", path, number, f"names an engine: {found.group()}")


def business_violations(tree):
    names = tree.business_names()
    if not names:
        yield Violation("business", SCHEMA, 1, "no name of a table or column was found")
        return
    name = re.compile("|".join(sorted(map(re.escape, names), key=len, reverse=True)))
    for path, lines in tree.lines.items():
        if any(is_under(path, folder) for folder in WITHOUT_BUSINESS):
            for number, line in enumerate(lines, 1):
                if found := name.search(line):
                    yield Violation("business", path, number, f"names a table or column of the book: {found.group()}")


def violations(root, exceptions):
    tree = Tree(root)
    if not tree.lines:
        return [Violation("folder", str(root), 1, "no sources were found")]
    unused = dict.fromkeys(exceptions)
    kept = []
    for found in [*include_violations(tree), *engine_violations(tree), *business_violations(tree)]:
        excepting = [(rule, path, end) for rule, path, end in exceptions
                     if found.rule == rule and found.path.startswith(path) and found.message.endswith(end)]
        for exception in excepting:
            unused.pop(exception, None)
        if not excepting:
            kept.append(found)
    kept += [Violation("exception", path, 1, f"the exception ({rule}, {path}, {end}) is no longer needed")
             for rule, path, end in unused]
    return kept


def main():
    found = violations(sys.argv[1], EXCEPTIONS)
    for violation in found:
        print(f"{violation.path}:{violation.line}: {violation.message}")
    sys.exit(1 if found else 0)


if __name__ == "__main__":
    main()
