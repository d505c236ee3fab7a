"""A box with groups of all kinds, and the forms that Gmsh writes it in."""
from support import STEEL

BOX = """
SetFactory("OpenCASCADE");
Box(1) = {0, 0, 0, 1, 1, 2};
Physical Volume("the body") = {1};
Physical Surface("foot 'of steel'") = {5};
Physical Surface("Dach #2 = größer") = {6};
Physical Surface("foot and roof") = {5, 6};
Physical Curve("edge") = {1};
Physical Point("tip") = {1};
Mesh.CharacteristicLengthMax = 0.8;
"""
RECIPE = f"""
[material.steel]
groups = ["the body"]
{STEEL}
[support.foot]
groups = ["foot 'of steel'"]
codes = "111"
[load.roof]
groups = ["Dach #2 = größer"]
pressure = [1, 2, "-x-y"]
[load.all]
groups = ["foot and roof"]
normal = -1
[load.tip]
groups = ["tip"]
force = [0, 0, 7]
[load.edge]
groups = ["edge"]
force = [0, 5, 0]
"""
FORMS = {"ascii 2.2": ["-format", "msh22"], "binary 2.2": ["-format", "msh22", "-bin"],
         "ascii 4.1": ["-format", "msh41"], "binary 4.1": ["-format", "msh41", "-bin"]}
