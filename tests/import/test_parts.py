"""The parts of kestol-import by themselves: small numbers and strings."""
import math
import tomllib
import unittest

import numpy as np
import meshio
import support  # noqa: F401  (puts the program's package on the path)
from kestol_import import graph, matching, msh, text
from kestol_import.beams import axes_with_up, euler_angles, rotation
from kestol_import.expressions import FUNCTIONS, LONGEST, Expression, ExpressionError
from kestol_import.geometry import carriers, nodal_shares, tetra10_shape
from kestol_import.mesh import KINDS, Places
from kestol_import.msh2 import run_length
from kestol_import.orientation import MIRRORED
from kestol_import.toml_places import find_spans


class Expressions(unittest.TestCase):
    POINTS = np.array([[1.0, 2.0, 3.0], [-4.0, 0.5, 0.25]])

    def value(self, source):
        return Expression(source).at(self.POINTS).tolist()

    def test_arithmetic(self):
        for source, of in (("-10*(6-z)", lambda x, y, z: -10 * (6 - z)), ("x**2", lambda x, y, z: x * x),
                           ("x % 3", lambda x, y, z: x % 3), ("+y/2", lambda x, y, z: y / 2),
                           ("2", lambda x, y, z: 2), (" x ", lambda x, y, z: x),
                           ("pi*x", lambda x, y, z: math.pi * x),
                           ("1 if x > 0 else z", lambda x, y, z: 1 if x > 0 else z),
                           ("0 < x < 2", lambda x, y, z: float(0 < x < 2)),
                           ("x >= 1", lambda x, y, z: float(x >= 1)),
                           ("x <= 1", lambda x, y, z: float(x <= 1)),
                           ("1 < 2 < z", lambda x, y, z: float(2 < z)),
                           ("max(0, 5-z)", lambda x, y, z: max(0, 5 - z)),
                           ("min(x, 0.5, y)", lambda x, y, z: min(x, 0.5, y)), ("min(1, 2)", lambda *_: 1),
                           ("max(x, y, z)", max), ("min(x, y)", lambda x, y, z: min(x, y))):
            with self.subTest(source=source):
                self.assertEqual(self.value(source), [of(*p) for p in self.POINTS.tolist()])

    def test_functions(self):
        for name in ("sin", "cos", "tan", "atan", "exp"):
            self.assertAlmostEqual(self.value(f"{name}(z/4)")[0], getattr(math, name)(0.75))
        for name, of in (("asin", math.asin), ("acos", math.acos), ("sqrt", math.sqrt),
                         ("log", math.log), ("log10", math.log10), ("abs", abs)):
            self.assertAlmostEqual(self.value(f"{name}(y/8)")[0], of(0.25))
        self.assertAlmostEqual(self.value("atan2(y, x)")[1], math.atan2(0.5, -4))
        self.assertAlmostEqual(self.value("hypot(x, y)")[0], math.sqrt(5))
        self.assertEqual(len(FUNCTIONS), 15)

    def test_functions_take_their_number_of_arguments(self):
        counts = {**dict.fromkeys(FUNCTIONS, (1, 1)), "atan2": (2, 2), "hypot": (2, 2),
                  "min": (2, 8), "max": (2, 8)}
        for name, (least, most) in counts.items():
            said = f"{least} to {most} arguments" if least < most else f"{least} argument" + "s" * (least > 1)
            for count in (0, 1, 2, 3, 8, 9):
                source = f"{name}({', '.join(['0.5'] * count)})"
                if least <= count <= most:
                    self.assertEqual(len(self.value(source)), 2)
                else:
                    with self.assertRaises(ExpressionError) as raised:
                        Expression(source)
                    self.assertEqual(str(raised.exception), f'function "{name}" takes {said}')

    def test_nothing_is_run_as_code(self):
        for source in ("__import__('os').system('true')", "().__class__", "x.real", "x[0]",
                       "[x for x in (1,)]", "lambda: 1", "f'{x}'", "'a'", "True", "1j", "None",
                       "x and y", "not x", "~x", "x @ y", "x // 2", "x << 2", "x == y", "(x := 1)",
                       "print(x)", "sin", "sin(x, y)", "sin()", "sin(x=1)", "sin(*x)", "max(x)",
                       "x;y", "import os", "", " ", "x y", "\0", "open('f')", "eval('1')", "...",
                       "x if y", "*x", "{}", "9" * 400, "x" * (LONGEST + 1), "(" * 400 + ")" * 400,
                       "-" * 900 + "x", "sin(sin)", "x.__class__(1)", "exp.__call__(1)", "x^2",
                       "1e999", "await x", "yield", "#"):
            with self.subTest(source=source[:40]):
                try:
                    value = Expression(source).at(self.POINTS)
                except ExpressionError:
                    continue
                # a long chain of signs may be accepted: it is arithmetic
                self.assertEqual(source, "-" * 900 + "x")
                self.assertEqual(value.tolist(), self.POINTS[:, 0].tolist())

    def test_what_is_not_finite_is_refused(self):
        for source in ("1/(x-x)", "sqrt(-1-x*x)", "9**9**9**9", "exp(1e5)", "log(x-x)"):
            with self.subTest(source=source), self.assertRaisesRegex(ExpressionError, r"is \S+ at"):
                Expression(source).at(self.POINTS)


