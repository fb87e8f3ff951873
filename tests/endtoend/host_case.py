"""One program answers the calls of a test, as in a host that keeps its book open. What other commands read is committed."""

import json
import subprocess
import tempfile

from kpbook_case import KPBOOK, KpbookCase


class HostCase(KpbookCase):
    def setUp(self):
        super().setUp()
        self.host = None
        self.addCleanup(self.close_host)

    def batch(self, *requests):
        """Sends requests, each an object, and answers with the objects that come back."""
        if self.host is None:
            self.errors = tempfile.TemporaryFile()
            self.host = subprocess.Popen([KPBOOK, "call", self.book, "--batch"], stdin=subprocess.PIPE,
                                         stdout=subprocess.PIPE, stderr=self.errors, encoding="utf-8")
        return [self.answer_to(request) for request in requests]

    def answer_to(self, request):
        try:
            self.host.stdin.write(json.dumps(request, ensure_ascii=False) + "\n")
            self.host.stdin.flush()
        except BrokenPipeError:
            line = ""
        else:
            line = self.host.stdout.readline()
        if not line:
            self.close_host()
            self.fail(f"no answer to {request}")
        return json.loads(line)

    def close_host(self):
        """Ends the program; what it found at its end, leaks too, fails the test."""
        host, self.host = self.host, None
        if host is None:
            return
        rest, _ = host.communicate()
        with self.errors as file:
            file.seek(0)
            errors = file.read().decode()
        self.assertEqual((host.returncode, rest), (0, ""), errors)

    def copy_of(self, name, make):
        """A book is replaced or copied whole only when no program has it open."""
        def make_and_close():
            make()
            self.close_host()

        self.close_host()
        super().copy_of(name, make_and_close)
