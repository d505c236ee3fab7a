#include "kestol/mechanisms/Bodies.h"

#include <algorithm>
#include <array>
#include <map>
#include <set>

#include "kestol/findings/Geometry.h"
#include "kestol/mechanisms/RigidModes.h"

namespace kestol {

bool MoveTogether(const Project& project, const Parts& parts, const ReaVecT& z, int a, int b,
                  double noise) {
  constexpr double kManyNoises = 10.0;
  const Vector3 ra = RotationOf(project, z, a), rb = RotationOf(project, z, b);
  const Vector3 d = Minus(PositionOf(parts.NodeAt(b)), PositionOf(parts.NodeAt(a)));
  const Vector3 du = Minus(TranslationOf(project, z, b), TranslationOf(project, z, a));
  return Norm(Minus(ra, rb)) <= kManyNoises * noise &&
         Norm(Minus(du, Cross(ra, d))) <= kManyNoises * noise * (1.0 + Norm(d));
}

namespace {

std::vector<int> IndicesOf(const Elem& elem) {
  std::vector<int> indices;
  indices.reserve(static_cast<std::size_t>(elem.nnode));
  for (int i = 0; i < elem.nnode; ++i) indices.push_back(elem.nodes[i]->number);
  return indices;
}

/// Whether the nodes of a shell move as a rigid triangle, which says nothing of its drilling.
bool IsRigid(const Project& project, const Parts& parts, const ReaVecT& z, const Elem& elem) {
  constexpr double kMisfit = 1e-5;
  double misfit = 0.0;
  FitRigidMotion(project, parts, IndicesOf(elem), z, misfit);
  return misfit < kMisfit;
}

/// Sets of nodes of beams and shells that are joined by rigid elements.
class NodeSets {
public:
  NodeSets(const Parts& parts, const std::vector<int>& moving)
      : sets_(static_cast<std::size_t>(parts.NodeCount()) + 1),
        moves_(static_cast<std::size_t>(parts.NodeCount()) + 1) {
    for (const int index : moving) moves_[static_cast<std::size_t>(index)] = true;
  }

  bool Moves(int index) const { return moves_[static_cast<std::size_t>(index)]; }

  /// Joins those of the nodes that move; the others belong to them.
  void Join(const std::vector<int>& nodes) {
    int first = 0;
    for (const int index : nodes) {
      if (!Moves(index)) continue;
      if (first == 0) first = index;
      sets_.Join(static_cast<std::size_t>(index), static_cast<std::size_t>(first));
    }
    for (const int index : nodes)
      if (first != 0 && !Moves(index)) still_.emplace_back(first, index);
  }

  std::vector<Body> Bodies(const std::vector<int>& moving) {
    std::map<std::size_t, Body> bodies;
    for (const int index : moving)
      bodies[sets_.Find(static_cast<std::size_t>(index))].moving.push_back(index);
    std::map<std::size_t, std::set<int>> still;
    for (const auto& [member, index] : still_)
      still[sets_.Find(static_cast<std::size_t>(member))].insert(index);
    std::vector<Body> list;
    for (auto& [root, body] : bodies) {
      const std::set<int>& nodes = still[root];
      body.still.assign(nodes.begin(), nodes.end());
      list.push_back(std::move(body));
    }
    return list;
  }

private:
  DisjointSets sets_;
  std::vector<bool> moves_;
  std::vector<std::pair<int, int>> still_;  // a node that moves, and one beside it that does not
};

/// The bodies of a solid: tetrahedra that are joined by faces.
std::vector<Body> SolidBodies(const Project& project, const NodeSets& nodes) {
  constexpr int kFaces[4][3] = {
      {0, 1, 2},
      {1, 2, 3},
      {2, 3, 0},
      {3, 0, 1}
  };
  std::vector<const Elem*> elements;
  for (const auto& mesh : project.meshes)
    for (const auto [number, elem] : mesh->elems) {
      const std::vector<int> indices = IndicesOf(*elem);
      if (std::any_of(indices.begin(), indices.end(), [&](int i) { return nodes.Moves(i); }))
        elements.push_back(elem);
    }
  DisjointSets sets(elements.size());
  std::map<std::array<const Node*, 3>, std::size_t> faces;
  for (std::size_t e = 0; e < elements.size(); ++e)
    for (const auto& face : kFaces) {
      std::array<const Node*, 3> corners{elements[e]->nodes[face[0]], elements[e]->nodes[face[1]],
                                         elements[e]->nodes[face[2]]};
      std::sort(corners.begin(), corners.end());
      const auto [other, isNew] = faces.emplace(corners, e);
      if (!isNew) sets.Join(e, other->second);
    }
  std::map<std::size_t, std::set<int>> members;
  for (std::size_t e = 0; e < elements.size(); ++e)
    for (const int index : IndicesOf(*elements[e])) members[sets.Find(e)].insert(index);
  std::vector<Body> bodies;
  for (const auto& [root, indices] : members) {
    Body body;
    for (const int index : indices)
      (nodes.Moves(index) ? body.moving : body.still).push_back(index);
    bodies.push_back(std::move(body));
  }
  return bodies;
}

}  // namespace

std::vector<Body> BodiesOf(const Project& project, const Parts& parts, const ReaVecT& z,
                           const std::vector<int>& moving, double noise) {
  NodeSets sets(parts, moving);
  const bool hasRotations = IsPlaneFrame(project) || project.dofsPerNode == 6;
  if (!hasRotations) return SolidBodies(project, sets);
  for (const auto& mesh : project.meshes)
    for (const auto [number, elem] : mesh->elems) {
      const std::vector<int> nodes = IndicesOf(*elem);
      if (mesh->elemType == Triangle) {
        if (IsRigid(project, parts, z, *elem)) sets.Join(nodes);
      } else if (sets.Moves(nodes[0]) && sets.Moves(nodes[1]) &&
                 MoveTogether(project, parts, z, nodes[0], nodes[1], noise)) {
        sets.Join(nodes);
      }
    }
  return sets.Bodies(moving);
}

}  // namespace kestol
