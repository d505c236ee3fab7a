"""Every refusal in its words: arguments of calls, models, files, names."""
import pathlib
import re

import pytest

import kestol
from frames import NODES, portal

NAN, INF = float("nan"), float("inf")
UNIT = "Unit name 'x' has not been previously defined"
NO_FILE = "No such file or directory"
OF_FACES = 'a face is that of a solid, or the edge of a shell with kind="face"'
SPARSE = ("Solver Sparse needs three aditional arguments:\n"
          "    Solver: Sparse tolerance1 tolerance2 MaxIterations\n"
          "with 0.0<tolerance<10 and MaxIterations>10 and\n tolerance1<=tolerance2<10")


def plane():
    model = kestol.Model(dimension=2)
    model.add_nodes(NODES)
    model.add_beam(1, 2, material=1)
    return model


def space(kind):
    """One element of a kind, on nodes 1..4."""
    model = kestol.Model(dimension=3)
    model.add_nodes([[0, 0, 0], [2, 0, 0], [0, 1, 0], [0, 0, 1]])
    if kind == "solid":
        model.add_solids([1, 2, 3, 4], material=1)
    else:
        model.add_shells([1, 2, 3], material=1)
    return model


def refused(text, code, action, *arguments, file=None, line=None):
    """The whole message with its place and code."""
    with pytest.raises(kestol.Error) as caught:
        action(*arguments)
    error = caught.value
    assert (error.text, error.code, error.file, error.line) == (text, code, file, line)


@pytest.mark.parametrize("text, action", [
    ("nodes need 2 coordinates each, not an array of the shape (1, 3)",
     lambda m: m.add_nodes([[1, 2, 3]])),
    ("nodes need 2 coordinates each, not an array of the shape (1, 3)",
     lambda m: m.add_node(1, 2, 3)),
    ("nodes need 3 coordinates each, not an array of the shape (1, 2)",
     lambda m: kestol.Model().add_node(1, 2)),
    ("2 numbers are needed, not 1", lambda m: m.add_nodes([[1, 2], [3, 4]], numbers=[9])),
    ("node number 0 is not above 0", lambda m: m.add_node(5, 5, number=0)),
    ("node number 9 is given twice", lambda m: m.add_nodes([[1, 2], [3, 4]], numbers=[9, 9])),
    ("node: 1 is there already", lambda m: m.add_node(5, 5, number=1)),
    ("node: 5 has not correct coordinates", lambda m: m.add_node(NAN, 5)),
    ("list of nodes does not contain any node",
     lambda m: kestol.Model(dimension=2).add_beam(1, 2, 1)),
    ("element: 2 has an unknown node: 77", lambda m: m.add_beam(1, 77, 1)),
    ("element: 2 have both nodes equal", lambda m: m.add_beam(2, 2, 1)),
    ("All elements must have different number. Check elm num: 1",
     lambda m: m.add_beam(2, 3, 1, number=1)),
    ("element number 0 is not above 0", lambda m: m.add_beam(2, 3, 1, number=0)),
    ("element number 7 is given twice", lambda m: m.add_beams([[2, 3], [3, 4]], 1, [7, 7])),
    ("elements of this kind have 2 nodes, not an array of the shape (1, 3)",
     lambda m: m.add_beams([[1, 2, 3]], 1)),
    ("elements of this kind have 3 or 6 nodes, not an array of the shape (1, 2)",
     lambda m: m.add_shells([[1, 2]], 1)),
    ("elements of this kind have 4 or 10 nodes, not an array of the shape (1, 3)",
     lambda m: m.add_solids([[1, 2, 3]], 1)),
    ("elements need one material each, or one for all",
     lambda m: m.add_beams([[1, 2], [2, 3]], [1, 2, 3])),
    ("solids must be added before supports and loads",
     lambda m: (model := space("shell"), model.add_support(1, "111111"),
                model.add_solids([1, 2, 3, 4], 1))),
    ("number out of range", lambda m: m.add_beams([[1, 2**40]], 1)),
    ("mesh dimension must be 2 or 3", lambda m: kestol.Model(dimension=4)),
    ("it is necessary at least one mesh", lambda m: kestol.solve(kestol.Model())),
    ("the model has no element",
     lambda m: (model := kestol.Model(), model.add_node(0, 0, 0), kestol.solve(model))),
    ("list of nodes does not contain all numbers",
     lambda m: (m.add_node(9, 9, number=9), m.solve())),
    ("Material in element: 1 doesn't exist", lambda m: m.solve()),
    ("Element tetrahedra cannot be mixed with any other element type",
     lambda m: (model := space("solid"), model.add_beam(1, 2, 1), model.solve())),
])
def test_nodes_elements_and_models(text, action):
    refused(text, "model", action, plane())


