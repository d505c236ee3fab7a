"""Random decks of every family, each from its seed alone."""
import random


def lines(keyword, rows):
    return [keyword, *rows, f"end {keyword}"] if rows else []


def number(value):
    return repr(float(value))


def units(rng):
    if rng.random() < 0.5:
        return []
    names = ["units_names", "SI N m Pa 1 1", "kN-m kN m kPa 1000 1", "N-mm N mm MPa 1 0.001", "end"]
    return names + [
        f"units_mat_and_load {rng.choice(['SI', 'kN-m'])}", f"units_res {rng.choice(['SI', 'kN-m', 'N-mm'])}"]


def frame(rng):
    """Beams on a jittered grid, clamped below; hinges, springs, turned supports, all loads."""
    plane = rng.random() < 0.5
    dofs = 3 if plane else 6
    columns, rows = rng.randint(2, 4), rng.randint(2, 4)

    def jitter():
        return rng.uniform(-0.2, 0.2)

    nodes, at = [], {}
    for j in range(rows):
        for i in range(columns):
            at[i, j] = len(nodes) + 1
            point = [3 * i + jitter(), 2.5 * j + jitter()]
            nodes.append(point if plane else [point[0], jitter(), point[1]])
    pairs = [(at[i, j], at[i, j + 1]) for i in range(columns) for j in range(rows - 1)]
    pairs += [(at[i, j], at[i + 1, j]) for i in range(columns - 1) for j in range(1, rows)]
    pairs = [pair if rng.random() < 0.5 else pair[::-1] for pair in pairs]
    numbers = rng.sample(range(1, 3 * len(pairs)), len(pairs))
    elements = [f"{n} {a} {b} {rng.randint(1, 2)}" for n, (a, b) in zip(numbers, pairs)]
    half = rng.randint(1, len(elements) - 1) if rng.random() < 0.3 else len(elements)
    dimension = 2 if plane else 3
    deck = [f"mesh dimension = {dimension} elemtype Linear nnode = 2", "coordinates"]
    deck += [" ".join([str(n + 1), *map(number, p)]) for n, p in enumerate(nodes)]
    deck += ["end coordinates", "elements", *elements[:half], "end elements"]
    if half < len(elements):
        deck += [f"mesh dimension = {dimension} elemtype Linear nnode = 2", "coordinates",
                 "end coordinates", "elements", *elements[half:], "end elements"]
    weight = " Weight=78" if rng.random() < 0.3 else ""
    deck += lines("materials", [
        f"{m} E=2.1e8 A={number(rng.uniform(1e-3, 1e-2))} Iz={number(rng.uniform(1e-5, 1e-4))} "
        f"Iy=2e-5 J=3e-5 G=8e7{weight}" for m in (1, 2)])
    supports = [f"{at[i, 0]} {'1' * dofs} {' '.join(['0'] * dofs)}" for i in range(columns)]
    if rng.random() < 0.5:
        supports[0] = (f"{at[0, 0]} {'1' * dofs} " + " ".join(
            number(rng.uniform(-1e-3, 1e-3)) for _ in range(dofs)))
    if rng.random() < 0.5:
        supports.append(f"{at[0, 1]} {'2' + '0' * (dofs - 1)} {number(rng.uniform(1e3, 1e5))}"
                        + " 0" * (dofs - 1))
    if rng.random() < 0.5:
        supports[-1] += f" Euler3={number(rng.uniform(-1, 1))}"
    deck += lines("constraints", supports)
    if rng.random() < 0.6:
        deck += lines("rotules", [str(at[i, 1]) for i in range(columns) if rng.random() < 0.5])
    deck += lines("nodal_point_loads", [
        f"{at[i, rows - 1]} " + " ".join(number(rng.uniform(-20, 20)) for _ in range(dofs))
        for i in range(columns)])
    for section in ("global_pressure_loads", "local_pressure_loads", "global_projected_pressure_loads"):
        count = 2 if plane else 3
        # A loaded beam that is hinged at its first node is the solver's own oddity; still the same
        # numbers must come out everywhere.
        deck += lines(section, [
            f"{n} " + " ".join(number(rng.uniform(-5, 5)) for _ in range(count))
            for n in rng.sample(numbers, 2)])
    gravity = ["GravityDirection 0 -1 0" if plane else "GravityDirection 0 0 -1"]
    keys = [f"NumOfDivisions {rng.randint(1, 12)}"]
    return "\n".join([f"PROBLEM random frame\nTYPE {dimension}d", *units(rng), *keys, *gravity, *deck, ""])


