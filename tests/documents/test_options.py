#!/usr/bin/env python3
"""check_options.py notices every difference, whichever side it is on."""
import pathlib
import re
import tempfile
import unittest

import check_options

HELP = """#!/bin/sh
echo 'Usage: tool [OPTIONS]

Options:
  --help                      this text, not --that
  -o FILE                     where the output goes
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
| `-q`, `--quiet`, `--help` | |

| other | |
|---|---|
| `--other` | |
"""
COMPLETION = """_tool() { COMPREPLY=($(compgen -W "-o -q --quiet --help" -- "${COMP_WORDS[COMP_CWORD]}")); }
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

    def test_a_program_without_options_is_no_agreement(self):
        self.write("tool", "#!/bin/sh\n")
        self.assertIn("tool --help names no options", self.found())


if __name__ == "__main__":
    unittest.main()
