"""The beginning of a recipe for each family."""
SHELL = """\
[material.steel]
groups = ["plate"]
E = 210e3
nu = 0.3
G = 80e3
t = 1
"""
SOLID = """\
[material.steel]
groups = ["body"]
E = 210e3
nu = 0.3
"""
BEAM = """\
[material.steel]
groups = ["edge"]
E = 210e3
G = 80e3
A = 1
Iy = 1
Iz = 1
J = 1
"""
