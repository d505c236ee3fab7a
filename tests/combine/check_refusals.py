#!/usr/bin/env python3
"""Every refusal of kestol-combine beside mistakes in its files: command lines, inputs, models, outputs; in
its words, with the exit status, and no file left behind.

    check_refusals.py kestol-combine
"""

from __future__ import annotations

import os
import resource
import signal
import subprocess
import unittest

from combine_refusals import COMBINE, COMBINED, Refusals
from combine_run import CASES, frame

# The arguments, the words between the program's name and the hint.
USAGE = (
    ("", "COMBINATIONS.toml is required"),
    ("--bogus c.toml", "unknown option --bogus"),
    ("c.toml d.toml", "The following argument was not expected: d.toml"),
    ("c.toml --csv", "--csv: 1 required PREFIX missing"),
    ("--solver magic c.toml", "--solver: magic is none of deck, direct, skyline, sparse"),
    ("--list --json x c.toml", "--list writes no results"),
    ("--list --csv x c.toml", "--list writes no results"),
    ("--list --vtu x c.toml", "--list writes no results"),
    ("--envelopes --vtu x c.toml", "--vtu writes cases and combinations, no envelopes"),
)
GRAVITY = ("portal.dat:9:1: error: for 2D problems GravityDirection_Z must be 0.0 [model]\n"
           "    9 | GravityDirection 0 0 1\n      | ^~~~~~~~~~~~~~~~\n"
           "  write GravityDirection 0 -1 0 for a weight along -y\n")
NO_SECTION = "portal.dat: error: section parameter A is 0 for element 1 [model]\n"
UNKNOWN_KEY = ":33: error: Unknown key name=materails [syntax]\n   33 | materails\n"
MOVES = (": error: the supports leave the model a rigid motion [rigid-motion]\n"
         "  mode 1: nodes 1-4 slide along x\n"
         "    supports at nodes 1 and 4 (lines 27-28)\n")
HINGED = ("portal.dat:20:5: error: element 2 is loaded and hinged at its first node 2: write \"3 2\" [hinge-first]\n"
          "   20 |     2 2 3 1\n      |     ^\n")


class Inputs(Refusals):
    def test_command_lines(self) -> None:
        self.folder.write("c.toml", CASES)
        for arguments, words in USAGE:
            with self.subTest(arguments):
                self.refuse(f"kestol-combine: {words}; try kestol-combine --help\n", *arguments.split())

    def test_files_that_cannot_be_read(self) -> None:
        self.fail_with("can't open file none.toml: No such file or directory", "none.toml")
        self.fail_with("can't open file .: Is a directory", ".")
        self.fail_with("failed reading /proc/self/mem: Input/output error", "/proc/self/mem")
        # It opens, and nothing stands at its beginning.
        self.fail_with("failed reading /proc/self/mem: Input/output error", "/proc/self/mem")

    def test_model_that_cannot_be_solved(self) -> None:
        self.folder.write("c.toml", CASES)
        for deck, status, words in (
                (frame().replace("A=1e-2", "A=0"), 2, NO_SECTION),
                (frame().replace("0 -1 0\nmesh", "0 0 1\nmesh"), 2, GRAVITY),
                (frame() + "materails\n", 2, "portal.dat" + UNKNOWN_KEY),
                (frame().replace(" 111 ", " 010 "), 1, "portal.dat" + MOVES),
                (frame() + "rotules\n 2\nend\n", 1, HINGED)):
            self.folder.write("portal.dat", deck)
            self.folder.write("wind.dat", "nodal_point_loads\n 2 12 0 0\nend\n")
            self.refuse(words, "c.toml", "--json", "c.json", status=status)

    def test_pipes_are_read_once(self) -> None:
        text = CASES.replace("portal.dat", "pipe").replace('"wind"', '"windy"')
        self.folder.write("c.toml", text)
        os.mkfifo(self.folder.path / "pipe")
        self.refuse("c.toml:9:12: error: unknown category \"windy\": did you mean \"wind\"? [unknown-category]\n"
                    "    9 | category = \"windy\"\n      |            ^~~~~~~\n", "c.toml")
        self.folder.write("c.toml", text.replace('"windy"', '"wind"') + COMBINED[len(CASES):])
        self.folder.write("wind.dat", "nodal_point_loads\n 2 12 0 0\nend\n")
        for deck, status, words in [(frame(), 0, ""), (frame() + "materails\n", 2, "pipe" + UNKNOWN_KEY),
                                    (frame().replace(" 111 ", " 010 "), 1, "pipe" + MOVES)]:
            self.folder.write("deck", deck)
            with subprocess.Popen(["cp", "deck", "pipe"], cwd=self.folder.path):
                end = self.folder.combine("c.toml", "--json", "/dev/null")
            self.assertEqual((end.status, end.err), (status, words))


