// A support row says how far a rigid motion of the part would move the supported degree. With x0
// the mean of the part's nodes, h their largest distance from it, and R the axes of the support:
//
//   translation d of space or solid   e_d^T R^T [ I  -[(x - x0)/h]x ]
//   rotation d of space               e_d^T R^T [ 0   I ]
//   plane, any d                      e_d^T R^T [ 1 0 -(y - y0)/h ; 0 1 (x - x0)/h ; 0 0 1 ]
//
// No motion is left when the rows of the part have full rank: 3 in the plane, 6 in space.
#include "analysis/RigidMotions.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>
#include <optional>
#include <vector>

#include "algebra/FixedMatrix.h"
#include "algebra/Tolerances.h"
#include "analysis/NodeBlocks.h"
#include "input/Project.h"

namespace kestol {

namespace {

using Point = std::array<double, 3>;

/// The nodes (by index - 1) gathered into parts. Every node starts alone.
class Parts {
public:
  explicit Parts(int nodeCount) : parent_(nodeCount), connected_(nodeCount, false) {
    std::iota(parent_.begin(), parent_.end(), 0);
  }

  void Join(int a, int b) {
    connected_[a] = connected_[b] = true;
    parent_[Find(a)] = Find(b);
  }

  /// The node that stands for the part of `node`.
  int Find(int node) {
    while (parent_[node] != node) {
      parent_[node] = parent_[parent_[node]];
      node = parent_[node];
    }
    return node;
  }

