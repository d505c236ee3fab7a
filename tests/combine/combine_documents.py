"""What the tests of kestol-combine's results share: its document, its numbers, comparisons."""

from __future__ import annotations

import json
import sys
import tempfile
import unittest
from pathlib import Path
from typing import Any, Iterator

from combine_run import CASES, Folder

COMBINE, EXPORT, KESTOL, EXAMPLES = sys.argv[1:5] if len(sys.argv) >= 5 else ("", "", "", "")
del sys.argv[1:5]

COMBINED = CASES + """[combinations]
ULS1 = { G = 1.35, Q1 = 1.5, W = 0.9 }
lift = { G = 1, W = -1.5 }
"""
GENERATED = COMBINED + '[eurocode]\nrules = ["6.10", "quasi-permanent"]\n'


def leaves(tree: Any, path: tuple = ()) -> Iterator[tuple[tuple, float]]:
    """All numbers of a result with their places."""
    if isinstance(tree, dict):
        for key, value in tree.items():
            if key not in ("printed", "inSupportAxes", "equilibrium"):
                yield from leaves(value, path + (key,))
    elif isinstance(tree, list):
        for place, value in enumerate(tree):
            yield from leaves(value, path + (place,))
    elif isinstance(tree, (int, float)):
        yield path, float(tree)


def at(tree: Any, path: tuple) -> Any:
    for key in path:
        tree = tree[key]
    return tree


def kind(path: tuple) -> tuple:
    """Values of one kind are judged together."""
    return tuple(key for key in path if isinstance(key, str))


class Documents(unittest.TestCase):
    """A folder with the portal and its combinations."""

    def setUp(self) -> None:
        self.home = tempfile.TemporaryDirectory()
        self.addCleanup(self.home.cleanup)
        self.folder = Folder(Path(self.home.name), COMBINE)
        self.folder.write("c.toml", COMBINED)

    def document(self, *arguments: str) -> dict:
        end = self.folder.combine(*arguments, "--json", "out.json")
        self.assertEqual((end.status, end.err), (0, ""))
        return json.loads(self.folder.read("out.json"))

    def assert_same(self, found: Any, wanted: Any, tolerance: float = 1e-10) -> None:
        values = dict(leaves(wanted))
        scales: dict[tuple, float] = {}
        for path, value in values.items():
            scales[kind(path)] = max(scales.get(kind(path), 0.0), abs(value))
        got = dict(leaves(found))
        self.assertEqual(got.keys(), values.keys())
        for path, value in values.items():
            self.assertLessEqual(abs(got[path] - value), tolerance * scales[kind(path)], path)
