#!/usr/bin/env python3
"""Runs a program with ODBC drivers of its own choice: with_drivers.py TEST_DRIVER PROGRAM [ARGUMENT...].

The driver manager reads its lists in a new temporary folder: the drivers kptest (the test's own, at the given path), and
sqlite and postgres where Debian's packages libsqliteodbc and odbc-postgresql are installed; their names are in
KPTABLES_ODBC_DRIVERS. The data source "shop" is kptest's.
"""

import glob
import os
import pathlib
import subprocess
import sys
import tempfile

INSTALLED = {"sqlite": "libsqlite3odbc.so", "postgres": "psqlodbcw.so"}


def drivers(test_driver):
    found = {"kptest": test_driver}
    for name, file in INSTALLED.items():
        for path in glob.glob(f"/usr/lib/*/odbc/{file}"):
            found[name] = path
    return found


def main():
    with tempfile.TemporaryDirectory(prefix="kpTablesOdbc-") as folder:
        known = drivers(sys.argv[1])
        sections = [f"[{name}]\nDriver = {path}\n" for name, path in known.items()]
        pathlib.Path(folder, "odbcinst.ini").write_text("\n".join(sections), encoding="utf-8")
        pathlib.Path(folder, "odbc.ini").write_text("[shop]\nDriver = kptest\n", encoding="utf-8")
        environment = {**os.environ, "ODBCSYSINI": folder, "ODBCINI": f"{folder}/odbc.ini",
                       "KPTABLES_ODBC_DRIVERS": " ".join(known)}
        return subprocess.run(sys.argv[2:], env=environment, check=False).returncode


if __name__ == "__main__":
    sys.exit(main())
