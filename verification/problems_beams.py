"""Beams and chains of them: exact at their nodes, so most targets are met in all digits."""
import math

from frames import EI, GLOBAL, PROJECTED, ROARK, STATICS, chain, hold, plane
from models import Model
from page import problem


@problem("B01", "Cantilever with a load at its tip", ROARK)
def cantilever(page):
    """
        ///|1=============2     P = 10 000 down
        ///|      L = 4   v     E = 2.1e11, I = 8e-6, A = 4e-3

    Deflection P L^3 / 3EI and rotation P L^2 / 2EI of the tip, R = P, M = P L.
    """
    P, L = 1e4, 4
    model = chain("cantilever", 0, L)
    hold(model, clamps=(1,))
    model.load(2, 0, -P, 0)
    r = page.run("B01-cantilever", model)
    page.check("tip, y", r.u(2, 2), -P * L ** 3 / (3 * EI))
    page.check("tip, rotation", r.u(2, 3), -P * L ** 2 / (2 * EI))
    page.check("reaction", r.reaction(1, 2), P)
    page.check("reaction, moment", r.reaction(1, 3), P * L)
    page.zero("moment at the tip", r.end(1, 2, 3), P * L)


@problem("B02", "Simple span under a uniform load", ROARK)
def simple_span(page):
    """
        vvvvvvvvvvvvvvvvvvvvv   q = 5000, L = 8, section of B01
        1=========2=========3
        ^                   o

    Deflection 5 q L^4 / 384EI, rotation q L^3 / 24EI, moment q L^2 / 8, reaction q L / 2. The printed
    reaction is stiffness times displacements: the quarter of the load that falls directly on the
    support is not in it.
    """
    q, L = 5000, 8
    model = chain("simple span", 0, L / 2, L)
    hold(model, pins=(1,), rollers=(3,))
    model.loads(GLOBAL, model.all(), 0, -q)
    r = page.run("B02-simple-span", model)
    page.check("middle, y", r.u(2, 2), -5 * q * L ** 4 / (384 * EI))
    page.check("support, rotation", r.u(1, 3), -q * L ** 3 / (24 * EI))
    page.check("moment in the middle", r.end(1, 2, 3), q * L ** 2 / 8)
    page.check("force of the support", r.held(1, 2), q * L / 2)
    page.check("reaction as printed", r.reaction(1, 2), q * L / 4)


@problem("B03", "Propped span under a uniform load", ROARK)
def propped_span(page):
    """
        ///|vvvvvvvvvvvvv
        ///|1===========2       q = 5000, L = 4, section of B01
                        o

    Clamping moment q L^2 / 8, forces 5 q L / 8 and 3 q L / 8, rotation at the prop q L^3 / 48EI.
    """
    q, L = 5000, 4
    model = chain("propped span", 0, L)
    hold(model, clamps=(1,), rollers=(2,))
    model.loads(GLOBAL, (1,), 0, -q)
    r = page.run("B03-propped-span", model)
    page.check("clamping moment", r.held(1, 3), q * L ** 2 / 8)
    page.check("force of the clamp", r.held(1, 2), 5 * q * L / 8)
    page.check("force of the prop", r.held(2, 2), 3 * q * L / 8)
    page.check("prop, rotation", r.u(2, 3), q * L ** 3 / (48 * EI))


@problem("B04", "Clamped span with a settlement", ROARK)
def settlement(page):
    """
        ///|1=====.
        ///|       `.           no load; the right clamp goes down by d = 0.01
                     `=====2|/// L = 4, section of B01

    Moments 6 E I d / L^2 and forces 12 E I d / L^3.
    """
    d, L = 0.01, 4
    model = chain("clamped span with a settlement", 0, L)
    hold(model, clamps=(1,))
    model.support(2, "111", 0, -d, 0)
    r = page.run("B04-settlement", model)
    page.check("moment, left", r.reaction(1, 3), 6 * EI * d / L ** 2)
    page.check("moment, right", r.reaction(2, 3), 6 * EI * d / L ** 2)
    page.check("force, left", r.reaction(1, 2), 12 * EI * d / L ** 3)
    page.check("force, right", r.reaction(2, 2), -12 * EI * d / L ** 3)


