#include "analysis/ShellNormals.h"

#include <algorithm>
#include <cmath>

#include "analysis/ElementsAround.h"
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

/// The flags of a model, by node index - 1.
struct Flags {
  std::vector<int> flag;  ///< -1 while no mesh has had an element at the node
  /// For each mesh so far the normal of its first element at the node; null where it has none.
  std::vector<std::vector<Vector3>> firstNormals;
};

/// Whether a mesh with this normal at a node lies there in one plane with each mesh before it.
/// Meshes may be turned against each other; only the planes have to agree.
bool AgreesWithMeshesBefore(const Flags& flags, int position, const Vector3& normal, double c) {
  return std::ranges::all_of(flags.firstNormals, [&](const std::vector<Vector3>& before) {
    const Vector3& other = before[position];
    return other == Vector3{} || std::abs(Dot(normal, other)) >= c;
  });
}

void CheckMesh(const Project& project, const Mesh& mesh, double c, Flags& flags) {
  const std::vector<Vector3> normals = UnitNormals(mesh);
  const ElementsAround around(project, mesh);
  std::vector<Vector3> firstNormals(flags.flag.size());
  for (auto [number, node] : *mesh.nodes) {
    const int index = node->number;
    if (around.Of(index).empty()) continue;
    const bool coplanar = AreCoplanar(around, normals, index, c);
    const Vector3& normal = normals[around.Of(index)[0]];
    int& flag = flags.flag[index - 1];
    flag = flag != 0 && coplanar && AgreesWithMeshesBefore(flags, index - 1, normal, c);
    firstNormals[index - 1] = normal;
  }
  flags.firstNormals.push_back(std::move(firstNormals));
}

}  // namespace

void CheckNormals(Project& project) {
  project.coplanar.clear();
  const double c = std::cos(project.CoplanarityAngle);
  Flags flags;
  for (const auto& mesh : project.meshes) {
    if (mesh->elemType != Triangle) continue;
    if (flags.flag.empty()) flags.flag.assign(project.numNodes, -1);
    CheckMesh(project, *mesh, c, flags);
  }
  for (int& flag : flags.flag)
    if (flag == -1) flag = 0;
  project.coplanar = std::move(flags.flag);
}

}  // namespace kestol
