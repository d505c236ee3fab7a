"""A portal in three ways: by the builder, as a deck, and by numpy alone."""
import numpy as np

import kestol

HEIGHT, SPAN = 4.0, 6.0
E, A, INERTIA = 2.1e8, 0.0125, 4.1e-4       # kN, m
WIND, SNOW = 12.0, 8.0                # kN at the eaves, kN/m on the beam

NODES = np.array([[0, 0], [0, HEIGHT], [SPAN, HEIGHT], [SPAN, 0]], dtype=float)
PAIRS = np.array([[1, 2], [2, 3], [3, 4]])

DECK = f"""PROBLEM portal
TYPE 2d
mesh
  dimension = 2 elemtype Linear nnode = 2
  coordinates
    1 0 0
    2 0 {HEIGHT}
    3 {SPAN} {HEIGHT}
    4 {SPAN} 0
  end coordinates
  elements
    1 1 2 1
    2 2 3 1
    3 3 4 1
  end elements
materials
  1 E={E} A={A} Iz={INERTIA}
end materials
constraints
  1 111 0 0 0
  4 110 0 0 0
end constraints
nodal_point_loads
  2 {WIND} 0 0
end nodal_point_loads
global_pressure_loads
  2 0 -{SNOW}
end global_pressure_loads
"""


def portal(inertia=INERTIA, area=A, name="model"):
    model = kestol.Model(dimension=2, name=name)
    model.add_material(1, E=E, A=area, Iz=inertia)
    model.add_nodes(NODES)
    model.add_beams(PAIRS, material=1)
    model.add_support(1, "111")
    model.add_support(4, "110")
    model.add_nodal_load(2, WIND, 0, 0)
    model.add_element_load(2, 0, -SNOW)
    return model


def beam_stiffness(start, end):
    """6 x 6, global axes, of a plane beam; and its rotation."""
    along = end - start
    L = np.hypot(*along)
    c, s = along / L
    T = np.kron(np.eye(2), np.array([[c, s, 0], [-s, c, 0], [0, 0, 1]]))
    k = np.zeros((6, 6))
    k[np.ix_([0, 3], [0, 3])] = E * A / L * np.array([[1, -1], [-1, 1]])
    k[np.ix_([1, 2, 4, 5], [1, 2, 4, 5])] = E * INERTIA / L**3 * np.array(
        [[12, 6 * L, -12, 6 * L], [6 * L, 4 * L**2, -6 * L, 2 * L**2],
         [-12, -6 * L, 12, -6 * L], [6 * L, 2 * L**2, -6 * L, 4 * L**2]])
    return T.T @ k @ T, T


def by_numpy():
    """Displacements (4, 3), true reactions (12,) and nodal loads (12,) of the portal."""
    K = np.zeros((12, 12))
    for a, b in PAIRS - 1:
        places = [3 * a, 3 * a + 1, 3 * a + 2, 3 * b, 3 * b + 1, 3 * b + 2]
        K[np.ix_(places, places)] += beam_stiffness(NODES[a], NODES[b])[0]
    f = np.zeros(12)
    f[3] = WIND
    f[[4, 7]] -= SNOW * SPAN / 2
    f[5] -= SNOW * SPAN**2 / 12
    f[8] += SNOW * SPAN**2 / 12
    free = np.setdiff1d(np.arange(12), [0, 1, 2, 9, 10])
    u = np.zeros(12)
    u[free] = np.linalg.solve(K[np.ix_(free, free)], f[free])
    return u.reshape(4, 3), K @ u - f, f


def grid(count):
    """Nodes and pairs of a plane lattice with at least `count` beams."""
    side = int(np.ceil(np.sqrt(count / 2))) + 1
    x, y = np.meshgrid(np.arange(side, dtype=float), np.arange(side, dtype=float))
    numbers = np.arange(1, side * side + 1).reshape(side, side)
    pairs = np.concatenate([np.stack([numbers[:, :-1], numbers[:, 1:]], axis=-1).reshape(-1, 2),
                            np.stack([numbers[:-1], numbers[1:]], axis=-1).reshape(-1, 2)])
    return np.stack([x.ravel(), y.ravel()], axis=1), pairs