class Outputs(Refusals):
    def test_nothing_to_write(self) -> None:
        self.folder.write("c.toml", CASES)
        self.fail_with("the text holds envelopes, and there is no combination to make one of; --json, --csv or --vtu "
                       "write the cases", "c.toml")
        for choice in (["--envelopes"], ["--combinations"], ["--combinations", "--envelopes"]):
            for kind in ("--json", "--csv"):
                self.fail_with("there is no combination; --cases writes the cases", "c.toml", kind, "x", *choice)
        self.folder.write("c.toml", COMBINED)
        for choice in (["--cases"], ["--combinations"], ["--cases", "--json", "x", "-o", "y"]):
            self.fail_with("the text holds envelopes alone; --json, --csv or --vtu write cases and combinations",
                           "c.toml", *choice)

    def test_files_that_cannot_be_written(self) -> None:
        self.folder.write("c.toml", COMBINED)
        for kind, name, end in (("--json", "no/x", ""), ("-o", "no/x", ""), ("--csv", "no/x", "_nodes.csv"),
                                ("--vtu", "no/x", ".pvd")):
            self.fail_with(f"can't open file {name}{end}: No such file or directory", "c.toml", kind, name)
        self.fail_with("can't open file no/x: No such file or directory", "c.toml", "--list", "-o", "no/x")

    def test_outputs_of_one_name(self) -> None:
        self.folder.write("c.toml", COMBINED)
        for arguments, name in [("--csv t --json t_nodes.csv", "t_nodes.csv"),
                                ("--csv t --json ./t_envelope_nodes.csv", "t_envelope_nodes.csv"),
                                ("--vtu t --json t_U.vtu", "t_U.vtu"), ("--vtu t -o t.pvd", "t.pvd")]:
            with self.subTest(arguments):
                self.fail_with(f"two outputs have the name {name}", "c.toml", *arguments.split())
        self.fail_with("two outputs go to standard output", "c.toml", "--json", "-", "-o", "-")

    def test_output_that_is_an_input(self) -> None:
        self.folder.write("c.toml", CASES)
        for name, other in [("c.toml", "c.toml"), ("portal.dat", "portal.dat"), ("office.dat", "office.dat"),
                            ("./wind.dat", "wind.dat")]:
            with self.subTest(name):
                before = self.folder.read(name)
                self.fail_with(f"the output {name} is the input {other}", "c.toml", "--json", name)
                self.fail_with(f"the output {name} is the input {other}", "c.toml", "--list", "-o", name)
                self.assertEqual(self.folder.read(name), before)

    def test_no_output_without_all_others(self) -> None:
        self.folder.write("c.toml", COMBINED)
        self.folder.write("t_U.vtu", "old")
        for arguments in [("--json", "/dev/full"), ("--json", "/dev/full", "--csv", "t", "--vtu", "t"),
                          ("-o", "/dev/full", "--json", "t.json", "--csv", "t", "--vtu", "t")]:
            with self.subTest(arguments=arguments):
                self.fail_with("failed writing to /dev/full: No space left on device", "c.toml", *arguments)
        self.assertEqual(self.folder.read("t_U.vtu"), "old")

    def test_standard_output_on_a_full_device(self) -> None:
        self.folder.write("c.toml", COMBINED)
        before = self.folder.names()
        for arguments in [[], ["--list"], ["--json", "-", "--csv", "t"], ["--help"]]:
            with self.subTest(arguments=arguments), open("/dev/full", "wb") as full:
                done = subprocess.run([COMBINE, *arguments, "c.toml"], cwd=self.folder.path,
                                      stdout=full, stderr=subprocess.PIPE, check=False)
                self.assertEqual((done.returncode, done.stderr),
                                 (2, b"kestol-combine: error: failed writing to standard output: "
                                     b"No space left on device\n"))
                self.assertEqual(self.folder.names(), before)

    def test_file_that_may_not_grow(self) -> None:
        def no_space() -> None:
            resource.setrlimit(resource.RLIMIT_FSIZE, (2000, 2000))
            signal.signal(signal.SIGXFSZ, signal.SIG_IGN)

        self.folder.write("c.toml", COMBINED)
        before = self.folder.names()
        for arguments, name in [("--json t.json", "t.json"), ("--csv t", "t_stations.csv"), ("--vtu t", "t_G.vtu")]:
            with self.subTest(arguments):
                done = subprocess.run([COMBINE, "c.toml", *arguments.split()], cwd=self.folder.path,
                                      preexec_fn=no_space, capture_output=True, check=False)
                self.assertEqual((done.returncode, done.stderr.decode()), (
                    2, f"kestol-combine: error: failed writing to {name}: File too large\n"))
                self.assertEqual(self.folder.names(), before)


if __name__ == "__main__":
    unittest.main()
