#!/usr/bin/env python3
"""Writes random stable models into a folder: random_models.py FOLDER COUNT [SEED]

Frames in plane and space, shells of 3 and 6 nodes, solids of 4 and 10, two meshes; springs,
settlements, inclined supports, hinges, loads of all kinds; nodes numbered at random.
"""
import pathlib
import random
import sys

RING = [(1, 0, 0), (1, 1, 0), (0, 1, 0), (0, 1, 1), (0, 0, 1), (1, 0, 1)]
EDGES = [(0, 1), (1, 2), (2, 0), (0, 3), (1, 3), (2, 3)]


class Deck:
    """A model by places; numbers are given at random when it is written."""

    def __init__(self, rng, dimension):
        self.rng, self.dimension = rng, dimension
        self.places, self.meshes, self.materials = {}, [], []
        self.constraints, self.loads, self.options, self.sections = {}, {}, [], []

    def node(self, place):
        return self.places.setdefault(place, len(self.places))

    def text(self):
        numbers = list(range(1, len(self.places) + 1))
        self.rng.shuffle(numbers)

        def n(place):
            return numbers[self.places[place]]

        lines = ["PROBLEM random", f"TYPE {self.dimension}d"] + self.options
        element = 0
        for m, (family, nnode, elements) in enumerate(self.meshes):
            lines += [f"mesh dimension = {self.dimension} elemtype {family} nnode = {nnode}",
                      "coordinates"]
            if m == 0:
                lines += sorted((f"{n(p)} " + " ".join(f"{x:.12g}" for x in p)
                                 for p in self.places), key=lambda line: int(line.split()[0]))
            lines += ["end coordinates", "elements"]
            for places, material in elements:
                element += 1
                lines.append(f"{element} " + " ".join(str(n(p)) for p in places) + f" {material}")
            lines.append("end elements")
        lines += ["materials", *self.materials, "end materials", "constraints"]
        lines += [f"{n(p)} {text}" for p, text in self.constraints.items()]
        lines.append("end constraints")
        if self.loads:
            lines += ["nodal_point_loads", *(f"{n(p)} {text}" for p, text in self.loads.items()),
                      "end nodal_point_loads"]
        for name, records in self.sections:
            records = [n(r) if isinstance(r, tuple) else r for r in records]
            lines += [name, *map(str, records), f"end {name}"]
        return "\n".join(lines) + "\n"


def values(rng, count, size):
    return " ".join(f"{rng.uniform(-size, size):.6g}" for _ in range(count))


def plane_frame(rng):
    deck = Deck(rng, 2)
    columns, storeys = rng.randint(1, 5), rng.randint(1, 5)

    def at(i, j):
        return 4.0 * i + 0.1 * j, 3.0 * j

    for i in range(columns + 1):
        for j in range(storeys + 1):
            deck.node(at(i, j))
    beams = [((at(i, j), at(i, j + 1)), 1) for i in range(columns + 1) for j in range(storeys)]
    girders = [((at(i, j), at(i + 1, j)), 2) for i in range(columns) for j in range(1, storeys + 1)]
    two = rng.random() < 0.4
    deck.meshes = [("Linear", 2, beams if two else beams + girders)]
    if two:
        deck.meshes.append(("Linear", 2, girders))
    deck.materials = ["1 E=2e11 A=1e-2 Iz=4e-5 Weight=78500", "2 E=2e11 A=5e-3 Iz=2e-5"]
    for i in range(columns + 1):
        deck.constraints[at(i, 0)] = "111 0 0 0"
    if columns > 1:
        deck.constraints[at(columns, 0)] = f"010 0 {rng.choice([0, -0.01])} 0 Euler3={rng.uniform(-0.6, 0.6):.4f}"
    deck.constraints[at(0, storeys)] = f"020 0 {rng.choice(['1e6', '1e8'])} 0"
    if rng.random() < 0.5 and columns > 1 and storeys > 1:
        deck.sections.append(("rotules", [at(1, storeys)]))
    else:
        first = len(beams) + 1
        deck.sections.append(("global_pressure_loads",
                              [f"{first + g} 0 -{rng.randint(1, 9) * 1000}" for g in range(len(girders))]))
    deck.loads[at(columns, storeys)] = values(rng, 3, 1e4)
    deck.options.append("GravityDirection 0 -1 0")
    return deck


def space_frame(rng):
    deck = Deck(rng, 3)
    nx, ny, nz = (rng.randint(1, 3) for _ in range(3))

    def at(i, j, k):
        return 4.0 * i, 5.0 * j + 0.2 * i, 3.0 * k

    beams = []
    for i in range(nx + 1):
        for j in range(ny + 1):
            for k in range(nz + 1):
                deck.node(at(i, j, k))
                if k < nz:
                    beams.append(((at(i, j, k), at(i, j, k + 1)), 1))
                if k and i < nx:
                    beams.append(((at(i, j, k), at(i + 1, j, k)), 1))
                if k and j < ny:
                    beams.append(((at(i, j, k), at(i, j + 1, k)), 1))
            deck.constraints[at(i, j, 0)] = "111111 0 0 0 0 0 0"
    deck.meshes = [("Linear", 2, beams)]
    deck.materials = ["1 E=2e11 G=8e10 A=1e-2 Iy=1e-5 Iz=2e-5 J=3e-5 Weight=78500"]
    deck.options.append("GravityDirection 0 0 -1")
    deck.constraints[at(nx, ny, 0)] = (f"111000 0 0 {rng.choice([0, -0.02])} 0 0 0 "
                                       f"Euler1={rng.uniform(-1, 1):.4f} Euler2=0.3 Euler3=0.2")
    deck.constraints[at(0, 0, nz)] = "002000 0 0 2e6 0 0 0"
    deck.loads[at(nx, 0, nz)] = values(rng, 6, 1e4)
    return deck


