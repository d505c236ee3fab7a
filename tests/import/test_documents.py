"""docs/import.md, the completion and the examples: what they say is what is there."""
import math
import os
import re
import shutil
import subprocess
import unittest

from support import GMSH, PROGRAM, ROOT, SOLVER, Case

PAGE = ROOT / "docs" / "import.md"
EXAMPLES = ROOT / "examples" / "import"


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
        self.path = f"{programs}:/usr/bin:/bin"

    def run_line(self, line):
        return subprocess.run(["sh", "-c", line], cwd=self.folder, text=True, check=False,
                              capture_output=True, stdin=subprocess.DEVNULL,
                              env={**os.environ, "PATH": self.path, "PYTHONDONTWRITEBYTECODE": "1"})

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
        self.assertIn("force (0, 0, -2000) N, moment about the origin (", report)
        self.assertRegex(report, r'material "steel" on "body": \d+ tetrahedra, volume [0-9.]+ mm\^3\n')
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
            table |= set(re.findall(r"`([a-z][a-z-]*)`", row))
        table -= {"pressure", "normal", "force"}
        self.assertEqual(table - words, set())
        tests = "".join(f.read_text(encoding="utf-8")
                        for f in (ROOT / "tests" / "import").glob("test_*.py"))
        seen = set(re.findall(r"\[([a-z]+(?:-[a-z]+)*)\\?\]", re.sub(r'"\s*\n\s*f?r?"', "", tests)))
        self.assertEqual({code for code in table if code not in seen}, set())
        codes = set(re.findall(r'"([a-z-]+)",\s*(?:Place\(|place\)|use\.|table\.|self\.place)', sources))
        self.assertEqual(codes - table - {"groups", "plate", "codes"}, set())

    def test_values_of_options_complete(self):
        script = (f"source {ROOT}/completions/kestol-import; COMP_WORDS=(kestol-import --or); "
                  "COMP_CWORD=1; _kestol_import kestol-import --or kestol-import; "
                  "echo ${COMPREPLY[@]}; _kestol_import kestol-import '' --order; "
                  "echo ${COMPREPLY[@]}")
        done = subprocess.run(["bash", "-c", script], text=True, capture_output=True, check=False)
        self.assertEqual(done.stdout, "--order\nkeep rcm\n", done.stderr)


if __name__ == "__main__":
    unittest.main()
