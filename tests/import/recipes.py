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
PORTAL_RECIPE = """
[problem]
title = "portal"
type = "2d"
[material.steel]
groups = ["columns", "beam"]
E = 2e11
A = 1e3
Iz = 1e-4
[support.feet]
groups = ["feet"]
codes = "111"
[load.push]
groups = ["corner"]
force = [10000, 0]
"""
