"""Models in the making: nodes, elements and sections of a deck, and meshes of plates and blocks."""
import math

FACES = ((0, 1, 2), (1, 2, 3), (2, 3, 0), (3, 0, 1))  # of a tetrahedron, as the loads count them


def number(value):
    """Twelve digits: the same text wherever the last bits of a sine differ."""
    text = f"{value if abs(value) > 1e-14 else 0:.12g}"
    return "0" if text == "-0" else text


def numbers(values):
    return " ".join(number(v) for v in values)


class Model:
    """A deck. Nodes and elements are numbered from 1 in the order of their coming."""

    def __init__(self, title, kind="3d", element="Linear"):
        self.title, self.kind, self.element = title, kind, element
        self.keys = []      # lines of keywords
        self.nodes = []     # coordinates
        self.elements = []  # (node numbers, material number)
        self.sections = {}  # name -> lines

    def add_nodes(self, *points):
        self.nodes += [tuple(p) for p in points]

    def add_elements(self, *elements, material=1):
        self.elements += [(tuple(e), material) for e in elements]

    def line(self, section, *words):
        text = " ".join(w if isinstance(w, str) else number(w) for w in words)
        self.sections.setdefault(section, []).append("  " + text)

    def material(self, keys, number_=1):
        self.line("materials", number_, keys)

    def support(self, node, codes, *values, axes=""):
        """Codes of all degrees; values are zeros unless given; axes as 'Euler3=0.5'."""
        values = values or (0,) * len(codes)
        self.line("constraints", node, codes, *values, *([axes] if axes else []))

    def hinge(self, *nodes):
        for node in nodes:
            self.line("rotules", node)

    def load(self, node, *components):
        self.line("nodal_point_loads", node, *components)

    def loads(self, section, elements, *components):
        for element in elements:
            self.line(section, element, *components)

    def where(self, test):
        """Numbers of the nodes whose coordinates pass the test."""
        return [i + 1 for i, p in enumerate(self.nodes) if test(*p)]

    def all(self):
        """Numbers of all elements."""
        return range(1, len(self.elements) + 1)

    def at(self, node):
        return self.nodes[node - 1]

    def text(self, solver):
        lines = [f"PROBLEM {self.title}", f"TYPE {self.kind}", "",
                 "# Written by verification/manual.py; do not edit.", f"Solver {solver}"]
        lines += self.keys
        lines += ["", "mesh", f"  dimension = {len(self.nodes[0])}   elemtype {self.element}"
                  f"   nnode = {len(self.elements[0][0])}", "  coordinates"]
        lines += [f"    {i}  {numbers(p)}" for i, p in enumerate(self.nodes, 1)]
        lines += ["  end coordinates", "  elements"]
        lines += [f"    {i}  {' '.join(map(str, nodes))}  {material}"
                  for i, (nodes, material) in enumerate(self.elements, 1)]
        lines += ["  end elements"]
        for name, content in self.sections.items():
            lines += ["", name, *content, f"end {name}"]
        return "\n".join(lines) + "\n"


# --- supports and loads of meshes ----------------------------------------------------------------

def merge(*codes):
    """A degree is held when one of the codes holds it."""
    return "".join("1" if "1" in column else "0" for column in zip(*codes))


def support_where(model, rules, always="000000"):
    """Zero displacements: the codes of every rule (test of the coordinates, codes) that a node
    passes, and those of all nodes."""
    for node, point in enumerate(model.nodes, 1):
        codes = merge(always, *(codes for test, codes in rules if test(*point)))
        if "1" in codes:
            model.support(node, codes)


def prescribe(model, nodes, field):
    for node in nodes:
        values = field(*model.at(node))
        model.support(node, "1" * len(values), *values)


def edge_loads(model, test, load):
    """Forces per length on the edges of triangles whose two corners pass the test. `load` gets the
    outward normal of an edge in the plane z = 0."""
    for element, (nodes, _) in enumerate(model.elements, 1):
        for edge in range(3):
            a, b = model.at(nodes[edge]), model.at(nodes[(edge + 1) % 3])
            if test(*a) and test(*b):
                dx, dy = b[0] - a[0], b[1] - a[1]
                length = math.hypot(dx, dy)
                normal = (dy / length, -dx / length) if length else (0, 0)
                model.line("face_loads", element, edge, *load(*normal))


