"""What makes kpbook easy to type: names that were meant, completion, manual pages, colours."""

import os
import re
import shutil
import subprocess
import unittest

from kpbook_case import KPBOOK, TradingCase


class SuggestionTest(TradingCase):
    def said(self, *arguments, code=1):
        return self.run_kpbook(*arguments, code=code).stderr

    def test_each_kind_of_name(self):
        self.assertIn("no command or option imprt; did you mean import?", self.said("imprt", self.book, code=2))
        self.assertIn("there is no report balanc; did you mean balance?", self.said("report", "balanc", self.book, code=2))
        self.assertIn("there is no method Close_DeportBalance; did you mean Close_DepotBalance?", self.said("methods", "Close_DeportBalance"))
        self.assertIn("did you mean rs余额记录?", self.said("call", self.book, "rs余额纪录", "1", "3"))
        self.assertIn("no table 商品设制; did you mean 商品设置?", self.said("import", self.book, "商品设制", "-"))
        self.assertIn("unknown table '仓库设制' (line 1, column 15); did you mean 仓库设置?", self.said("sql", self.book, "Select * From 仓库设制"))
        self.assertIn("did you mean 仓库名称?", self.said("sql", self.book, "Select B.[仓库名] From 仓库设置 As B"))
        self.assertIn("line 2, column 8); did you mean 规格?", self.said("sql", self.book, "-f", self.write("a.sql", "\nSelect 规各 From 商品设置")))
        self.assertIn("there is no command sqll; did you mean sql?", self.said("man", "sqll"))

    def test_what_is_far_off_is_not_named(self):
        for arguments, code in ((("frobnicate", self.book), 2), (("methods", "Nonsense"), 1), (("sql", self.book, "Select x From 仓库设置"), 1)):
            self.assertNotIn("did you mean", self.said(*arguments, code=code))

    def test_failures_are_told_once(self):
        self.assertEqual(self.said("sql", self.book, "Select * From 仓库设制").count("unknown table"), 1)


class CompletionTest(TradingCase):
    def bash(self, *words):
        quoted = " ".join(f"'{word}'" for word in words)
        script = f"source <('{KPBOOK}' completion bash); COMP_WORDS=({quoted}); COMP_CWORD={len(words) - 1}; _kpbook; printf '%s\\n' \"${{COMPREPLY[@]}}\""
        return subprocess.run(["bash", "-c", script], capture_output=True, encoding="utf-8", check=True).stdout.split()

    def test_bash(self):
        self.assertEqual(self.bash("kpbook", "re")[:2], ["remove", "reopen"])
        self.assertIn("report", self.bash("kpbook", "re"))
        self.assertEqual(self.bash("kpbook", "-O", "j"), ["json"])
        self.assertEqual(self.bash("kpbook", "sql", "x", "--par"), ["--param"])
        self.assertEqual(self.bash("kpbook", "-O", "csv", "call", "x", "rs余额"), ["rs余额记录"])
        self.assertIn("balance", self.bash("kpbook", "report", "b"))
        self.assertEqual(self.bash("kpbook", "close", "--mon"), ["--month"])
        self.assertEqual(self.bash("kpbook", "new", "x", "--dialect", "s"), ["sql"])
        self.assertEqual(self.bash("kpbook", "sql", "x", "-f", "sq"), [])

    def test_every_command_and_option_of_the_help_is_there(self):
        script = self.run_kpbook("completion", "bash").stdout
        for name in re.findall(r"^  (\S+)", self.run_kpbook("--help").stdout.split("Subcommands:\n")[1].split("\n\n")[0], re.M):
            self.assertIn(name, self.bash("kpbook", name[:-1]))
            for option in re.findall(r"(--[a-z][a-z-]*)", self.run_kpbook(name, "--help").stdout.split("Options:")[1].split("\n\n")[0]):
                self.assertIn(option, script)

    @unittest.skipUnless(shutil.which("fish"), "fish is not installed")
    def test_fish(self):
        script = self.write("k.fish", self.run_kpbook("completion", "fish").stdout)

        def complete(line):
            done = subprocess.run(["fish", "-c", f"source {script}; complete -C '{line}'"], capture_output=True, encoding="utf-8",
                                  check=True, env={**os.environ, "HOME": str(self.folder)})
            self.assertEqual(done.stderr, "")
            return [word.split("\t")[0] for word in done.stdout.splitlines()]

        self.assertIn("report", complete("kpbook re"))
        self.assertEqual(complete("kpbook sql --para"), ["--param"])
        self.assertIn("balance", complete("kpbook report b"))
        self.assertEqual(complete("kpbook -O j"), ["json"])

    @unittest.skipUnless(shutil.which("zsh"), "zsh is not installed")
    def test_zsh(self):
        script = self.write("_kpbook", self.run_kpbook("completion", "zsh").stdout)
        text = f"autoload -U compinit; compinit -D -u; source {script}; print -r -- $_comps[kpbook]; whence -w _kpbook"
        done = subprocess.run(["zsh", "-f", "-c", text], capture_output=True, encoding="utf-8", check=True,
                              env={**os.environ, "HOME": str(self.folder)})
        self.assertEqual((done.stdout, done.stderr), ("_kpbook\n_kpbook: function\n", ""))


