"""Refusals are kestol.Error with file, line and code."""
import pathlib
import pickle
import subprocess
import sys

import pytest

import kestol
from frames import DECK, NODES, portal


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


def test_a_file_that_is_not_there():
    error = refused(kestol.read, "no such.dat")
    assert error.code == "file" and "No such file" in error.text
    assert refused(portal().write, "/no/such/folder/x.dat").code == "file"
    assert refused(kestol.solve(portal()).to_vtu, "/no/such/folder/x.vtu").code == "file"


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


@pytest.mark.parametrize("text, action", [
    ("nodes need 2 coordinates each", lambda m: m.add_nodes([[1, 2, 3]])),
    ("2 numbers are needed, not 1", lambda m: m.add_nodes([[1, 2], [3, 4]], numbers=[9])),
    ("node: 1 is there already", lambda m: m.add_node(5, 5, number=1)),
    ("element: 2 has an unknown node: 77", lambda m: m.add_beam(1, 77, 1)),
    ("All elements must have different number", lambda m: m.add_beam(2, 3, 1, number=1)),
    ("elements of this kind have 3 or 6 nodes", lambda m: m.add_shells([[1, 2]], 1)),
    ("elements need one material each", lambda m: m.add_beams([[1, 2], [2, 3]], [1, 2, 3])),
    ("E is not a finite number", lambda m: m.add_material(1, E=float("nan"))),
    ("Repeated index 1", lambda m: (m.add_material(1, E=1), m.add_material(1, E=1))),
    ("a support has 3 values here, not 2", lambda m: m.add_support(1, "111", [0, 0])),
    ("Not reading correctly the constraints", lambda m: m.add_support(1, "1111")),
    ("the codes must be one word", lambda m: m.add_support(1, "11 1")),
    ("constrain to unknown node", lambda m: m.add_support(50, "111")),
    ("rotule to unknown node", lambda m: m.add_rotule(50)),
    ("a nodal load has 3 components here, not 2", lambda m: m.add_nodal_load(1, 5, 5)),
    ("Load to unknown node", lambda m: m.add_nodal_load(50, 0, 0, 0)),
    ("Not reading correctly the loads B", lambda m: m.add_nodal_load(1, float("inf"), 0, 0)),
    ("element number 50 and it does not exist", lambda m: m.add_element_load(50, 0, 0)),
    ("this load has 2 components, not 3", lambda m: m.add_element_load(1, 0, 0, 0)),
    ("kind is one of global, projected, local, face", lambda m: m.add_element_load(
        1, 0, 0, kind="up")),
    ("a face is that of a solid", lambda m: m.add_element_load(1, 0, 0, face=1)),
    ("three Euler angles", lambda m: m.add_element_load(1, 0, 0, euler=[1])),
    ("'x' has not been previously defined", lambda m: m.set_units(results="x")),
    ("a name of a unit must be one word", lambda m: m.add_units("a b", "N", "m", "Pa", 1, 1)),
    ("at most 20 characters", lambda m: m.add_units("a" * 21, "N", "m", "Pa", 1, 1)),
    ("type of solver must be", lambda m: m.set_solver("none")),
    ("Solver Sparse needs three", lambda m: m.set_solver("Sparse", 0.0)),
    ("must be a vector no null", lambda m: m.set_gravity(0, 0, 0)),
    ("divisions must be positive", lambda m: m.set_divisions(0)),
    ("CoplanarityAngle must have angle", lambda m: m.set_coplanarity_angle(0)),
    ("DoSmoothing must have angle", lambda m: m.smooth(4)),
])
def test_the_builder_refuses(text, action):
    model = kestol.Model(dimension=2)
    model.add_nodes(NODES)
    model.add_beam(1, 2, material=1)
    assert text in refused(action, model).text


def test_unknown_keys_and_solvers_are_mistakes_of_the_script():
    with pytest.raises(TypeError):
        portal().add_material(2, alpha=3)
    with pytest.raises(ValueError, match="solver is"):
        kestol.solve(portal(), "fast")
    with pytest.raises(ValueError, match="there is no table"):
        kestol.solve(portal()).to_csv("beam")
    with pytest.raises(ValueError, match="encoding is"):
        kestol.solve(portal()).to_vtu("x.vtu", encoding="zip")


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
