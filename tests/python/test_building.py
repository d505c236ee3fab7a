"""Models that are built are the models of decks."""
import pickle
import time

import numpy as np
import pytest

import kestol
from frames import DECK, NODES, PAIRS, by_numpy, grid, portal


def test_portal_is_the_deck_and_what_numpy_gives():
    built, read = portal(), kestol.read_text(DECK)
    assert built.text() == read.text()
    mine, theirs = kestol.solve(built), kestol.solve(read)
    np.testing.assert_array_equal(mine.displacements, theirs.displacements)
    u, reactions, loads = by_numpy()
    np.testing.assert_allclose(mine.displacements[:, [0, 1, 5]], u, rtol=1e-9, atol=1e-15)
    np.testing.assert_allclose(mine.loads[:, [0, 1, 5]].ravel(), loads, rtol=1e-12, atol=1e-12)
    wanted = reactions.reshape(4, 3)[[0, 3]]
    np.testing.assert_allclose(mine.reactions[:, [0, 1, 5]], wanted, rtol=1e-9, atol=1e-9)
    assert mine.reaction_nodes.tolist() == [1, 4]
    assert mine.equilibrium["relative_error"] < 1e-12


def test_writing_and_reading_is_the_identity(deck):
    model = kestol.read(deck)
    assert kestol.read_text(model.text()).text() == model.text()
    assert model.copy().text() == model.text()
    assert pickle.loads(pickle.dumps(model)).text() == model.text()


def test_solving_leaves_the_model_as_it_is(deck):
    model = kestol.read(deck)
    before = model.text()
    first = kestol.solve(model)
    assert model.text() == before
    np.testing.assert_array_equal(first.displacements, model.solve().displacements)


def test_singles_are_arrays_of_one():
    model = kestol.Model(dimension=2)
    assert [model.add_node(*xy) for xy in NODES] == [1, 2, 3, 4]
    assert [model.add_beam(*pair, material=1) for pair in PAIRS.tolist()] == [1, 2, 3]
    other = kestol.Model(dimension=2)
    other.add_nodes(NODES)
    other.add_beams(PAIRS, material=[1, 1, 1])
    assert model.text() == other.text()
    assert model.add_node(9, 9, number=7) == 7
    assert model.add_beam(1, 3, 2, number=12) == 12
    assert model.add_beam(2, 4, 2) == 13


def test_every_piece_of_a_deck_can_be_built():
    model = kestol.Model(dimension=3)
    model.add_units("kN-m", "kN", "m", "kPa", 1000, 1)
    model.add_units("N-mm", "N", "mm", "MPa", 1, 0.001)
    model.set_units(mesh="mm", loads="kN-m", results="kN-m")
    model.add_nodes([[0, 0, 0], [1000, 0, 0], [0, 1000, 0]])
    model.add_beams([1, 2], material=1)
    model.add_shells([1, 2, 3], material=2, numbers=[9])
    model.add_material(1, E=210e6, G=81e6, A=0.01, Iy=1e-4, Iz=2e-4, J=3e-4, Euler2=0.25)
    model.add_material(2, E=210e3, nu=0.3, G=81e3, t=12, units="N-mm")
    model.add_material(3, widthY=0.2, widthZ=0.3, Ex=1, Ey=2, nuXY=0.1, nuYX=0.2, Gxy=1, Gxz=2,
                       Gyz=3, Weight=77, Euler1=0.5, Euler3=1)
    model.add_support([1, 3], "111111")
    model.add_support(2, "020000", [0, 5e3, 0, 0, 0, 0], euler=[0, 0, 0.5])
    model.add_rotule(2)
    model.add_nodal_load(2, 1, 2, 3, 4, 5, 6)
    model.add_nodal_load(2, [10, 0, 0, 0, 0, 0], units="N-mm")
    model.add_element_load(1, 0, 0, -5)
    model.add_element_load(1, 0, 0, -5, 2, kind="local")
    model.add_element_load(1, 1, 0, -5, kind="projected", euler=[0.1, 0.2, 0.3])
    model.add_element_load(9, 0, 0, -3, kind="face", face=1)
    model.add_element_load(9, 0, 0, -3, kind="face")
    model.set_solver("Sparse", 1e-9, 1e-5, 500)
    model.set_gravity(0, 0, -2)
    model.set_divisions(8)
    model.set_coplanarity_angle(0.01)
    model.smooth(0.2)
    model.convert_to_6_nodes()
    deck = """PROBLEM p
TYPE 3d
units_names
kN-m kN m kPa 1000 1
N-mm N mm MPa 1 0.001
end
units_mesh mm
units_mat_and_load kN-m
units_res kN-m
mesh dimension = 3 elemtype Linear nnode = 2
coordinates
1 0 0 0
2 1000 0 0
3 0 1000 0
end coordinates
elements
1 1 2 1
end elements
mesh dimension = 3 elemtype Triangle nnode = 3
coordinates
end coordinates
elements
9 1 2 3 2
end elements
materials
1 E=210e6 G=81e6 A=0.01 Iy=1e-4 Iz=2e-4 J=3e-4 Euler2=0.25
2 units=N-mm E=210e3 nu=0.3 G=81e3 t=12
3 widthY=0.2 widthZ=0.3 Ex=1 Ey=2 nuXY=0.1 nuYX=0.2 Gxy=1 Gxz=2 Gyz=3 Weight=77 Euler1=0.5 Euler3=1
end
constraints
1 111111 0 0 0 0 0 0
3 111111 0 0 0 0 0 0
2 020000 0 5e3 0 0 0 0 Euler1=0 Euler2=0 Euler3=0.5
end
rotules
2
end
nodal_point_loads
2 1 2 3 4 5 6
2 10 0 0 0 0 0 units N-mm
end
global_pressure_loads
1 0 0 -5
end
local_pressure_loads
1 0 0 -5 2
end
global_projected_pressure_loads
1 1 0 -5 Euler1=0.1 Euler2=0.2 Euler3=0.3
end
face_loads
9 1 0 0 -3
9 0 0 -3
end
Solver Sparse 1e-9 1e-5 500
GravityDirection 0 0 -2
NumOfDivisions 8
CoplanarityAngle 0.01
DoSmoothing 0.2
ConvertTo6Nodes
"""
    assert model.text() == kestol.read_text(deck).text()


def test_a_bar_of_solids_stretches():
    model = kestol.Model(dimension=3)
    model.add_nodes([[0, 0, 0], [2, 0, 0], [0, 1, 0], [0, 0, 1]])
    model.add_solids([1, 2, 3, 4], material=1)
    model.add_material(1, E=1000, nu=0)
    model.add_support([1, 3, 4], "111")
    model.add_nodal_load(2, 3, 0, 0)
    model.add_element_load(1, 0, 0, -6)
    model.add_element_load(1, 0, 0, 3, face=3)
    assert model.dofs_per_node == 3
    result = kestol.solve(model)
    assert result.equilibrium["reactions"]["force"] == pytest.approx([-3, 0, 6 / 3 - 3 * 1.0])
    assert result.solids.stress[0, 0] == pytest.approx(1000 * result.displacements[1, 0] / 2)


def test_100_000_beams_from_arrays_take_less_than_a_second():
    nodes, pairs = grid(100_000)
    start = time.process_time()
    model = kestol.Model(dimension=2)
    model.add_nodes(nodes)
    model.add_beams(pairs, material=1)
    assert model.element_count == len(pairs) >= 100_000
    assert time.process_time() - start < 1.0