def surface(rng):
    """A curved sheet of triangles, perhaps with a stiffener, under all shell loads."""
    nx, ny = rng.randint(1, 4), rng.randint(1, 4)
    bend = rng.choice([0.0, 0.3])
    at = {(i, j): j * (nx + 1) + i + 1 for j in range(ny + 1) for i in range(nx + 1)}
    nodes = [(i, 0.8 * j, bend * (i - j) ** 2) for j in range(ny + 1) for i in range(nx + 1)]
    triangles = []
    for j in range(ny):
        for i in range(nx):
            a, b, c, d = at[i, j], at[i + 1, j], at[i + 1, j + 1], at[i, j + 1]
            triangles += [(a, b, c), (a, c, d)] if rng.random() < 0.5 else [(a, b, d), (b, c, d)]
    deck = ["mesh dimension = 3 elemtype Triangle nnode = 3", "coordinates"]
    deck += [" ".join([str(n + 1), *map(number, p)]) for n, p in enumerate(nodes)]
    deck += ["end coordinates", "elements"]
    deck += [f"{n + 1} {a} {b} {c} 1" for n, (a, b, c) in enumerate(triangles)]
    deck += ["end elements"]
    if rng.random() < 0.4:
        deck += ["mesh dimension = 3 elemtype Linear nnode = 2", "coordinates", "end coordinates",
                 "elements"]
        deck += [f"{1000 + i} {at[i, 0]} {at[i + 1, 0]} 2" for i in range(nx)]
        deck += ["end elements"]
    axes = f" Euler3={number(rng.uniform(-1, 1))}" if rng.random() < 0.3 else ""
    deck += lines("materials", [f"1 E=3e7 nu=0.2 t={number(rng.uniform(0.05, 0.3))} G=1.25e7 Weight=25{axes}",
                                "2 E=2e8 A=1e-2 Iz=1e-4 Iy=1e-4 J=1e-4 G=8e7"])
    deck += lines("constraints", [f"{at[0, j]} 111111 0 0 0 0 0 {number(0.0)}" for j in range(ny + 1)])
    deck += lines("nodal_point_loads", [f"{at[nx, ny]} 1 2 -3 0 0 0"])
    deck += lines("local_pressure_loads", [f"1 0 0 {number(rng.uniform(-5, 5))} {number(rng.uniform(0, 1))}"])
    deck += lines("face_loads", [f"2 {rng.randint(0, 2)} 1 0 -2"])
    keys = ["CoplanarityAngle 0.01", rng.choice(["", "ConvertTo6Nodes"]),
            rng.choice(["", "MainStresses", "MainAndLocalStresses"]),
            rng.choice(["", "DoSmoothing 0.3"]), "GravityDirection 0 0 -1"]
    return "\n".join(["PROBLEM random sheet\nTYPE 3d", *units(rng), *keys, *deck, ""])


PATH = ((1, 0, 0), (1, 1, 0), (0, 1, 0), (0, 1, 1), (0, 0, 1), (1, 0, 1))
EDGES = ((0, 1), (1, 2), (2, 0), (0, 3), (1, 3), (2, 3))


