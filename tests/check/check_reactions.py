"""check_reactions.py KESTOL-CHECK: true reactions against closed forms, in both axes, with what the solver prints
beside them; the balance of loads and reactions."""
import math
import sys

from checker import Checker, Score


def beam(supports, loads, elements="    1  1 2  1\n    2  2 3  1\n", extra=""):
    return f"""PROBLEM beam
TYPE 2d
{extra}mesh
  dimension = 2   elemtype Linear   nnode = 2
  coordinates
    1  0 0
    2  3 0
    3  6 0
  end coordinates
  elements
{elements}  end elements
materials
  1  E=2.1e11 A=0.01 Iz=1e-4 Weight=0
end materials
constraints
{supports}end constraints
{loads}"""


def point(node, *values):
    numbers = " ".join(map(repr, values))
    return f"nodal_point_loads\n  {node}  {numbers}\nend nodal_point_loads\n"


def line(kind, *rows):
    return f"{kind}\n" + "".join(f"  {row}\n" for row in rows) + f"end {kind}\n"


q, P, L = 8000.0, 30000.0, 6.0
s, c = math.sin(0.5), math.cos(0.5)

# name, deck, {node: (Fx, Fy, Mz)}
CASES = [
    ("clamped at both ends under a line load", beam("  1  111 0 0 0\n  3  111 0 0 0\n",
     line("global_pressure_loads", f"1 0 {-q}", f"2 0 {-q}")),
     {1: (0, q * L / 2, q * L**2 / 12), 3: (0, q * L / 2, -q * L**2 / 12)}),
    ("one element, whose loads fall on its supports", beam(
        "  1  111 0 0 0\n  3  111 0 0 0\n", line("global_pressure_loads", f"1 0 {-q}"),
        "    1  1 3  1\n").replace("    2  3 0\n    3  6 0\n", "    2  6 0\n").replace("1 3  1", "1 2  1")
     .replace("  3  111", "  2  111"),
     {1: (0, q * L / 2, q * L**2 / 12), 2: (0, q * L / 2, -q * L**2 / 12)}),
    ("simply supported under a force in the middle", beam(
        "  1  110 0 0 0\n  3  010 0 0 0\n", point(2, 0.0, -P, 0.0)),
     {1: (0, P / 2, 0), 3: (0, P / 2, 0)}),
    ("propped cantilever under a force in the middle", beam(
        "  1  111 0 0 0\n  3  010 0 0 0\n", point(2, 0.0, -P, 0.0)),
     {1: (0, 11 * P / 16, 3 * P * L / 16), 3: (0, 5 * P / 16, 0)}),
    ("cantilever under a couple", beam("  1  111 0 0 0\n", point(3, 0.0, 0.0, P)),
     {1: (0, 0, -P)}),
    ("a load straight on a support", beam("  1  111 0 0 0\n  3  010 0 0 0\n",
                                          point(3, 0.0, -P, 0.0)),
     {1: (0, 0, 0), 3: (0, P, 0)}),
    ("a spring under the middle of two bars", beam(
        "  1  111 0 0 0\n  2  200 5e8 0 0\n  3  111 0 0 0\n", point(2, P, 0.0, 0.0)),
     {1: (-P * 7e8 / 1.9e9, 0, 0), 2: (-P * 5e8 / 1.9e9, 0, 0), 3: (-P * 7e8 / 1.9e9, 0, 0)}),
    ("a settlement of the middle", beam(
        "  1  110 0 0 0\n  2  010 0 -0.01 0\n  3  010 0 0 0\n", ""),
     {1: (0, 3 * 2.1e7 * 0.01 / 27, 0), 2: (0, -6 * 2.1e7 * 0.01 / 27, 0),
      3: (0, 3 * 2.1e7 * 0.01 / 27, 0)}),
    ("an inclined roller", beam("  1  110 0 0 0\n  3  010 0 0 0 Euler3=0.5\n",
                                point(2, 0.0, -P, 0.0)),
     {1: (P / 2 * s / c, P / 2, 0), 3: (-P / 2 * s / c, P / 2, 0)}),
    ("own weight", beam("  1  111 0 0 0\n", "", extra="GravityDirection 0 -1 0\n")
     .replace("Weight=0", "Weight=78500"), {1: (0, 785 * L, 785 * L**2 / 2)}),
]


def check_case(checker, score, name, deck, wanted):
    document = checker.json(checker.write(deck), "--no-condition")
    found = {r["node"]: r for r in document["reactions"]}
    score.equal(sorted(found), sorted(wanted), name, "nodes")
    size = max(abs(v) for values in wanted.values() for v in values)
    for node, (Fx, Fy, Mz) in wanted.items():
        force, moment = found[node]["force"], found[node]["moment"]
        for value, target in zip(force + moment, (Fx, Fy, 0, 0, 0, Mz)):
            score.expect(abs(value - target) <= 1e-9 * size, name, node, value, target)
        turned = found[node].get("inSupportAxes")
        score.equal(turned is not None, node == 3 and "inclined" in name, name, node)
        if turned:
            target = (c * Fx + s * Fy, -s * Fx + c * Fy)
            for value, wanted_value in zip(turned["force"], target):
                score.expect(abs(value - wanted_value) <= 1e-9 * size, name, "turned", value)
        score.equal(len(found[node]["printed"]), 3, name, "printed")
    # Where no force acts at all there is nothing but rounding to compare.
    if any(Fx or Fy for Fx, Fy, _ in wanted.values()):
        score.expect(document["equilibrium"]["relativeError"] < 1e-10, name, "balance")


def main():
    checker, score = Checker(sys.argv[1]), Score()
    for name, deck, wanted in CASES:
        check_case(checker, score, name, deck, wanted)
    tables = checker.run("--reactions", "--equilibrium", checker.write(CASES[8][1])).stdout
    for word in ("TRUE REACTIONS", "node 3", "in its axes", "EQUILIBRIUM", "loads", "relative error"):
        score.expect(word in tables, "tables say", word)
    score.expect(all(len(row) <= 80 for row in tables.splitlines()), "80 columns")
    score.end()


if __name__ == "__main__":
    main()
