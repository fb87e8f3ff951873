"""./run --postgres: the sample job on a server says, and writes, what it does with files, byte for byte."""

import os
import pathlib
import subprocess
import sys
import tempfile

JOB = pathlib.Path(__file__).resolve().parents[2] / "samples" / "job.sh"


def run_job(folder, **environment):
    """What the job shows, and the pages that it writes."""
    done = subprocess.run([JOB, os.environ["KPBOOK"], os.environ["KPSAMPLE"]], cwd=folder, env={**os.environ, **environment},
                          stdout=subprocess.PIPE, stderr=subprocess.STDOUT, timeout=300, check=False)
    if done.returncode != 0:
        sys.exit(done.stdout.decode())
    out = pathlib.Path(folder) / "out"
    return done.stdout, {str(file.relative_to(out)): file.read_bytes() for file in out.rglob("*.html")}


def main():
    with tempfile.TemporaryDirectory() as files, tempfile.TemporaryDirectory() as server:
        shown, pages = run_job(files, KPTABLES_SERVER="")
        served, served_pages = run_job(server)
        if shown != served:
            lines = zip(shown.decode().splitlines(), served.decode().splitlines())
            sys.exit(next((f"with files:  {a}\non a server: {b}" for a, b in lines if a != b), "one says more"))
        if pages != served_pages:
            differing = [name for name in {**pages, **served_pages} if pages.get(name) != served_pages.get(name)]
            sys.exit(f"the pages differ: {differing}")
        if len(pages) < 10 or shown.count(b"\n") < 100:
            sys.exit(f"the job did little: {len(pages)} pages, {len(shown)} bytes")
        # What the server kept is kept as files, too.
        for name in ("2003", "2026"):
            subprocess.run([os.environ["KPBOOK"], "check", f"{server}/out/{name}.kpbook"], check=True)


if __name__ == "__main__":
    main()