class TomlPlaces(unittest.TestCase):
    TEXT = '''# head
title = "a = [b"  # not = this
[a]
x = 1
"y z" = [1, [2, 3], "]#"]
'q' . "r" = true
multi = """
[no]
x = 2
"""
lit = \'\'\'
y = "
\'\'\'
t = { u = 1, "v w" = { k = [ 7, 8 ] } }
list = [
  "a", # comment ]
  "b",
]
[a.b."c d"]
x = 2
[[many]]
n = 1
[[many]]
n = 2
[last]
d = 1979-05-27T07:32:00Z
'''

    def test_every_value_is_found_where_it_stands(self):
        spans = find_spans(self.TEXT)
        data = tomllib.loads(self.TEXT)

        def walk(path, value):
            if path and not isinstance(value, dict) and not (
                    isinstance(value, list) and value and isinstance(value[0], dict)):
                first, behind = spans[path].value
                self.assertEqual(tomllib.loads("k = " + self.TEXT[first:behind])["k"], value, path)
            if isinstance(value, dict):
                for key, below in value.items():
                    walk((*path, key), below)
            elif isinstance(value, list):
                for index, below in enumerate(value):
                    walk((*path, index), below)
        walk((), data)
        first, _ = spans[("many", 1, "n")].value
        self.assertEqual(self.TEXT.count("\n", 0, first) + 1, 24)
        self.assertIn(("a", "b"), spans)


class Texts(unittest.TestCase):
    def test_columns_of_whole_numbers_line_up(self):
        columns = [np.array([1, 20, 300]), np.array([0, 7, 0]), np.array([-1, 3, -1])]
        self.assertEqual(b"".join(text.integer_rows(columns, "  x")).decode(),
                         "    1  0  -1  x\n   20  7   3  x\n  300  0  -1  x\n")

    def test_chunks_join_without_a_seam(self):
        numbers = np.arange(1, text.CHUNK + 3)
        rows = b"".join(text.integer_rows([numbers])).split()
        self.assertEqual(rows, [b"%d" % n for n in numbers])
        reals = np.stack([numbers / 3, -numbers * 1e-300], axis=1)
        rows = b"".join(text.real_rows([numbers], reals)).split()
        back = np.array(rows, float).reshape(-1, 3)
        np.testing.assert_array_equal(back[:, 1:], reals)

    def test_reals_are_the_shortest_that_read_back(self):
        self.assertEqual(b"".join(text.real_rows([np.array([5])], np.array([[0.1, -0.0, 1e22]]))),
                         b"  5  0.1  0.0  1e+22\n")

    def test_equal_reals_are_written_once(self):
        rows = b"".join(text.table_rows([np.array([5, 16])], np.array([[0.5], [0.5]])))
        self.assertEqual(rows, b"   5  0.5\n  16  0.5\n")