@pytest.mark.parametrize("text, action", [
    ("E is not a finite number", lambda m: m.add_material(1, E=NAN)),
    ("t is not a finite number", lambda m: m.add_material(1, E=1, t=INF)),
    ("a unit system must be one word: 'x y'", lambda m: m.add_material(1, E=1, units="x y")),
    (UNIT, lambda m: m.add_material(1, E=1, units="x")),
    ("a support has 3 values here, not 2", lambda m: m.add_support(1, "111", [0, 0])),
    ("a value is not a finite number", lambda m: m.add_support(1, "111", [0, NAN, 0])),
    ("Not reading correctly the constraints. Number=1", lambda m: m.add_support(1, "1111")),
    ("the codes must be one word: '11 1'", lambda m: m.add_support(1, "11 1")),
    ("the codes are digits 0, 1 or 2: '113'", lambda m: m.add_support(2, "113")),
    ("the codes are digits 0, 1 or 2: '911'", lambda m: m.add_support(2, "911")),
    ("the codes are digits 0, 1 or 2: '11-'", lambda m: m.add_support(2, "11-")),
    ("the codes are digits 0, 1 or 2: '11\u0662'", lambda m: m.add_support(2, "11\u0662")),
    ("Trying to assign constrain to unknown node", lambda m: m.add_support(50, "111")),
    ("three Euler angles are needed", lambda m: m.add_support(1, "111", euler=[0, 0])),
    ("an Euler angle is not a finite number", lambda m: m.add_support(1, "111", euler=[0, 0, INF])),
    ("a unit system must be one word: ''", lambda m: m.add_support(1, "111", units="")),
    ("Trying to assign rotule to unknown node", lambda m: m.add_rotule(50)),
    ("a nodal load has 3 components here, not 2", lambda m: m.add_nodal_load(1, 5, 5)),
    ("a component is not a finite number", lambda m: m.add_nodal_load(1, INF, 0, 0)),
    ("Trying to assign Load to unknown node", lambda m: m.add_nodal_load(50, 0, 0, 0)),
    (UNIT, lambda m: m.add_nodal_load(1, 0, 0, 0, units="x")),
    ("trying to assign load to element number 50 and it does not exist",
     lambda m: m.add_element_load(50, 0, 0)),
    ("this load has 2 components, not 3", lambda m: m.add_element_load(1, 0, 0, 0)),
    ("this load has 3 or 4 components, not 5",
     lambda m: space("shell").add_element_load(1, 0, 0, 1, 2, 3, kind="local")),
    ("a component is not a finite number", lambda m: m.add_element_load(1, 0, NAN)),
    ("kind is one of global, projected, local, face, not 'up'",
     lambda m: m.add_element_load(1, 0, 0, kind="up")),
    (OF_FACES, lambda m: m.add_element_load(1, 0, 0, face=1)),
    (OF_FACES, lambda m: space("shell").add_element_load(1, 0, 0, 1, face=1)),
    ("face 7 does not exist in element 1",
     lambda m: space("solid").add_element_load(1, 0, 0, 1, face=7)),
    ("face 7 does not exist in element 1",
     lambda m: space("shell").add_element_load(1, 0, 0, 1, face=7, kind="face")),
    ("three Euler angles are needed", lambda m: m.add_element_load(1, 0, 0, euler=[1])),
    (UNIT, lambda m: m.set_units(results="x")),
    (UNIT, lambda m: m.set_units(loads="x")),
    ("a unit must be one word: 'x y'", lambda m: m.set_units(mesh="x y")),
    ("a name of a unit must be one word: 'a b'",
     lambda m: m.add_units("a b", "N", "m", "Pa", 1, 1)),
    ("a name of a unit must be one word: '#N'", lambda m: m.add_units("a", "#N", "m", "Pa", 1, 1)),
    (f"a name of a unit has at most 20 characters: '{'a' * 21}'",
     lambda m: m.add_units("a" * 21, "N", "m", "Pa", 1, 1)),
    ("a factor is not a finite number", lambda m: m.add_units("a", "N", "m", "Pa", INF, 1)),
])
def test_what_is_refused_is_not_added(text, action):
    model = plane()
    before = model.text()
    refused(text, "syntax", action, model)
    assert model.text() == before


