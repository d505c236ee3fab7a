#include "output/PrintProject.h"

#include <algorithm>

#include "input/Project.h"

namespace kestol {

namespace {

void PrintConstraints(const Project& project, std::ostream& stream) {
  const Mesh& first = *project.meshes.front();
  for (auto [key, node] : *first.nodes) {
    if (!node->constraint) continue;
    const Constraint& constraint = *node->constraint;
    stream << first.ExternalNumber(node) << " CT ";
    for (int d = 0; d < constraint.dofs; ++d)
      stream << " deg=" << d + 1 << " " << constraint.codes[d] << " val=" << constraint.values[d];
    stream << "\n";
  }
}

void PrintNodalLoads(const Project& project, std::ostream& stream) {
  const Mesh& first = *project.meshes.front();
  for (auto [key, node] : *first.nodes) {
    if (!node->load) continue;
    stream << first.ExternalNumber(node) << " LD ";
    for (const double value : *node->load) stream << " " << value;
    stream << "\n";
  }
}

void PrintHinges(const Project& project, std::ostream& stream) {
  const Mesh& first = *project.meshes.front();
  stream << "nodes with rotule:\n";
  for (auto [key, node] : *first.nodes)
    if (node->isHinge) stream << first.ExternalNumber(node) << "\n";

  stream << "elements rotule:\n";
  int elemNumber = 0;
  for (const int code : project.endCodes) {
    ++elemNumber;
    if (code != BothFixed) stream << "elm " << elemNumber << " code=" << code << "\n";
  }
}

void PrintCoplanarity(const Project& project, std::ostream& stream) {
  stream << "Coplanarity vector:\n";
  int index = 0;
  for (const int flag : project.coplanar) stream << ++index << " " << flag << "\n";
}

}  // namespace

void PrintProject(const Project& project, std::ostream& stream) {
  stream << "\nProblemType=" << project.problemType << "\nFreeDegrees=" << project.dofsPerNode
         << "\nNumNodes=" << project.numNodes << "\n";
  for (const auto& mesh : project.meshes) mesh->WriteMesh(stream, true, false);
  for (auto [number, material] : project.materials) material->Print(stream);
  if (!project.meshes.empty()) {
    PrintConstraints(project, stream);
    PrintNodalLoads(project, stream);
    if (project.hasHinges) PrintHinges(project, stream);
  }
  if (!project.coplanar.empty()) PrintCoplanarity(project, stream);
}

}  // namespace kestol
