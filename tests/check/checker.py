"""Runs kestol-check on texts and files, and keeps the score of a test."""
import json
import os
import subprocess
import sys
import tempfile


class Checker:
    def __init__(self, program):
        self.program = program
        self.folder = tempfile.TemporaryDirectory()
        self.environment = dict(os.environ, NO_COLOR="1", LC_ALL="C")

    def run(self, *arguments, **options):
        return subprocess.run([self.program, *map(str, arguments)], capture_output=True, text=True,
                              env=self.environment, timeout=300, **options)

    def write(self, text, name="deck.dat"):
        path = os.path.join(self.folder.name, name)
        with open(path, "w") as file:
            file.write(text)
        return path

    def json(self, path, *arguments):
        """The document of a deck; the exit status must fit it."""
        run = self.run("--format", "json", *arguments, path)
        if run.returncode not in (0, 1) or run.stderr:
            raise AssertionError(f"status {run.returncode}: {run.stderr}")
        document = json.loads(run.stdout)
        errors = any(f["severity"] == "error" for f in document["findings"])
        if "--strict" not in arguments and run.returncode != int(errors):
            raise AssertionError(f"status {run.returncode} with errors: {errors}")
        return document

    def findings(self, text, *arguments):
        return self.json(self.write(text), *arguments)["findings"]


class Score:
    def __init__(self):
        self.done, self.failed = 0, 0

    def expect(self, condition, *what):
        self.done += 1
        if not condition:
            self.failed += 1
            print("FAILED:", *what)
        return condition

    def equal(self, found, wanted, *what):
        return self.expect(found == wanted, *what, f"\n  found  {found!r}\n  wanted {wanted!r}")

    def end(self):
        print(f"{self.done} checks, {self.failed} failed")
        sys.exit(1 if self.failed or not self.done else 0)


def brief(findings):
    return [(f["code"], f["severity"], f["line"], f["text"].split("\n")[0]) for f in findings]
