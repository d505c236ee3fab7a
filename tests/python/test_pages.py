"""Every example in a page does what the page says."""
import doctest
import importlib
import os
import pathlib
import pkgutil
import pydoc
import re
import subprocess
import sys

import pytest

import kestol
from conftest import ROOT

MODULES = ["kestol"] + [f"kestol.{module.name}" for module in pkgutil.iter_modules(kestol.__path__)
                        if not module.name.startswith("_")]
PAGE = ROOT / "docs" / "python.md"


@pytest.mark.parametrize("name", MODULES)
def test_examples_of_docstrings(name):
    assert doctest.testmod(importlib.import_module(name)).failed == 0


def test_docstrings_hold_examples():
    count = sum(doctest.testmod(importlib.import_module(name)).attempted for name in MODULES)
    assert count >= 30


def test_the_page_does_what_it_says(tmp_path, monkeypatch):
    monkeypatch.chdir(tmp_path)
    monkeypatch.setenv("MPLBACKEND", "Agg")
    blocks = re.findall(r"```python\n(.*?)```", PAGE.read_text(), re.DOTALL)
    script = "\n\n".join(blocks)
    assert script.count(">>>") >= 40
    test = doctest.DocTestParser().get_doctest(script, {}, "python.md", str(PAGE), 0)
    runner = doctest.DocTestRunner(optionflags=doctest.NORMALIZE_WHITESPACE)
    runner.run(test)
    assert runner.failures == 0
    assert (tmp_path / "pareto.png").stat().st_size > 10_000


def test_every_public_name_has_a_docstring_and_stands_on_the_page():
    text = PAGE.read_text()
    for name in kestol.__all__:
        assert getattr(kestol, name).__doc__, name
        assert name in text, name
    for owner in (kestol.Model, kestol.Results, kestol.Beams, kestol.Shells, kestol.Solids,
                  kestol.Combined):
        members = {name: member for level in reversed(owner.__mro__[:-1])
                   for name, member in vars(level).items() if not name.startswith("_")}
        for name, member in members.items():
            assert member.__doc__, f"{owner.__name__}.{name}"
            assert re.search(rf"\b{name}\b", text), f"{owner.__name__}.{name}"


@pytest.mark.parametrize("owner", [kestol.Results, kestol.Beams, kestol.Shells, kestol.Solids])
def test_every_array_tells_its_shape_and_unit_and_cannot_be_set(owner):
    arrays = {name: member for level in owner.__mro__ for name, member in vars(level).items()
              if type(member).__name__ == "_Attribute"}
    assert len(arrays) >= 4
    help_text = pydoc.render_doc(owner, renderer=pydoc.plaintext)
    for name, member in arrays.items():
        assert re.match(r"\((nodes|supports|beams|points),", member.__doc__), name
        unit = r"\[(length|rad|force|pressure)|number|1\.\.N|rows ex"
        assert re.search(unit, member.__doc__), name
        assert member.__doc__.split(":")[0] in help_text, name
        with pytest.raises(AttributeError, match=f"{name} cannot be set"):
            setattr(object.__new__(owner), name, None)


def test_the_installed_package_is_complete(tmp_path):
    subprocess.run([os.environ["CMAKE"], "--install", os.environ["KESTOL_BUILD"], "--prefix",
                    tmp_path, "--component", "python"], check=True, capture_output=True)
    folder = tmp_path / "lib" / "python3" / "dist-packages"
    installed = {path.name for path in (folder / "kestol").iterdir()}
    sources = {path.name for path in (ROOT / "python" / "kestol").iterdir() if path.is_file()}
    assert {name for name in installed if not name.startswith("_kestol.cpython")} == sources
    run = subprocess.run([sys.executable, "-c", "import kestol; print(kestol.__file__)"],
                         env={**os.environ, "PYTHONPATH": str(folder)}, capture_output=True,
                         text=True)
    assert run.stdout.startswith(str(folder)), run.stderr


def mypy(*arguments):
    return subprocess.run(["/usr/bin/mypy", "--config-file", ROOT / "python" / "mypy.ini",
                           "--python-executable", sys.executable, *arguments],
                          capture_output=True, text=True)


def test_annotations_hold(tmp_path):
    run = mypy("--cache-dir", tmp_path, "-p", "kestol")
    assert run.returncode == 0, run.stdout + run.stderr


def test_annotations_catch_mistakes(tmp_path):
    (tmp_path / "script.py").write_text(
        "import kestol\n"
        "result = kestol.solve(kestol.Model(dimension=2))\n"
        "reveal_type(result.displacements)\n"
        "result.beam('7')\n"
        "result.beam(7).Q\n")
    run = mypy("--cache-dir", tmp_path, tmp_path / "script.py")
    assert "numpy.floating" in run.stdout
    assert 'script.py:4: error: Argument 1 to "beam"' in run.stdout
    assert 'script.py:5: error: "Beam" has no attribute "Q"' in run.stdout


def test_stubs_name_what_the_extension_has():
    stub = pathlib.Path(ROOT / "python" / "kestol" / "_kestol.pyi").read_text()
    module = sys.modules["kestol._kestol"]
    classes = re.split(r"^class (\w+):\n", stub, flags=re.MULTILINE)
    for name, body in zip(classes[1::2], classes[2::2]):
        wanted = set(re.findall(r"^    def (\w+)", body, re.MULTILINE)) - {"__init__"}
        members = {member for member in vars(getattr(module, name)) if not member.startswith("_")}
        assert members == wanted, name
    wanted = set(re.findall(r"^(?:def |class )?(\w+)", stub, re.MULTILINE))
    public = {name for name in vars(module) if not name.startswith("_")}
    assert public <= wanted
