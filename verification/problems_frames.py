"""Trusses, portals and frames askew: most targets are met in all digits of the report."""
import math

from frames import EI, GLOBAL, STATICS, VPCS, hold, plane
from models import Model
from page import problem


@problem("B07", "Three-hinged portal", STATICS)
def three_hinged_portal(page):
    """
           vvvvvvvvvvvvv       q = 10 000
          2======(3)=====4
          |       |      |     h = 5, l = 10, section of B01
          1              5     pinned feet
          ^              ^

    Thrust q l^2 / 8h, forces q l / 2, knee moments q l^2 / 8. The crown's deflection is that of the
    bent and shortened half frame.
    """
    q, l, h = 1e4, 10, 5
    model = plane("three-hinged portal", [(0, 0), (0, h), (l / 2, h), (l, h), (l, 0)],
                  [(1, 2), (2, 3), (4, 3), (4, 5)])
    model.hinge(3)
    hold(model, pins=(1, 5))
    model.loads(GLOBAL, (2, 3), 0, -q)
    r = page.run("B07-three-hinged-portal", model)
    page.check("thrust, left", r.reaction(1, 1), q * l ** 2 / (8 * h))
    page.check("thrust, right", r.reaction(5, 1), -q * l ** 2 / (8 * h))
    page.check("force, left", r.reaction(1, 2), q * l / 2)
    page.check("force, right", r.reaction(5, 2), q * l / 2)
    page.check("knee moment, left", abs(r.end(1, 2, 3)), q * l ** 2 / 8)
    page.check("knee moment, right", abs(r.end(4, 1, 3)), q * l ** 2 / 8)
    page.check("crown, y", r.u(3, 2), crown_deflection(q, l, h))
    page.drawing("B07-three-hinged-portal", "M", "Bending moments")


def crown_deflection(q, l, h):
    """By virtual work of the force pair that a unit load on the crown needs: thrust l / 4h and 1/2 at
    each foot."""
    EA = 210e9 * 4e-3
    a = l / 2
    H, h1 = q * l ** 2 / (8 * h), l / (4 * h)
    leg = h / 3 * (H * h) * (h1 * h)  # both moments grow from 0 to their value at the knee
    # On the beam, x from the crown: M = q x^2 / 2, m = x / 2.
    beam = q / 4 * a ** 4 / 4
    axial = h * (q * l / 2) * 0.5 + a * H * h1
    return -2 * ((leg + beam) / EI + axial / EA)


@problem("B08", "Truss of four bars", f"{VPCS}, SSLL11/89")
def truss(page):
    """
                          D (2, 1)     9810 down at D
                        / /
                C    /   /             bars AC, BC: A = 2e-4
              /   X     /              bars CD, BD: A = 1e-4
            /    /  \\  /               E = 1.962e11
        A (0,0)     B (1,0)            C = (0.5, 0.5)

    All nodes are hinges; the published displacements are rounded.
    """
    A, B, C, D = 1, 2, 3, 4
    model = plane("truss", [(0, 0), (1, 0), (.5, .5), (2, 1)], [(A, C), (B, C)], None)
    model.add_elements((C, D), (B, D), material=2)
    model.material("E=1.962e11 A=2e-4 Iz=1e-9", 1)
    model.material("E=1.962e11 A=1e-4 Iz=1e-9", 2)
    model.hinge(A, B, C, D)
    hold(model, pins=(A, B))
    model.load(D, 0, -9810, 0)
    r = page.run("B08-truss", model)
    page.check("C, x", r.u(C, 1), 2.6517e-4, 1e-4, digits=5)
    page.check("C, y", r.u(C, 2), 8.839e-5, 1e-4, digits=4)
    page.check("D, x", r.u(D, 1), 3.47902e-3, 1e-4)
    page.check("D, y", r.u(D, 2), -5.60084e-3, 1e-4)
    worst = max((r.end(e, end, 3) for e in model.all() for end in (1, 2)), key=abs)
    page.zero("largest end moment", worst, 9810)
    page.drawing("B08-truss", "N", "Axial forces")


