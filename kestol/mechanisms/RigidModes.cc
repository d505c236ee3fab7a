#include "kestol/mechanisms/RigidModes.h"

#include <algorithm>
#include <cmath>

#include "algebra/FixedMatrix.h"
#include "model/Constraint.h"
#include "model/Frame.h"

namespace kestol {

bool IsPlaneFrame(const Project& project) {
  return project.problemType == Plane && project.meshes[0]->elemType != Tetrahedra;
}

namespace {

/// Six numbers of a rigid motion: the velocity of the center, then the rotation times the size of
/// the part.
using Six = std::array<double, 6>;

bool HasRotations(const Project& project) {
  return project.dofsPerNode == 6 || IsPlaneFrame(project);
}

/// What a part is measured with.
struct PartFrame {
  Vector3 center{};
  double size = 1.0;
};

PartFrame FrameOfPart(const Parts& parts, const std::vector<int>& nodes) {
  PartFrame frame;
  for (const int index : nodes) frame.center = Plus(frame.center, PositionOf(parts.NodeAt(index)));
  frame.center = Times(frame.center, 1.0 / static_cast<double>(nodes.size()));
  double size = 0.0;
  for (const int index : nodes)
    size = std::max(size, Norm(Minus(PositionOf(parts.NodeAt(index)), frame.center)));
  if (size > 0.0) frame.size = size;
  return frame;
}

/// The row that says how far the node moves along `direction` by each of the six.
Six TranslationRow(const PartFrame& frame, const Node& node, const Vector3& direction) {
  const Vector3 arm = Times(Minus(PositionOf(node), frame.center), 1.0 / frame.size);
  const Vector3 turned = Cross(arm, direction);  // direction . (w x arm) = w . (arm x direction)
  return {direction[0], direction[1], direction[2], turned[0], turned[1], turned[2]};
}

bool Holds(const Constraint& support, int d) {
  return support.codes[d] == Prescribed || (support.codes[d] == Spring && support.values[d] != 0.0);
}

/// The axes of a support: its own, or the global ones.
Frame FrameOfSupport(const Constraint& support) {
  if (support.hasLocalAxes != 0) return FrameOf(AxesOf(support));
  return {
      {1.0, 0.0, 0.0},
      {0.0, 1.0, 0.0},
      {0.0, 0.0, 1.0}
  };
}

/// The rows of one supported node.
void AddHoldingRows(const Project& project, const Parts& parts, int index, const PartFrame& frame,
                    std::vector<Six>& rows) {
  constexpr double kNothing = 1e-6;
  const Node& node = parts.NodeAt(index);
  const Constraint& support = *node.constraint;
  const Frame axes = FrameOfSupport(support);
  const Vector3 directions[] = {axes.x, axes.y, axes.z};
  const bool isPlane = IsPlaneFrame(project);
  const int firstRotation = isPlane ? 2 : 3;
  for (int d = 0; d < std::min(project.dofsPerNode, support.dofs); ++d) {
    if (!Holds(support, d)) continue;
    if (d < firstRotation) {
      rows.push_back(TranslationRow(frame, node, directions[d]));
      continue;
    }
    // In a motion that nothing resists a node does not turn where only the ground feels it.
    const Vector3 axis = isPlane ? Vector3{0.0, 0.0, 1.0} : parts.Felt(index, directions[d - 3]);
    if (Norm(axis) >= kNothing) rows.push_back({0.0, 0.0, 0.0, axis[0], axis[1], axis[2]});
  }
}

/// Rows of what holds the part: one per prescribed degree and per spring.
std::vector<Six> HoldingRows(const Project& project, const Parts& parts, int part,
                             const PartFrame& frame) {
  std::vector<Six> rows;
  for (const int index : parts.NodesOf(part))
    if (parts.NodeAt(index).constraint) AddHoldingRows(project, parts, index, frame, rows);
  if (IsPlaneFrame(project)) {
    for (const int d : {2, 3, 4}) {
      Six row{};
      row[static_cast<std::size_t>(d)] = 1.0;
      rows.push_back(row);
    }
  }
  return rows;
}

/// Where the largest entry stands of the rows from `first` on.
struct Pivot {
  std::size_t row, column;
  double size;
};
Pivot LargestEntry(const std::vector<Six>& rows, std::size_t first) {
  Pivot pivot{first, 0, 0.0};
  for (std::size_t r = first; r < rows.size(); ++r)
    for (std::size_t c = 0; c < 6; ++c)
      if (std::abs(rows[r][c]) > pivot.size) pivot = {r, c, std::abs(rows[r][c])};
  return pivot;
}

/// Gauss and Jordan: the column becomes that of the unit matrix, with its 1 in `pivotRow`.
void Eliminate(std::vector<Six>& rows, std::size_t pivotRow, std::size_t column) {
  const double pivot = rows[pivotRow][column];
  for (double& entry : rows[pivotRow]) entry /= pivot;
  for (std::size_t r = 0; r < rows.size(); ++r) {
    const double factor = rows[r][column];
    if (r == pivotRow || factor == 0.0) continue;
    for (std::size_t c = 0; c < 6; ++c) rows[r][c] -= factor * rows[pivotRow][c];
    rows[r][column] = 0.0;
  }
}

/// The null space of the rows by elimination with complete pivoting: each vector has a 1 where the
/// others have 0, so that pure motions stay pure.
std::vector<Six> NullVectors(std::vector<Six> rows) {
  constexpr double kZeroRow = 1e-9;
  std::vector<std::size_t> pivots;  // column of each eliminated row
  std::size_t rank = 0;
  for (; rank < 6; ++rank) {
    const Pivot pivot = LargestEntry(rows, rank);
    if (pivot.size <= kZeroRow) break;
    std::swap(rows[rank], rows[pivot.row]);
    Eliminate(rows, rank, pivot.column);
    pivots.push_back(pivot.column);
  }
  std::vector<Six> null;
  for (std::size_t free = 0; free < 6; ++free) {
    if (std::find(pivots.begin(), pivots.end(), free) != pivots.end()) continue;
    Six vector{};
    vector[free] = 1.0;
    for (std::size_t r = 0; r < rank; ++r) vector[pivots[r]] = -rows[r][free];
    null.push_back(vector);
  }
  return null;
}

}  // namespace

std::vector<RigidMotion> FreeRigidMotions(const Project& project, const Parts& parts) {
  std::vector<RigidMotion> motions;
  for (int part = 0; part < parts.Count(); ++part) {
    const PartFrame frame = FrameOfPart(parts, parts.NodesOf(part));
    std::vector<Six> rows = HoldingRows(project, parts, part, frame);
    for (const Six& v : NullVectors(std::move(rows))) {
      RigidMotion motion;
      motion.part = part;
      motion.center = frame.center;
      motion.velocity = {v[0], v[1], v[2]};
      motion.rotation = Times({v[3], v[4], v[5]}, 1.0 / frame.size);
      motions.push_back(motion);
    }
  }
  return motions;
}

ReaVecT DisplacementsOf(const Project& project, const Parts& parts, const RigidMotion& motion) {
  const int dofs = project.dofsPerNode;
  ReaVecT z(parts.NodeCount() * dofs);
  for (const int index : parts.NodesOf(motion.part)) {
    const Vector3 u = MotionAt(motion, PositionOf(parts.NodeAt(index)));
    const int first = FirstEquation(index, dofs);
    if (IsPlaneFrame(project)) {
      z(first) = u[0];
      z(first + 1) = u[1];
      z(first + 2) = motion.rotation[2];
      continue;
    }
    const Vector3 rotation = parts.Felt(index, motion.rotation);
    for (int d = 0; d < 3; ++d) {
      z(first + d) = u[d];
      if (dofs == 6) z(first + 3 + d) = rotation[d];
    }
  }
  return z;
}

Vector3 TranslationOf(const Project& project, const ReaVecT& z, int index) {
  const int first = FirstEquation(index, project.dofsPerNode);
  return {z(first), z(first + 1), IsPlaneFrame(project) ? 0.0 : z(first + 2)};
}

Vector3 RotationOf(const Project& project, const ReaVecT& z, int index) {
  if (!HasRotations(project)) return {};
  const int first = FirstEquation(index, project.dofsPerNode);
  return IsPlaneFrame(project) ? Vector3{0.0, 0.0, z(first + 2)}
                               : Vector3{z(first + 3), z(first + 4), z(first + 5)};
}

namespace {

/// Solves the symmetric system M x = b of three equations; directions without stiffness get 0.
Vector3 SolveSymmetric(FixedMatrix<3, 3> M, Vector3 b) {
  double largest = 0.0;
  for (int i = 1; i <= 3; ++i) largest = std::max(largest, M(i, i));
  constexpr double kNothing = 1e-12;
  bool used[3] = {};
  int order[3] = {-1, -1, -1};
  for (int step = 0; step < 3; ++step) {
    int pivot = -1;
    for (int i = 0; i < 3; ++i)
      if (!used[i] && M(i + 1, i + 1) > kNothing * largest &&
          (pivot == -1 || M(i + 1, i + 1) > M(pivot + 1, pivot + 1)))
        pivot = i;
    if (pivot == -1) break;
    used[pivot] = true;
    order[step] = pivot;
    for (int r = 0; r < 3; ++r) {
      if (r == pivot) continue;
      const double factor = M(r + 1, pivot + 1) / M(pivot + 1, pivot + 1);
      for (int c = 1; c <= 3; ++c) M(r + 1, c) -= factor * M(pivot + 1, c);
      b[r] -= factor * b[pivot];
    }
  }
  Vector3 x{};
  for (const int i : order)
    if (i != -1) x[i] = b[i] / M(i + 1, i + 1);
  return x;
}

/// The direction of the line on which all nodes lie; 0 where they lie on none.
Vector3 LineThrough(const Parts& parts, const std::vector<int>& nodes, const PartFrame& frame) {
  constexpr double kStraight = 1e-9;
  Vector3 longest{};
  for (const int index : nodes) {
    const Vector3 arm = Minus(PositionOf(parts.NodeAt(index)), frame.center);
    if (Norm(arm) > Norm(longest)) longest = arm;
  }
  if (Norm(longest) == 0.0) return {};
  const Vector3 line = Unit(longest);
  for (const int index : nodes) {
    const Vector3 arm = Minus(PositionOf(parts.NodeAt(index)), frame.center);
    if (Norm(Cross(line, arm)) > kStraight * frame.size) return {};
  }
  return line;
}

/// What the rotations of the nodes themselves say about a turn about `axis`.
double SpinOf(const Project& project, const Parts& parts, const std::vector<int>& nodes,
              const ReaVecT& z, const Vector3& axis) {
  double spin = 0.0;
  for (const int index : nodes) {
    const double own = Dot(parts.Felt(index, RotationOf(project, z, index)), axis);
    if (std::abs(own) > std::abs(spin)) spin = own;
  }
  return spin;
}

}  // namespace

RigidMotion FitRigidMotion(const Project& project, const Parts& parts,
                           const std::vector<int>& nodes, const ReaVecT& z, double& misfit) {
  RigidMotion motion;
  const PartFrame frame = FrameOfPart(parts, nodes);
  motion.center = frame.center;
  Vector3 mean{};
  for (const int index : nodes) mean = Plus(mean, TranslationOf(project, z, index));
  motion.velocity = Times(mean, 1.0 / static_cast<double>(nodes.size()));
  FixedMatrix<3, 3> inertia{};
  Vector3 moment{};
  for (const int index : nodes) {
    const Vector3 arm = Minus(PositionOf(parts.NodeAt(index)), frame.center);
    moment = Plus(moment, Cross(arm, TranslationOf(project, z, index)));
    for (int i = 0; i < 3; ++i)
      for (int j = 0; j < 3; ++j)
        inertia(i + 1, j + 1) += (i == j ? Dot(arm, arm) : 0.0) - arm[i] * arm[j];
  }
  motion.rotation = SolveSymmetric(inertia, moment);
  if (HasRotations(project)) {
    // The places of nodes on a line do not tell a turn about it.
    const Vector3 line = LineThrough(parts, nodes, frame);
    const double spin = SpinOf(project, parts, nodes, z, line) - Dot(motion.rotation, line);
    motion.rotation = Plus(motion.rotation, Times(line, spin));
  }
  double largest = 0.0, worst = 0.0;
  for (const int index : nodes) {
    const Vector3 u = TranslationOf(project, z, index);
    const Vector3 fitted = MotionAt(motion, PositionOf(parts.NodeAt(index)));
    largest = std::max({largest, Norm(u), Norm(motion.rotation) * frame.size});
    worst = std::max(worst, Norm(Minus(u, fitted)));
    if (!HasRotations(project)) continue;
    const Vector3 own = RotationOf(project, z, index), rest = Minus(own, motion.rotation);
    largest = std::max(largest, Norm(parts.Felt(index, own)) * frame.size);
    worst = std::max(worst, Norm(parts.Felt(index, rest)) * frame.size);
  }
  misfit = largest > 0.0 ? worst / largest : 0.0;
  return motion;
}

}  // namespace kestol