@pytest.mark.parametrize("text, action", [
    ("type of solver must be: Automatic, SkyLine, Double or Sparse",
     lambda m: m.set_solver("none")),
    ("a solver must be one word: 'Sky Line'", lambda m: m.set_solver("Sky Line")),
    (SPARSE, lambda m: m.set_solver("Sparse", 0.0)),
    ("a tolerance is not a finite number", lambda m: m.set_solver("Sparse", NAN)),
    ("GravityDirection must be a vector no null", lambda m: m.set_gravity(0, 0, 0)),
    ("a component is not a finite number", lambda m: m.set_gravity(0, 0, NAN)),
    ("Number of divisions must be positive", lambda m: m.set_divisions(0)),
    ("CoplanarityAngle must have angle >0 and <PI rad", lambda m: m.set_coplanarity_angle(0)),
    ("an angle is not a finite number", lambda m: m.set_coplanarity_angle(NAN)),
    ("DoSmoothing must have angle >0 and <PI rad", lambda m: m.smooth(4)),
    ("an angle is not a finite number", lambda m: m.smooth(INF)),
])
def test_options_that_are_refused_are_not_set(text, action):
    model = plane()
    before = model.text()
    refused(text, "syntax", action, model)
    assert model.text() == before


@pytest.mark.parametrize("number, text", [
    (1, "material 1 is given twice"),
    (0, "material numbers begin at 1"),
    (-1, "material numbers begin at 1"),
])
def test_materials_have_numbers_of_their_own(number, text):
    model = plane()
    model.add_material(1, E=1)
    before = model.text()
    refused(text, "syntax", lambda: model.add_material(number, E=2))
    assert model.text() == before


def test_numbers_that_are_not_whole():
    text = "^numbers of nodes, elements and materials are integers, not float64$"
    for action in (lambda m: m.add_beams([[1.0, 2.0]], material=1),
                   lambda m: m.add_support(1.5, "111"),
                   lambda m: m.add_beam(1, 3, 1, number=2.5)):
        with pytest.raises(TypeError, match=text):
            action(plane())
    for action in (lambda m: m.set_divisions(2.7),
                   lambda m: m.set_solver("Sparse", 1e-8, 1e-6, 99.5)):
        with pytest.raises(TypeError, match="^'float' object cannot be interpreted as an integer$"):
            action(plane())


@pytest.mark.parametrize("text, action", [
    ("the codes must be a text, not int", lambda m: m.add_support(2, 111)),
    ("the codes must be a text, not list", lambda m: m.add_support(2, [1, 1, 1])),
    ("the codes must be a text, not NoneType", lambda m: m.add_support(2, None)),
    ("a value must be a number, not str", lambda m: m.add_support(1, "111", ["a", 0, 0])),
    ("a unit system must be a text, not int", lambda m: m.add_support(2, "111", units=5)),
    ("a unit system must be a text, not int", lambda m: m.add_nodal_load(2, 0, 0, 0, units=5)),
    ("a unit system must be a text, not int", lambda m: m.add_material(1, E=1, units=5)),
    ("E must be a number, not str", lambda m: m.add_material(1, E="1")),
    ("a name of a unit must be a text, not int", lambda m: m.add_units(1, "N", "m", "Pa", 1, 1)),
    ("a unit must be a text, not int", lambda m: m.set_units(mesh=1)),
    ("a solver must be a text, not int", lambda m: m.set_solver(1)),
])
def test_arguments_of_other_types_are_not_added(text, action):
    model = plane()
    before = model.text()
    with pytest.raises(TypeError, match=f"^{re.escape(text)}$"):
        action(model)
    assert model.text() == before