@problem("B10", "Cross of four beams", f"{VPCS}, SSLL10/89")
def cross(page):
    """
                   C (0, 1)  pinned
                   |
        D----G-----A-----------------B      D (-1, 0) and B (4, 0) clamped
                   |    q = 1000 down       G (-0.5, 0) carries 100 000 down
                   |
                   E (0, -2) clamped        E = 2e11; squares of 0.04 (AB),
                                            0.01 (AC, AG, GD), 0.02 (AE)

    The published values neglect the axial strains of some bars.
    """
    A, B, G, C, D, E = range(1, 7)
    model = plane("cross of four beams", [(0, 0), (4, 0), (-.5, 0), (0, 1), (-1, 0), (0, -2)],
                  [(A, B)], None)
    model.add_elements((A, C), (A, G), (G, D), material=2)
    model.add_elements((A, E), material=3)
    for i, side in enumerate(("0.04", "0.01", "0.02"), 1):
        model.material(f"E=2e11 widthY={side} widthZ={side}", i)
    hold(model, clamps=(B, D, E), pins=(C,))
    model.loads(GLOBAL, (1,), 0, -1000)
    model.load(G, 0, -1e5, 0)
    r = page.run("B10-cross", model)
    page.check("rotation of A", abs(r.u(A, 3)), 0.227118, 2e-3)
    for element, name, moment in ((1, "AB", 11023.72), (2, "AC", 113.559), (3, "AG", 12348.588),
                                  (5, "AE", 1211.2994)):
        page.check(f"moment of {name} at A", abs(r.end(element, 1, 3)), moment, 2e-3)
    page.drawing("B10-cross", "M", "Bending moments")


@problem("B14", "Fan of three bars", "*Engineering Mechanics of Solids*, example 2.14")
def fan(page):
    """
        ^     ^     ^        supports at (0, 0), (L tan 30, 0), (2 L tan 30, 0)
         \\    |    /         L = 200, E = 3000, A = 10
           \\  |  /
             \\|/
              4   200 down

    v = P L / (E A (1 + 2 cos^3 30)); the bar in the middle takes E A v / L, the others that times
    cos^2 30.
    """
    P, L, EA = 200, 200, 3000 * 10
    a, c = L * math.tan(math.pi / 6), math.cos(math.pi / 6)
    model = plane("fan of three bars", [(0, 0), (a, 0), (2 * a, 0), (a, -L)],
                  [(1, 4), (2, 4), (3, 4)], "E=3000 A=10 Iz=1")
    model.hinge(1, 2, 3, 4)
    hold(model, pins=(1, 2, 3))
    model.load(4, 0, -P, 0)
    r = page.run("B14-fan-of-three-bars", model)
    v = P * L / (EA * (1 + 2 * c ** 3))
    page.check("joint, y", r.u(4, 2), -v)
    for element, name, part in ((1, "left", c * c), (2, "middle", 1), (3, "right", c * c)):
        page.check(f"force of the {name} bar", r.end(element, 2, 1), EA * v / L * part)


@problem("B17", "Clamped portal with a sway load", "slope deflection, bars that do not stretch")
def portal(page):
    """
        H -> 2===========3        H = 10 000, h = 4, l = 6
             |           |        equal I, A = 1000 stands for bars that do not stretch
             |           |
             1           4
            ///         ///

    With k = h / l: base moments (H h / 2) (3k + 1) / (6k + 1), vertical forces
    (H h / l) 3k / (6k + 1).
    """
    H, h, l = 1e4, 4, 6
    model = plane("clamped portal", [(0, 0), (0, h), (l, h), (l, 0)], [(1, 2), (2, 3), (3, 4)],
                  "E=2e11 Iz=8e-6 A=1e3")
    hold(model, clamps=(1, 4))
    model.load(2, H, 0, 0)
    r = page.run("B17-clamped-portal", model)
    k = h / l
    base, force = H * h / 2 * (3 * k + 1) / (6 * k + 1), H * h / l * 3 * k / (6 * k + 1)
    page.check("base moment, left", r.reaction(1, 3), base)
    page.check("base moment, right", r.reaction(4, 3), base)
    page.check("vertical force, left", r.reaction(1, 2), -force)
    page.check("vertical force, right", r.reaction(4, 2), force)
    page.drawing("B17-clamped-portal", "M", "Bending moments")


