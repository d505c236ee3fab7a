"""Many models: in processes, and one after the other."""
import os
import pathlib
import time

import numpy as np
import pytest
from concurrent.futures.process import BrokenProcessPool

import kestol
from frames import INERTIA, grid, portal


def sway(result):
    return float(result.displacements[1, 0])


def test_many_models_give_what_one_after_the_other_gives():
    models = [portal(inertia=INERTIA * k) for k in range(1, 12)]
    wanted = [sway(kestol.solve(model)) for model in models]
    assert kestol.solve_many(models, sway, processes=3) == wanted
    assert kestol.solve_many(models, sway, processes=1, solver="skyline") == wanted
    assert kestol.solve_many([], sway) == []


def test_they_run_in_other_processes(tmp_path):
    deck = tmp_path / "portal.dat"
    portal().write(deck)
    places = kestol.solve_many([deck, portal()] * 4, lambda result: (os.getpid(), sway(result)))
    assert os.getpid() not in {pid for pid, _ in places}
    assert len({value for _, value in places}) == 1


def test_a_refused_model_leaves_its_error_in_its_place():
    loose = portal()
    loose.add_node(9, 9)
    answers = kestol.solve_many([portal(), loose, "no such.dat", portal()], sway, processes=2)
    assert isinstance(answers[0], float) and answers[3] == answers[0]
    assert (answers[1].code, answers[2].code) == ("mechanism", "file")


def test_mistakes_of_the_function_are_raised():
    with pytest.raises(ZeroDivisionError):
        kestol.solve_many([portal()], lambda result: 1 / 0)


def test_a_killed_process_is_an_error():
    with pytest.raises(BrokenProcessPool):
        kestol.solve_many([portal()], lambda result: os._exit(3))


def resident():
    pages = int(pathlib.Path("/proc/self/statm").read_text().split()[1])
    return pages * os.sysconf("SC_PAGE_SIZE")


def test_10_000_solves_do_not_grow():
    model, mechanism = portal(), portal()
    mechanism.add_node(9, 9)

    def some(count):
        for k in range(count):
            result = kestol.solve(model)
            result.beams.Mz, result.displacements, result.reactions
            if k % 10 == 0:
                with pytest.raises(kestol.Error):
                    kestol.solve(mechanism)
                kestol.read_text(model.text())
    some(1000)
    before = resident()
    some(9000)
    assert resident() - before < 2 * 2**20


def test_a_call_costs_little_beyond_the_solution():
    model = portal()
    kestol.solve(model)
    start = time.process_time()
    for _ in range(100):
        result = kestol.solve(model)
        result.displacements, result.beam(2).Mz
    assert (time.process_time() - start) / 100 < 5e-3


def test_results_of_a_large_model_come_without_copies():
    nodes, pairs = grid(20_000)
    model = kestol.Model(dimension=2)
    model.add_nodes(nodes)
    model.add_beams(pairs, material=1)
    model.add_material(1, E=1e4, A=1, Iz=1)
    model.add_support(np.flatnonzero(nodes[:, 1] == 0) + 1, "111")
    model.add_nodal_load(len(nodes), 1, 0, 0)
    result = kestol.solve(model, "sparse")
    start = time.process_time()
    for _ in range(1000):
        result.displacements, result.beams.Mz, result.beams.u
    assert time.process_time() - start < 1.0
