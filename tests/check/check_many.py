"""check_many.py KESTOL-CHECK DECKS: two hundred mistakes in one deck, each on a line of its own, give two hundred
findings: none hides another and none is said twice. One node that lies far away is no reason to say more."""
import random
import re
import sys

from checker import Checker, Score, brief

SECTIONS = 40


def frame(wide, high):
    """The lines of a sound deck: storeys of columns and beams with many sections."""
    def node(i, j):
        return 1 + i + j * (wide + 1)

    lines = ["PROBLEM storeys", "TYPE 2d", "GravityDirection 0 -1 0", "mesh",
             "dimension = 2 elemtype Linear nnode = 2", "coordinates"]
    lines += [f"  {node(i, j)}  {4 * i} {3 * j}" for j in range(high + 1) for i in range(wide + 1)]
    columns = [(node(i, j), node(i, j + 1)) for j in range(high) for i in range(wide + 1)]
    beams = [(node(i, j), node(i + 1, j)) for j in range(1, high + 1) for i in range(wide)]
    lines += ["end coordinates", "elements"]
    lines += [f"  {e}  {a} {b}  {1 + e % SECTIONS}" for e, (a, b) in enumerate(columns + beams, 1)]
    lines += ["end elements", "materials"]
    lines += [f"  {k}  E=2.1e11 A=0.0{k + 10} Iz=1.{k}e-4 Weight=78500" for k in range(1, SECTIONS + 1)]
    lines += ["end materials", "constraints"]
    lines += [f"  {node(i, 0)}  111  0 0 0" for i in range(wide + 1)]
    lines += ["end constraints", "nodal_point_loads"]
    lines += [f"  {node(0, j)}  {10 + j}e3 0 0" for j in range(1, high + 1)]
    lines += ["end nodal_point_loads", "global_pressure_loads"]
    lines += [f"  {e}  0 -{20 + e % 5}e3" for e in range(len(columns) + 1, len(columns + beams) + 1)]
    return lines + ["end global_pressure_loads", ""]


def record(*words):
    return "  " + "  ".join(map(str, words))


# By section: how many of its lines are spoilt, and in which ways (code, new line from its words).
WAYS = {
    "coordinates": (50, [
        ("number-cut", lambda n, x, y: record(n, x, y + "m")),
        ("number-cut", lambda n, x, y: record(n, x + ",5", y)),
        ("node-number", lambda n, x, y: record(n + ".0", x, y)),
        ("syntax", lambda n, x, y: record(n, x)),
        ("syntax", lambda n, x, y: record(n, "x", y)),
        ("surplus", lambda n, x, y: record(n, x, y, 0))]),
    "elements": (60, [
        ("unknown-node", lambda n, a, b, m: record(n, a, 90000 + int(n), m)),
        ("unknown-material", lambda n, a, b, m: record(n, a, b, 1000 + int(n))),
        ("zero-size", lambda n, a, b, m: record(n, a, a, m)),
        ("node-number", lambda n, a, b, m: record(n, a + ".5", b, m)),
        ("syntax", lambda n, a, b, m: record(n, a, b, m, 7)),
        ("number-cut", lambda n, a, b, m: record(n, a, b, m + "x"))]),
    "materials": (20, [
        ("number-cut", lambda *w: record(*w).replace("E=2.1e11", "E=2,1e11")),
        ("unknown-word", lambda *w: record(*w).replace("Weight", "weight")),
        ("key-prefix", lambda *w: record(*w, "Alpha=1e-5")),
        ("bad-material", lambda *w: re.sub(r"A=\S+", "A=0", record(*w))),
        ("missing-property", lambda *w: re.sub(r"Iz=\S+", "", record(*w))),
        ("empty-value", lambda *w: record(*w).replace("E=", "E = ")),
        ("syntax", lambda *w: record(*w, "#", "steel"))]),
    "constraints": (15, [
        ("support-code", lambda n, c, *v: record(n, "131", *v)),
        ("syntax", lambda n, c, *v: record(n, c, *v[:2])),
        ("unknown-node", lambda n, c, *v: record(80000 + int(n), c, *v)),
        ("value-without-code", lambda n, c, *v: record(n, "110", 0, 0, 5)),
        ("number-cut", lambda n, c, *v: record(n, c, "0,1", 0, 0)),
        ("degrees", lambda n, c, *v: record(n, c, *v, "Euler3=30"))]),
    "nodal_point_loads": (6, [
        ("number-cut", lambda n, *v: record(n, v[0].replace("e3", "kN"), *v[1:])),
        ("unknown-node", lambda n, *v: record(70000 + int(n), *v)),
        ("syntax", lambda n, *v: record(n, *v[:2])),
        ("surplus", lambda n, *v: record(n, *v, 1, 2))]),
    "global_pressure_loads": (49, [
        ("unknown-element", lambda n, *v: record(60000 + int(n), *v)),
        ("syntax", lambda n, *v: record(n, v[1])),
        ("number-cut", lambda n, *v: record(n, v[0], v[1].replace("e3", "d3"))),
        ("degrees", lambda n, *v: record(n, *v, "Euler3=90"))]),
}


def spoil(lines):
    """The deck with its mistakes, and what must be found: (line, code)."""
    spoilt, wanted = list(lines), []
    for section, (count, ways) in WAYS.items():
        rows = range(lines.index(section) + 1, lines.index("end " + section))
        for row in random.sample(rows, count):
            code, way = random.choice(ways)
            spoilt[row] = way(*lines[row].split())
            wanted.append((row + 1, code))
    return "\n".join(spoilt), sorted(wanted)


def check_far_node(checker, score):
    """One coordinate that is wrong by nine digits makes no other nodes one place, and no members cross."""
    lines = frame(150, 60)
    row = lines.index("coordinates") + 5000
    number, _, y = lines[row].split()
    lines[row] = record(number, "4e9", y)
    found = checker.findings("\n".join(lines), "--no-solve", "--no-condition")
    score.equal(brief(found), [], "a far node")


def main():
    checker, score = Checker(sys.argv[1]), Score()
    lines = frame(30, 10)
    score.equal(checker.findings("\n".join(lines)), [], "the sound deck")
    for seed in range(int(sys.argv[2])):
        random.seed(seed)
        text, wanted = spoil(lines)
        found = sorted((f["line"], f["code"]) for f in checker.findings(text))
        score.equal(len(wanted), 200)
        score.equal([f for f in found if f not in wanted], [], seed, "said too much")
        score.equal([f for f in wanted if f not in found], [], seed, "not said")
        score.equal(len(found), len(wanted), seed, "findings")
    check_far_node(checker, score)
    score.end()


if __name__ == "__main__":
    main()
