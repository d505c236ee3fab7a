"""What the problems of beams and of frames share: sections, sources, plane models."""
from models import Model

ROARK = "*Roark's Formulas for Stress and Strain*, beams"
STATICS = "statics"
SECTION = "E=210e9 Iz=8e-6 A=4e-3"
EI = 210e9 * 8e-6
GLOBAL, PROJECTED = "global_pressure_loads", "global_projected_pressure_loads"
VPCS = "SFM, *Guide de validation des progiciels de calcul de structures* (VPCS)"


def plane(title, points, beams, material=SECTION):
    model = Model(title, "2d")
    model.add_nodes(*points)
    model.add_elements(*beams)
    if material:
        model.material(material)
    return model


def chain(title, *stations, material=SECTION):
    """A straight beam from station to station."""
    return plane(title, [(x, 0) for x in stations],
                 [(i, i + 1) for i in range(1, len(stations))], material)


def hold(model, **nodes):
    """pins=(1,), rollers=(2, 3), clamps=(4,) of a plane frame."""
    for kind, codes in (("pins", "110"), ("rollers", "010"), ("clamps", "111")):
        for node in nodes.get(kind, ()):
            model.support(node, codes)
