"""check_stability.py KESTOL-CHECK UNSTABLE STABLE: random frames until so many of both kinds were seen. The
number of modes is that of the null space by numpy, each mode lies in it, together they span it, and a
stable model has none."""
import sys

import numpy as np

from checker import Checker, Score, brief
from frames import random_frame


def motions(frame, document):
    """The modes as columns over all degrees."""
    n = frame.dofs
    columns = np.zeros((n * len(frame.nodes), len(document["mechanisms"])))
    for j, mode in enumerate(document["mechanisms"]):
        for node, motion in mode["motion"].items():
            first = (int(node) - 1) * n
            u, rotation = motion["u"], motion["rotation"]
            columns[first:first + n, j] = [u[0], u[1], rotation[2]] if n == 3 else u + rotation
    return columns


def check_unstable(score, seed, frame, document, Z):
    modes = document["mechanisms"]
    basis, _ = np.linalg.qr(Z)
    columns = motions(frame, document)
    for j, mode in enumerate(modes):
        column = columns[:, j] / np.linalg.norm(columns[:, j])
        outside = np.linalg.norm(column - basis @ (basis.T @ column))
        score.expect(outside < 1e-6, seed, "mode", j + 1, "lies outside by", outside)
        score.expect(abs(abs(columns[:, j]).max() - 1) < 1e-9, seed, "mode", j + 1, "scale")
        score.expect(mode["text"] and all(mode["text"]), seed, "mode", j + 1, "has no words")
        score.expect("nan" not in str(mode["text"]), seed, mode["text"])
    score.expect(np.linalg.matrix_rank(columns, tol=1e-8) == len(modes), seed, "modes depend")
    errors = [f for f in document["findings"] if f["severity"] == "error"]
    score.expect(errors and {f["code"] for f in errors} <= {"rigid-motion", "mechanism"}, seed,
                 brief(errors))
    named = {node for f in errors for node in f["nodes"]}
    moving = {int(node) for mode in modes for node in mode["motion"]}
    score.equal(named, moving, seed, "nodes that are named")


def main():
    checker, score = Checker(sys.argv[1]), Score()
    wanted = {True: int(sys.argv[2]), False: int(sys.argv[3])}
    seed = 0
    while wanted[True] > 0 or wanted[False] > 0:
        seed += 1
        frame = random_frame(seed)
        Z, rest = frame.null_space()
        unstable = Z.shape[1] > 0
        if wanted[unstable] <= 0 or rest < 5e-11:
            continue
        wanted[unstable] -= 1
        document = checker.json(checker.write(frame.deck()), "--mechanism", "40",
                                "--no-condition")
        if not score.equal(document["modes"], Z.shape[1], seed, "modes, next value", rest):
            continue
        if unstable:
            check_unstable(score, seed, frame, document, Z)
        else:
            errors = [f for f in document["findings"] if f["severity"] == "error"]
            score.equal(brief(errors), [], seed)
            score.expect(document["equilibrium"]["relativeError"] < 1e-9, seed, "balance")
    score.end()


if __name__ == "__main__":
    main()
