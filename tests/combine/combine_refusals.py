"""Runs of kestol-combine that must not succeed. The program is the first argument of the test."""

from __future__ import annotations

import sys
import tempfile
import unittest
from pathlib import Path

from combine_run import CASES, Folder, Run

COMBINE = sys.argv.pop(1) if len(sys.argv) > 1 else ""

COMBINED = CASES + "[combinations]\nU = { G = 1.35, Q1 = 1.5, W = 0.9 }\n"


class Refusals(unittest.TestCase):
    def setUp(self) -> None:
        self.home = tempfile.TemporaryDirectory()
        self.addCleanup(self.home.cleanup)
        self.folder = Folder(Path(self.home.name), COMBINE)

    def end_of(self, *arguments: str) -> Run:
        """A run that writes nothing but messages."""
        before = self.folder.names()
        end = self.folder.combine(*arguments)
        self.assertEqual(end.out, "")
        self.assertEqual(self.folder.names(), before)
        return end

    def refuse(self, words: str, *arguments: str, status: int = 2) -> None:
        """The whole text on standard error, and the status."""
        end = self.end_of(*arguments)
        self.assertEqual((end.status, end.err), (status, words))

    def fail_with(self, words: str, *arguments: str) -> None:
        self.refuse(f"kestol-combine: error: {words}\n", *arguments)