class ManTest(TradingCase):
    def test_a_page_a_command(self):
        self.run_kpbook("man", "--folder", self.folder / "pages")
        pages = {path.name for path in (self.folder / "pages").iterdir()}
        names = re.findall(r"^  (\S+)", self.run_kpbook("--help").stdout.split("Subcommands:\n")[1].split("\n\n")[0], re.M)
        self.assertLessEqual({"kpbook.1", *(f"kpbook-{name}.1" for name in names)}, pages)
        for page in sorted(pages):
            text = (self.folder / "pages" / page).read_text()
            self.assertRegex(text, r'^\.TH kpbook')
            for heading in ("NAME", "SYNOPSIS", "OPTIONS", "EXAMPLES", "EXIT STATUS", "SEE ALSO"):
                self.assertIn(f"\n.SH {heading}\n", text, page)

    @unittest.skipUnless(shutil.which("groff"), "groff is not installed")
    def test_they_read_as_the_help_does(self):
        page = self.run_kpbook("man", "sql").stdout
        done = subprocess.run(["groff", "-man", "-Tutf8", "-Kutf8", "-ww", "-P-cbou"], input=page, capture_output=True, encoding="utf-8", check=True)
        self.assertEqual(done.stderr, "")
        for text in ("kpbook-sql - Run statements of either dialect", "-f, --file FILE", "Where 商品名称=@name\" --param name=水泥"):
            self.assertIn(text, done.stdout)


class ColourTest(TradingCase):
    def at_terminal(self, *arguments, **environment):
        # The tests themselves may run without colours.
        return self.on_terminal(*arguments, environment={"NO_COLOR": "", "TERM": "xterm", **environment})[0]

    def test_headings_and_failures_at_a_terminal_only(self):
        query, wrong = ("sql", self.book, "Select 1 As a"), ("sql", self.book, "Select x")
        self.assertTrue(self.at_terminal(*query).startswith("\033[1ma\n\033[0m-"))
        self.assertTrue(self.at_terminal(*wrong).startswith("\033[1;31mkpbook:\033[0m unknown column"))
        for environment in ({"NO_COLOR": "1"}, {"TERM": "dumb"}):
            for arguments in (query, wrong):
                self.assertNotIn("\033", self.at_terminal(*arguments, **environment))
        done = self.run_kpbook(*query)
        self.assertNotIn("\033", done.stdout + done.stderr + self.run_kpbook(*wrong, code=1).stderr)
        self.assertNotIn("\033", self.at_terminal(*query, "-O", "csv"))


if __name__ == "__main__":
    unittest.main()
