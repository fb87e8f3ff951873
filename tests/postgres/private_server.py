#!/usr/bin/env python3
"""Runs a program beside a PostgreSQL server of its own: private_server.py PROGRAM [ARGUMENT...].

The server keeps its data in a new temporary folder, listens on a socket there and on no network, and is stopped and
removed whatever becomes of the program. The program finds it in KPTABLES_SERVER, a URL to which "&book=NAME" is added.
KPTABLES_EXTENSION, if set, is a folder with the files of the extension kptables as if it were the root of the system;
the server's database then has the extension.
The exit code is the program's, or 77 where PostgreSQL is not installed: the test is then skipped.
"""

import glob
import os
import pathlib
import pwd
import shutil
import signal
import subprocess
import sys
import tempfile

SKIPPED = 77
# Root may not run a server: another user of the system does.
SYSTEM_USER = "postgres"
# What is lost with the machine is only a test's.
SETTINGS = {"listen_addresses": "", "fsync": "off", "synchronous_commit": "off", "full_page_writes": "off",
            "max_connections": "20", "shared_buffers": "64MB"}


def programs():
    """The folder with initdb and pg_ctl; None where there is none."""
    found = sorted(glob.glob("/usr/lib/postgresql/*/bin/pg_ctl"), key=lambda path: int(path.split("/")[4]))
    on_path = shutil.which("pg_ctl")
    return pathlib.Path(found[-1]).parent if found else pathlib.Path(on_path).resolve().parent if on_path else None


def as_server(command):
    if os.geteuid() != 0:
        return command
    return ["setpriv", f"--reuid={SYSTEM_USER}", f"--regid={SYSTEM_USER}", "--init-groups", *command]


def give_to_server(folder):
    """Makes the server's user the folder's owner."""
    if os.geteuid() == 0:
        user = pwd.getpwnam(SYSTEM_USER)
        os.chown(folder, user.pw_uid, user.pw_gid)


class Server:
    def __init__(self, folder, bin_folder, settings=None):
        self.folder = pathlib.Path(folder)
        self.data = self.folder / "data"
        self.bin = bin_folder
        self.pg_ctl = str(bin_folder / "pg_ctl")
        self.settings = {**SETTINGS, **(settings or {})}

    def __enter__(self):
        give_to_server(self.folder)
        self.run([self.bin / "initdb", "-D", self.data, "-A", "trust", "-U", "kp", "--encoding", "UTF8", "--locale", "C",
                  "--no-sync"])
        self.start()
        return self

    def __exit__(self, *_):
        self.stop("immediate", check=False)

    @property
    def options(self):
        """What the server is started with."""
        return " ".join([*(f"-c {name}='{value}'" for name, value in self.settings.items()),
                         f"-c unix_socket_directories='{self.folder}'"])

    def start(self):
        self.run([self.pg_ctl, "-D", self.data, "-w", "-l", self.folder / "log", "-o", self.options, "start"])

    def stop(self, mode="fast", check=True):
        subprocess.run(as_server([self.pg_ctl, "-D", str(self.data), "-m", mode, "-w", "stop"]), stdout=subprocess.DEVNULL,
                       stderr=None if check else subprocess.DEVNULL, check=check, cwd=self.folder)

    def run(self, command):
        done = subprocess.run(as_server([str(word) for word in command]), stdout=subprocess.DEVNULL,
                              stderr=subprocess.PIPE, stdin=subprocess.DEVNULL, check=False, cwd=self.folder)
        if done.returncode != 0:
            sys.exit(f"{command[0]} failed: {done.stderr.decode()}")

    def run_sql(self, text):
        """As the server's administrator."""
        self.run([self.bin / "psql", "-X", "-q", "-h", self.folder, "-U", "kp", "-d", "postgres", "-c", text])

    def url(self):
        return f"postgresql:///postgres?host={self.folder}&user=kp"


def can_load_from_elsewhere(bin_folder):
    """Whether this server can find extensions that are not installed, as Debian's can."""
    described = subprocess.run(as_server([str(bin_folder / "postgres"), "--describe-config"]), stdout=subprocess.PIPE, check=True,
                               cwd="/")
    return b"extension_destdir" in described.stdout


def main():
    bin_folder = programs()
    if bin_folder is None:
        print("PostgreSQL is not installed (Debian's package postgresql): skipped")
        return SKIPPED
    # Ended by another program, it stops the server too.
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(1))
    extension = os.environ.get("KPTABLES_EXTENSION")
    if extension and not can_load_from_elsewhere(bin_folder):
        print("This server finds only extensions that are installed: skipped")
        return SKIPPED
    with tempfile.TemporaryDirectory(prefix="kpTablesServer-") as folder:
        settings = {}
        if extension:
            # The server's user may not be able to read the build's folder.
            settings["extension_destdir"] = f"{folder}/extension"
            shutil.copytree(extension, settings["extension_destdir"])
        with Server(folder, bin_folder, settings) as server:
            if extension:
                server.run_sql("CREATE EXTENSION kptables")
            return subprocess.run(sys.argv[1:], env={**os.environ, "KPTABLES_SERVER": server.url()}, check=False).returncode


if __name__ == "__main__":
    sys.exit(main())
