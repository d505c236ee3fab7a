#!/usr/bin/env python3
"""Every mistake in a combination file and in the loads of a case: its message, its place and its line,
the exit status, and no file left behind.

    check_mistakes.py kestol-combine
"""

from __future__ import annotations

import unittest

from combine_refusals import Refusals
from combine_run import CASES

CASE = 'model = "portal.dat"\n[cases.G]\ncategory = "permanent"\nloads = "model"\n'
RULES = CASES + "[eurocode]\n"

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
    (CASE.replace('"model"', '"/proc/self/mem"'),
     ["4:9: error: failed reading /proc/self/mem: Input/output error [file]"]),
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
    (CASE + ".".join("abcdefghijklmnopqrstu") + " = 1\n",
     ["5:40: error: a key of more than 20 parts [syntax]"]),
    (CASE + ".".join("abcdefghijklmnopqrst") + " = 1\n",
     ['5:1: error: unknown key in case "G": "a" [unknown-word]']),
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
    ("nodal_point_loads\n 2 1 0 0\nconstraints\n 4 111 0 0 0\nend\n", 3,
     "section 'nodal_point_loads' of line 1 has no \"end\" before 'constraints' [syntax]"),
    ("nodal_point_loads\n 2 1 0\nend\n", 2, "Not reading correctly the loads B. Number=2 [syntax]"),
    ("constraints\n 4 111 0.01 0 0 Euler1=1\nend\n", 2,
     "the axes of the support of node 4 are not those of the model [syntax]"),
    ("units_names\n x\n", 2,
     "'units_names' items should be: name nameN nameM namePa facN facM [syntax]"),
    ("units_names\n N-mm N mm MPa 1 0.001\n", 2,
     "'units_names' should finish with the 'end' word [syntax]"),
    ("nodal_point_loads\n 2 1 0 0\nend\nunits_names\n N-mm N mm MPa 1 0.001\n kN-m MN m MPa 1e6 1\nend\n", 6,
     "unit system 'kN-m' is known with other factors: give it another name [syntax]"),
    ("units_names\n kN-m kN mm kPa 1000 0.001\nend\n", 2,
     "unit system 'kN-m' is known with other factors: give it another name [syntax]"),
    ("units_names\n MN-m MN m MPa 1e6 1\n MN-m MN m MPa 1000 1\nend\n", 3,
     "unit system 'MN-m' is known with other factors: give it another name [syntax]"),
    ("units_mat_and_load N-mm\n", 1, "Unit name 'N-mm' has not been previously defined [syntax]"),
    ("units_names\n N-mm N mm MPa 1 0.001\nend\nunits_res N-mm\n", 4,
     "the units of the results are those of the model [syntax]"),
]


class Mistakes(Refusals):
    def assert_mistakes(self, name: str, wanted: list[str], *arguments: str) -> None:
        """The messages behind the name of their file, each above its line and with a caret below the column."""
        end = self.end_of(*arguments)
        self.assertEqual(end.status, 2, end.err)
        source = self.folder.read(name).encode().split(b"\n")
        lines = end.err.splitlines()
        for message in wanted:
            self.assertEqual(lines.pop(0), f"{name}:{message}")
            place = message.split(": ")[0].split(":")
            self.assertEqual(lines.pop(0), f"{place[0]:>5} | {source[int(place[0]) - 1].decode()}")
            if len(place) > 1:
                self.assertRegex(lines.pop(0), rf"^      \| {' ' * (int(place[1]) - 1)}\^~*$")
        self.assertEqual(lines, [])

    def test_every_mistake_of_the_file(self) -> None:
        for text, wanted in MISTAKES:
            with self.subTest(text=text):
                self.folder.write("c.toml", text)
                self.assert_mistakes("c.toml", wanted, "c.toml", "--json", "c.json")

    def test_text_that_is_no_toml(self) -> None:
        """The words are those of the library that reads it."""
        self.folder.write("c.toml", CASES + "[combinations\n")
        end = self.end_of("c.toml")
        self.assertEqual(end.status, 2)
        self.assertRegex(end.err, r"^c\.toml:11:14: error: [^\n]* expected '\]', saw '\\n' \[syntax\]\n"
                                  r"   11 \| \[combinations\n      \| {14}\^\n$")

    def test_line_and_caret_stand_below_the_message(self) -> None:
        self.folder.write("c.toml", "modl = 1\n" + CASE)
        lines = self.folder.combine("c.toml").err.splitlines()
        self.assertEqual(lines[1:], ["    1 | modl = 1", "      | ^~~~"])

    def test_every_mistake_of_a_case(self) -> None:
        self.folder.write("c.toml", CASES)
        for text, line, wanted in CASE_MISTAKES:
            with self.subTest(text=text):
                self.folder.write("wind.dat", text)
                self.assert_mistakes("wind.dat", [f"{line}: error: {wanted}"], "c.toml", "--json", "c.json")

    def refuse_too_many(self) -> None:
        lines = self.folder.read("c.toml").splitlines()
        self.assert_mistakes("c.toml", [
            f"{len(lines)}:9: error: the rules give more than 100000 combinations: name actions that are never "
            "together in `exclusive`, or join cases [too-many]"], "c.toml", "--list")

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


if __name__ == "__main__":
    unittest.main()