def block(rng):
    """A box of tetrahedra of four or ten nodes."""
    sizes = [rng.randint(1, 3) for _ in range(3)]
    ten = rng.random() < 0.5
    corners = {}
    for k in range(sizes[2] + 1):
        for j in range(sizes[1] + 1):
            for i in range(sizes[0] + 1):
                corners[i, j, k] = len(corners) + 1
    points = [tuple(c + rng.uniform(-0.1, 0.1) for c in key) for key in corners]

    def volume(tet):
        o, a, b, c = (points[n - 1] for n in tet)
        u, v, w = ([q[m] - o[m] for m in range(3)] for q in (a, b, c))
        return (u[0] * (v[1] * w[2] - v[2] * w[1]) - u[1] * (v[0] * w[2] - v[2] * w[0])
                + u[2] * (v[0] * w[1] - v[1] * w[0]))
    tets = []
    for i in range(sizes[0]):
        for j in range(sizes[1]):
            for k in range(sizes[2]):
                def at(step, i=i, j=j, k=k):
                    return corners[i + step[0], j + step[1], k + step[2]]
                for r in range(6):
                    tet = [at((0, 0, 0)), at(PATH[r]), at(PATH[(r + 1) % 6]), at((1, 1, 1))]
                    if volume(tet) < 0:
                        tet[1], tet[2] = tet[2], tet[1]
                    tets.append(tet)
    if ten:
        middles = {}
        for tet in tets:
            for a, b in EDGES:
                key = tuple(sorted((tet[a], tet[b])))
                if key not in middles:
                    points.append(tuple((p + q) / 2 for p, q in zip(points[key[0] - 1], points[key[1] - 1])))
                    middles[key] = len(points)
                tet.append(middles[key])
    deck = [f"mesh dimension = 3 elemtype Tetrahedra nnode = {10 if ten else 4}", "coordinates"]
    deck += [" ".join([str(n + 1), *map(number, p)]) for n, p in enumerate(points)]
    deck += ["end coordinates", "elements"]
    deck += [" ".join(map(str, [n + 1, *tet, 1])) for n, tet in enumerate(tets)]
    deck += ["end elements"]
    deck += lines("materials", ["1 E=3e7 nu=0.2 Weight=25"])
    held = [n + 1 for n, p in enumerate(points) if p[2] < 0.15]
    deck += lines("constraints", [f"{n} 111 0 0 {number(1e-4 if rng.random() < 0.2 else 0)}" for n in held])
    deck += lines("nodal_point_loads", [f"{corners[tuple(sizes)]} 10 20 -30"])
    deck += lines("face_loads", [f"1 {rng.randint(0, 3)} 1 0 -2"])
    deck += lines("global_pressure_loads", ["1 -1 1 2 3"])
    return "\n".join(["PROBLEM random block\nTYPE 3d", *units(rng), "GravityDirection 0 0 -1", *deck, ""])


def large_mechanism(nodes=7000):
    """A portal that sways, beside so many clamped beams that a solver that iterates is not searched for
    mechanisms before it has an answer."""
    return "\n".join([
        "PROBLEM sway", "TYPE 2d", "mesh dimension = 2 elemtype Linear nnode = 2",
        "coordinates", "1 0 0", "2 0 3", "3 4 3", "4 4 0", *(f"{n} {n} 0" for n in range(5, nodes + 1)),
        "end coordinates", "elements", "1 1 2 1", "2 3 2 1", "3 4 3 1",
        *(f"{n} {n} {n + 1} 1" for n in range(5, nodes)), "end elements",
        *lines("materials", ["1 E=2e8 A=1e-2 Iz=1e-4"]), *lines("rotules", ["2", "3"]),
        *lines("constraints", ["1 110 0 0 0", "4 110 0 0 0",
                               *(f"{n} 111 0 0 0" for n in range(6, nodes + 1))]),
        *lines("nodal_point_loads", ["2 10 0 0"]), ""])


def random_deck(seed):
    """The text of deck `seed`: half of them frames, the others sheets and blocks."""
    rng = random.Random(seed)
    return (frame, surface, frame, block)[seed % 4](rng)
