#include "output/VemoFiles.h"

#include <algorithm>
#include <cstdint>

#include "input/Project.h"
#include "main/ErrorChannel.h"
#include "output/ListedNodes.h"
#include "output/OutputText.h"
#include "output/VemoBlocks.h"

namespace kestol {

namespace {

void WriteNodes(const Project& project, OutputText& file) {
  file << "node x y z\n";
  ForEachListedNode(project, [&file](int number, const Node& node) {
    file << number << ' ';
    file.Vector(node.x).Vector(node.y);
    if (node.dim == 3) file.Vector(node.z);
    file << '\n';
  });
}

// Three nodes whatever the type: a beam repeats its second one.
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

// The last mesh of each family; null without one.
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

void DeclareBeamStations(const Project& project, OutputText& results) {
  results << "GaussPoints \"Beams\" ElemType Linear\n Number of Gauss Points: "
          << std::int64_t{project.NumOfDivisions} + 1
          << "\nNatural Coordinates: Internal\nNodes included\nEnd gausspoints\n";
}

void DeclareTrianglePoints(const Mesh& mesh, OutputText& results) {
  results << "GaussPoints \"Triangles\" ElemType Triangle\n Number of Gauss Points: "
          << (mesh.nnode == 3 ? 1 : 3) << "\nNatural Coordinates: Internal\nEnd gausspoints\n";
}

void WriteBeamsAndShells(const Project& project, const LastMeshes& last, OutputText& results) {
  if (last.linear != nullptr) DeclareBeamStations(project, results);
  if (last.triangle != nullptr) DeclareTrianglePoints(*last.triangle, results);
  for (int m = 0; m < static_cast<int>(project.meshes.size()); ++m) {
    if (project.meshes[m]->elemType == Linear) {
      WriteBeamResults(project, m, results);
    } else {
      WriteTriangleResults(project, m, results);
    }
  }
}

}  // namespace

void WriteVemoFiles(const Project& project, OutputText& results, const std::string* meshFileName) {
  if (meshFileName != nullptr) WriteMeshFile(project, *meshFileName);
  const LastMeshes last = ClassifyMeshes(project);
  if (last.tetrahedra == nullptr) {
    WriteBeamsAndShells(project, last, results);
  } else {
    if (project.meshes.size() > 1)
      Fatal("tetrahedra elements cannot be mixed with other elements\n");
    WriteTetrahedraResults(project, 0, results);
  }
  WriteVemoReactions(project, results);
}

void WriteVemoDisplacements(const Project& project, OutputText& results) {
  results << "Displacements   4 1.0 Estatic 2 1 1\nX\nY\nZ\n";
  ForEachListedNode(project, [&](int number, const Node& node) {
    const int equation = FirstEquation(node.number, project.dofsPerNode);
    results << number << ' ';  // Deliberate: two blanks before the first value.
    for (int d = 0; d < 3; ++d) results << ' ' << project.global(equation + d);
    results << '\n';
  });
}

}  // namespace kestol
