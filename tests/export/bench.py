"""A folder in which kestol-export runs, and decks that it takes and refuses."""
import pathlib
import tempfile

from exporter import Failures, run

ROW = """PROBLEM row
TYPE 2d
mesh dimension = 2 elemtype Linear nnode = 2
coordinates
1 0 0
2 3 0
end coordinates
elements
1 1 2 1
end elements
materials
1 E=2e11 A=1e-2 Iz=1e-5
end materials
constraints
1 {codes} 0 0 0
end constraints
nodal_point_loads
2 0 -1000 0
end nodal_point_loads
"""
SOUND, MECHANISM = ROW.format(codes="111"), ROW.format(codes="110")
BROKEN = SOUND.replace("2 0 -1000", "7 0 -1000")
WORTHLESS = SOUND.replace("A=1e-2", "A=0")
TABLES = ("nodes", "beams", "stations", "shells", "solids", "reactions", "loads")


class Bench:
    def __init__(self, program, solver, root):
        self.program, self.solver, self.root = map(pathlib.Path, (program, solver, root))
        self.folder = tempfile.TemporaryDirectory()
        self.work = pathlib.Path(self.folder.name)
        self.failures = Failures()
        self.expect = self.failures.expect

    def put(self, text, name="deck.dat"):
        for old in self.work.iterdir():
            old.unlink()
        (self.work / name).write_text(text, encoding="latin-1")

    def run(self, *arguments, **options):
        return run(self.program, *arguments, cwd=self.work, **options)

    def files(self):
        return sorted(path.name for path in self.work.iterdir())

    def refused(self, status, words, *arguments, **options):
        """These words and no other, that status, and no file that was not there before."""
        before = self.files()
        done = self.run(*arguments, **options)
        told = done.stderr.decode("latin-1")
        self.expect((done.returncode, told) == (status, words), arguments, done.returncode, "says", repr(told),
                    "instead of", status, repr(words))
        self.expect(done.stdout == b"", arguments, "standard output", done.stdout[:100])
        self.expect(self.files() == before, arguments, "files", self.files())

    def check(self, what, checks):
        """Each of the checks by its name, and the status for the end of the program."""
        for check in checks:
            before = self.failures.count
            check(self)
            print(check.__name__, "failed" if self.failures.count > before else "passed")
        return self.failures.finish(what)
