#include <array>
#include <cmath>
#include <vector>

#include "algebra/Matriu.h"
#include "analysis/PointLayout.h"
#include "analysis/Results.h"
#include "analysis/Smoothing.h"
#include "input/Project.h"
#include "model/EulerAngles.h"
#include "model/Mesh.h"

namespace kestol {

bool OrientationsMatch(const ReaVec3& a, const ReaVec3& b, double tolerance) {
  constexpr double kTwoPi = 6.283185307179586;
  for (int k = 1; k <= 3; ++k) {
    if (std::abs(a(k) - b(k)) <= tolerance) continue;
    if (k == 2) return false;  // between -pi/2 and pi/2, nothing to wrap
    const auto nearZero = [&](double angle) {
      return angle > kTwoPi - tolerance ? angle - kTwoPi : angle;
    };
    if (!(std::abs(nearZero(a(k)) - nearZero(b(k))) <= tolerance)) return false;
  }
  return true;
}

namespace {

/// Values that are averaged together: membrane forces, or moments and shears.
struct ValueGroup {
  int first;  ///< place (from 0) of the first of them among the 8 of a point
  int count;
  int directions;  ///< place (from 0) of their main axes among the 6 angles of a point
};
constexpr ValueGroup kMembrane = {0, 3, 0}, kBending = {3, 5, 3};

using Values = std::array<double, 5>;
using Corners = std::array<Values, 3>;

/// Sums of the elements around a node that share one orientation.
struct OrientationGroup {
  int count = 0;
  Values sum{};
  ReaVec3 orientation;  ///< of the first contribution
};

/// The at most three orientations of a node.
struct NodeGroups {
  OrientationGroup* Find(const ReaVec3& orientation, double tolerance) {
    for (int g = 0; g < used; ++g)
      if (OrientationsMatch(groups[g].orientation, orientation, tolerance)) return &groups[g];
    return nullptr;
  }
  OrientationGroup* FindOrOpen(const ReaVec3& orientation, double tolerance) {
    OrientationGroup* found = Find(orientation, tolerance);
    if (found != nullptr || used == 3) return found;
    groups[used].orientation = orientation;
    return &groups[used++];
  }

  std::array<OrientationGroup, 3> groups;
  int used = 0;
};

/// One array of shell values with the orientation of each element.
class ShellSmoother {
public:
  ShellSmoother(const Project& project, const Mesh& mesh, ReaVecT& values)
      : project_(project),
        mesh_(mesh),
        values_(values),
        points_(PointLayoutOf(project, mesh).points) {}

  void Smooth(const ValueGroup& group, const std::vector<ReaVec3>& orientations) {
    nodes_.assign(project_.numNodes, NodeGroups());
    ForEachCorner<Read>(group, orientations,
                        [&](NodeGroups& node, const ReaVec3& a, const Values& corner) {
                          OrientationGroup* around = node.FindOrOpen(a, project_.smoothingAngle);
                          if (around == nullptr) return;  // a fourth orientation is dropped
                          ++around->count;
                          for (int k = 0; k < group.count; ++k) around->sum[k] += corner[k];
                        });
    for (NodeGroups& node : nodes_)
      for (int g = 0; g < node.used; ++g)
        for (double& sum : node.groups[g].sum) sum /= node.groups[g].count;
    ForEachCorner<Replace>(
        group, orientations, [&](NodeGroups& node, const ReaVec3& a, Values& corner) {
          // A corner without a matching group keeps the element's own value.
          if (const OrientationGroup* around = node.Find(a, project_.smoothingAngle))
            corner = around->sum;
        });
  }

private:
  enum Pass { Read, Replace };

  /// Visits every corner of every element with its values; with Replace, what the visit leaves
  /// there goes back to the points.
  template <Pass pass, class Visit>
  void ForEachCorner(const ValueGroup& group, const std::vector<ReaVec3>& orientations,
                     Visit visit) {
    double* element = values_.data.get();
    std::size_t position = 0;
    for (auto [number, elem] : mesh_.elems) {
      double* const values = element + group.first;
      Corners corners = ToCorners(values, group.count);
      for (int c = 0; c < 3; ++c)
        visit(nodes_[elem->nodes[c]->number - 1], orientations[position], corners[c]);
      if (pass == Replace) ToPoints(corners, group.count, values);
      element += 8 * points_;
      ++position;
    }
  }

  /// Corner values whose edge means are the values at the mid-points of edges 1-2, 2-3 and 3-1.
  Corners ToCorners(const double* v, int count) const {
    Corners corners{};
    for (int k = 0; k < count; ++k) {
      if (points_ == 1) {
        for (Values& corner : corners) corner[k] = v[k];
        continue;
      }
      const double p12 = v[k], p23 = v[k + 8], p31 = v[k + 16];
      corners[0][k] = p12 - p23 + p31;
      corners[1][k] = p12 + p23 - p31;
      corners[2][k] = -p12 + p23 + p31;
    }
    return corners;
  }

  void ToPoints(const Corners& c, int count, double* v) const {
    constexpr double kThird = 1.0 / 3.0;
    for (int k = 0; k < count; ++k) {
      if (points_ == 1) {
        v[k] = (c[0][k] + c[1][k] + c[2][k]) * kThird;
        continue;
      }
      for (int p = 0; p < 3; ++p) v[k + 8 * p] = 0.5 * c[p][k] + 0.5 * c[(p + 1) % 3][k];
    }
  }

  const Project& project_;
  const Mesh& mesh_;
  ReaVecT& values_;
  int points_;
  std::vector<NodeGroups> nodes_;  ///< by node index - 1
};

/// The local axes of every element.
std::vector<ReaVec3> ElementOrientations(const Project& project, const Mesh& mesh) {
  std::vector<ReaVec3> orientations;
  Matriu T(3, 3), T6(6, 6);
  for (auto [number, elem] : mesh.elems) {
    elem->ShellAxes(T, T6, elem->GetMaterial(project.materials));
    orientations.push_back(FrameToAngles(T));
  }
  return orientations;
}

/// The main axes of every element: of its point, or the mean of its three.
std::vector<ReaVec3> MainOrientations(const ReaVecT& directions, int points, int firstAngle) {
  std::vector<ReaVec3> orientations;
  const auto at = [&](int point) {
    const double* angles = directions.data.get() + 6 * point + firstAngle;
    return ReaVec3(angles[0], angles[1], angles[2]);
  };
  for (int point = 0; 6 * point < directions.n; point += points)
    orientations.push_back(points == 1 ? at(point)
                                       : MeanAngles(at(point), at(point + 1), at(point + 2)));
  return orientations;
}

}  // namespace

void SmoothShell(const Project& project, const Mesh& mesh, PointValues& values) {
  if (project.stressOption != MainStresses) {
    values.smoothed = values.local;
    const std::vector<ReaVec3> orientations = ElementOrientations(project, mesh);
    ShellSmoother smoother(project, mesh, values.smoothed);
    for (const ValueGroup& group : {kMembrane, kBending}) smoother.Smooth(group, orientations);
  }
  if (project.stressOption != LocalStresses) {
    const int points = PointLayoutOf(project, mesh).points;
    ShellSmoother smoother(project, mesh, values.main);
    for (const ValueGroup& group : {kMembrane, kBending})
      smoother.Smooth(group, MainOrientations(values.angles, points, group.directions));
  }
}

}  // namespace kestol
