#include "output/VemoFiles.h"

#include <algorithm>
#include <cstdint>

#include "analysis/PointLayout.h"
#include "analysis/Results.h"
#include "input/Project.h"
#include "main/ErrorChannel.h"
#include "output/OutputText.h"
#include "output/VemoBlocks.h"
#include "results/NodeResults.h"

namespace kestol {

namespace {

void WriteNodes(const Project& project, OutputText& file) {
  file << "node x y z\n";
  ForEachNode(project, [&file](int number, const Node& node) {
    file << number << ' ';
    file.Vector(node.x).Vector(node.y);
    if (node.dim == 3) file.Vector(node.z);
    file << '\n';
  });
}

/// Three nodes whatever the type: a beam repeats its second one.
void WriteElements(const Mesh& mesh, OutputText& file) {
  file << "element node1 node2 node3 material\n";
  for (const auto [number, elem] : mesh.elems) {
    file << number;
    for (int i = 0; i < 3; ++i)
      file << ' ' << mesh.ExternalNumber(elem->nodes[std::min(i, elem->nnode - 1)]);
    // Deliberate: a material of the element's own is not numbered and is written as 0.
    file << "  " << (elem->material != nullptr ? 0 : elem->materialNumber) << '\n';
  }
}

void WriteMeshFile(const Project& project, const std::string& name) {
  OutputText file(name);
  file << "\n\n\n\n\n";
  file << "NumElems NumNodes ElemType\n"
       << project.numElements[0] << ' ' << project.nodesAsRead << " 7\n";
  WriteNodes(project, file);
  // The first mesh only.
  if (!project.meshes.empty()) WriteElements(*project.meshes[0], file);
  file.Close();
}

/// The last mesh of each family; null without one.
struct LastMeshes {
  const Mesh* linear = nullptr;
  const Mesh* triangle = nullptr;
  const Mesh* tetrahedra = nullptr;
};

LastMeshes ClassifyMeshes(const Project& project) {
  LastMeshes last;
  for (const auto& mesh : project.meshes) {
    switch (mesh->elemType) {
      case Linear:
        last.linear = mesh.get();
        break;
      case Triangle:
        last.triangle = mesh.get();
        break;
      case Tetrahedra:
        last.tetrahedra = mesh.get();
        break;
      default:
        Fatal("error: elemtype unknown\n");
    }
  }
  return last;
}

void DeclareBeamStations(const Project& project, OutputText& file) {
  file << "GaussPoints \"Beams\" ElemType Linear\n Number of Gauss Points: "
       << std::int64_t{project.NumOfDivisions} + 1
       << "\nNatural Coordinates: Internal\nNodes included\nEnd gausspoints\n";
}

void DeclareTrianglePoints(int points, OutputText& file) {
  file << "GaussPoints \"Triangles\" ElemType Triangle\n Number of Gauss Points: " << points
       << "\nNatural Coordinates: Internal\nEnd gausspoints\n";
}

void WriteBeamsAndShells(const Project& project, const Results& results, const LastMeshes& last,
                         OutputText& file) {
  if (last.linear != nullptr) DeclareBeamStations(project, file);
  if (last.triangle != nullptr)
    DeclareTrianglePoints(PointLayoutOf(project, *last.triangle).points, file);
  for (int m = 0; m < static_cast<int>(project.meshes.size()); ++m)
    if (project.meshes[m]->elemType == Linear)
      WriteBeamResults(project, results, m, file);
    else
      WriteTriangleResults(project, results, m, file);
}

}  // namespace

void WriteVemoFiles(const Project& project, const Results& results, OutputText& file,
                    const std::string* meshFileName) {
  if (meshFileName != nullptr) WriteMeshFile(project, *meshFileName);
  const LastMeshes last = ClassifyMeshes(project);
  if (last.tetrahedra == nullptr) {
    WriteBeamsAndShells(project, results, last, file);
  } else {
    if (project.meshes.size() > 1)
      Fatal("tetrahedra elements cannot be mixed with other elements\n");
    WriteTetrahedraResults(project, results, 0, file);
  }
  WriteVemoReactions(project, results, file);
}

void WriteVemoDisplacements(const Project& project, const Results& results, OutputText& file) {
  file << "Displacements   4 1.0 Estatic 2 1 1\nX\nY\nZ\n";
  ForEachNode(project, [&](int number, const Node& node) {
    const int equation = FirstEquation(node.number, project.dofsPerNode);
    file << number << ' ';  // Deliberate: two blanks before the first value.
    for (int d = 0; d < 3; ++d) file << ' ' << results.displacements(equation + d);
    file << '\n';
  });
}

}  // namespace kestol
