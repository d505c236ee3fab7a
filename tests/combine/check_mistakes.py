#!/usr/bin/env python3
"""Every mistake in a combination file, in the loads of a case and on the command line: its message,
its place, the exit status, and no file left behind.

    check_mistakes.py kestol-combine
"""

from __future__ import annotations

import os
import resource
import signal
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

from combine_run import CASES, Folder, frame

COMBINE = sys.argv.pop(1) if len(sys.argv) > 1 else ""

CASE = 'model = "portal.dat"\n[cases.G]\ncategory = "permanent"\nloads = "model"\n'
RULES = CASES + "[eurocode]\n"
COMBINED = CASES + "[combinations]\nU = { G = 1.35, Q1 = 1.5, W = 0.9 }\n"

# text, then the first lines of the messages, all of them
MISTAKES = [
    ("modl = 1\n" + CASE,
     ['1:1: error: unknown key in the file: "modl": did you mean "model"? [unknown-word]']),
    (CASE.replace('model = "portal.dat"\n', ""),
     ["1:1: error: the file names no model: model = \"deck.dat\" [missing-key]"]),
    ('model = "none.dat"\n' + CASE.split("\n", 1)[1],
     ["1:9: error: can't open file none.dat: No such file or directory [file]"]),
    ("model = 3\n" + CASE.split("\n", 1)[1],
     ['1:9: error: "model" must be a text in quotes [wrong-type]']),
    ('model = "portal.dat"\n',
     ["1:1: error: the file has no load case: [cases.NAME] [missing-key]"]),
    ("", ["1:1: error: the file says nothing: it needs a model and cases [missing-key]"]),
    ("# later\n", ["1:1: error: the file says nothing: it needs a model and cases [missing-key]"]),
    ('model = "portal.dat"\n[cases]\n',
     ["2:1: error: the file has no load case: [cases.NAME] [missing-key]"]),
    ('model = "portal.dat"\ncases = 1\n', ['2:9: error: "cases" must be a table [wrong-type]']),
    ('model = "portal.dat"\n[cases]\nG = 1\n',
     ['3:5: error: case "G" must be a table [wrong-type]']),
    (CASE + 'colour = "red"\n',
     ['5:1: error: unknown key in case "G": "colour" [unknown-word]']),
    (CASE.replace('"permanent"', '"permanant"'),
     ['3:12: error: unknown category "permanant": did you mean "permanent"? [unknown-category]']),
    (CASE.replace('"permanent"', "7"),
     ['3:12: error: "category" must be a text in quotes [wrong-type]']),
    (CASE.replace('loads = "model"\n', ""),
     ['2:1: error: case "G" has no loads: loads = "model" or a file [missing-key]']),
    (CASE.replace('"model"', '"nowhere.dat"'),
     ["4:9: error: can't open file nowhere.dat: No such file or directory [file]"]),
    (CASE.replace('"model"', '"."'), ["4:9: error: can't open file .: Is a directory [file]"]),
    (CASE.replace('"model"', "[]"), ['4:9: error: "loads" must be a text in quotes [wrong-type]']),
    (CASE + 'separate = 1\n', ['5:12: error: "separate" must be true or false [wrong-type]']),
    (CASES + "separate = true\n",
     ["11:12: error: only a permanent case can be separate [wrong-type]"]),
    (CASE + '[cases.H]\nloads = "model"\n',
     ['6:9: error: the loads of the model belong to case "G" already [model-twice]']),
    (CASES + "[combinations]\nU = { G = 1.35, Q = 1.5 }\n",
     ['12:17: error: unknown case "Q": did you mean "Q1"? [unknown-case]']),
    (CASES + "[combinations]\nU = { G = \"1\" }\n",
     ['12:11: error: the factor of "G" must be a number [wrong-type]']),
    (CASES + "[combinations]\nU = { G = nan, W = inf }\n",
     ['12:11: error: the factor of "G" must be a number [wrong-type]',
      '12:20: error: the factor of "W" must be a number [wrong-type]']),
    (CASES + "[combinations]\nU = 1.35\n",
     ['12:5: error: combination "U" must be a table of factors [wrong-type]']),
    (CASES + "[combinations]\nU = {}\n",
     ['12:5: error: combination "U" has no case [missing-key]']),
    ('combinations = 1\n' + CASES, ['1:16: error: "combinations" must be a table [wrong-type]']),
    ("eurocode = 1\n" + CASES, ['1:12: error: "eurocode" must be a table [wrong-type]']),
    (CASES + "[combinations]\nU = { G = 1 }\nW = { G = 2 }\n",
     ['13:1: error: combination "W" has the name of a case [name-twice]']),
    (CASES + '[combinations]\n"6.10-2" = { G = 1 }\n[eurocode]\nrules = ["6.10"]\n',
     ['12:1: error: combination "6.10-2" has the name of a generated combination [name-twice]']),
    (CASES.replace("cases.W", 'cases."6.10-1"') + '[eurocode]\nrules = ["6.10"]\n',
     ['8:8: error: case "6.10-1" has the name of a generated combination [name-twice]']),
    (RULES, ['11:1: error: [eurocode] names no rules: rules = ["6.10"] [missing-key]']),
    (RULES + "rules = []\n",
     ['11:1: error: [eurocode] names no rules: rules = ["6.10"] [missing-key]']),
    (RULES + 'rules = "6.10"\n', ['12:9: error: "rules" must be a list in brackets [wrong-type]']),
    (RULES + "rules = [6.10]\n", ["12:10: error: a rule must be a text in quotes [wrong-type]"]),
    (RULES + 'rules = ["6.10", "frequnt"]\n',
     ['12:18: error: unknown rule "frequnt": did you mean "frequent"? [unknown-rule]']),
    (RULES + 'rules = ["6.10"]\nruls = 1\n',
     ['13:1: error: unknown key in [eurocode]: "ruls": did you mean "rules"? [unknown-word]']),
    (CASES.replace('category = "live-B"\n', "") + '[eurocode]\nrules = ["6.10"]\n',
     ['5:1: error: case "Q1" has no category, which [eurocode] needs [missing-key]']),
    (RULES + 'rules = ["6.10"]\nexclusive = [["W", "V"]]\n',
     ['13:20: error: unknown case "V" [unknown-case]']),
    (RULES + 'rules = ["6.10"]\nexclusive = [["W", "G"]]\n',
     ['13:20: error: case "G" is permanent: it is in every combination [permanent-exclusive]']),
    (RULES + 'rules = ["6.10"]\nexclusive = ["W"]\n',
     ["13:14: error: an exclusive group must be a list of at least two cases [wrong-type]"]),
    (RULES + 'rules = ["6.10"]\nexclusive = [["W", 1]]\n',
     ["13:20: error: a case of an exclusive group must be a text in quotes [wrong-type]"]),
    (RULES + 'rules = ["6.10"]\nexclusive = [["W", "Q1", "W"]]\n',
     ['13:26: error: case "W" is in this group already [case-twice]']),
    (RULES + 'rules = ["6.10"]\nexclusive = "W"\n',
     ['13:13: error: "exclusive" must be a list in brackets [wrong-type]']),
    (RULES + 'rules = ["6.10"]\npsi = { wnd = [0, 0, 0] }\n',
     ['13:9: error: unknown category "wnd": did you mean "wind"? [unknown-category]']),
    (RULES + 'rules = ["6.10"]\npsi = { wind = [0.5, 0.2] }\n',
     ['13:16: error: psi of "wind" must be a list of 3 numbers [wrong-type]']),
    (RULES + 'rules = ["6.10"]\npsi = { wind = [0.5, "a", 0] }\n',
     ['13:22: error: psi of "wind" must be a number [wrong-type]']),
    (RULES + 'rules = ["6.10"]\npsi = { wind = [1.5, 0, 0] }\n',
     ['13:16: error: psi of "wind" must be between 0 and 1 [out-of-range]']),
    (RULES + 'rules = ["6.10"]\npsi = { wind = [0.5, -0.1, 0], snow = 1, permanent = [1, 1, 1] }\n',
     ['13:16: error: psi of "wind" must be between 0 and 1 [out-of-range]',
      '13:39: error: psi of "snow" must be a list of 3 numbers [wrong-type]',
      '13:42: error: unknown category "permanent" [unknown-category]']),
    (RULES + 'rules = ["6.10"]\npsi = [0.7, 0.5, 0.3]\n',
     ['13:7: error: "psi" must be a table [wrong-type]']),
    (RULES + 'rules = ["6.10"]\ngamma = { G = [1.35, -1] }\n',
     ["13:15: error: gamma of G must be [unfavourable, favourable], the larger one first "
      "[out-of-range]"]),
    (RULES + 'rules = ["6.10"]\ngamma = { P = 1 }\n',
     ['13:11: error: unknown key in gamma: "P" [unknown-word]']),
    (RULES + 'rules = ["6.10"]\ngamma = { G = 1.35 }\n',
     ["13:15: error: gamma of G must be a list of 2 numbers [wrong-type]"]),
    (RULES + 'rules = ["6.10"]\ngamma = { G = [1.0, 1.35] }\n',
     ["13:15: error: gamma of G must be [unfavourable, favourable], the larger one first "
      "[out-of-range]"]),
    (RULES + 'rules = ["6.10"]\ngamma = { Q = -1 }\n',
     ["13:15: error: gamma of Q is negative [out-of-range]"]),
    (RULES + 'rules = ["6.10"]\ngamma = { Q = true }\n',
     ["13:15: error: gamma of Q must be a number [wrong-type]"]),
    (RULES + 'rules = ["6.10"]\nxi = 0\n',
     ["13:6: error: xi must be above 0 and at most 1 [out-of-range]"]),
    # two mistakes: both, in the order of the lines; columns count bytes
    ('"\u00e4" = 1\n' + CASE.replace('"permanent"', '"windy"'),
     ['1:1: error: unknown key in the file: "\u00e4" [unknown-word]',
      '4:12: error: unknown category "windy": did you mean "wind"? [unknown-category]']),
    (CASES + '[combinations]\n"\u00e4\u00f6" = { Q = 1 }\n',
     ['12:12: error: unknown case "Q": did you mean "Q1"? [unknown-case]']),
]