class Graphs(unittest.TestCase):
    def test_components_have_their_lowest_vertex(self):
        random = np.random.default_rng(7)
        for _ in range(50):
            count = int(random.integers(1, 60))
            a, b = random.integers(0, count, (2, int(random.integers(0, 60))))
            label = np.arange(count)
            while True:  # the slow twin
                before = label.copy()
                np.minimum.at(label, a, label[b])
                np.minimum.at(label, b, label[a])
                if np.array_equal(before, label):
                    break
            np.testing.assert_array_equal(graph.components(count, a, b), label)

    def test_cuthill_mckee_finds_the_band_of_a_shuffled_strip(self):
        n = 50
        strip = np.stack([np.arange(2 * n)[:-2], np.arange(2 * n)[1:-1], np.arange(2 * n)[2:]], 1)
        shuffle = np.random.default_rng(3).permutation(2 * n)
        order = graph.cuthill_mckee(2 * n, [shuffle[strip]])
        self.assertEqual(sorted(order), list(range(2 * n)))
        place = np.empty(2 * n, int)
        place[order] = np.arange(2 * n)
        cells = place[shuffle[strip]]
        self.assertLessEqual((cells.max(axis=1) - cells.min(axis=1)).max(), 3)

    def test_cuthill_mckee_takes_parts_one_by_one(self):
        order = graph.cuthill_mckee(5, [np.array([[0, 3]]), np.array([[1, 4]])])
        self.assertEqual(sorted(order), [0, 1, 2, 3, 4])

    def test_close_pairs_are_all_pairs_within_the_distance(self):
        points = np.random.default_rng(1).random((200, 3))
        found = {tuple(sorted(p)) for p in zip(*graph.close_pairs(points, 0.1))}
        wanted = {(i, j) for j in range(200) for i in range(j)
                  if np.linalg.norm(points[i] - points[j]) <= 0.1}
        self.assertEqual(found, wanted)

    def test_rows_are_equal_whatever_their_order(self):
        for count in (10, 2 ** 31 - 1):
            rows = np.random.default_rng(2).integers(0, 10, (300, 4)) + count - 10
            keys, = matching.row_keys([rows], count)
            sets = [tuple(sorted(r)) for r in rows.tolist()]
            for i in range(0, 300, 7):
                for j in range(300):
                    self.assertEqual(keys[i] == keys[j], sets[i] == sets[j])

    def test_kinds_have_the_dimension_and_the_nodes_that_another_reader_knows(self):
        for name, kind in KINDS.items():
            stem = name.rstrip("0123456789")
            corners = meshio._common.num_nodes_per_cell[stem]
            self.assertEqual((kind.name, kind.dimension, kind.corners, kind.nodes, kind.order),
                             (name, meshio._mesh.topological_dimension[stem], corners,
                              meshio._common.num_nodes_per_cell[name], 1 if stem == name else 2))

    def test_types_of_gmsh_are_those_that_another_reader_knows(self):
        known = {number: (name, meshio._common.num_nodes_per_cell[name])
                 for number, name in meshio.gmsh.common._gmsh_to_meshio_type.items()}
        # triangles with nodes on the edges alone, which that reader leaves out
        known |= {20: ("triangle9", 9), 22: ("triangle12", 12), 24: ("triangle15", 15)}
        for number, one in msh._TYPES.items():
            self.assertEqual(one, known[number])

    def test_places_of_sparse_and_of_dense_numbers(self):
        for numbers in (np.array([5, 2, 9]), np.array([5, 10 ** 12, 9]), np.array([5, 2, 0])):
            places = Places(numbers)
            self.assertEqual(places.of(numbers[::-1]).tolist(), [2, 1, 0])
            for missing in (3, -1, 10 ** 13, int(numbers.max()) + 1):
                with self.assertRaises(KeyError) as raised:
                    places.of(np.array([5, missing]))
                self.assertEqual(raised.exception.args, (missing,))

    def test_runs_of_equal_rows(self):
        flat = np.array([1, 2, 2, 9] * 5000 + [1, 3, 2, 9] * 3)
        self.assertEqual(run_length(flat, 0, 4, 9999, slice(1, 3)), 5000)
        self.assertEqual(run_length(flat, 20000, 4, 9999, slice(1, 3)), 3)
        self.assertEqual(run_length(flat, 0, 4, 17, slice(1, 3)), 17)
        self.assertEqual(run_length(flat[:6], 0, 4, 17, slice(1, 3)), 1)


