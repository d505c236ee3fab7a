#include <cmath>

#include "analysis/ElementsAround.h"
#include "analysis/ShellMesh.h"
#include "input/Project.h"
#include "main/ErrorChannel.h"
#include "model/Mesh.h"

namespace kestol {

namespace {

/// Unit normals of all elements, in element order.
std::vector<Vector3> UnitNormals(const Mesh& mesh) {
  std::vector<Vector3> normals;
  for (auto [number, elem] : mesh.elems) normals.push_back(elem->UnitNormal());
  return normals;
}

/// Whether the elements around one node are coplanar: every normal within the angle (cosine c) of
/// the first. Ends the run for a normal on the other side.
bool AreCoplanar(const ElementsAround& around, const std::vector<Vector3>& normals, int nodeIndex,
                 double c) {
  const std::span<const int> positions = around.Of(nodeIndex);
  const int first = positions[0];
  for (const int other : positions.subspan(1)) {
    const double d = Dot(normals[other], normals[first]);
    if (d < -c)
      Fatal("error: Elements ", around.Elements()[first]->number, " and ",
            around.Elements()[other]->number, " have normals in opposite directions. ",
            "It is necessary to swap normals\n");
    if (d < c) return false;
  }
  return true;
}

/// The flags of a model: -1 while no mesh has had an element at the node.
struct Flags {
  std::vector<int> flag;
  std::vector<Vector3> firstNormal;  ///< of the first mesh with an element at the node
};

void CheckMesh(const Project& project, const Mesh& mesh, double c, Flags& flags) {
  const std::vector<Vector3> normals = UnitNormals(mesh);
  const ElementsAround around(project, mesh);
  for (auto [number, node] : *mesh.nodes) {
    const int index = node->number;
    if (around.Of(index).empty()) continue;
    const bool coplanar = AreCoplanar(around, normals, index, c);
    const Vector3& normal = normals[around.Of(index)[0]];
    int& flag = flags.flag[index - 1];
    if (flag == -1) {
      flag = coplanar;
      flags.firstNormal[index - 1] = normal;
    } else if (!coplanar || !(std::abs(Dot(normal, flags.firstNormal[index - 1])) >= c)) {
      // Meshes may be turned against each other; only the planes have to agree.
      flag = 0;
    }
  }
}

}  // namespace

void CheckNormals(Project& project) {
  project.coplanar.clear();
  const double c = std::cos(project.CoplanarityAngle);
  Flags flags;
  for (const auto& mesh : project.meshes) {
    if (mesh->elemType != Triangle) continue;
    if (flags.flag.empty()) {
      flags.flag.assign(project.numNodes, -1);
      flags.firstNormal.resize(project.numNodes);
    }
    CheckMesh(project, *mesh, c, flags);
  }
  for (int& flag : flags.flag)
    if (flag == -1) flag = 0;
  project.coplanar = std::move(flags.flag);
}

}  // namespace kestol