@problem("B06", "Gerber beam: a hinge in the second span", f"{STATICS}; {ROARK} (overhang)")
def gerber_beam(page):
    """
        vvvvvvvvvvvvvvvvvvvvvvvvvvvvvvvv   q = 12 000, section of B01
        1============2====(3)===========4
        ^            o                  o
            6          2        6

    The hinge passes 36 000 to the overhang: the forces of the supports are 20 000, 112 000 and 36 000,
    the moment over the second support is -(q 2^2 / 2 + 36 000 x 2) = -96 000. The last beam runs from
    node 4 to node 3, so that its hinge is at its second node. The printed reactions are stiffness times
    displacements.
    """
    q = 12000
    model = plane("Gerber beam", [(0, 0), (6, 0), (8, 0), (14, 0)], [(1, 2), (2, 3), (4, 3)])
    model.hinge(3)
    hold(model, pins=(1,), rollers=(2, 4))
    model.loads(GLOBAL, model.all(), 0, -q)
    r = page.run("B06-gerber-beam", model)
    for node, force, printed in ((1, 20000, -16000), (2, 112000, 64000), (4, 36000, -9000)):
        page.check(f"force of support {node}", r.held(node, 2), force)
        page.check(f"reaction {node} as printed", r.reaction(node, 2), printed)
    page.check("moment at 2", r.end(1, 2, 3), -96000)
    # Overhang a with q and tip force F behind a span l with q: turns at the support, then bends.
    a, l, F = 2, 6, 6 * q / 2
    turn = (q * a ** 2 / 2 + F * a) * l / (3 * EI) - q * l ** 3 / (24 * EI)
    page.check("hinge, y", r.u(3, 2), -(turn * a + q * a ** 4 / (8 * EI) + F * a ** 3 / (3 * EI)))
    page.zero("moment at the hinge", r.end(2, 2, 3), 96000)
    page.drawing("B06-gerber-beam", "M", "Bending moments")


@problem("B12", "Three spans with settlements",
         "*Structural Analysis*, 3rd edition, example 13.14; three-moment equation")
def three_spans_with_settlements(page):
    """
        vvvvvvvvvvvvvvvvvvvvvvvvvvvvvvv    q = 2/12 kip/in, E = 29 000 ksi, I = 7800 in^4
        1=========2=========3=========4    spans of 240 in
        ^         o         o         o    settlements 0, 0.625, 1.5, 0.75 in

    The targets solve the three-moment equation with all digits; the book, which rounds on its way,
    prints -1.098, 122.373, -61.451 and 60.176.
    """
    q, L, sink = 2 / 12, 240, (0, .625, 1.5, .75)
    model = chain("three spans with settlements", 0, L, 2 * L, 3 * L,
                  material="E=29000 Iz=7800 A=100")
    model.support(1, "110")
    for node in (2, 3, 4):
        model.support(node, "010", 0, -sink[node - 1], 0)
    model.loads(GLOBAL, model.all(), 0, -q)
    r = page.run("B12-three-spans-with-settlements", model)
    printed = (-1.098, 122.373, -61.451, 60.176)
    for node, force in enumerate(three_moments(q, L, 29000 * 7800, sink), 1):
        page.check(f"force of support {node}", r.held(node, 2), force)
        page.show(f"force of support {node}, as the book prints it", r.held(node, 2),
                  printed[node - 1])
    page.drawing("B12-three-spans-with-settlements", "deformed", "Displacements")


def three_moments(q, L, EI_, sink):
    """Reactions of three equal spans: M1 and M2 from 4 M1 + M2 and M1 + 4 M2."""
    def right(i):
        kink = (2 * sink[i] - sink[i - 1] - sink[i + 1]) / L
        return (6 * EI_ * kink - q * L ** 3 / 2) / L
    a, b = right(1), right(2)
    M = (0, (4 * a - b) / 15, (4 * b - a) / 15, 0)
    forces = [0.0] * 4
    for i in range(3):
        forces[i] += q * L / 2 + (M[i + 1] - M[i]) / L
        forces[i + 1] += q * L / 2 + (M[i] - M[i + 1]) / L
    return forces


@problem("B16", "Three equal spans under a uniform load", ROARK)
def three_equal_spans(page):
    """
        vvvvvvvvvvvvvvvvvvvvvvvvvvvvvvv    q = 12 000, spans of 5, section of B01
        1=========2=========3=========4
        ^         o         o         o

    Moments 0.1 q l^2 over the inner supports, forces 0.4 q l and 1.1 q l.
    """
    q, l = 12000, 5
    model = chain("three equal spans", 0, l, 2 * l, 3 * l)
    hold(model, pins=(1,), rollers=(2, 3, 4))
    model.loads(GLOBAL, model.all(), 0, -q)
    r = page.run("B16-three-equal-spans", model)
    page.check("moment at 2", r.end(1, 2, 3), -0.1 * q * l ** 2)
    page.check("moment at 3", r.end(2, 2, 3), -0.1 * q * l ** 2)
    for node, part in ((1, .4), (2, 1.1), (3, 1.1), (4, .4)):
        page.check(f"force of support {node}", r.held(node, 2), part * q * l)


