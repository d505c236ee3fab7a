#pragma once

#include <array>
#include <memory>

#include "algebra/FixedMatrix.h"

namespace kestol {

/// What a support does to one degree of freedom. Other digits are stored and have no effect.
enum ConstraintCode { Free = 0, Prescribed = 1, Spring = 2 };

/// The support record of a node: per degree of freedom a code and its value. Degrees
/// are counted from 0: x, y, rotation in the plane; x, y, z, rotations about x, y, z in space;
/// x, y, z in solids. An inclined support has local axes; its values are along and about these.
struct Constraint {
  explicit Constraint(int dofsPerNode) : dofs(dofsPerNode) {}

  /// Whether degree `d` (from 0) is prescribed or on a spring.
  bool IsConstrained(int d) const { return codes[d] == Prescribed || codes[d] == Spring; }

  int dofs;                        ///< entries in use below: 3 or 6
  bool hasLocalAxes = false;       ///< inclined: Euler angles were given
  std::array<int, 6> codes{};      ///< ConstraintCode or another digit
  std::array<double, 6> values{};  ///< prescribed displacement, or spring stiffness; result units
  double Euler1 = 0.0, Euler2 = 0.0, Euler3 = 0.0;  ///< local axes, radians; see EulerRotation
};

/// The axes of an inclined support as columns, in global components.
FixedMatrix<3, 3> AxesOf(const Constraint& inclined);

/// Axes of an inclined support in a plane problem must keep z within 1e-15, else the run ends with
/// "error: Local z axe must be (0,0,1) for 2D problems.Node: N\n".
void CheckKeepsZ(const FixedMatrix<3, 3>& axes, int externalNumber);

/// The same axes as T, for who treats all degrees of a node at once. With 3 degrees T is 3x3, with
/// 6 it is 6x6: the same 3x3 block for translations and rotations. `check` asks for CheckKeepsZ
/// with 3 degrees. Gives 0; or 1, T left alone, for a support without local axes.
int NodeAxesMatrix(const Constraint& constraint, int externalNumber, Matriu& T, int dofsPerNode,
                   int check);

/// The support of a node created half-way between two supported nodes; null unless both have one
/// and at least one degree is prescribed at both. Prescribed values, each along its own local axes,
/// are averaged, everything else is free; local axes are those half-way between the two.
std::unique_ptr<Constraint> MergeTwoConstraints(const Constraint* a, const Constraint* b);

}  // namespace kestol
