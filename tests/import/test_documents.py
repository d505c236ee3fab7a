"""docs/import.md, the manual page, the completion and the examples: what they say is what is there."""
import math
import os
import re
import shutil
import subprocess
import unittest

from support import GMSH, PROGRAM, ROOT, SOLVER, Case

PAGE = ROOT / "docs" / "import.md"
EXAMPLES = ROOT / "examples" / "import"


def transcripts():
    """(command, lines that it prints) in the order of the page."""
    found = []
    for line in PAGE.read_text(encoding="utf-8").split("\n"):
        if line.startswith("    $ "):
            found.append((line[6:], []))
        elif line.startswith("    ") and found and found[-1] is not None:
            found[-1][1].append(line[4:])
        elif found:
            found.append(None)
    return [entry for entry in found if entry]


class Documents(Case):
    def setUp(self):
        super().setUp()
        for file in EXAMPLES.iterdir():
            shutil.copy(file, self.folder)
        programs = self.folder / "bin"
        programs.mkdir()
        os.symlink(PROGRAM, programs / "kestol-import")
        os.symlink(SOLVER, programs / "kestol")
        os.symlink(shutil.which(GMSH), programs / "gmsh")
        self.companions = {}
        for name in ("kestol-check", "kestol-view"):
            path = os.environ.get(name.upper().replace("-", "_"))
            if path:
                os.symlink(path, programs / name)
            self.companions[name] = bool(path)
        self.path = f"{programs}:/usr/bin:/bin"

    def run_line(self, line):
        return subprocess.run(["sh", "-c", line], cwd=self.folder, text=True, check=False,
                              capture_output=True, stdin=subprocess.DEVNULL,
                              env={**os.environ, "PATH": self.path, "PYTHONDONTWRITEBYTECODE": "1"})

    def test_the_commands_of_the_page_do_what_it_says(self):
        ran = []
        for line, printed in transcripts():
            if not self.companions.get(line.split()[0], True):
                continue  # a build without that companion
            with self.subTest(command=line):
                done = self.run_line(line)
                self.assertEqual(done.returncode, 0, done.stdout + done.stderr)
                self.assertEqual(done.stdout.splitlines(), printed)
                ran.append(line)
        self.assertGreaterEqual(len(ran), 11)

    def test_the_portal_is_in_balance(self):
        self.run_line("gmsh -v 1 -1 portal.geo -o portal.msh")
        self.made("portal.msh", "portal.toml", "-o", "portal.dat")
        results = self.solve("portal.dat")
        held = results.held()
        self.near(held[0], -8e3, 1e-4)
        self.near(held[1], 72e3, 1e-4)

    def test_the_tank_widens_as_theory_says(self):
        """Long cylinder, clamped foot; nu = 0."""
        self.run_line("gmsh -v 1 -2 tank.geo -o tank.msh")
        self.made("tank.msh", "tank.toml", "-o", "tank.dat")
        results = self.solve("tank.dat")
        beta, z = 3 ** 0.25 / math.sqrt(3 * 0.25), 1.5
        edge = math.exp(-beta * z)
        target = 10 * 9 / 30e6 / 0.25 * (5 - z - 5 * edge * math.cos(beta * z)
                                         - (5 - 1 / beta) * edge * math.sin(beta * z))
        for place, axis in (((3, 0, z), 0), ((0, 3, z), 1)):
            self.near(results.at(*place)[axis], target, 0.02)

    def test_the_bracket_holds_its_bolt(self):
        self.run_line("gmsh -v 1 -3 bracket.geo -o bracket.msh")
        report = self.made("bracket.msh", "bracket.toml", "-o", "bracket.dat")
        self.assertIn("force (0, 0, -2000)", report)
        results = self.solve("bracket.dat")
        self.near(results.held()[2], 2000, 1e-4)
        self.assertLess(results.at(80, 20, 0)[2], 0)

    def test_recipes_on_the_page_are_in_the_examples(self):
        page = PAGE.read_text(encoding="utf-8")
        tank = (EXAMPLES / "tank.toml").read_text(encoding="utf-8")
        start = page.index("    [material.concrete]")
        shown = page[start:page.index("Now the deck:")]
        for line in shown.splitlines():
            self.assertIn(line.strip(), tank)
        for line in re.findall(r"    (Physical .*)", page):
            self.assertIn(line, (EXAMPLES / "tank.geo").read_text(encoding="utf-8"))

    def test_every_code_has_its_row(self):
        sources = "".join(f.read_text(encoding="utf-8")
                          for f in sorted((ROOT / "import" / "kestol_import").glob("*.py")))
        words = set(re.findall(r'"([a-z]+(?:-[a-z]+)*)"', sources))
        table = set()
        for row in re.findall(r"(?m)^\| (`.*?) \|", PAGE.read_text(encoding="utf-8")):
            table |= set(re.findall(r"`([a-z-]+)`", row))
        table -= {"pressure", "normal", "force"}
        self.assertEqual(table - words, set())
        tests = "".join(f.read_text(encoding="utf-8")
                        for f in (ROOT / "tests" / "import").glob("test_*.py"))
        seen = set(re.findall(r"\[([a-z]+(?:-[a-z]+)*)\\?\]", re.sub(r'"\s*\n\s*f?r?"', "", tests)))
        self.assertEqual({code for code in table if code not in seen}, set())
        codes = set(re.findall(r'"([a-z-]+)",\s*(?:Place\(|place\)|use\.|table\.|self\.place)', sources))
        self.assertEqual(codes - table - {"groups", "plate", "codes"}, set())

    def test_every_option_is_in_the_manual_and_completes(self):
        said = self.run_import("--help").stdout
        options = set(re.findall(r"(?<![\w-])(--?[a-z][a-z-]*)", said)) - {"-import"}
        manual = (ROOT / "docs" / "man" / "kestol-import.1").read_text(encoding="utf-8")
        manual = manual.replace("\\-", "-")
        completion = (ROOT / "completions" / "kestol-import").read_text(encoding="utf-8")
        for option in options - {"-h"}:
            self.assertIn(option, manual)
            self.assertRegex(completion, rf"(?<![\w-]){option}(?![\w-])")
        script = (f"source {ROOT}/completions/kestol-import; COMP_WORDS=(kestol-import --or); "
                  "COMP_CWORD=1; _kestol_import kestol-import --or kestol-import; "
                  "echo ${COMPREPLY[@]}; _kestol_import kestol-import '' --order; "
                  "echo ${COMPREPLY[@]}")
        done = subprocess.run(["bash", "-c", script], text=True, capture_output=True, check=False)
        self.assertEqual(done.stdout, "--order\nkeep rcm\n", done.stderr)

    def test_the_manual_page_is_well_formed(self):
        page = ROOT / "docs" / "man" / "kestol-import.1"
        done = subprocess.run(["man", "--warnings", "-E", "UTF-8", "-l", "-Tutf8", "-Z", str(page)],
                              text=True, capture_output=True, check=False)
        self.assertEqual((done.returncode, done.stderr), (0, ""))


if __name__ == "__main__":
    unittest.main()