@problem("B21", "Span on an inclined roller", STATICS)
def inclined_roller(page):
    """
        vvvvvvvvvvvvvvvvvvvvv   q = 10 000, L = 6
        1===================2   E = 2.1e11, I = 1e-4, A = 1e-2
        ^                  //   the roller's plane rises by 30 degrees
                          //

    The roller gives q L / 2 upwards and presses the span with q L / 2 tan 30; the span shortens by
    q L^2 tan 30 / 2EA, and the roller follows its plane.
    """
    q, L, EA, slope = 10000, 6, 2.1e11 * 1e-2, math.tan(math.pi / 6)
    model = chain("span on an inclined roller", 0, L, material="E=2.1e11 Iz=1e-4 A=1e-2")
    hold(model, pins=(1,))
    model.support(2, "010", axes="Euler3=0.523598775598")
    model.loads(GLOBAL, (1,), 0, -q)
    r = page.run("B21-inclined-roller", model)
    ux = -q * L / 2 * slope * L / EA
    page.check("force of the roller, x", r.held(2, 1), -q * L / 2 * slope)
    page.check("force of the roller, y", r.held(2, 2), q * L / 2)
    page.check("roller, x", r.u(2, 1), ux)
    page.check("roller, y", r.u(2, 2), ux * slope)


@problem("B22", "Rafter under a load on its plan", STATICS)
def rafter(page):
    """
        vvvvvvvvvvv     q = 2000 per length of the plan
              ,3 o
           ,2'          (0, 0) to (4, 3), section of B01
        1'
        ^

    Forces q l / 2, moment in the middle q l^2 / 8, l the length of the plan.
    """
    q, l = 2000, 4
    model = plane("rafter", [(0, 0), (2, 1.5), (4, 3)], [(1, 2), (2, 3)])
    hold(model, pins=(1,), rollers=(3,))
    model.loads(PROJECTED, model.all(), 0, -q)
    r = page.run("B22-rafter", model)
    page.check("force of the pin", r.held(1, 2), q * l / 2)
    page.check("force of the roller", r.held(3, 2), q * l / 2)
    page.zero("thrust of the pin", r.held(1, 1), q * l / 2)
    page.check("moment in the middle", r.end(1, 2, 3), q * l ** 2 / 8)


@problem("B23", "Cantilever with a turned section", "unsymmetric bending")
def turned_section(page):
    """
        ///|1=============2     P = 1000 down (along z), L = 2, along x
                                E = 2.1e11, Iz = 8e-6, Iy = 2e-6
                                the section is turned by 30 degrees about x

    The load's components along the section's axes bend it with their own moments of inertia:
    P L^3 / 3E (sin^2 / Iz + cos^2 / Iy) down, and sin cos (1 / Iy - 1 / Iz) of it aside.
    """
    P, L, E, Iz, Iy = 1000, 2, 210e9, 8e-6, 2e-6
    model = Model("cantilever with a turned section")
    model.add_nodes((0, 0, 0), (L, 0, 0))
    model.add_elements((1, 2))
    model.material("E=210e9 G=8e10 Iz=8e-6 Iy=2e-6 J=1e-5 A=4e-3 Euler1=0.523598775598")
    model.support(1, "111111")
    model.load(2, 0, 0, -P, 0, 0, 0)
    r = page.run("B23-turned-section", model)
    s, c, flexibility = math.sin(math.pi / 6), math.cos(math.pi / 6), P * L ** 3 / (3 * E)
    page.check("tip, y", r.u(2, 2), flexibility * s * c * (1 / Iy - 1 / Iz))
    page.check("tip, z", r.u(2, 3), -flexibility * (s * s / Iz + c * c / Iy))


@problem("B24", "Hanging bar under its own weight", "closed form")
def hanging_bar(page):
    """
        ///
         1      L = 10, weight 78 500 per volume, E = 2.1e11, A = 1e-2
         |
         2
         |
         3

    Displacement of the free end: weight L^2 / 2E.
    """
    L, weight, E, A = 10, 78500, 2.1e11, 1e-2
    model = plane("hanging bar", [(0, 0), (0, -L / 2), (0, -L)], [(1, 2), (2, 3)],
                  "E=2.1e11 Iz=8e-6 A=1e-2 Weight=78500")
    model.keys.append("GravityDirection 0 -1 0")
    hold(model, clamps=(1,))
    r = page.run("B24-hanging-bar", model)
    page.check("free end, y", r.u(3, 2), -weight * L ** 2 / (2 * E))
    page.check("force of the clamp", r.held(1, 2), weight * A * L)
