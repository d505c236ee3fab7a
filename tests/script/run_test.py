"""script/run: what it gives to the solver, and what it leaves of the caller's standard output."""
import pathlib
import shutil
import subprocess
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
SOLVER = """#!/bin/sh
echo "asked for: $*" | sed 's|/[^ ]*/||g; s|tmp[.][^ ]*|REPORT|' >&2
for word; do last=$word; done
case $last in *.dat) exit 2 ;; esac
echo report >"$last"
case $* in *absent*) echo "can't open file absent.dat"; exit 2 ;; esac
"""


class Run(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.tree = pathlib.Path(folder.name)
        for name, text in (("script/build", "#!/bin/sh\n"), ("build/solver/main/kestol", SOLVER)):
            path = self.tree / name
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_text(text)
            path.chmod(0o755)
        shutil.copy(ROOT / "script" / "run", self.tree / "script")

    def run_it(self, *arguments):
        done = subprocess.run([self.tree / "script" / "run", *arguments], cwd=self.tree,
                              capture_output=True, text=True, check=False)
        return done.returncode, done.stdout, done.stderr

    def test_without_a_deck_an_example_is_run(self):
        self.assertEqual(self.run_it(), (0, "report\n", "asked for: 01-cantilever.dat REPORT\n"))

    def test_options_and_a_deck(self):
        self.assertEqual(self.run_it("-r0", "-i", "info", "a.dat"),
                         (0, "report\n", "asked for: -r0 -i info a.dat REPORT\n"))

    def test_a_named_report_is_not_printed(self):
        self.assertEqual(self.run_it("-p", "a.dat", "mine"), (0, "", "asked for: -p a.dat mine\n"))
        self.assertEqual((self.tree / "mine").read_text(), "report\n")

    def test_a_refusal_keeps_its_status_and_its_message(self):
        status, printed, _ = self.run_it("absent.dat")
        self.assertEqual((status, printed), (2, "can't open file absent.dat\n"))

    def test_a_file_as_standard_output_keeps_what_it_holds(self):
        with open(self.tree / "log", "w", encoding="utf-8") as log:
            log.write("before\n")
            log.flush()
            subprocess.run([self.tree / "script" / "run", "a.dat"], stdout=log,
                           stderr=subprocess.DEVNULL, check=True)
        self.assertEqual((self.tree / "log").read_text(), "before\nreport\n")


if __name__ == "__main__":
    unittest.main()
