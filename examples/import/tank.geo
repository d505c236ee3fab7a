// A quarter of an open tank, radius 3 and height 5, standing on its foot.
Point(1) = {0, 0, 0}; Point(2) = {3, 0, 0}; Point(3) = {0, 3, 0};
Circle(1) = {2, 1, 3};
Transfinite Curve {1} = 13;
out[] = Extrude {0, 0, 5} { Curve{1}; Layers{20}; };

Physical Surface("wall") = {out[1]};
Physical Curve("foot") = {1};
edges[] = Boundary { Surface{out[1]}; };
Physical Curve("cut x = 0") = {edges[1]};
Physical Curve("cut y = 0") = {edges[3]};
