"""TLS: the server proves who it is by a certificate of the test's own, and one who cannot is told nothing."""

import os
import pathlib
import shutil
import socket
import subprocess
import sys
import tempfile
import unittest

import private_server

KPBOOK = os.environ["KPBOOK"]


def openssl(folder, *words):
    subprocess.run(["openssl", *words], cwd=folder, check=True, capture_output=True)


def make_authority(folder, name):
    openssl(folder, "req", "-x509", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:prime256v1", "-nodes", "-days", "2",
            "-subj", f"/CN={name}", "-keyout", f"{name}.key", "-out", f"{name}.crt")


def make_certificate(folder, name, authority, host):
    openssl(folder, "req", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:prime256v1", "-nodes", "-subj", f"/CN={host}",
            "-keyout", f"{name}.key", "-out", f"{name}.csr")
    (folder / "extensions").write_text(f"subjectAltName=DNS:{host}\n")
    openssl(folder, "x509", "-req", "-in", f"{name}.csr", "-CA", f"{authority}.crt", "-CAkey", f"{authority}.key",
            "-CAcreateserial", "-days", "2", "-extfile", "extensions", "-out", f"{name}.crt")


def free_port():
    with socket.socket() as probe:
        probe.bind(("127.0.0.1", 0))
        return probe.getsockname()[1]


class TlsTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        folder = cls.enterClassContext(tempfile.TemporaryDirectory(prefix="kpTablesTls-"))
        os.chmod(folder, 0o755)
        cls.folder = pathlib.Path(folder)
        for authority in ("own", "other"):
            make_authority(cls.folder, authority)
        make_certificate(cls.folder, "localhost", "own", "localhost")
        make_certificate(cls.folder, "elsewhere", "own", "elsewhere.example")
        cls.port = free_port()
        data = cls.enterClassContext(tempfile.TemporaryDirectory(prefix="kpTablesServer-"))
        cls.server = cls.enterClassContext(private_server.Server(
            data, private_server.programs(), {"listen_addresses": "127.0.0.1", "port": str(cls.port)}))

    def serve(self, certificate):
        """Lets the server prove itself with a certificate, and take encrypted connections only."""
        data = self.server.data
        for part in ("crt", "key"):
            shutil.copy(self.folder / f"{certificate}.{part}", data / f"server.{part}")
        (data / "server.key").chmod(0o600)
        (data / "pg_hba.conf").write_text("local all all trust\nhostssl all all 127.0.0.1/32 trust\n")
        if os.geteuid() == 0:
            for part in ("crt", "key"):
                shutil.chown(data / f"server.{part}", private_server.SYSTEM_USER, private_server.SYSTEM_USER)
        with open(data / "postgresql.auto.conf", "a", encoding="utf-8") as settings:
            settings.write("ssl = on\n")
        self.server.run([self.server.pg_ctl, "-D", data, "restart", "-w", "-l", self.server.folder / "log", "-o", self.server.options])

    def books(self, **options):
        url = f"postgresql://kp@localhost:{self.port}/postgres?" + "&".join(f"{name}={value}" for name, value in options.items())
        return subprocess.run([KPBOOK, "new", url, "--bare"], capture_output=True, text=True, timeout=60)

    def refused(self, told, **options):
        done = self.books(book="refused", **options)
        self.assertEqual(done.returncode, 1, done.stderr)
        self.assertIn("The server could not prove who it is, or cannot encrypt, and was told nothing", done.stderr)
        self.assertIn(told, done.stderr)

    def test_certificates(self):
        own, other = self.folder / "own.crt", self.folder / "other.crt"
        self.refused("server does not support SSL", sslmode="require")
        self.serve("localhost")
        done = self.books(book="proved", sslmode="verify-full", sslrootcert=own)
        self.assertEqual(done.returncode, 0, done.stderr)
        self.refused("certificate verify failed", sslmode="verify-full", sslrootcert=other)
        self.refused("does not exist", sslmode="verify-full", sslrootcert=self.folder / "none.crt")
        self.serve("elsewhere")
        self.refused("does not match host name", sslmode="verify-full", sslrootcert=own)
        done = self.books(book="unproved", sslmode="verify-ca", sslrootcert=own)
        self.assertEqual(done.returncode, 0, done.stderr)
        # The server takes nothing in the clear.
        self.assertEqual(self.books(book="clear", sslmode="disable").returncode, 1)


if __name__ == "__main__":
    if private_server.programs() is None or not shutil.which("openssl"):
        print("PostgreSQL or openssl is not installed: skipped")
        sys.exit(private_server.SKIPPED)
    unittest.main()
