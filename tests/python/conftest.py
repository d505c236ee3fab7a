"""What the tests of the Python module share."""
import json
import os
import pathlib
import subprocess

import pytest

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
DECKS = sorted((ROOT / "examples").glob("*.dat"))


@pytest.fixture(params=DECKS, ids=lambda path: path.stem)
def deck(request):
    """Every example, one after the other."""
    return request.param


@pytest.fixture
def exported():
    """The JSON of kestol-export."""
    program = os.environ["KESTOL_EXPORT"]

    def run(deck, solver="deck"):
        command = [program, "--json", "-", "--solver", solver, str(deck)]
        return json.loads(subprocess.run(command, check=True, capture_output=True).stdout)
    return run
