#pragma once

#include <vector>

#include "algebra/Vector3.h"
#include "input/Project.h"

namespace kestol {

class Inspection;

/// The diagonal of the box around all nodes; 0 without nodes.
double SizeOfModel(const Project& project);

/// Lengths, in the unit of the results, by which places are compared.
struct PlaceScale {
  double near;  ///< points that are nearer are at one place
  double cell;  ///< of a grid in which they are sought
};

/// A millionth of the model's size is near. A coordinate that was typed wrongly must not bring all
/// other nodes together: where a few lie far away, it is a thousandth of the size of the middle
/// half.
PlaceScale ScaleOfPlaces(const Project& project);

/// Which nodes have an element, by node number.
std::vector<bool> NodesWithElements(const Project& project);

/// Whether the node is one of the element's.
bool Has(const Elem& elem, const Node* node);

/// Whether all nodes of the element exist.
bool IsWhole(const Elem& elem);

/// Whether the element and its nodes were read as written.
bool IsSound(const Inspection& deck, const Elem& elem);

/// Corners of a beam, triangle or tetrahedron; 0 for other families.
int CornerCount(int elemType);

/// Whether the element has no length, area or volume.
bool HasNoSize(const Project& project, const Elem& elem);

/// The sides of a triangle of corners, from the first of them on.
struct Sides {
  Vector3 a, b;
  double Area() const { return Norm(Cross(a, b)) / 2.0; }
};
Sides SidesAt(const Elem& elem, int i, int j, int k);

/// Volume of a tetrahedron, negative where it is turned inside out.
double VolumeOf(const Elem& tetra);
double LongestEdge(const Elem& elem);

/// Calls look(mesh, elem) for every sound element.
template <class Look>
void ForEachSoundElement(const Inspection& deck, const Project& project, Look look) {
  for (const auto& mesh : project.meshes)
    for (const auto [number, elem] : mesh->elems)
      if (IsSound(deck, *elem)) look(*mesh, *elem);
}

/// Sets that are joined two by two.
class DisjointSets {
public:
  explicit DisjointSets(std::size_t count);
  std::size_t Find(std::size_t i);
  void Join(std::size_t a, std::size_t b) { parent_[Find(a)] = Find(b); }

private:
  std::vector<std::size_t> parent_;
};

}  // namespace kestol
