#pragma once

namespace kestol {

// The kinds of problems, elements and loads, with the codes of the input and of the files.

/// How the program counts degrees of freedom: plane (x, y, rotation) or space.
enum ProblemType : int { Plane = 0, Space = 1 };

/// Element families.
///
///     type             nodes (Femview code)
///     1 Linear         2 (11)
///     2 Triangle       3 (7)     6 (8)
///     3 Quadrilateral  4 (9)     8 (10)
///     4 Tetrahedra     4 (3)    10 (6)
///     5 Hexahedra      8 (1)    20 (4)
enum ElemType : int { Linear = 1, Triangle, Quadrilateral, Tetrahedra, Hexahedra };

/// Kinds of distributed loads.
enum LoadKind : int { LocalPressure = 0, GlobalPressure = 1, GlobalProjected = 2, FaceLoad = 3 };

}  // namespace kestol
