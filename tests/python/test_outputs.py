"""Files, tables and pictures."""
import os
import subprocess

import matplotlib
import numpy as np
import pandas
import pytest

import kestol
from frames import portal

matplotlib.use("Agg")


@pytest.mark.parametrize("encoding", ["raw", "base64", "ascii"])
def test_vtu_files_are_those_of_the_export(deck, tmp_path, encoding):
    (tmp_path / "mine").mkdir()
    (tmp_path / "theirs").mkdir()
    kestol.solve(deck).to_vtu(tmp_path / "mine" / "a.vtu", encoding=encoding)
    subprocess.run([os.environ["KESTOL_EXPORT"], "--vtu", tmp_path / "theirs" / "a.vtu",
                    "--encoding", encoding, "--solver", "deck", deck], check=True)
    theirs = {path.name: path.read_bytes() for path in (tmp_path / "theirs").iterdir()}
    mine = {path.name: path.read_bytes() for path in (tmp_path / "mine").iterdir()}
    assert mine == theirs


def test_diagrams_can_be_left_out(tmp_path):
    kestol.solve(portal()).to_vtu(tmp_path / "a.vtu", diagrams=False)
    assert [path.name for path in tmp_path.iterdir()] == ["a.vtu"]


def test_diagrams_need_a_place_beside_the_file(tmp_path):
    os.mkfifo(tmp_path / "a.vtu")
    with subprocess.Popen(["cat", tmp_path / "a.vtu"], stdout=subprocess.PIPE) as reader:
        kestol.solve(portal()).to_vtu(tmp_path / "a.vtu")
        assert reader.stdout.read().startswith(b"<?xml")
    assert [path.name for path in tmp_path.iterdir()] == ["a.vtu"]


def test_tables_are_those_of_the_export(deck, tmp_path):
    subprocess.run([os.environ["KESTOL_EXPORT"], "--csv", tmp_path / "t", "--solver", "deck",
                    deck], check=True)
    result = kestol.solve(deck)
    for path in tmp_path.iterdir():
        table = path.stem.removeprefix("t_")
        assert result.to_csv(table) == path.read_text()


def test_data_frames_hold_the_same_numbers(deck):
    result = kestol.solve(deck)
    nodes = result.to_pandas()
    assert isinstance(nodes, pandas.DataFrame)
    columns = [name for name in nodes.columns if name.split()[0] in
               ("ux", "uy", "uz", "rx", "ry", "rz")]
    np.testing.assert_array_equal(nodes[columns].to_numpy(), result.displacements)
    stations = result.to_pandas("stations")
    assert len(stations) == result.beams.N.size
    if len(stations):
        name = next(name for name in stations.columns if name.split()[0] == "Mz")
        np.testing.assert_array_equal(stations[name].to_numpy(), result.beams.Mz.ravel())


def test_columns_name_their_units():
    deck = kestol.Model(dimension=2)
    deck.add_units("kN-m", "kN", "m", "kPa", 1, 1)
    deck.set_units(results="kN-m", loads="kN-m", mesh="m")
    deck.add_nodes([[0, 0], [1, 0]])
    deck.add_beam(1, 2, 1)
    deck.add_material(1, E=1, A=1, Iz=1)
    deck.add_support(1, "111")
    result = kestol.solve(deck)
    assert result.units == {"force": "kN", "length": "m", "pressure": "kPa"}
    assert "ux [m]" in result.to_pandas().columns
    assert kestol.solve(portal()).units == {"force": "", "length": "", "pressure": ""}


def picture(ax):
    """The drawing as an array of pixels."""
    ax.figure.canvas.draw()
    pixels = np.asarray(ax.figure.canvas.buffer_rgba())[:, :, :3].astype(int)
    matplotlib.pyplot.close(ax.figure)
    return pixels


def share_of(pixels, red, green, blue):
    return (np.abs(pixels - [red, green, blue]).max(axis=2) < 40).mean()


def test_pictures_show_the_deformed_shape(deck):
    pixels = picture(kestol.solve(deck).plot())
    assert share_of(pixels, 0x1f, 0x5f, 0xa8) > 5e-4      # blue: the shape


@pytest.mark.parametrize("diagram", ["N", "Vy", "Vz", "T", "My", "Mz"])
def test_pictures_show_diagrams(diagram):
    name = os.path.join(os.path.dirname(__file__), "../../examples/06-space-frame.dat")
    ax = kestol.solve(name).plot(diagram)
    assert ax.get_title().startswith(diagram)
    assert share_of(picture(ax), 0xb3, 0x40, 0x2a) > 5e-4  # red: the curve


def test_diagrams_stand_on_the_tension_side():
    model = kestol.Model(dimension=2)
    model.add_nodes([[0, 0], [10, 0]])
    model.add_beam(1, 2, 1)
    model.add_material(1, E=1e6, A=1, Iz=1)
    model.add_support(1, "110")
    model.add_support(2, "010")
    model.add_element_load(1, 0, -1)
    ax = kestol.solve(model).plot("Mz", scale=0.1)
    curve = [c for c in ax.collections if type(c).__name__ == "LineCollection"][-1]
    lowest = min(vertex[1] for path in curve.get_paths() for vertex in path.vertices)
    assert lowest == pytest.approx(-0.1 * 10**2 / 8)       # below a beam that sags
    assert np.isfinite(ax.get_ylim()).all()
    matplotlib.pyplot.close(ax.figure)


def test_deformed_shapes_have_the_scale_that_is_asked_for():
    result = kestol.solve(portal())
    ax = result.plot(scale=50)
    assert ax.get_title().startswith("Displacements x 50,")
    shape = [c for c in ax.collections][-1]
    tops = [path.vertices[-1] for path in shape.get_paths()]
    wanted = result.coordinates[1, :2] + 50 * result.displacements[1, :2]
    np.testing.assert_allclose(tops[0], wanted)
    matplotlib.pyplot.close(ax.figure)


def test_pictures_refuse_what_they_cannot_draw():
    result = kestol.solve(portal())
    flat = matplotlib.pyplot.figure().add_subplot()
    assert result.plot(ax=flat) is flat
    solid = os.path.join(os.path.dirname(__file__), "../../examples/17-bar-in-tension.dat")
    with pytest.raises(ValueError, match='^a model in space needs axes with projection="3d"$'):
        kestol.solve(solid).plot(ax=flat)
    matplotlib.pyplot.close("all")


def test_titles_of_pictures():
    deck = os.path.join(os.path.dirname(__file__), "../../examples/portal/portal.dat")
    for model, m, kN, kNm in ((portal(), "", "", ""), (kestol.read(deck), " m", " kN", " kN m")):
        result = kestol.solve(model)
        beams = result.beams
        assert [result.plot(diagram, scale=50).get_title() for diagram in (None, "N", "Mz")] == [
            f"Displacements x 50, largest {np.linalg.norm(beams.u, axis=2).max():.4g}{m}",
            f"N, largest {abs(beams.N).max():.4g}{kN}",
            f"Mz, largest {abs(beams.Mz).max():.4g}{kNm}"]
    matplotlib.pyplot.close("all")


def test_the_package_needs_neither_pandas_nor_matplotlib():
    script = ("import sys, kestol; "
              "print(sorted({'pandas', 'matplotlib'} & set(sys.modules)))")
    run = subprocess.run(["/usr/bin/python3", "-c", script], capture_output=True, text=True)
    assert run.stdout == "[]\n"