  /// Whether an element uses the node.
  bool IsConnected(int node) const { return connected_[node]; }

private:
  std::vector<int> parent_;
  std::vector<bool> connected_;
};

Parts PartsOf(const Project& project) {
  Parts parts(project.numNodes);
  for (const auto& mesh : project.meshes)
    for (const auto [number, elem] : mesh->elems)
      for (int k = 1; k < elem->nnode; ++k)
        parts.Join(elem->nodes[0]->number - 1, elem->nodes[k]->number - 1);
  return parts;
}

/// Where a part is and how large.
struct Extent {
  Point centre{};
  double size = 0.0;  ///< largest distance of a node from the centre
  int nodes = 0;
};

Point PointOf(const Node& node) {
  return {node.x, node.y, node.z};
}

/// By representative node.
std::vector<Extent> ExtentsOf(const Project& project, Parts& parts) {
  std::vector<Extent> extents(project.numNodes);
  const auto forEachNode = [&](auto&& action) {
    for (const auto [key, node] : *project.meshes[0]->nodes)
      if (parts.IsConnected(node->number - 1))
        action(extents[parts.Find(node->number - 1)], PointOf(*node));
  };
  forEachNode([](Extent& extent, const Point& p) {
    ++extent.nodes;
    for (int i = 0; i < 3; ++i) extent.centre[i] += p[i];
  });
  for (Extent& extent : extents)
    for (double& c : extent.centre) c /= std::max(extent.nodes, 1);
  forEachNode([](Extent& extent, const Point& p) {
    const Point& c = extent.centre;
    extent.size = std::max(extent.size, std::hypot(p[0] - c[0], p[1] - c[1], p[2] - c[2]));
  });
  return extents;
}

/// What a support row multiplies: translation (3) and h times the rotation (3); in the plane the
/// first three are x, y and h times the rotation.
struct SupportRow {
  int part;
  std::array<double, 6> motion{};
};

/// How the degrees of a node at distance r (in sizes of the part) move with the part, row by row.
using NodeMotion = std::array<std::array<double, 6>, 6>;

NodeMotion PlaneMotion(const Point& r) {
  return {
      {{1.0, 0.0, -r[1]}, {0.0, 1.0, r[0]}, {0.0, 0.0, 1.0}}
  };
}

NodeMotion SpaceMotion(const Point& r) {
  return {
      {{1.0, 0.0, 0.0, 0.0, r[2], -r[1]},
       {0.0, 1.0, 0.0, -r[2], 0.0, r[0]},
       {0.0, 0.0, 1.0, r[1], -r[0], 0.0},
       {0.0, 0.0, 0.0, 1.0, 0.0, 0.0},
       {0.0, 0.0, 0.0, 0.0, 1.0, 0.0},
       {0.0, 0.0, 0.0, 0.0, 0.0, 1.0}}
  };
}

bool IsPlaneFrame(const Project& project) {
  return project.problemType == Plane && project.meshes[0]->elemType != Tetrahedra;
}

bool Holds(const Constraint& constraint, int d) {
  return constraint.codes[d] == Prescribed ||
         (constraint.codes[d] == Spring && std::abs(constraint.values[d]) > kZero);
}

/// Row d (from 0) of R^T times the motion of its triple of degrees.
std::array<double, 6> RowOf(const NodeMotion& motion, const std::optional<FixedMatrix<3, 3>>& axes,
                            int d) {
  if (!axes) return motion[d];
  const int triple = d / 3 * 3;
  std::array<double, 6> row{};
  for (int k = 0; k < 3; ++k)
    for (int column = 0; column < 6; ++column)
      row[column] += (*axes)(k + 1, d - triple + 1) * motion[triple + k][column];
  return row;
}

void AppendRows(const Project& project, const Node& node, int part, const Extent& extent,
                std::vector<SupportRow>& rows) {
  const double size = extent.size > 0.0 ? extent.size : 1.0;
  Point r = PointOf(node);
  for (int i = 0; i < 3; ++i) r[i] = (r[i] - extent.centre[i]) / size;
  const NodeMotion motion = IsPlaneFrame(project) ? PlaneMotion(r) : SpaceMotion(r);
  const auto axes = SupportAxes(project, node);
  const int dofs = std::min(node.constraint->dofs, project.dofsPerNode);
  for (int d = 0; d < dofs; ++d)
    if (Holds(*node.constraint, d)) rows.push_back({part, RowOf(motion, axes, d)});
}

double SquaredNorm(const std::array<double, 6>& row) {
  return std::inner_product(row.begin(), row.end(), row.begin(), 0.0);
}

/// Rank by Gram-Schmidt with the largest remaining row first; overwrites the rows.
int RankOf(SupportRow* first, SupportRow* last) {
  constexpr double kDependent = 1e-9;
  for (int rank = 0;; ++rank) {
    SupportRow* const pivot =
        std::max_element(first, last, [](const SupportRow& a, const SupportRow& b) {
          return SquaredNorm(a.motion) < SquaredNorm(b.motion);
        });
    if (pivot == last) return rank;
    std::array<double, 6> direction = pivot->motion;
    const double norm = std::sqrt(SquaredNorm(direction));
    if (norm <= kDependent) return rank;
    for (double& c : direction) c /= norm;
    for (SupportRow* row = first; row != last; ++row) {
      const double along =
          std::inner_product(direction.begin(), direction.end(), row->motion.begin(), 0.0);
      for (int i = 0; i < 6; ++i) row->motion[i] -= along * direction[i];
    }
  }
}

}  // namespace

bool SupportsStopRigidMotions(const Project& project) {
  Parts parts = PartsOf(project);
  const std::vector<Extent> extents = ExtentsOf(project, parts);

  std::vector<SupportRow> rows;
  for (const auto [key, node] : *project.meshes[0]->nodes) {
    const int place = node->number - 1;
    if (!node->constraint || !parts.IsConnected(place)) continue;
    const int part = parts.Find(place);
    AppendRows(project, *node, part, extents[part], rows);
  }
  std::stable_sort(rows.begin(), rows.end(),
                   [](const SupportRow& a, const SupportRow& b) { return a.part < b.part; });

  const int fullRank = IsPlaneFrame(project) ? 3 : 6;
  SupportRow* first = rows.data();
  SupportRow* const end = first + rows.size();
  for (int part = 0; part < project.numNodes; ++part) {
    if (extents[part].nodes == 0) continue;  // not a representative
    SupportRow* last = first;
    while (last != end && last->part == part) ++last;
    if (RankOf(first, last) < fullRank) return false;
    first = last;
  }
  return true;
}

}  // namespace kestol
