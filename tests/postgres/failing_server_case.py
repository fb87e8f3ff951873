"""What the tests of servers that fail share: servers of their own, and hosts that stay open."""

import os
import pathlib
import signal
import subprocess
import sys
import tempfile
import time
import unittest

import private_server
from several_processes import Batch

KPBOOK = os.environ["KPBOOK"]
# What is confirmed is on the disk.
DURABLE = {"fsync": "on", "synchronous_commit": "on", "full_page_writes": "on"}


def children_of(parent):
    found = []
    for stat in pathlib.Path("/proc").glob("[0-9]*/stat"):
        try:
            fields = stat.read_text().rpartition(")")[2].split()
        except OSError:  # it has ended
            continue
        if int(fields[1]) == parent:
            found.append(int(stat.parent.name))
    return found


class FailingServer(private_server.Server):
    """A server that can be killed and come back."""

    def pid(self):
        return int((self.data / "postmaster.pid").read_text().split()[0])

    def kill(self):
        """All of its processes at once, as the end of the machine would."""
        postmaster = self.pid()
        for process in [postmaster, *children_of(postmaster)]:
            try:
                os.kill(process, signal.SIGKILL)
            except ProcessLookupError:
                pass
        while pathlib.Path(f"/proc/{postmaster}").exists():
            time.sleep(0.01)

    def restart(self):
        self.stop("fast")
        self.start()

    def psql(self, text, database="postgres"):
        done = subprocess.run([str(self.bin / "psql"), "-X", "-A", "-t", "-h", str(self.folder), "-U", "kp", "-d", database,
                               "-v", "ON_ERROR_STOP=1", "-c", text], capture_output=True, text=True, check=False)
        if done.returncode != 0:
            raise RuntimeError(done.stderr)
        return done.stdout.strip()


class ServerCase(unittest.TestCase):
    maxDiff = None

    @classmethod
    def setUpClass(cls):
        if private_server.programs() is None:
            raise unittest.SkipTest("PostgreSQL is not installed (Debian's package postgresql)")

    def folder(self):
        made = tempfile.TemporaryDirectory(prefix="kpTablesServer-")
        self.addCleanup(made.cleanup)
        os.chmod(made.name, 0o755)
        return pathlib.Path(made.name)

    def server(self, **settings):
        return self.enterContext(FailingServer(self.folder(), private_server.programs(), settings))

    def host(self, url):
        """A kpbook that keeps its book open."""
        batch = Batch(url)
        self.addCleanup(batch.close)
        return batch

    def run_kpbook(self, *words, code=0, text=None):
        done = subprocess.run([KPBOOK, *map(str, words)], capture_output=True, text=True, encoding="utf-8", timeout=120, input=text)
        self.assertEqual(done.returncode, code, f"kpbook {words}\n{done.stdout}\n{done.stderr}")
        return done

    def done(self, host, request):
        """The answer to a request that succeeds."""
        answer = host.ask(request)
        self.assertFalse("error" in answer or "failed" in answer, f"{request}: {answer}")
        return answer

    def refused(self, host, request):
        """The reasons of a request that fails, as one text."""
        answer = host.ask(request)
        self.assertTrue("error" in answer or "failed" in answer, f"{request}: {answer}")
        return str(answer)


def main():
    """As unittest.main, but a program whose tests were all skipped says so by its exit code."""
    result = unittest.main(exit=False).result
    if not result.wasSuccessful():
        sys.exit(1)
    sys.exit(private_server.SKIPPED if result.skipped and len(result.skipped) == result.testsRun else 0)
