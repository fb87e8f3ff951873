#!/usr/bin/env python3
"""The messages of the program and their translations: messages.py [update].

Without a word it checks po/*.po against the sources: every message is translated, none is fuzzy or left over, and each
translation has the gaps of its message. update takes the messages of the sources over into the files; what is new is
empty in them.
"""

import functools
import pathlib
import re
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parent.parent
# The component says only the system's own texts, which are Chinese.
FOLDERS = ["include/kpTables", "src/text", "src/functions", "src/platform", "src/recordset", "src/sql", "src/engines", "src/bookkeeping",
           "src/kpbook"]
# What takes messages, and as which argument; two numbers: the forms for one and for several.
KEYWORDS = ["Message:1", "CountedMessage:2,3", "Translated:1", "Translatable:1", "AddCommand:3", "AddAction:3",
            "add_option:3", "add_flag:3", "AddMonth:4", "AddText:4", "AddDay:4", "AddValues:3", "Heading:1",
            "TakeName:1", "TakeNumber:1", "ParseCount:3", "Fail:1,1t", "Fail:3,3t"]
# Of those that take two messages, the second.
FURTHER_KEYWORDS = ["AddCommand:4", "AddAction:4"]
GAP = re.compile(r"\{[1-9]\}")


def sources():
    return sorted(str(file.relative_to(ROOT)) for folder in FOLDERS for file in (ROOT / folder).rglob("*")
                  if file.suffix in (".cpp", ".h"))


def extract(target):
    """Writes the messages of the sources as a template."""
    for keywords, joining in ((KEYWORDS, []), (FURTHER_KEYWORDS, ["--join-existing"])):
        subprocess.run(["xgettext", *joining, "--language=C++", "--from-code=UTF-8", "--no-location", "--no-wrap",
                        "--sort-output", "--keyword=", *(f"--keyword={each}" for each in keywords),
                        "--package-name=kpbook", "-o", target, *sources()], cwd=ROOT, check=True)
    # Nothing here is for printf, whatever it looks like; and a date would differ each time.
    lines = pathlib.Path(target).read_text(encoding="utf-8").splitlines(keepends=True)
    kept = [line for line in lines if not line.startswith(("#,", '"POT-Creation-Date', '"Report-Msgid'))]
    pathlib.Path(target).write_text("".join(kept), encoding="utf-8")


def unquoted(lines):
    body = "".join(re.fullmatch(r'(?:\w+(?:\[\d+\])?\s+)?"(.*)"', line).group(1) for line in lines)
    return re.sub(r"\\(.)", lambda found: {"n": "\n", "t": "\t", "r": "\r"}.get(found.group(1), found.group(1)), body)


def entries(path):
    """The entries of a file as {message or (one, many): (translations, whether it is fuzzy)}."""
    found = {}
    for block in re.split(r"\n\s*\n", pathlib.Path(path).read_text(encoding="utf-8")):
        lines = [line for line in block.splitlines() if line and not line.startswith("#")]
        parts = {}
        for line in lines:
            if word := re.match(r"(msgid_plural|msgid|msgstr(?:\[\d+\])?)\s", line):
                name = word.group(1)
                parts[name] = []
            parts[name].append(line)
        if not parts:
            continue
        texts = {name: unquoted(lines) for name, lines in parts.items()}
        one = texts["msgid"]
        key = (one, texts["msgid_plural"]) if "msgid_plural" in texts else one
        found[key] = ([text for name, text in texts.items() if name.startswith("msgstr")],
                      any(line.startswith("#,") and "fuzzy" in line for line in block.splitlines()))
    found.pop("", None)
    return found


@functools.cache
def extracted():
    """The entries of the sources."""
    with tempfile.TemporaryDirectory() as folder:
        template = pathlib.Path(folder) / "kpbook.pot"
        extract(template)
        return entries(template)


def catalogues():
    return sorted((ROOT / "po").glob("*.po"))


def faults():
    """What is wrong with the translations, a line each."""
    messages = extracted()
    for path in catalogues():
        translated = entries(path)
        if "#~" in path.read_text(encoding="utf-8"):
            yield f"{path.name}: has entries that are out of use"
        for key in messages:
            if key not in translated:
                yield f"{path.name}: lacks {key!r}"
        for key, (texts, fuzzy) in translated.items():
            if key not in messages:
                yield f"{path.name}: no source has {key!r}"
            if fuzzy:
                yield f"{path.name}: fuzzy: {key!r}"
            gaps = set(GAP.findall(key if isinstance(key, str) else key[1]))
            for text in texts:
                if not text:
                    yield f"{path.name}: not translated: {key!r}"
                elif set(GAP.findall(text)) != gaps:
                    yield f"{path.name}: other gaps: {key!r}: {text!r}"


def update():
    with tempfile.TemporaryDirectory() as folder:
        template = pathlib.Path(folder) / "kpbook.pot"
        extract(template)
        for path in catalogues():
            subprocess.run(["msgmerge", "--update", "--backup=none", "--no-fuzzy-matching", "--no-location", "--no-wrap",
                            "--sort-output", path, template], check=True)
            subprocess.run(["msgattrib", "--no-obsolete", "--no-wrap", "--sort-output", "-o", path, path], check=True)


def main():
    if sys.argv[1:] == ["update"]:
        return update()
    found = list(faults())
    for fault in found:
        print(fault)
    sys.exit(1 if found else 0)


if __name__ == "__main__":
    main()
