"""Random frames with any supports, springs and hinges, and their stiffness by numpy.

The stiffness is assembled here from the formulas of the Euler beam, not by the program, so that its
null space can judge what the program says of motions without resistance.
"""
import numpy as np

RELEASED = {  # ends that are rigid -> (vv, vr1, vr2, r1r1, r1r2, r2r2)
    (1, 1): (12, 6, 6, 4, 2, 4),
    (1, 0): (3, 3, 0, 3, 0, 0),
    (0, 1): (3, 0, 3, 0, 0, 3),
    (0, 0): (0, 0, 0, 0, 0, 0),
}


class Frame:
    """A model as numbers: nodes and elements count from 1 in the deck, from 0 here."""

    def __init__(self, dimension, rng):
        self.dimension, self.rng = dimension, rng
        self.dofs = 3 if dimension == 2 else 6
        self.nodes, self.elements, self.supports, self.hinges = [], [], [], []

    # --- random parts ---------------------------------------------------------------------

    def grow(self, count):
        """Nodes on a grid, joined to a tree and a few loops; perhaps some parts of their own."""
        rng = self.rng
        places = set()
        while len(places) < count:
            places.add(tuple(int(c) for c in rng.integers(0, 4, self.dimension)))
        self.nodes = [np.array(p, float) * 1.3 for p in sorted(places, key=lambda p: rng.random())]
        pairs = set()
        for node in range(1, count):
            if rng.random() < 0.06:
                continue  # begins a part of its own
            pairs.add((int(rng.integers(0, node)), node))
        for _ in range(int(rng.integers(0, 4))):
            a, b = (int(i) for i in rng.integers(0, count, 2))
            if a != b and (a, b) not in pairs and (b, a) not in pairs:
                pairs.add((a, b))
        self.elements = [p if rng.random() < 0.5 else p[::-1] for p in sorted(pairs)]
        used = {n for pair in self.elements for n in pair}
        if len(used) < count:
            order = sorted(used)
            place = {old: new for new, old in enumerate(order)}
            self.nodes = [self.nodes[n] for n in order]
            self.elements = [(place[a], place[b]) for a, b in self.elements]

    def hold(self, share):
        rng = self.rng
        for node in range(len(self.nodes)):
            if rng.random() > share:
                continue
            codes = [int(rng.choice([0, 1, 1, 2] if rng.random() < 0.5 else [0, 1]))
                     for _ in range(self.dofs)]
            if not any(codes):
                continue
            angle = float(rng.choice([0.0, 0.0, 0.0, 0.5, 1.1]))
            self.supports.append((node, codes, [5e6 if c == 2 else 0.0 for c in codes], angle))

    def release(self, share):
        for node in range(len(self.nodes)):
            if self.rng.random() < share:
                self.hinges.append(node)

    # --- the deck -------------------------------------------------------------------------

    def deck(self):
        plane = self.dimension == 2
        lines = ["PROBLEM random frame", f"TYPE {self.dimension}d", "mesh",
                 f"  dimension = {self.dimension}   elemtype Linear   nnode = 2", "  coordinates"]
        lines += [f"    {i + 1}  " + " ".join(repr(float(c)) for c in x)
                  for i, x in enumerate(self.nodes)]
        lines += ["  end coordinates", "  elements"]
        lines += [f"    {e + 1}  {a + 1} {b + 1}  1" for e, (a, b) in enumerate(self.elements)]
        lines += ["  end elements", "materials"]
        lines += ["  1  E=2e11 A=0.01 Iz=1e-4" + ("" if plane else " Iy=2e-4 J=3e-4 G=8e10")]
        lines += ["end materials", "constraints"]
        for node, codes, values, angle in self.supports:
            lines.append(f"  {node + 1}  " + "".join(map(str, codes)) + "  " +
                         " ".join(repr(v) for v in values) +
                         (f"  Euler3={angle!r}" if angle else ""))
        lines += ["end constraints"]
        if self.hinges:
            lines += ["rotules"] + [f"  {n + 1}" for n in self.hinges] + ["end rotules"]
        lines += ["nodal_point_loads", "  1  " + " ".join(["1000"] * self.dofs),
                  "end nodal_point_loads"]
        return "\n".join(lines) + "\n"

    # --- the judge ------------------------------------------------------------------------

    def end_codes(self):
        """The first beam at a hinge keeps it, every later one is released."""
        claimed, codes = set(), []
        for pair in self.elements:
            rigid = []
            for node in pair:
                rigid.append(0 if node in self.hinges and node in claimed else 1)
                claimed.add(node)
            codes.append(tuple(rigid))
        return codes

    def element(self, pair, ends):
        a, b = self.nodes[pair[0]], self.nodes[pair[1]]
        L = np.linalg.norm(b - a)
        x = (b - a) / L
        EA, EI = 2e9, {"z": 2e7, "y": 4e7}
        vv, vr1, vr2, r11, r12, r22 = RELEASED[ends]
        n = self.dofs
        k = np.zeros((2 * n, 2 * n))

        def bar(d, s):
            k[d, d] += s
            k[n + d, n + d] += s
            k[d, n + d] -= s
            k[n + d, d] -= s

        def bend(v, r, sign, stiffness):
            w = [v, r, n + v, n + r]
            s = sign
            c = stiffness / L**3 * np.array([
                [vv, s * vr1 * L, -vv, s * vr2 * L],
                [s * vr1 * L, r11 * L**2, -s * vr1 * L, r12 * L**2],
                [-vv, -s * vr1 * L, vv, -s * vr2 * L],
                [s * vr2 * L, r12 * L**2, -s * vr2 * L, r22 * L**2]])
            k[np.ix_(w, w)] += c

        bar(0, EA / L)
        if n == 3:
            bend(1, 2, 1, EI["z"])
            T = np.eye(3)
            T[:2, 0], T[:2, 1] = x, [-x[1], x[0]]
        else:
            bar(3, 8e10 * 3e-4 / L)
            bend(1, 5, 1, EI["z"])
            bend(2, 4, -1, EI["y"])
            R = np.zeros((3, 3))
            up = np.array([0, 0, 1.0])
            y = np.cross(up, x)
            y = np.array([1.0, 0, 0]) if np.linalg.norm(y) < 1e-9 else y / np.linalg.norm(y)
            R[:, 0], R[:, 1], R[:, 2] = x, y, np.cross(x, y)
            T = np.kron(np.eye(2), R)
        Q = np.kron(np.eye(2), T)
        return Q @ k @ Q.T

    def null_space(self):
        """Free motions as columns, by node and degree, prescribed degrees 0; and the gap to the
        next singular value."""
        n, count = self.dofs, len(self.nodes)
        K = np.zeros((n * count, n * count))
        for pair, ends in zip(self.elements, self.end_codes()):
            rows = [n * node + d for node in pair for d in range(n)]
            K[np.ix_(rows, rows)] += self.element(pair, ends)
        S = np.eye(n * count)
        fixed = np.zeros(n * count, bool)
        for node, codes, values, angle in self.supports:
            c, s = np.cos(angle), np.sin(angle)
            R = np.array([[c, -s, 0], [s, c, 0], [0, 0, 1]])
            block = R if n == 3 else np.kron(np.eye(2), R)
            rows = slice(n * node, n * node + n)
            S[rows, rows] = block
        K = S.T @ K @ S
        for node, codes, values, _ in self.supports:
            for d, code in enumerate(codes):
                if code == 1:
                    fixed[n * node + d] = True
                elif code == 2:
                    K[n * node + d, n * node + d] += values[d]
        free = ~fixed
        A = K[np.ix_(free, free)]
        diagonal = np.sqrt(np.where(np.diag(A) > 0, np.diag(A), 1.0))
        A = A / np.outer(diagonal, diagonal)
        _, values, vt = np.linalg.svd(A)
        modes = int(np.sum(values < 1e-12)) if values.size else 0
        rest = float(values[-modes - 1]) if values.size > modes else 1.0
        Z = np.zeros((n * count, modes))
        if modes:
            Z[free] = (vt[-modes:] / diagonal).T
        return S @ Z, rest


def random_frame(seed):
    rng = np.random.default_rng(seed)
    frame = Frame(int(rng.choice([2, 2, 3])), rng)
    frame.grow(int(rng.integers(3, 9)))
    frame.hold(float(rng.choice([0.2, 0.4, 0.7])))
    frame.release(float(rng.choice([0.0, 0.2, 0.5])))
    return frame
