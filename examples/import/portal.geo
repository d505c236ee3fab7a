// A portal 6 wide and 4 high, in the plane.
Point(1) = {0, 0, 0}; Point(2) = {0, 4, 0}; Point(3) = {6, 4, 0}; Point(4) = {6, 0, 0};
Line(1) = {1, 2}; Line(2) = {2, 3}; Line(3) = {3, 4};
Transfinite Curve {1, 2, 3} = 5;
Physical Curve("columns") = {1, 3};
Physical Curve("beam") = {2};
Physical Point("feet") = {1, 4};
Physical Point("corner") = {2};