def shell(rng):
    deck = Deck(rng, 3)
    nx, ny, six = rng.randint(2, 7), rng.randint(2, 7), rng.random() < 0.5
    curved = rng.choice([0.0, 0.05])

    def at(i, j):
        return 1.0 * i, 0.8 * j, curved * i * i

    triangles = []
    for i in range(nx):
        for j in range(ny):
            a, b, c, d = at(i, j), at(i + 1, j), at(i + 1, j + 1), at(i, j + 1)
            triangles += [((a, b, c), 1), ((a, c, d), 1)]
    for i in range(nx + 1):
        for j in range(ny + 1):
            deck.node(at(i, j))
    deck.meshes = [("Triangle", 3, triangles)]
    if rng.random() < 0.4:
        deck.meshes.append(("Linear", 2, [((at(i, 0), at(i + 1, 0)), 2) for i in range(nx)]))
    deck.materials = ["1 E=3e10 nu=0.2 G=1.25e10 t=0.2 Weight=25000",
                      "2 E=3e10 G=1.2e10 A=0.12 Iy=1e-3 Iz=2e-3 J=1e-3"]
    for j in range(ny + 1):
        deck.constraints[at(0, j)] = "111111 0 0 0 0 0 0"
    deck.constraints[at(nx, ny)] = f"001000 0 0 {rng.choice([0, -0.001])} 0 0 0 Euler1=0.2"
    deck.constraints[at(nx, 0)] = "002000 0 0 1e7 0 0 0"
    deck.loads[at(nx, 1)] = values(rng, 6, 1e4)
    deck.sections.append(("global_pressure_loads", [f"{e} 0 0 -3000" for e in range(1, 4)]))
    deck.options += ["GravityDirection 0 0 -1"]
    if six:
        deck.options.append("ConvertTo6Nodes")
    if rng.random() < 0.4:
        deck.options.append("DoSmoothing 0.1")
    return deck


def solid(rng):
    deck = Deck(rng, 3)
    n, m, ten = rng.randint(2, 4), rng.randint(1, 2), rng.random() < 0.5
    h = 0.5

    def at(corner):
        return tuple(h * c for c in corner)

    tetrahedra = []
    for i in range(n):
        for j in range(m):
            for k in range(m):
                for r in range(6):
                    offsets = [(0, 0, 0), RING[(r + 1) % 6], RING[r], (1, 1, 1)]
                    corners = [at((i + x, j + y, k + z)) for x, y, z in offsets]
                    if volume(corners) < 0:
                        corners[1], corners[2] = corners[2], corners[1]
                    middles = [tuple((u + v) / 2 for u, v in zip(corners[p], corners[q]))
                               for p, q in EDGES] if ten else []
                    tetrahedra.append((tuple(corners + middles), 1))
    for places, _ in tetrahedra:
        for place in places:
            deck.node(place)
    deck.meshes = [("Tetrahedra", 10 if ten else 4, tetrahedra)]
    deck.materials = ["1 E=3e10 nu=0.25 Weight=25000"]
    deck.options.append("GravityDirection 0 0 -1")
    for place in list(deck.places):
        if place[0] == 0:
            deck.constraints[place] = f"111 0 0 {rng.choice([0, 0, 1e-4])}"
    tip = at((n, m, m))
    deck.constraints[at((n, 0, 0))] = "010 0 0 0 Euler3=0.4"
    deck.constraints[at((n, m, 0))] = "002 0 0 1e8"
    deck.loads[tip] = values(rng, 3, 1e5)
    if rng.random() < 0.5:
        deck.options.append("DoSmoothing 0.1")
    return deck


def volume(p):
    """Six times the signed volume."""
    (a, b, c), (d, e, f), (g, h, i) = ([x - y for x, y in zip(p[q], p[0])] for q in (1, 2, 3))
    return a * (e * i - f * h) - b * (d * i - f * g) + c * (d * h - e * g)


def main():
    folder, count = pathlib.Path(sys.argv[1]), int(sys.argv[2])
    rng = random.Random(int(sys.argv[3]) if len(sys.argv) > 3 else 1)
    folder.mkdir(parents=True, exist_ok=True)
    kinds = [plane_frame, space_frame, shell, solid]
    for k in range(count):
        kind = kinds[k % len(kinds)]
        (folder / f"{k:03}-{kind.__name__}.dat").write_text(kind(rng).text())


if __name__ == "__main__":
    main()
