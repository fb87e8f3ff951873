#!/usr/bin/env python3
"""Runs a program beside a PostgreSQL server of its own, with the server's default settings: run_beside_server.py PROGRAM [ARGUMENT...]."""

import pathlib
import sys

sys.path.insert(0, str(pathlib.Path(__file__).parents[2] / "tests" / "postgres"))
import private_server  # noqa: E402

# On the disk, and as durable as a shop's.
private_server.SETTINGS = {"listen_addresses": "", "checkpoint_timeout": "30min", "max_wal_size": "4GB"}

if __name__ == "__main__":
    sys.exit(private_server.main())
