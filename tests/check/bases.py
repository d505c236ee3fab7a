"""Sound decks, small enough to be read at a glance: kestol-check finds nothing in them."""

PORTAL = """\
PROBLEM portal
TYPE 2d
units_names
  SI    N   m   Pa   1     1
  kN-m  kN  m   kPa  1000  1
end
units_mesh m
units_mat_and_load kN-m
units_res kN-m
NumOfDivisions 10
GravityDirection 0 -1 0

mesh
  dimension = 2   elemtype Linear   nnode = 2
  coordinates
    1  0 0
    2  0 4
    3  3 4
    4  6 4
    5  6 0
  end coordinates
  elements
    1  1 2  1
    2  2 3  2
    3  3 4  2
    4  4 5  1
  end elements

materials
  1  E=2.1e8 A=0.01 Iz=2e-4 Weight=78.5
  2  E=2.1e8 A=0.02 Iz=4e-4 Weight=78.5
end materials

constraints
  1  111  0 0 0
  5  110  0 0 0
end constraints

rotules
  2
end rotules

nodal_point_loads
  2  12.5 0 0
  4  10 0 0
end nodal_point_loads

global_pressure_loads
  2  0 -20
  3  0 -20
end global_pressure_loads
"""

# The hinge of PORTAL falls on the first node of element 2, which is loaded: the deck that is sound
# has its nodes the other way round.
PORTAL = PORTAL.replace("    2  2 3  2\n", "    2  3 2  2\n")

SPACE = """\
PROBLEM space frame
TYPE 3d

mesh
  dimension = 3   elemtype Linear   nnode = 2
  coordinates
    1  0 0 0
    2  0 0 3
    3  4 0 3
    4  4 5 3
    5  4 5 0
  end coordinates
  elements
    1  1 2  1
    2  2 3  1
    3  3 4  2
    4  4 5  1
  end elements

materials
  1  E=2.1e11 G=8.1e10 A=1e-2 Iy=2e-5 Iz=8e-5 J=3e-5
  2  E=2.1e11 G=8.1e10 widthY=0.1 widthZ=0.2
end materials

constraints
  1  111111  0 0 0 0 0 0
  5  111000  0 0 0 0 0 0
  5  000001  0 0 0 0 0 0
end constraints

nodal_point_loads
  3  0 0 -10000 0 0 0
end nodal_point_loads

local_pressure_loads
  3  0 0 -2000 0
end local_pressure_loads
"""

PLATE = """\
PROBLEM plate
TYPE 3d
ConvertTo6Nodes

mesh
  dimension = 3   elemtype Triangle   nnode = 3
  coordinates
    1  0 0 0
    2  1 0 0
    3  2 0 0
    4  0 1 0
    5  1 1 0
    6  2 1 0
    7  0 2 0
    8  1 2 0
    9  2 2 0
  end coordinates
  elements
    1  1 2 5  1
    2  1 5 4  1
    3  2 3 5  1
    4  3 6 5  1
    5  4 5 7  1
    6  5 8 7  1
    7  5 6 9  1
    8  5 9 8  1
  end elements

materials
  1  E=2.1e11 nu=0.3 G=8.0769e10 t=0.02
end materials

constraints
  1  111111  0 0 0 0 0 0
  2  111111  0 0 0 0 0 0
  3  111111  0 0 0 0 0 0
  4  111111  0 0 0 0 0 0
  6  111111  0 0 0 0 0 0
  7  111111  0 0 0 0 0 0
  8  111111  0 0 0 0 0 0
  9  111111  0 0 0 0 0 0
end constraints

face_loads
  1  0 0 -1000
  3  0 0 -1000
end face_loads
"""

BLOCK = """\
PROBLEM block
TYPE 3d

mesh
  dimension = 3   elemtype Tetrahedra   nnode = 4
  coordinates
    1  0 0 0
    2  1 0 0
    3  0 1 0
    4  0 0 1
    5  1 1 1
  end coordinates
  elements
    1  1 2 3 4  1
    2  2 5 3 4  1
  end elements

materials
  1  E=2.1e11 nu=0.3
end materials

constraints
  1  111  0 0 0
  2  111  0 0 0
  3  111  0 0 0
end constraints

face_loads
  2  -1  0 0 -1000
end face_loads
"""

SPRINGS = """\
PROBLEM beam on springs
TYPE 2d

mesh
  dimension = 2   elemtype Linear   nnode = 2
  coordinates
    1  0 0
    2  4 0
    3  8 0
  end coordinates
  elements
    1  1 2  1
    2  2 3  1
  end elements

materials
  1  E=2.1e11 A=0.01 Iz=1e-4
end materials

constraints
  1  110  0 0 0
  2  020  0 5e6 0
  3  010  0 -0.01 0  Euler3=0.5
end constraints

nodal_point_loads
  2  0 -1000 0
end nodal_point_loads
"""

BASES = {"portal": PORTAL, "space": SPACE, "plate": PLATE, "block": BLOCK, "springs": SPRINGS}
