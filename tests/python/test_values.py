"""Arrays equal the JSON of kestol-export bit for bit."""
import json

import numpy as np
import pytest

import kestol
from conftest import ROOT


def example(name):
    return ROOT / "examples" / f"{name}.dat"


def check(result, wanted):
    """Every number of the document, by its bits."""
    def same(array, values, shape=None):
        values = np.array(values, dtype=float)
        if shape is not None:
            values = values.reshape(shape)
        np.testing.assert_array_equal(array, values, strict=True)

    nodes = wanted["nodes"]
    assert result.node_numbers.tolist() == [node["number"] for node in nodes]
    same(result.coordinates, [node["x"] for node in nodes])
    same(result.displacements, [node["u"] + node["rotation"] for node in nodes])
    assert result.units == wanted["units"]

    beams = wanted["beams"]
    assert len(result.beams) == len(beams)
    for beam in beams:
        mine = result.beam(beam["element"])
        assert (mine.material, mine.nodes.tolist()) == (beam["material"], beam["nodes"])
        assert mine.length == beam["length"]
        same(mine.axes, beam["axes"])
        for key in ("x", "N", "Vy", "Vz", "T", "My", "Mz", "u"):
            same(getattr(mine, key), [station[key] for station in beam["stations"]])

    for family, keys in (("shells", ("x", "n", "m", "q", "top", "bottom")),
                         ("solids", ("x", "stress"))):
        table = getattr(result, family)
        rows = [(element["element"], point) for element in wanted[family]
                for point in element["points"]]
        assert table.elements.tolist() == [number for number, _ in rows]
        for key in keys:
            width = {"n": 3, "m": 3, "q": 2, "x": 3}.get(key, 6)
            same(getattr(table, key), [point[key] for _, point in rows], (-1, width))
    axes = {element["element"]: element["axes"] for element in wanted["shells"]}
    for number, mine in zip(result.shells.elements, result.shells.axes):
        same(mine, axes[number])

    same(result.nodal_stresses, [node["stress"] for node in wanted["nodalStresses"]], (-1, 6))
    same(result.nodal_von_mises, [node["vonMises"] for node in wanted["nodalStresses"]])

    reactions = wanted["reactions"]
    assert result.reaction_nodes.tolist() == [row["node"] for row in reactions]
    same(result.reactions, [row["force"] + row["moment"] for row in reactions], (-1, 6))
    for k, row in enumerate(reactions):
        assert result.reaction_between[k].tolist() == row.get("between", [0, 0])
        same(result.reactions_as_printed[k], row["printed"])
        turned = row.get("inSupportAxes", row)
        same(result.reactions_in_support_axes[k], turned["force"] + turned["moment"])

    balance = wanted["equilibrium"]
    assert result.equilibrium == {
        "loads": balance["loads"], "reactions": balance["reactions"],
        "drilling": balance["drilling"], "relative_error": balance["relativeError"]}


def test_examples_equal_the_export(deck, exported):
    check(kestol.solve(deck), exported(deck))


@pytest.mark.parametrize("solver", ["skyline", "sparse"]
                         + ["direct"] * kestol.direct_solver_is_built())
def test_every_solver_equals_the_export(deck, exported, solver):
    check(kestol.solve(deck, solver), exported(deck, solver))


def test_what_was_written_gives_the_same_answer(deck, exported, tmp_path):
    copy = tmp_path / "copy.dat"
    kestol.read(deck).write(copy)
    ours, copied = exported(deck), exported(copy)
    del ours["deck"], copied["deck"]
    assert ours == copied


def test_json_is_the_document_of_the_export(deck, exported):
    assert json.loads(kestol.solve(deck).to_json()) == exported(deck)


def test_arrays_are_views_that_cannot_be_written(deck):
    result = kestol.solve(deck)
    for table, names in (
            (result, ("displacements", "coordinates", "loads", "node_numbers", "reactions",
                      "nodal_stresses", "reaction_nodes", "reactions_as_printed")),
            (result.beams, ("N", "Mz", "x", "u", "axes", "lengths", "nodes", "end_forces")),
            (result.shells, ("n", "m", "q", "top", "bottom", "x")),
            (result.solids, ("stress", "x", "von_mises"))):
        for name in names:
            array, again = getattr(table, name), getattr(table, name)
            with pytest.raises(ValueError):
                array[...] = 0
            if array.size:
                with pytest.raises(ValueError):
                    array.flags.writeable = True
                assert np.shares_memory(array, again), name


def test_arrays_keep_their_memory_alive(deck):
    array = kestol.solve(deck).displacements
    wanted = array.copy()
    for _ in range(20):
        kestol.solve(deck)
    np.testing.assert_array_equal(array, wanted)


def test_stations_are_as_many_as_asked_for():
    result = kestol.solve(example("02-portal-frame"), stations=5)
    assert result.beams.Mz.shape[1] == 5
    assert result.beam(1).x[-1] == result.beam(1).length
    with pytest.raises(ValueError, match="at least 2"):
        kestol.solve(example("02-portal-frame"), stations=1)


def test_order_of_the_input_can_be_kept():
    deck = example("02-portal-frame")
    kept, renumbered = (kestol.solve(deck, renumber=flag).displacements for flag in (False, True))
    np.testing.assert_allclose(kept, renumbered, atol=1e-7 * np.abs(kept).max())
    assert (kept != renumbered).any()  # sums were formed in another order


def test_there_is_no_beam_or_shell_of_an_unknown_number():
    result = kestol.solve(example("15-stiffened-plate"))
    with pytest.raises(KeyError, match="no such beam: 99999"):
        result.beam(99999)
    with pytest.raises(KeyError, match="no such element: 99999"):
        result.shells.rows(99999)
    number = int(result.shells.elements[0])
    assert (result.shells.elements[result.shells.rows(number)] == number).all()
