// A bracket: a wall plate and an arm with a hole for a bolt, lengths in mm.
SetFactory("OpenCASCADE");
Box(1) = {0, 0, 0, 10, 40, 100};
Box(2) = {0, 0, 0, 80, 40, 12};
Cylinder(3) = {60, 20, -1, 0, 0, 20, 8};
BooleanUnion(4) = { Volume{1}; Delete; }{ Volume{2}; Delete; };
BooleanDifference(5) = { Volume{4}; Delete; }{ Volume{3}; Delete; };

Physical Volume("body") = {5};
wall() = Surface In BoundingBox {-0.1, -1, -1, 0.1, 41, 101};
Physical Surface("wall") = {wall()};
bore() = Surface In BoundingBox {51, 11, -0.1, 69, 29, 12.1};
Physical Surface("bore") = {bore()};

Mesh.CharacteristicLengthMax = 8;
Mesh.ElementOrder = 2;
