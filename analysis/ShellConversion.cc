#include "analysis/ShellConversion.h"

#include <algorithm>
#include <cstdint>
#include <unordered_map>

#include "analysis/ElementsAround.h"
#include "input/Project.h"
#include "main/ErrorChannel.h"
#include "model/Mesh.h"

namespace kestol {

namespace {

/// An edge by the internal indices of its corners, in either order.
std::uint64_t EdgeKey(const Node& a, const Node& b) {
  const auto [low, high] = std::minmax(a.number, b.number);
  return static_cast<std::uint64_t>(low) << 32 | static_cast<std::uint32_t>(high);
}

/// Fills the mid-side places whose edges already have a node in another mesh of 6-noded triangles.
void ShareMidSidesOfOtherMeshes(const Project& project, Mesh& mesh) {
  std::unordered_map<std::uint64_t, Node*> midSides;
  for (const auto& other : project.meshes) {
    if (other.get() == &mesh || other->elemType != Triangle || other->nnode != 6) continue;
    for (auto [number, elem] : other->elems)
      for (int e = 0; e < 3; ++e)
        midSides.emplace(EdgeKey(*elem->nodes[e], *elem->nodes[(e + 1) % 3]), elem->nodes[e + 3]);
  }
  if (midSides.empty()) return;
  for (auto [number, elem] : mesh.elems)
    for (int e = 0; e < 3; ++e) {
      const auto found = midSides.find(EdgeKey(*elem->nodes[e], *elem->nodes[(e + 1) % 3]));
      if (found != midSides.end()) elem->nodes[e + 3] = found->second;
    }
}

Node* CreateMidSide(Project& project, Mesh& mesh, const Node& a, const Node& b) {
  auto node = std::make_unique<Node>();
  node->x = (a.x + b.x) / 2.0;
  node->y = (a.y + b.y) / 2.0;
  node->z = (a.z + b.z) / 2.0;
  node->dim = std::max(a.dim, b.dim);
  node->number = mesh.nodes->Highest() + 1;
  node->constraint = MergeTwoConstraints(a.constraint.get(), b.constraint.get());
  ++project.numNodes;
  const int number = node->number;
  return mesh.nodes->Insert(number, std::move(node));
}

/// The mid-side place (from 0) of the edge between two corners of an element; -1 when it does not
/// hold both.
int MidSidePlace(const Elem& elem, const Node* a, const Node* b) {
  const Node* const* corners = elem.nodes.get();
  const auto p = std::find(corners, corners + 3, a) - corners;
  const auto q = std::find(corners, corners + 3, b) - corners;
  if (p == 3 || q == 3) return -1;
  const auto edge = p + q == 2 && p != q ? 2 : std::min(p, q);  // {0, 2} closes the triangle
  return static_cast<int>(edge) + 3;
}

}  // namespace

void ConvertTo6Nodes(Project& project, Mesh& mesh) {
  if (mesh.elemType != Triangle || mesh.nnode != 3)
    Fatal("error: trying to convert to 6 nodes a mesh that is not 3-noded triangles\n");
  const ElementsAround around(project, mesh);
  mesh.SetNnode(6);
  ShareMidSidesOfOtherMeshes(project, mesh);
  for (Elem* elem : around.Elements())
    for (int e = 0; e < 3; ++e) {
      if (elem->nodes[e + 3] != nullptr) continue;
      const Node *a = elem->nodes[e], *b = elem->nodes[(e + 1) % 3];
      Node* midSide = CreateMidSide(project, mesh, *a, *b);
      for (const int position : around.Of(a->number)) {
        Elem& neighbour = *around.Elements()[position];
        const int place = MidSidePlace(neighbour, a, b);
        if (place != -1) neighbour.nodes[place] = midSide;
      }
    }
}

bool ConvertMeshesTo6Nodes(Project& project) {
  bool converted = false;
  for (const auto& mesh : project.meshes)
    if (mesh->elemType == Triangle && mesh->nnode == 3) {
      ConvertTo6Nodes(project, *mesh);
      converted = true;
    }
  return converted;
}

}  // namespace kestol