class Geometry(unittest.TestCase):
    EDGES = [(0, 1), (1, 2), (2, 0), (0, 3), (1, 3), (2, 3)]

    def test_shape_functions_are_one_at_their_node(self):
        corners = np.eye(4)
        nodes = np.concatenate([corners, [(corners[a] + corners[b]) / 2 for a, b in self.EDGES]])
        for k, at in enumerate(nodes):
            np.testing.assert_allclose(tetra10_shape(at)[0], np.eye(10)[k], atol=1e-15)

    def test_shape_functions_have_their_derivatives(self):
        at, h = np.array([0.1, 0.2, 0.3, 0.4]), 1e-6
        _, by = tetra10_shape(at)
        for k in range(3):
            step = np.zeros(4)
            step[k + 1], step[0] = h, -h
            slope = (tetra10_shape(at + step)[0] - tetra10_shape(at - step)[0]) / 2 / h
            np.testing.assert_allclose(by[k], slope, atol=1e-9)

    def test_sizes_of_straight_cells(self):
        points = np.array([[0, 0, 0], [2, 0, 0], [0, 3, 0], [0, 0, 4], [1, 0, 0], [1, 1.5, 0],
                           [0, 1.5, 0], [0, 0, 2], [1, 0, 2], [0, 1.5, 2]])
        for kind, nodes, size in (("vertex", [3], 1), ("line", [0, 2], 3), ("line3", [0, 1, 4], 2),
                                  ("triangle", [0, 1, 2], 3), ("triangle6", [0, 1, 2, 4, 5, 6], 3),
                                  ("tetra", [0, 1, 2, 3], 4), ("tetra10", list(range(10)), 4)):
            with self.subTest(kind=kind):
                row = np.array([nodes])
                at, sizes = carriers(points, KINDS[kind], row)
                self.assertAlmostEqual(sizes.sum(), size, places=6)
                self.assertAlmostEqual(nodal_shares(points, KINDS[kind], row).sum(), size, places=6)
                mean = (at * sizes[:, :, None]).sum(axis=(0, 1)) / size
                corners = points[nodes[:KINDS[kind].corners]].mean(axis=0)
                np.testing.assert_allclose(mean, corners, atol=1e-6)

    def test_mirrored_orders_keep_mid_sides_on_their_edges(self):
        edges = {"triangle6": [(0, 1), (1, 2), (2, 0)], "tetra10": self.EDGES}
        for kind, pairs in edges.items():
            order, corners = MIRRORED[kind], KINDS[kind].corners
            middle = {frozenset(p): corners + k for k, p in enumerate(pairs)}
            for k, (a, b) in enumerate(pairs):
                self.assertEqual(order[corners + k], middle[frozenset((order[a], order[b]))])

    def test_euler_angles_give_back_the_axes(self):
        random = np.random.default_rng(5)
        along = random.normal(size=(200, 3))
        along[:3] = [[0, 0, 1], [0, 0, -1], [1, 0, 0]]
        along /= np.linalg.norm(along, axis=1)[:, None]
        y, z = axes_with_up(along, [0.3, 1, 0.2], "m", np.arange(200))
        angles = euler_angles(along, y, z)
        for k in range(200):
            np.testing.assert_allclose(rotation(angles[k].tolist()),
                                       np.stack([along[k], y[k], z[k]], axis=1), atol=1e-12)


if __name__ == "__main__":
    unittest.main()
