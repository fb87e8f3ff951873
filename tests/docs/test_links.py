"""docs.links: every link of README and docs leads to a file, and to a heading of it; both READMEs tell of the same things."""

import pathlib
import re
import subprocess
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
LINK = re.compile(r"\]\(([^)\s]+)\)")
FENCE = re.compile(r"^```[^\n]*\n.*?^```$", re.MULTILINE | re.DOTALL)
ROW = re.compile(r"^\| ?(.*?)(?<!\\)\|", re.MULTILINE)


def pages():
    listed = subprocess.run(["git", "-C", ROOT, "ls-files", "*.md"], capture_output=True, text=True)
    names = listed.stdout.split() if listed.returncode == 0 else []
    return [ROOT / name for name in names if (ROOT / name).exists()] or [*ROOT.glob("*.md"), *ROOT.glob("docs/*.md")]


def prose(page):
    """The text of a page without its code."""
    return re.sub(r"`[^`\n]*`", "", FENCE.sub("", page.read_text("utf-8")))


def anchors(page):
    """The names that a page's headings have in links."""
    headings = re.findall(r"^#+ (.*)$", FENCE.sub("", page.read_text("utf-8")), re.MULTILINE)
    return {re.sub(r"[^\w\- ]", "", heading.lower()).replace(" ", "-") for heading in headings}


def broken_links(page):
    broken = []
    for link in LINK.findall(prose(page)):
        if re.match(r"[a-z]+:", link):
            continue
        name, _, anchor = link.partition("#")
        target = page.parent / name if name else page
        if not target.exists() or anchor and anchor not in anchors(target):
            broken.append(link)
    return broken


def links(page):
    """Where a README leads: files, a Chinese page counting as the English one."""
    found = {link.partition("#")[0].replace(".zh.", ".") for link in LINK.findall(prose(page))}
    return {link for link in found if link not in ("", "README.md")}


def commands(page):
    """The commands in the first column of a README's tables, with the kinds of bill and bill."""
    words = set()
    for cell in ROW.findall(page.read_text("utf-8")):
        for code in re.findall(r"`([^`]*)`", cell):
            words.add(code.split()[0])
            if code.startswith("bill "):
                words.update(code.split()[1].replace("\\", "").split("|"))
    return {word for word in words if re.fullmatch(r"[a-z]+", word)}


class LinksTest(unittest.TestCase):
    maxDiff = None

    def test_every_link_leads_somewhere(self):
        found = pages()
        self.assertGreater(sum(len(LINK.findall(prose(page))) for page in found), 100)
        self.assertEqual({str(page.relative_to(ROOT)): broken for page in found if (broken := broken_links(page))}, {})

    def test_every_page_can_be_reached_from_the_readme(self):
        reached, pending = set(), [ROOT / "README.md"]
        while pending:
            page = pending.pop()
            if page in reached:
                continue
            reached.add(page)
            pending += [target for link in LINK.findall(prose(page)) if (name := link.partition("#")[0]).endswith(".md")
                        and (target := (page.parent / name).resolve()).exists()]
        self.assertEqual({page.name for page in (ROOT / "docs").glob("*.md")} - {page.name for page in reached}, set())

    def test_a_broken_link_is_found(self):
        """The test's own test."""
        page = ROOT / "docs" / "book.md"
        self.assertIn("the-first-month", anchors(page))
        self.assertNotIn("the-last-month", anchors(page))


class ReadmeTest(unittest.TestCase):
    maxDiff = None
    ENGLISH, CHINESE = ROOT / "README.md", ROOT / "README.zh.md"

    def test_commands(self):
        self.assertGreater(len(commands(self.ENGLISH)), 25)
        self.assertEqual(commands(self.CHINESE), commands(self.ENGLISH))

    def test_links(self):
        self.assertEqual(links(self.ENGLISH) - links(self.CHINESE) - {"README.zh.md"}, set())

    def test_code(self):
        """What the Chinese page shows of C++ and CMake, the English one shows in the same words."""
        english = FENCE.findall(self.ENGLISH.read_text("utf-8"))
        chinese = FENCE.findall(self.CHINESE.read_text("utf-8"))
        self.assertEqual(len(chinese), 2)
        self.assertEqual([block for block in chinese if block not in english], [])


if __name__ == "__main__":
    unittest.main()
