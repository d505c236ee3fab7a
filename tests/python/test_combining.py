"""Combinations and envelopes."""
import numpy as np
import pytest

import kestol
from frames import portal

WIND = """nodal_point_loads
2 9 0 0
3 4 0 0
end nodal_point_loads
"""
SETTLEMENT = """constraints
4 010 0 -0.01 0
end constraints
"""


@pytest.fixture
def combined(tmp_path):
    (tmp_path / "wind.dat").write_text(WIND)
    (tmp_path / "settlement.dat").write_text(SETTLEMENT)
    return kestol.combine(
        portal(), {"G": "model", "W": tmp_path / "wind.dat", "S": str(tmp_path / "settlement.dat")},
        {"U1": {"G": 1.35, "W": 1.5}, "U2": {"G": 1.0, "W": -1.5, "S": 1.0}, "U3": {"S": 2.0}})


def summed(g, w, s):
    """The model of the sum of the loads."""
    model = kestol.Model(dimension=2)
    model.add_material(1, E=2.1e8, A=0.0125, Iz=4.1e-4)
    model.add_nodes([[0, 0], [0, 4], [6, 4], [6, 0]])
    model.add_beams([[1, 2], [2, 3], [3, 4]], material=1)
    model.add_support(1, "111")
    model.add_support(4, "110", [0, -0.01 * s, 0])
    model.add_nodal_load(2, 12 * g + 9 * w, 0, 0)
    model.add_nodal_load(3, 4 * w, 0, 0)
    model.add_element_load(2, 0, -8 * g)
    return kestol.solve(model)


FACTORS = {"U1": (1.35, 1.5, 0), "U2": (1, -1.5, 1), "U3": (0, 0, 2), "G": (1, 0, 0),
           "W": (0, 1, 0), "S": (0, 0, 1)}


def test_combinations_are_runs_of_the_summed_model(combined):
    assert list(combined) == combined.combinations == ["U1", "U2", "U3"]
    assert combined.cases == ["G", "W", "S"] and len(combined) == 3
    for name, factors in FACTORS.items():
        mine, wanted = combined[name], summed(*factors)
        for array in ("displacements", "reactions", "loads"):
            theirs = getattr(wanted, array)
            np.testing.assert_allclose(getattr(mine, array), theirs, rtol=1e-9,
                                       atol=1e-10 * np.abs(theirs).max())
        np.testing.assert_allclose(mine.beam(2).Mz, wanted.beam(2).Mz, rtol=1e-9, atol=1e-7)


def test_files_of_a_combination_hold_its_own_loads(combined):
    first = combined["U1"]
    text = first.to_csv("loads"), first.to_json()
    combined["U3"].to_csv("loads")
    combined.envelope("Mz")
    assert (first.to_csv("loads"), first.to_json()) == text


@pytest.mark.parametrize("value, of", [("Mz", None), ("N", None), ("Vy", "stations")])
def test_envelopes_of_stations(combined, value, of):
    envelope = combined.envelope(value, of)
    tables = np.stack([getattr(combined[name].beams, value) for name in combined])
    np.testing.assert_allclose(envelope.min, tables.min(axis=0), rtol=1e-9, atol=1e-9)
    np.testing.assert_allclose(envelope.max, tables.max(axis=0), rtol=1e-9, atol=1e-9)
    assert envelope.numbers.tolist() == [1, 2, 3]
    names = np.array(combined.combinations)
    by = np.take_along_axis(tables, np.array(
        [[np.flatnonzero(names == n)[0] for n in row] for row in envelope.max_by])[None], 0)[0]
    np.testing.assert_allclose(by, envelope.max, rtol=1e-9, atol=1e-9)


def test_what_comes_with_an_extreme(combined):
    envelope = combined.envelope("Mz")
    beam, station = np.unravel_index(envelope.max.argmax(), envelope.max.shape)
    governing = combined[str(envelope.max_by[beam, station])].beams
    for name in ("N", "Vy", "Mz"):
        assert envelope.max_with[name][beam, station] == pytest.approx(
            getattr(governing, name)[beam, station])
    governing = combined[str(envelope.min_by[beam, station])].beams
    assert envelope.min_with["N"][beam, station] == pytest.approx(governing.N[beam, station])


def test_envelopes_of_nodes_and_reactions(combined):
    sways = np.stack([combined[name].displacements[:, 0] for name in combined])
    np.testing.assert_allclose(combined.envelope("ux").max, sways.max(axis=0), atol=1e-14)
    forces = np.stack([combined[name].reactions[:, 1] for name in combined])
    envelope = combined.envelope("Fy")
    np.testing.assert_allclose(envelope.min, forces.min(axis=0), rtol=1e-9, atol=1e-9)
    assert envelope.numbers.tolist() == [1, 4]
    moments = np.stack([combined[name].reactions[:, 5] for name in combined])
    np.testing.assert_allclose(combined.envelope("Mz", "reactions").max, moments.max(axis=0),
                               rtol=1e-9, atol=1e-9)


def refused(*arguments):
    with pytest.raises(kestol.Error) as caught:
        kestol.combine(*arguments)
    return caught.value


def test_models_that_cannot_be_added_up():
    model = kestol.Model(dimension=2)
    model.add_material(1, E=1, A=1, Iz=1)
    model.add_nodes([[0, 0], [1, 0], [2, 0]])
    model.add_beams([[1, 2], [2, 3]], material=1)
    model.add_support([1, 3], "111")
    model.add_rotule(2)
    model.add_element_load([1, 2], 0, -1)
    error = refused(model, {"G": "model"}, {})
    assert (error.code, error.text) == (
        "hinge-first", 'element 2 is loaded and hinged at its first node 2: write "3 2"')
    loose = portal()
    loose.add_node(9, 9)
    assert refused(loose, {"G": "model"}, {}).code == "mechanism"
