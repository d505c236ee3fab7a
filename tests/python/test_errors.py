"""Refusals are kestol.Error with file, line and code."""
import pathlib
import pickle
import subprocess
import sys

import pytest

import kestol
from frames import DECK, grid, portal


def refused(action, *arguments, **keywords):
    with pytest.raises(kestol.Error) as caught:
        action(*arguments, **keywords)
    return caught.value


def test_a_line_of_a_deck(tmp_path):
    path = tmp_path / "portal.dat"
    path.write_text(DECK.replace("A=", "Q="))
    error = refused(kestol.read, path)
    line = 1 + DECK[:DECK.index("  1 E=")].count("\n")
    assert (error.file, error.line, error.code) == (str(path), line, "syntax")
    assert error.text == "Input of materials not correct. Unknown char: 'Q'"
    assert str(error) == f"{path}:{line}: {error.text} [syntax]"


def test_a_model_as_a_whole():
    error = refused(kestol.solve, kestol.Model(dimension=2))
    assert (error.text, error.code) == ("it is necessary at least one mesh", "model")
    assert error.file is None and error.line is None
    model = portal()
    model.add_beam(1, 3, material=8)
    assert refused(kestol.solve, model).code == "model"


def test_a_mechanism():
    model = portal()
    model.add_node(9, 9)
    error = refused(kestol.solve, model)
    assert error.code == "mechanism"
    first, *modes = error.text.split("\n")
    assert first == "the model is a mechanism in 3 ways"
    assert sum("node 5" in line for line in modes) == 3


def test_a_mechanism_that_the_solver_does_not_notice():
    model = kestol.Model(dimension=2)
    model.add_material(1, E=2.1e11, A=1e-2, Iz=1e-5)
    model.add_nodes([[0, 0], [3, 0], [6, 0], [9, 0]])
    model.add_beams([[1, 2], [2, 3], [3, 4]], material=1)
    model.add_support([1, 4], "110")
    model.add_rotule([2, 3])
    model.add_nodal_load(2, 0, -10, 0)
    for solver in ("deck", "skyline", "sparse", "direct"):
        if solver == "direct" and not kestol.direct_solver_is_built():
            continue
        error = refused(kestol.solve, model, solver)
        assert error.code == "mechanism"
        assert error.text.startswith("the model is a mechanism in 2 ways\n  mode 1: node 3 moves")


def test_what_is_not_solved_and_is_no_mechanism():
    model = kestol.Model(dimension=2)
    model.set_solver("Sparse", 1e-12, 1e-12, 10)
    model.add_material(1, E=2.1e11, A=1e-2, Iz=1e-5)
    nodes, pairs = grid(64)
    model.add_nodes(nodes)
    model.add_beams(pairs, material=1)
    model.add_support(1, "111")
    model.add_nodal_load(len(nodes), 0, -1000, 0)
    for solve in (lambda: kestol.solve(model, "deck"),
                  lambda: kestol.combine(model, {"G": "model"}, {}, solver="deck")):
        error = refused(solve)
        assert error.text.startswith("error when solving system. Stopped after 10 iterations")
        assert error.code == "model"
    sideways = kestol.read_text(DECK.replace(" A=", " Weight=78.5 A="))
    sideways.set_gravity(0, 0, 1)
    for solve in (kestol.solve, lambda model: kestol.combine(model, {"G": "model"}, {})):
        error = refused(solve, sideways)
        assert error.text == "for 2D problems GravityDirection_Z must be 0.0"
        assert error.code == "model"


def test_outputs_never_replace_the_deck(tmp_path):
    path = tmp_path / "portal.dat"
    path.write_text(DECK)
    model = kestol.read(path)
    assert refused(model.write, path).code == "file"
    assert refused(kestol.solve(model).to_vtu, path).code == "file"
    assert path.read_text() == DECK


def test_errors_can_be_sent():
    error = kestol.Error("text", "a.dat", 7, "syntax")
    again = pickle.loads(pickle.dumps(error))
    assert (again.text, again.file, again.line, again.code) == ("text", "a.dat", 7, "syntax")
    assert str(kestol.Error("text", "a.dat")) == "a.dat: text [model]"


def test_unknown_keys_are_mistakes_of_the_script():
    with pytest.raises(TypeError):
        portal().add_material(2, alpha=3)


def test_no_memory_is_a_memory_error():
    script = """
import kestol, resource, sys
sys.path.insert(0, sys.argv[1])
from frames import grid
nodes, pairs = grid(60_000)
model = kestol.Model(dimension=2)
model.add_nodes(nodes); model.add_beams(pairs, material=1)
model.add_material(1, E=1, A=1, Iz=1); model.add_support(1, "111")
used = int(open("/proc/self/statm").read().split()[0]) * resource.getpagesize()
resource.setrlimit(resource.RLIMIT_AS, (used + 60 * 2**20,) * 2)
try:
    kestol.solve(model, "skyline")
except MemoryError:
    print("MemoryError")
"""
    run = subprocess.run([sys.executable, "-c", script, str(pathlib.Path(__file__).parent)],
                         capture_output=True, text=True)
    assert run.stdout == "MemoryError\n", run.stderr
