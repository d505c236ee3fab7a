"""A session from a deck to a picture, as a user types it, every call on the same model."""
import os

import matplotlib
import numpy as np
import pytest

import kestol
from frames import A, E, HEIGHT, INERTIA, SPAN, WIND

matplotlib.use("Agg")

SNOW = 8.0
OFFICE = "nodal_point_loads\n3 5 0 0\nend nodal_point_loads\n"


def portal_of_seven_beams():
    model = kestol.Model(dimension=2)
    model.add_units("kN-m", "kN", "m", "kPa", 1, 1)
    model.set_units(mesh="m", loads="kN-m", results="kN-m")
    model.add_material(1, E=E, A=A, Iz=INERTIA)
    model.add_nodes([[0, 0], [0, HEIGHT], [SPAN, HEIGHT], [SPAN, 0], [SPAN / 3, HEIGHT],
                     [2 * SPAN / 3, HEIGHT], [0, HEIGHT / 2], [SPAN, HEIGHT / 2]])
    model.add_beams([[1, 7], [7, 2], [2, 5], [5, 6], [6, 3], [3, 8], [8, 4]], material=1)
    model.add_support(1, "111")
    model.add_support(4, "110")
    model.add_nodal_load(2, WIND, 0, 0)
    model.add_element_load([3, 4, 5], 0, -SNOW)
    return model


@pytest.fixture
def here(tmp_path, monkeypatch):
    monkeypatch.chdir(tmp_path)
    portal_of_seven_beams().write("portal.dat")
    (tmp_path / "office.dat").write_text(OFFICE)
    return tmp_path


def test_a_session(here, capsys):
    model = kestol.read("portal.dat")
    for finding in kestol.check(model):
        print(finding)
    assert capsys.readouterr().out == ""                   # a sound model
    r = kestol.solve(model, solver="deck")

    assert r.displacements.shape == (8, 6) and r.displacements.dtype == np.float64
    assert not r.displacements.flags.writeable
    assert r.node_numbers.tolist() == list(range(1, 9))
    assert r.units == {"force": "kN", "length": "m", "pressure": "kPa"}

    # The right column carries its shear to a hinged foot: a straight line that ends at zero.
    assert r.reaction_nodes.tolist() == [1, 4]
    shear = r.reactions[1, 0]
    wanted = shear * (r.beam(7).x[-1] - r.beam(7).x)
    np.testing.assert_allclose(r.beam(7).Mz, wanted, atol=1e-9 * abs(shear))
    assert r.beams.N.shape == (7, 21)
    np.testing.assert_allclose(r.beams.N[6], -r.reactions[1, 1], rtol=1e-9)
    np.testing.assert_allclose(r.reactions.sum(axis=0)[:2], [-WIND, SNOW * SPAN], rtol=1e-9)
    np.testing.assert_allclose(r.reactions_as_printed, r.reactions[:, [0, 1, 5]], atol=1e-9)
    assert r.shells.n.shape == (0, 3) and r.shells.top.shape == (0, 6)
    assert r.solids.stress.shape == r.nodal_stresses.shape == (0, 6)

    c = kestol.combine(model, cases={"G": "model", "Q": "office.dat"},
                       combinations={"U": {"G": 1.35, "Q": 1.5}})
    by_hand = 1.35 * c["G"].beam(7).Mz + 1.5 * c["Q"].beam(7).Mz
    np.testing.assert_allclose(c["U"].beam(7).Mz, by_hand, atol=1e-9)
    e = c.envelope("Mz")
    np.testing.assert_allclose(e.min[6], by_hand, atol=1e-9)
    np.testing.assert_array_equal(e.max, e.min)
    assert set(e.max_by.ravel()) == {"U"}

    r.to_vtu("x.vtu")
    assert {"x.vtu", "x_diagrams.vtu"} <= set(os.listdir())
    table = r.to_pandas("stations")
    np.testing.assert_array_equal(table["Mz [kN m]"].to_numpy(), r.beams.Mz.ravel())
    ax = r.plot()
    assert len(ax.collections) == 2 and len(ax.lines) == 1   # model and shape; supports
    matplotlib.pyplot.close(ax.figure)
    model.write("portal2.dat")
    assert kestol.read("portal2.dat").text() == model.text()
    np.testing.assert_array_equal(kestol.solve("portal2.dat").displacements, r.displacements)


def test_findings_are_printed_with_their_place(here, capsys):
    text = (here / "portal.dat").read_text()
    (here / "portal.dat").write_text(text.replace("4 110 ", "4 000 ").replace("1 111 ", "1 110 "))
    model = kestol.read("portal.dat")
    for finding in kestol.check(model):
        print(finding)
    assert capsys.readouterr().out.startswith(
        "portal.dat: error: the supports leave the model a rigid motion [rigid-motion]\n  mode 1: ")
    with pytest.raises(kestol.Error) as refused:
        kestol.solve(model, solver="deck")
    assert refused.value.code == "mechanism"


def test_building():
    m = kestol.Model(dimension=3)
    m.add_units("kN-m", "kN", "m", "kPa", 1, 1)
    m.add_material(1, E=2.1e8, A=1e-2, G=8e7, Iy=1e-5, Iz=1e-5, J=1e-5, nu=0.3, t=0.1)
    xyz = np.array([[0, 0, 0], [2, 0, 0], [2, 1, 0], [4, 0, 0.0]])
    nodes = m.add_nodes(xyz)
    pairs = np.array([[1, 2], [2, 4]])
    beams = m.add_beams(pairs, 1)
    shells = m.add_shells([[1, 2, 3]], 1)
    assert (nodes.tolist(), beams.tolist(), shells.tolist()) == ([1, 2, 3, 4], [1, 2], [3])
    m.add_support(1, "110000", values=[0.01, 0, 0, 0, 0, 0], euler=[0, 0, np.pi / 2])
    m.add_support([2, 3], "111111")
    m.add_rotule(2)
    m.add_support(4, "011111")
    m.add_nodal_load(4, 6, 0, 0, 0, 0, 0)
    m.add_element_load(beams, 0, 0, -1, kind="global")
    m.add_element_load(3, 0, 0, -2)
    r = kestol.solve(m)
    # Local x of the support is global y; the last beam is pulled by 6 kN over 2 m.
    np.testing.assert_allclose(r.displacements[0, :2], [0, 0.01], atol=1e-15)
    assert r.displacements[3, 0] == pytest.approx(6 * 2 / (2.1e8 * 1e-2))
    assert r.beam(2).Mz[0] == r.beam(2).My[0] == 0            # the rotule
    assert r.equilibrium["loads"]["force"] == pytest.approx([6, 0, -4 - 2])
    assert r.equilibrium["relative_error"] < 1e-9

    s = kestol.Model(dimension=3)
    s.add_nodes([[0, 0, 0], [1, 0, 0], [0, 1, 0], [0, 0, 1]])
    assert s.add_solids([[1, 2, 3, 4]], material=1).tolist() == [1]
    s.add_material(1, E=100.0, nu=0.0)
    s.add_support([1, 2, 3], "111")
    s.add_nodal_load(4, 0, 0, 1)
    # One tetrahedron of volume 1/6: the force on its apex is its stress times 1/6.
    np.testing.assert_allclose(kestol.solve(s).solids.stress, [[0, 0, 6, 0, 0, 0]], atol=1e-12)
    np.testing.assert_allclose(kestol.solve(s).nodal_stresses[:, 2], 6)