@pytest.mark.parametrize("text, arguments", [
    ("the model must be a kestol.Model, not int", (5, {"G": "model"}, {})),
    ("the model must be a kestol.Model, not str", ("deck.dat", {"G": "model"}, {})),
    ("the cases must be a mapping, not str", (None, "abc", {})),
    ("the cases must be a mapping, not list", (None, [("G", "model")], {})),
    ("the cases must be a mapping, not NoneType", (None, None, {})),
    ("the name of a case must be a text, not int", (None, {5: "model"}, {})),
    ("the case 'G' must be a path, not int", (None, {"G": 5}, {})),
    ("the case 'G' must be a path, not bytes", (None, {"G": b"model"}, {})),
    ("the combinations must be a mapping, not str", (None, {"G": "model"}, "abc")),
    ("the combinations must be a mapping, not list", (None, {"G": "model"}, [{"G": 1}])),
    ("the name of a combination must be a text, not int", (None, {"G": "model"}, {5: {"G": 1}})),
    ("the combination 'U' must be a mapping, not int", (None, {"G": "model"}, {"U": 5})),
    ("the combination 'U' must be a mapping, not str", (None, {"G": "model"}, {"U": "G"})),
    ("a factor must be a number, not str", (None, {"G": "model"}, {"U": {"G": "1"}})),
    ("a factor must be a number, not NoneType", (None, {"G": "model"}, {"U": {"G": None}})),
])
def test_arguments_of_other_types_are_not_combined(text, arguments):
    model, cases, combinations = arguments
    with pytest.raises(TypeError, match=f"^{re.escape(text)}$"):
        kestol.combine(portal() if model is None else model, cases, combinations)


def test_of_several_at_once_those_before_the_refused_one_are_added():
    for rows, action in (
            ("constraints\n  1 111 0 0 0\n", lambda m: m.add_support([1, 77], "111")),
            ("rotules\n  1\n", lambda m: m.add_rotule([1, 77])),
            ("nodal_point_loads\n  1 0 5 0\n", lambda m: m.add_nodal_load([1, 77], 0, 5, 0)),
            ("global_pressure_loads\n  1 0 5\n", lambda m: m.add_element_load([1, 77], 0, 5))):
        model = plane()
        with pytest.raises(kestol.Error):
            action(model)
        assert rows in model.text()


@pytest.mark.parametrize("text, action", [
    ('solver is "deck", "skyline", "sparse" or "direct", not "fast"',
     lambda: kestol.solve(portal(), "fast")),
    ('solver is "deck", "skyline", "sparse" or "direct", not "fast"',
     lambda: kestol.combine(portal(), {"G": "model"}, {}, solver="fast")),
    ("a beam has at least 2 stations", lambda: kestol.solve(portal(), stations=1)),
    ("a beam has at least 2 stations", lambda: kestol.solve(portal(), stations=0)),
    ("a beam has at least 2 stations", lambda: kestol.solve(portal(), stations=-1)),
    ("unknown code fast", lambda: kestol.check(portal(), disable=["orphan-node", "fast"])),
    ("unknown code o", lambda: kestol.check(portal(), disable="orphan-node")),
    ("the count of mechanisms is negative", lambda: kestol.check(portal(), mechanisms=-1)),
    ("max_workers must be greater than 0",
     lambda: kestol.solve_many([portal()], float, processes=0)),
    ('there is no table "beam"; tables are nodes, beams, stations, shells, solids, reactions, '
     "loads",
     lambda: kestol.solve(portal()).to_csv("beam")),
    ('encoding is "raw", "base64" or "ascii", not "zip"',
     lambda: kestol.solve(portal()).to_vtu("x.vtu", encoding="zip")),
    ("a diagram is one of N, Vy, Vz, T, My, Mz, not 'Q'", lambda: kestol.solve(portal()).plot("Q")),
])
def test_choices(text, action):
    with pytest.raises(ValueError, match=f"^{re.escape(text)}$"):
        action()


