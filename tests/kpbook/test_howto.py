"""The how-to pages: every command of their consoles does what the page shows, with the files that the page shows.

A block marked csv gives a file's name and encoding; in a block marked console, lines that begin with $ are commands and the others
what they say.
"""

import os
import pathlib
import re
import subprocess
import unittest

from kpbook_case import KPBOOK, KpbookCase

DOCS = pathlib.Path(__file__).resolve().parents[2] / "docs"
BLOCK = re.compile(r"^```(csv|console)([^\n]*)\n(.*?)^```$", re.MULTILINE | re.DOTALL)


class HowToTest(KpbookCase):
    def run_page(self, name):
        environment = {**os.environ, "PATH": f"{pathlib.Path(KPBOOK).parent}:{os.environ['PATH']}"}
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
                self.assertIn(done.returncode, (0, 1), command)
                self.assertEqual(done.returncode != 0, "\nkpbook: " in "\n" + said, command)
                commands += 1
        return commands

    def test_spreadsheet(self):
        self.assertEqual(self.run_page("howto-spreadsheet.md"), 12)
        self.assertIn("01001,", (self.folder / "prices" / "商品设置.csv").read_text("utf-8"))
        for name in ("shop.kpbook", "copy.kpbook"):
            done = self.run_kpbook("export", self.folder / name, "商品设置", "-")
            # The number, unit and price of each, as the page's files say.
            found = [line.split(",") for line in done.stdout.replace("水泥,袋装", "水泥").splitlines()]
            place = [found[0].index(column) for column in ("商品编号", "计量单位", "默认单价", "最低库存")]
            self.assertEqual([[row[at] for at in place] for row in found[1:]],
                             [["01001", "吨", "305", "25"], ["01002", "袋", "14.8", "0"], ["02001", "吨", "3050", "0"],
                              ["03001", "\\N", "8.5", "0"]])


if __name__ == "__main__":
    unittest.main()
