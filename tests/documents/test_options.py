#!/usr/bin/env python3
"""check_options.py notices every difference, whichever side it is on."""
import pathlib
import re
import tempfile
import unittest

import check_options

HELP = """#!/bin/sh
test "$1" != --kind || echo "tool: --kind: $2 is none of fast, safe, slow; try tool --help" >&2
test "$1" != --help || echo 'Usage: tool [OPTIONS]

Options:
  --help                      this text, not --that
  -o FILE                     where the output goes
  --kind NAME                 of the run: slow, fast or safe
  --most N                    then it ends (default 1000)
  -q,--quiet                  errors only'
"""
MANUAL = """.TH TOOL 1
.SH OPTIONS
.TP
.B \\-\\-help
This text, and \\-\\-that.
.TP
.BI \\-o " FILE"
The output.
.TP
.BI \\-\\-kind " NAME"
.BR slow ,
.B fast
or
.BR safe .
.TP
.BI \\-\\-most " N"
Then it ends; 1000 without it.
.TP
.BR \\-q ", " \\-\\-quiet
Errors only.
.SH SEE ALSO
.TP
.B \\-\\-other
"""
PAGE = """# Tool

| option | |
|---|---|
| `-o FILE` | the output, unlike `--that` |
| `--kind NAME` | `slow`, `fast` or `safe` |
| `--most N` | then it ends (1 000) |
| `-q`, `--quiet`, `--help` | |

| other | |
|---|---|
| `--other` | |
"""
COMPLETION = """words="-o -q --quiet --help --kind --most"
_tool() { COMPREPLY=($(compgen -W "$words" -- "${COMP_WORDS[COMP_CWORD]}")); }
complete -F _tool tool
"""


class Options(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.source = pathlib.Path(folder.name)
        (self.source / "docs" / "man").mkdir(parents=True)
        (self.source / "completions").mkdir()
        self.write("tool", HELP)
        self.write("docs/man/tool.1", MANUAL)
        self.write("docs/tool.md", PAGE)
        self.write("completions/tool", COMPLETION)

    def write(self, name, text):
        (self.source / name).write_text(text)
        (self.source / name).chmod(0o755)

    def found(self):
        return list(check_options.differences(self.source, self.source / "tool", "docs/tool.md"))

    def test_the_same_options_everywhere_are_no_difference(self):
        self.assertEqual(self.found(), [])

    def test_a_new_option_is_missed_in_all_places(self):
        self.write("tool", HELP.replace("  -q,", "  --new N                     new\n  -q,"))
        self.assertEqual(self.found(), [f"{place} lacks --new" for place in
                                        ("docs/man/tool.1", "docs/tool.md", "completions/tool")])

    def test_an_option_that_is_gone_is_found_in_all_places(self):
        self.write("tool", re.sub("-q,", "", HELP))
        self.assertEqual(self.found(), [f"{place} has -q, which tool does not know" for place in
                                        ("docs/man/tool.1", "docs/tool.md", "completions/tool")])

    def test_one_place_that_differs_is_named(self):
        for name, text in (("docs/man/tool.1", MANUAL), ("docs/tool.md", PAGE),
                           ("completions/tool", COMPLETION)):
            with self.subTest(name):
                self.write(name, text.replace("quiet", "still"))
                self.assertEqual(self.found(), [f"{name} lacks --quiet",
                                                f"{name} has --still, which tool does not know"])
                self.write(name, text)

    def test_choices_that_a_page_does_not_name(self):
        for name, text, word in (("docs/man/tool.1", MANUAL, ".B fast"), ("docs/tool.md", PAGE, "`fast`")):
            with self.subTest(name):
                self.write(name, text.replace(word, "quick"))
                self.assertEqual(self.found(), [f"{name} does not say fast of --kind"])
                self.write(name, text)

    def test_choices_that_the_program_does_not_take(self):
        for words in ("safe, slow", "fast, safe, slow, still"):
            self.write("tool", HELP.replace("fast, safe, slow", words))
            self.assertEqual(self.found(), [f"tool --kind takes {words}"])

    def test_a_default_that_a_page_does_not_name(self):
        self.write("tool", HELP.replace("default 1000", "default 100"))
        self.assertEqual(self.found(), [f"{place} does not say 100 of --most"
                                        for place in ("docs/man/tool.1", "docs/tool.md")])

    def test_a_program_without_options_is_no_agreement(self):
        self.write("tool", "#!/bin/sh\n")
        self.assertIn("tool --help names no options", self.found())


if __name__ == "__main__":
    unittest.main()
