#pragma once

#include <array>
#include <memory>

namespace kestol {

class Matriu;

/// What a support does to one degree of freedom. Other digits are stored and have no effect.
enum ConstraintCode { Free = 0, Prescribed = 1, Spring = 2 };

/// The support record of a node: per degree of freedom a code and its value. Degrees
/// are counted from 0: x, y, rotation in the plane; x, y, z, rotations about x, y, z in space;
/// x, y, z in solids. With local axes the values are along and about these.
struct Constraint {
  explicit Constraint(int dofsPerNode) : dofs(dofsPerNode) {}

  /// Whether degree `d` (from 0) is prescribed or on a spring.
  bool IsConstrained(int d) const { return codes[d] == Prescribed || codes[d] == Spring; }

  int dofs;                        ///< entries in use below: 3 or 6
  int hasLocalAxes = 0;            ///< 1 when Euler angles were given
  std::array<int, 6> codes{};      ///< ConstraintCode or another digit
  std::array<double, 6> values{};  ///< prescribed displacement, or spring stiffness; result units
  double Euler1 = 0.0, Euler2 = 0.0, Euler3 = 0.0;  ///< local axes, radians; see EulerRotation
};

/// The node's local axes as columns of T, in global components. Gives 1 and leaves T alone when the
/// record has no local axes; else 0.
///
/// With 3 degrees T is 3x3, with 6 it is 6x6: the same 3x3 block for translations and rotations.
/// With `check` and 3 degrees the axes must keep z within 1e-15, else the run ends with
/// "error: Local z axe must be (0,0,1) for 2D problems.Node: N\n".
int NodeAxesMatrix(const Constraint& constraint, int externalNumber, Matriu& T, int dofsPerNode,
                   int check);

/// The support of a node created half-way between two supported nodes; null unless both have one
/// and at least one degree is prescribed at both. Prescribed values, each along its own local axes,
/// are averaged, everything else is free; local axes are those half-way between the two.
std::unique_ptr<Constraint> MergeTwoConstraints(const Constraint* a, const Constraint* b);

}  // namespace kestol
