"""kestol.check says what kestol-check says."""
import json
import os
import pathlib
import re
import subprocess

import pytest

import kestol
from frames import DECK, portal

PROGRAM = os.environ["KESTOL_CHECK"]
CODES = pathlib.Path(__file__).parents[1] / "check" / "decks"


def by_program(path, *options):
    run = subprocess.run([PROGRAM, "--format", "json", *options, path], capture_output=True,
                         text=True)
    return json.loads(run.stdout)["findings"]


def place(finding):
    return (finding.line or 0, finding.column or 0, finding.end_column or 0)


@pytest.mark.parametrize("deck", sorted(CODES.glob("*-bad.dat")), ids=lambda path: path.stem)
def test_every_kind_of_finding(deck):
    found = kestol.check(deck)
    assert found
    wanted = by_program(deck)
    members = ("code", "severity", "text", "file", "line", "column", "endColumn", "nodes",
               "elements")
    assert [(f.code, f.severity, f.text, f.file, *place(f), f.nodes, f.elements)
            for f in found] == [tuple(f[member] for member in members) for f in wanted]


def test_a_sound_model_has_none():
    assert kestol.check(portal()) == []


def test_a_model_that_was_read_has_the_places_of_its_file(tmp_path):
    path = tmp_path / "portal.dat"
    path.write_text("\n\n" + re.sub(r"Iz=\S+", "Iz=1e5", DECK))
    model = kestol.read(path)
    (finding,) = kestol.check(model)
    assert (finding.code, finding.severity, finding.file) == ("magnitude", "warning", str(path))
    lines = path.read_text().splitlines()
    assert lines[finding.line - 1][finding.column - 1:finding.end_column - 1] == "1e5"
    assert str(finding).startswith(f"{path}:{finding.line}:{finding.column}: warning: ")

    copy = model.copy()
    copy.add_node(50, 50)
    (_, finding) = sorted(kestol.check(copy), key=lambda f: f.severity, reverse=True)
    assert finding.code == "orphan-node" and finding.severity == "error"
    assert copy.text().splitlines()[finding.line - 1].split()[0] == str(finding.nodes[0])
    assert [f.code for f in kestol.check(model)] == ["magnitude"]


def test_options():
    model = portal()
    model.add_rotule([2, 3])
    model.add_node(9, 9)
    assert "orphan-node" in [f.code for f in kestol.check(model)]
    assert "orphan-node" not in [f.code for f in kestol.check(model, disable=["orphan-node"])]
    deck = CODES / "large-displacement-bad.dat"
    assert [f.code for f in kestol.check(deck)] == ["large-displacement"]
    assert kestol.check(deck, solve=False) == []
    deck = CODES / "ill-conditioned-bad.dat"
    assert "ill-conditioned" in [f.code for f in kestol.check(deck)]
    assert "ill-conditioned" not in [f.code for f in kestol.check(deck, condition=False)]
    deck = CODES / "mechanism-bad.dat"
    (finding,) = (f for f in kestol.check(deck) if f.code == "mechanism")
    assert "mode 1" in finding.text
    (finding,) = (f for f in kestol.check(deck, mechanisms=0) if f.code == "mechanism")
    assert "mode 1" not in finding.text


def test_files_that_cannot_be_read(tmp_path):
    for path in (tmp_path / "missing.dat", tmp_path):
        with pytest.raises(kestol.Error) as caught:
            kestol.check(path)
        assert caught.value.code == "file"
    (tmp_path / "empty.dat").write_text("")
    with pytest.raises(kestol.Error) as caught:
        kestol.check(tmp_path / "empty.dat")
    assert "is empty" in caught.value.text
