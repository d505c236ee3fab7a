"""A small plate with a recipe, and kestol-import run on it."""
from support import Case

MESH = """\
$MeshFormat
2.2 0 8
$EndMeshFormat
$PhysicalNames
4
0 1 "tip"
1 2 "left"
2 3 "plate"
2 4 "more"
$EndPhysicalNames
$Nodes
7
1 0 0 0
2 1 0 0
3 1 1 0
4 0 1 0
5 9 9 9
6 1.001 1 0
7 2 1 0
$EndNodes
$Elements
6
10 15 2 1 1 3
11 1 2 2 1 4 1
12 2 2 3 1 1 2 3
13 2 2 3 1 1 3 4
14 2 2 4 1 1 3 4
15 2 2 5 1 2 7 6
$EndElements
"""
RECIPE = """\
[problem]
title = "two triangles"
[material.steel]
groups = ["plate"]
E = 210e3
nu = 0.3
G = 80e3
t = 1
[support.left]
groups = ["left"]
codes = "111111"
[load.tip]
groups = ["tip"]
force = [0, 0, -1]
"""


class Program(Case):
    def setUp(self):
        super().setUp()
        self.write("m.msh", MESH)
        self.write("r.toml", RECIPE)