@pytest.mark.parametrize("text, action", [
    ("there is no such beam: 9", lambda r, c: r.beam(9)),
    ("there is no such element: 9", lambda r, c: r.shells.rows(9)),
    ("there is no combination or case 'X'", lambda r, c: c["X"]),
    ("there is no value 'Q'", lambda r, c: c.envelope("Q")),
    ("there is no value 'N' of nodes", lambda r, c: c.envelope("N", "nodes")),
    ("there are no 'beams'; known are nodes, stations, station_displacements, shells, shells_top, "
     "shells_bottom, solids, nodal_stresses, reactions", lambda r, c: c.envelope("N", "beams")),
])
def test_names_that_are_not_there(text, action):
    with pytest.raises(KeyError) as caught:
        action(kestol.solve(portal()), kestol.combine(portal(), {"G": "model"}, {"U": {"G": 1}}))
    assert caught.value.args == (text,)


def test_arrays_of_a_solution_cannot_be_set():
    text = "^displacements cannot be set: it is what the solution gives$"
    with pytest.raises(AttributeError, match=text):
        kestol.solve(portal()).displacements = 3


@pytest.mark.parametrize("text, code, cases, combinations", [
    ("combination 'U' names an unknown case: 'X'", "model", {"G": "model"}, {"U": {"X": 1}}),
    ("combination 'U' has no case", "model", {"G": "model"}, {"S": {"G": 1}, "U": {}}),
    ("the loads of the model make one case, not several", "model",
     {"G": "model", "H": "model"}, {}),
    ("there is no load case", "model", {}, {}),
    ("a factor is not a finite number", "syntax", {"G": "model"}, {"U": {"G": NAN}}),
    ("'G' names a case and a combination", "model", {"G": "model"}, {"G": {"G": 1}}),
    (f"can't open file no such.dat: {NO_FILE}", "file", {"Q": "no such.dat"}, {}),
    ("can't open file /: Is a directory", "file", {"Q": "/"}, {}),
    ("failed reading /proc/self/mem: Input/output error", "file", {"Q": "/proc/self/mem"}, {}),
])
def test_combinations(text, code, cases, combinations):
    refused(text, code, kestol.combine, portal(), cases, combinations)


def test_an_envelope_of_nothing():
    refused("there is no combination to make an envelope of", "model",
            kestol.combine(portal(), {"G": "model"}, {}).envelope, "N")


def test_a_case_has_the_place_of_its_line(tmp_path):
    case = tmp_path / "case.dat"
    case.write_text("nodal_point_loads\n77 1 0 0\nend\n")
    refused("Trying to assign Load to unknown node", "syntax", kestol.combine, portal(),
            {"Q": case}, {}, file=str(case), line=2)


def test_files(tmp_path):
    for action in (kestol.read, kestol.check, kestol.solve):
        refused(f"can't open file no such.dat: {NO_FILE}", "file", action, "no such.dat")
        refused("can't open file /: Is a directory", "file", action, "/")
        refused("failed reading /proc/self/mem: Input/output error", "file", action,
                "/proc/self/mem")
    result = kestol.solve(portal())
    for action, name in ((portal().write, "/no/such/x.dat"), (result.to_vtu, "/no/such/x.vtu")):
        refused(f"can't open file {name}: {NO_FILE}", "file", action, name)
        refused("failed writing to /dev/full: No space left on device", "file", action, "/dev/full")
    path = tmp_path / "portal.dat"
    path.write_text(portal().text())
    model = kestol.read(path)
    for action in (model.write, kestol.solve(model).to_vtu):
        refused(f"the output {path} is the input {path}", "file", action, path)
    pathlib.Path(tmp_path / "empty.dat").touch()
    refused(f"{tmp_path}/empty.dat is empty", "file", kestol.check, tmp_path / "empty.dat")
    (tmp_path / "none.dat").write_text("PROBLEM none\nTYPE 2d\n")
    refused("it is necessary at least one mesh", "syntax", kestol.read, tmp_path / "none.dat",
            file=str(tmp_path / "none.dat"))
    (tmp_path / "binary.dat").write_bytes(b"PROBLEM a\0b")
    refused(f"{tmp_path}/binary.dat is not a text file", "file", kestol.check,
            tmp_path / "binary.dat")
