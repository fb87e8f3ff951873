"""Pages of docs that show commands: every command of their consoles does what the page shows, with the files that it shows.

A block marked csv gives a file's name and encoding; in a block marked console, lines that begin with $ are commands and the others
what they say.
"""

import os
import pathlib
import re
import subprocess

from kpbook_case import KPBOOK, KpbookCase

DOCS = pathlib.Path(__file__).resolve().parents[2] / "docs"
BLOCK = re.compile(r"^```(csv|console)([^\n]*)\n(.*?)^```$", re.MULTILINE | re.DOTALL)


def fails(command, said):
    """A refusal exits with 1, and so does check when it finds something."""
    return "\nkpbook: " in "\n" + said or said.startswith("Error: ") or (command.startswith("kpbook check ") and said != "")


class PageCase(KpbookCase):
    def run_page(self, name, **environment):
        """Runs the commands of a page, in the page's language, and gives their number."""
        language = {"LANG": "zh_CN.UTF-8", "LC_MESSAGES": ""} if name.endswith(".zh.md") else {"LC_ALL": "C.UTF-8"}
        environment = {**os.environ, **language, "PATH": f"{pathlib.Path(KPBOOK).parent}:{os.environ['PATH']}", **environment}
        commands = 0
        for kind, mark, text in BLOCK.findall((DOCS / name).read_text("utf-8")):
            if kind == "csv":
                file, encoding, *_ = [*mark.split(), "utf-8"]
                (self.folder / file).write_bytes(text.encode(encoding))
                continue
            for command, said in re.findall(r"^\$ ([^\n]*)\n((?:(?!\$ )[^\n]*\n)*)", text, re.MULTILINE):
                done = subprocess.run(command, shell=True, cwd=self.folder, env=environment, stdout=subprocess.PIPE,
                                      stderr=subprocess.STDOUT, timeout=60)
                self.assertEqual(done.stdout.decode(), said, command)
                self.assertEqual(done.returncode != 0, fails(command, said), command)
                if command.startswith("kpbook "):
                    self.assertIn(done.returncode, (0, 1), command)
                commands += 1
        return commands