def pressure_on_faces(model, test, components, section="face_loads"):
    """Forces per area on the faces of tetrahedra whose three corners pass the test."""
    for element, (nodes, _) in enumerate(model.elements, 1):
        for face, corners in enumerate(FACES):
            if all(test(*model.at(nodes[c])) for c in corners):
                model.line(section, element, face, *components)


# --- meshes --------------------------------------------------------------------------------------

def add_mid_sides(model, edges):
    """Adds the mid-side nodes of the given edges (places of corners), one for each pair."""
    middles = {}
    for i, (nodes, material) in enumerate(model.elements):
        nodes = list(nodes)
        for a, b in edges:
            pair = tuple(sorted((nodes[a], nodes[b])))
            if pair not in middles:
                p, q = model.at(pair[0]), model.at(pair[1])
                model.add_nodes(tuple((s + t) / 2 for s, t in zip(p, q)))
                middles[pair] = len(model.nodes)
            nodes.append(middles[pair])
        model.elements[i] = tuple(nodes), material


def to_six(model):
    add_mid_sides(model, ((0, 1), (1, 2), (2, 0)))


def to_ten(model):
    add_mid_sides(model, ((0, 1), (1, 2), (2, 0), (0, 3), (1, 3), (2, 3)))


def same(*point):
    return point


def grid(title, nx, ny, place=same, cross=False):
    """The unit square in nx x ny cells of two triangles, or of four that meet in the middle; a point
    (x, y, 0) of it goes to place(x, y, 0)."""
    model = Model(title, element="Triangle")
    model.add_nodes(*((i / nx, j / ny, 0) for j in range(ny + 1) for i in range(nx + 1)))
    for j in range(ny):
        for i in range(nx):
            a = j * (nx + 1) + i + 1
            b, c, d = a + 1, a + nx + 2, a + nx + 1
            if cross:
                model.add_nodes(((i + 0.5) / nx, (j + 0.5) / ny, 0))
                m = len(model.nodes)
                model.add_elements((a, b, m), (b, c, m), (c, d, m), (d, a, m))
            else:
                model.add_elements((a, b, c), (a, c, d))
    model.nodes = [place(*p) for p in model.nodes]
    return model


def volume(a, b, c, d):
    """Six times that of a tetrahedron."""
    u, v, w = ([q - p for p, q in zip(a, e)] for e in (b, c, d))
    return (u[0] * (v[1] * w[2] - v[2] * w[1]) - u[1] * (v[0] * w[2] - v[2] * w[0])
            + u[2] * (v[0] * w[1] - v[1] * w[0]))


def box(title, nx, ny, nz, place=same, quadratic=True):
    """The unit cube in nx x ny x nz cells of six tetrahedra around the diagonal 000-111; all nodes,
    mid-sides included, go to place(x, y, z)."""
    model = Model(title, element="Tetrahedra")
    model.add_nodes(*((i / nx, j / ny, k / nz) for k in range(nz + 1) for j in range(ny + 1)
                      for i in range(nx + 1)))
    path = ((1, 0, 0), (1, 1, 0), (0, 1, 0), (0, 1, 1), (0, 0, 1), (1, 0, 1))

    def at(i, j, k):
        return (k * (ny + 1) + j) * (nx + 1) + i + 1

    for k in range(nz):
        for j in range(ny):
            for i in range(nx):
                for a, b in zip(path, path[1:] + path[:1]):
                    tet = [at(i, j, k), at(i + a[0], j + a[1], k + a[2]),
                           at(i + b[0], j + b[1], k + b[2]), at(i + 1, j + 1, k + 1)]
                    if volume(*(model.at(n) for n in tet)) < 0:
                        tet[1], tet[2] = tet[2], tet[1]
                    model.add_elements(tet)
    if quadratic:
        to_ten(model)
    model.nodes = [place(*p) for p in model.nodes]
    return model


def quarter_of_ellipses(a, b, c):
    """The unit cube onto the quarter of the ring between the ellipses 2 x 1 and 3.25 x 2.75."""
    angle = math.pi / 2 * b
    return ((2 + 1.25 * a) * math.cos(angle) if b < 1 else 0.0,
            (1 + 1.75 * a) * math.sin(angle) if b > 0 else 0.0, c)


def on_outer_ellipse(x, y, _):
    return abs(x * x / 3.25 ** 2 + y * y / 2.75 ** 2 - 1) < 1e-9