CASE_MISTAKES = [
    ("nodal_point_loads\n 2 1 0 0\nend\nmesh\n", 4,
     "'mesh' does not belong in a load case, which holds load sections, constraints with "
     "settlements and units keywords [syntax]"),
    ("materials\n", 1,
     "'materials' does not belong in a load case, which holds load sections, constraints with "
     "settlements and units keywords [syntax]"),
    ("constraints\n 2 100 0 0 0\nend\n", 2, "node 2 has no support in the model [syntax]"),
    ("constraints\n 4 112 0 0 5\nend\n", 2,
     "code 2 of degree 3 of node 4 is not that of the model, 1 [syntax]"),
    ("constraints\n 99999999999 111 0 0 0\nend\n", 2,
     "number out of range in input file [syntax]"),
    ("nodal_point_loads\n 9 1 0 0\nend\n", 2, "Trying to assign Load to unknown node [syntax]"),
    ("global_pressure_loads\n 2 0\nend\n", 2,
     "Not reading correctly preassure_loads. ElemNum=2 [syntax]"),
    ("nodal_point_loads\n 2 1 0 0\n", 1,
     "section 'nodal_point_loads' of line 1 has no \"end\" [syntax]"),
]


class Mistakes(unittest.TestCase):
    def setUp(self) -> None:
        self.home = tempfile.TemporaryDirectory()
        self.addCleanup(self.home.cleanup)
        self.folder = Folder(Path(self.home.name), COMBINE)

    def refuse(self, *arguments: str) -> list[str]:
        """The messages of a run that must not succeed, without sources and carets."""
        before = self.folder.names()
        end = self.folder.combine(*arguments)
        self.assertEqual(end.status, 2, end.err)
        self.assertEqual(end.out, "")
        self.assertEqual(self.folder.names(), before)
        return [line for line in end.err.splitlines() if "rror" in line or "kestol" in line]

    def test_every_mistake_of_the_file(self) -> None:
        for text, wanted in MISTAKES:
            with self.subTest(text=text):
                self.folder.write("c.toml", text)
                found = self.refuse("c.toml", "--json", "c.json")
                self.assertEqual(found, ["c.toml:" + line for line in wanted])

    def test_text_that_is_no_toml(self) -> None:
        self.folder.write("c.toml", CASES + "[combinations\n")
        found = self.refuse("c.toml")
        self.assertEqual(len(found), 1)
        self.assertRegex(found[0], r"^c\.toml:1[12]:\d+: error: .*\[syntax\]$")

    def test_line_and_caret_stand_below_the_message(self) -> None:
        self.folder.write("c.toml", "modl = 1\n" + CASE)
        lines = self.folder.combine("c.toml").err.splitlines()
        self.assertEqual(lines[1:], ["    1 | modl = 1", "      | ^~~~"])

    def test_pipes_are_read_once(self) -> None:
        text = CASES.replace("portal.dat", "pipe").replace('"wind"', '"windy"')
        self.folder.write("c.toml", text)
        os.mkfifo(self.folder.path / "pipe")
        self.assertEqual(self.refuse("c.toml")[0].split(": ")[1:],
                         ["error", 'unknown category "windy"', 'did you mean "wind"? [unknown-category]'])
        self.folder.write("c.toml", text.replace('"windy"', '"wind"') + COMBINED[len(CASES):])
        self.folder.write("wind.dat", "nodal_point_loads\n 2 12 0 0\nend\n")
        for deck, status, words in [
                (frame(), 0, ""),
                (frame() + "materails\n", 2, ": error: Unknown key name=materails"),
                (frame().replace(" 111 ", " 010 "), 1, ": error: the supports leave the model a rigid "
                 "motion [rigid-motion]\n  mode 1: ")]:
            self.folder.write("deck", deck)
            with subprocess.Popen(["cp", "deck", "pipe"], cwd=self.folder.path):
                end = self.folder.combine("c.toml", "--json", "/dev/null")
            self.assertEqual((end.status, words in end.err), (status, True), end.err)

    def test_every_mistake_of_a_case(self) -> None:
        self.folder.write("c.toml", CASES)
        for text, line, wanted in CASE_MISTAKES:
            with self.subTest(text=text):
                self.folder.write("wind.dat", text)
                self.assertEqual(self.refuse("c.toml", "--json", "c.json"),
                                 [f"wind.dat:{line}: error: {wanted}"])

    def test_model_that_cannot_be_solved_is_named(self) -> None:
        self.folder.write("portal.dat", frame().replace("A=1e-2", "A=0"))
        self.folder.write("c.toml", CASES)
        found = self.refuse("c.toml", "--json", "c.json")
        self.assertEqual(len(found), 1)
        self.assertRegex(found[0], r"^portal\.dat: error: .*\[model\]$")

    def test_mistake_of_the_deck(self) -> None:
        self.folder.write("portal.dat", frame() + "materails\n")
        self.folder.write("c.toml", CASES)
        found = self.refuse("c.toml", "--json", "c.json")
        self.assertEqual(len(found), 1)
        self.assertRegex(found[0], r"^portal\.dat:\d+: error: Unknown key name=materails")

    def refuse_too_many(self) -> None:
        lines = self.folder.read("c.toml").splitlines()
        self.assertEqual(self.refuse("c.toml", "--list"), [
            f"c.toml:{len(lines)}:9: error: the rules give more than 100000 combinations: name actions "
            "that are never together in `exclusive`, or join cases [too-many]"])

    def test_too_many_combinations(self) -> None:
        text = CASES
        for k in range(14):
            text += f'[cases.X{k}]\ncategory = "live-A"\nloads = "office.dat"\n'
        self.folder.write("c.toml", text + '[eurocode]\nrules = ["6.10"]\n')
        self.refuse_too_many()

    def test_too_many_separate_permanent_cases(self) -> None:
        text = CASES
        for k in range(70):
            text += (f'[cases.X{k}]\ncategory = "permanent"\nseparate = true\n'
                     'loads = "office.dat"\n')
        self.folder.write("c.toml", text + '[eurocode]\nrules = ["6.10"]\n')
        self.refuse_too_many()

    def test_command_lines(self) -> None:
        self.folder.write("c.toml", CASES)
        hint = "; try kestol-combine --help"
        for arguments, wanted in [
                (["--bogus", "c.toml"], "kestol-combine: unknown option --bogus" + hint),
                (["--list", "--json", "x", "c.toml"],
                 "kestol-combine: --list writes no results" + hint),
                (["--envelopes", "--vtu", "x", "c.toml"],
                 "kestol-combine: --vtu writes cases and combinations, no envelopes" + hint),
        ]:
            with self.subTest(arguments=arguments):
                self.assertEqual(self.refuse(*arguments), [wanted])
        self.assertRegex(self.refuse()[0], "^kestol-combine: .*; try kestol-combine --help$")
        self.assertRegex(self.refuse("--solver", "magic", "c.toml")[0],
                         "^kestol-combine: .*; try kestol-combine --help$")

    def test_nothing_to_write(self) -> None:
        self.folder.write("c.toml", CASES)
        self.assertEqual(self.refuse("c.toml"), [
            "kestol-combine: error: the text holds envelopes, and there is no combination to make "
            "one of; --json, --csv or --vtu write the cases"])
        for choice in (["--envelopes"], ["--combinations"], ["--combinations", "--envelopes"]):
            for kind in ("--json", "--csv"):
                self.assertEqual(self.refuse("c.toml", kind, "x", *choice), [
                    "kestol-combine: error: there is no combination; --cases writes the cases"])
        self.folder.write("c.toml", COMBINED)
        for choice in ("--cases", "--combinations"):
            self.assertEqual(self.refuse("c.toml", choice), [
                "kestol-combine: error: the text holds envelopes alone; --json, --csv or --vtu "
                "write cases and combinations"])

    def test_files_that_cannot_be_read_or_written(self) -> None:
        self.folder.write("c.toml", CASES)
        self.assertRegex(self.refuse("none.toml")[0],
                         "^kestol-combine: error: can't open file none.toml: ")
        self.assertRegex(self.refuse("c.toml", "--json", "no/where.json")[0],
                         "^kestol-combine: error: .*no/where.json")
        self.assertRegex(self.refuse("c.toml", "--json", "/dev/full")[0],
                         "^kestol-combine: error: .*/dev/full.*No space left on device")

    def test_outputs_of_one_name(self) -> None:
        self.folder.write("c.toml", COMBINED)
        for arguments in [("--csv", "t", "--json", "t_nodes.csv"),
                          ("--csv", "t", "--json", "./t_envelope_nodes.csv"),
                          ("--vtu", "t", "--json", "t_U.vtu"),
                          ("--vtu", "t", "-o", "t.pvd"),
                          ("--json", "-", "-o", "-")]:
            with self.subTest(arguments=arguments):
                self.assertRegex(self.refuse("c.toml", *arguments)[0],
                                 "^kestol-combine: error: two outputs have the name ")

    def test_no_output_without_all_others(self) -> None:
        self.folder.write("c.toml", COMBINED)
        self.folder.write("t_U.vtu", "old")
        for arguments in [("--json", "/dev/full", "--csv", "t", "--vtu", "t"),
                          ("-o", "/dev/full", "--json", "t.json", "--csv", "t", "--vtu", "t")]:
            with self.subTest(arguments=arguments):
                self.assertEqual(self.refuse("c.toml", *arguments), [
                    "kestol-combine: error: failed writing to /dev/full: No space left on device"])
        self.assertEqual(self.folder.read("t_U.vtu"), "old")

    def test_standard_output_on_a_full_device(self) -> None:
        self.folder.write("c.toml", COMBINED)
        before = self.folder.names()
        for arguments in [[], ["--list"], ["--json", "-", "--csv", "t"], ["--help"]]:
            with self.subTest(arguments=arguments), open("/dev/full", "wb") as full:
                done = subprocess.run([COMBINE, *arguments, "c.toml"], cwd=self.folder.path,
                                      stdout=full, stderr=subprocess.PIPE, check=False)
                self.assertEqual(done.returncode, 2)
                if arguments != ["--help"]:
                    self.assertEqual(done.stderr, b"kestol-combine: error: failed writing to "
                                     b"standard output: No space left on device\n")
                self.assertEqual(self.folder.names(), before)

    def test_file_that_may_not_grow(self) -> None:
        def no_space() -> None:
            resource.setrlimit(resource.RLIMIT_FSIZE, (2000, 2000))
            signal.signal(signal.SIGXFSZ, signal.SIG_IGN)

        self.folder.write("c.toml", COMBINED)
        before = self.folder.names()
        for arguments in [("--json", "t.json"), ("--csv", "t"), ("--vtu", "t")]:
            with self.subTest(arguments=arguments):
                done = subprocess.run([COMBINE, "c.toml", *arguments], cwd=self.folder.path,
                                      preexec_fn=no_space, capture_output=True, check=False)
                self.assertEqual(done.returncode, 2)
                self.assertRegex(done.stderr.decode(), "^kestol-combine: error: failed writing to "
                                 "t[^\n]*: File too large\n$")
                self.assertEqual(self.folder.names(), before)

    def test_output_that_is_an_input(self) -> None:
        self.folder.write("c.toml", CASES)
        for name in ["c.toml", "portal.dat", "office.dat", "./wind.dat"]:
            with self.subTest(name=name):
                before = self.folder.read(name)
                self.assertEqual(len(self.refuse("c.toml", "--json", name)), 1)
                self.assertEqual(self.folder.read(name), before)


if __name__ == "__main__":
    unittest.main()
