"""Runs the program on decks, each in one scratch folder, and looks at how it ends."""
import os
import pathlib
import resource
import subprocess
import sys
import tempfile


class Checker:
    """Counts what went wrong; `finish` ends the script accordingly."""

    def __init__(self, program, sanitized):
        self.program = os.path.abspath(program)
        self.sanitized = sanitized
        self.folder = tempfile.TemporaryDirectory()
        self.failures = 0
        self.runs = 0

    def run(self, deck, memory=None, seconds=60):
        """(status, output, report, results) of one run of the deck's bytes; a run that was killed
        or took too long has the status None. `memory` bounds the address space in bytes."""
        folder = pathlib.Path(self.folder.name)
        for old in folder.iterdir():
            old.unlink()
        (folder / "model.dat").write_bytes(deck)
        limit = None
        if memory is not None:
            def limit():
                resource.setrlimit(resource.RLIMIT_AS, (memory, memory))
        self.runs += 1
        try:
            done = subprocess.run([self.program, "model.dat", "report"], cwd=folder,
                                  stdout=subprocess.PIPE, stderr=subprocess.PIPE, timeout=seconds,
                                  preexec_fn=limit, check=False)
        except subprocess.TimeoutExpired:
            return None, b"(no end in time)", None, None
        return (done.returncode, done.stdout + done.stderr, self.content(folder / "report"),
                self.content(folder / "model.kestol.res"))

    @staticmethod
    def content(path):
        return path.read_bytes() if path.exists() else None

    def expect(self, holds, what, output=b""):
        if not holds:
            self.failures += 1
            print(f"FAILED: {what}\n  {output[:2000].decode(errors='replace')}")

    def expect_success(self, deck, what):
        """The report and the results of a deck that must be solved."""
        status, output, report, results = self.run(deck)
        self.expect(status == 0 and output == b"" and report and results, what, output)
        return report, results

    def expect_refusal(self, deck, what, message=None, **limits):
        """A deck must end with status 2 and a message, and write no results."""
        status, output, _, results = self.run(deck, **limits)
        good = status == 2 and output != b"" and results is None
        if message is not None:
            good = good and output == message.encode()
        self.expect(good, f"{what}: status {status}", output)

    def expect_orderly_end(self, deck, what):
        """A deck must be solved or be refused with a message."""
        status, output, _, results = self.run(deck)
        if self.sanitized and b"allocat" in output and b"AddressSanitizer" in output:
            return  # the sanitizer's own refusal of a very large allocation
        good = status == 0 and output == b"" and results or status == 2 and output != b""
        self.expect(good, f"{what}: status {status}", output)

    def finish(self):
        print(f"{self.runs} runs, {self.failures} failures")
        sys.exit(1 if self.failures or not self.runs else 0)