@problem("B19", "Bracket in space", "superposition of bending and torsion")
def bracket(page):
    """
                      3                 1-2 along x, L1 = 3; 2-3 along y, L2 = 2
                    //   P = 5000 down
        ///|1======2     (along z)      E = 2e11, G = 8e10, Iy = Iz = 8e-6, J = 1.2e-5

    w = P (L1^3 / 3EI + L2^3 / 3EI + L1 L2^2 / GJ); base moments P L2 about x, -P L1 about y.
    """
    P, L1, L2, EI_, GJ = 5000, 3, 2, 2e11 * 8e-6, 8e10 * 1.2e-5
    model = Model("bracket in space")
    model.add_nodes((0, 0, 0), (L1, 0, 0), (L1, L2, 0))
    model.add_elements((1, 2), (2, 3))
    model.material("E=2e11 G=8e10 Iy=8e-6 Iz=8e-6 J=1.2e-5 A=4e-3")
    model.support(1, "111111")
    model.load(3, 0, 0, -P, 0, 0, 0)
    r = page.run("B19-bracket", model)
    page.check("tip, z", r.u(3, 3),
               -P * (L1 ** 3 / (3 * EI_) + L2 ** 3 / (3 * EI_) + L1 * L2 ** 2 / GJ))
    page.check("base, force", r.reaction(1, 3), P)
    page.check("base, moment about x", r.reaction(1, 4), P * L2)
    page.check("base, moment about y", r.reaction(1, 5), -P * L1)
    page.zero("base, moment about z", r.reaction(1, 6), P * L1)
    page.drawing("B19-bracket", "M", "Bending moments")


@problem("B20", "Quarter of a ring, curved in its plane",
         "closed form; R. H. MacNeal, R. L. Harder (1985), curved beam")
def ring(page):
    """
        25 .  1            radius R = 4.22, 24 straight beams, unit load at the free end:
             ` .           radial, and across the plane
                 `
                  .        section 0.2 (in the plane) x 0.1, E = 1e7, nu = 0.25,
                   1       J = 0.229 x 0.2 x 0.1^3
                  ///

    On the circle the radial displacement is pi R^3 / 4EI + pi R / 4EA. The same integrals over the 24
    chords are the exact answer of this polygon. The published values belong to a beam of finite
    curvature with its transverse shear.
    """
    R, chords, E, A, I = 4.22, 24, 1e7, 0.02, 0.2 ** 3 * 0.1 / 12
    angles = [math.pi / 2 * i / chords for i in range(chords + 1)]
    points = [(R * math.cos(a), R * math.sin(a)) for a in angles]
    results = []
    for name, load in (("radial", (0, 1, 0)), ("across", (0, 0, 1))):
        model = Model("quarter of a ring")
        model.add_nodes(*((x, y, 0) for x, y in points))
        model.add_elements(*((i, i + 1) for i in range(1, chords + 1)))
        model.material("E=1e7 nu=0.25 G=4e6 widthY=0.2 widthZ=0.1")
        model.support(1, "111111")
        model.load(chords + 1, *load, 0, 0, 0)
        results.append(page.run(f"B20-ring-{name}", model))
    radial, across = results[0].u(chords + 1, 2), results[1].u(chords + 1, 3)
    page.check("radial, this polygon", radial, polygon_radial(points, E * I, E * A))
    page.check("radial, circle", radial, math.pi * R ** 3 / (4 * E * I) + math.pi * R / (4 * E * A),
               2e-3)
    page.check("radial, published", radial, 0.08734, 2e-2, digits=4)
    page.check("across, this polygon", across,
               polygon_across(points, E * 0.2 * 0.1 ** 3 / 12, 4e6 * 0.229 * 0.2 * 0.1 ** 3))
    page.check("across, published", across, 0.5022, 1e-2, digits=4)
    page.drawing("B20-ring-across", "deformed", "Displacements under the load across the plane")


def segments(points):
    """(direction x, y, length, start, end) of the chords, points seen from the loaded end."""
    tip = points[-1]
    seen = [(x - tip[0], y - tip[1]) for x, y in points]
    for (xa, ya), (xb, yb) in zip(seen, seen[1:]):
        L = math.hypot(xb - xa, yb - ya)
        yield (xb - xa) / L, (yb - ya) / L, L, (xa, ya), (xb, yb)


def of_squares(a, b, L):
    """Integral of the square of what grows evenly from a to b."""
    return L * (a * a + a * b + b * b) / 3


def polygon_radial(points, EI_, EA):
    """Unit force along y at the last point: moment x, axial force by the slope."""
    return sum(of_squares(a[0], b[0], L) / EI_ + s * s * L / EA
               for _, s, L, a, b in segments(points))


def polygon_across(points, EI_, GJ):
    """Unit force along z at the last point: bending and torsion are the lever along and across a
    chord."""
    total = 0.0
    for c, s, L, a, b in segments(points):
        along = [c * p[0] + s * p[1] for p in (a, b)]
        across = [c * p[1] - s * p[0] for p in (a, b)]
        total += of_squares(*along, L) / EI_ + of_squares(*across, L) / GJ
    return total
