// Project::WriteResults: the text report.

#include "analysis/Results.h"
#include "input/Project.h"
#include "main/ErrorChannel.h"
#include "output/OutputText.h"
#include "results/BeamResults.h"
#include "results/NodeResults.h"

namespace kestol {

namespace {

void WriteHeading(const Project& project, const char* plane, const char* space,
                  OutputText& output) {
  if (project.problemType == Plane) {
    output << plane;
  } else if (project.problemType == Space) {
    output << space;
  } else {
    output.HandOverLines();
    Fatal("error: Project::WriteResults. problemtype unknown\n");
  }
}

/// The number, then a blank before each value.
void WriteNodeLine(int number, const double* values, int count, OutputText& output) {
  output << number;
  for (int d = 0; d < count; ++d) output << ' ' << values[d];
  output << '\n';
}

void WriteDisplacements(const Project& project, const Results& results, OutputText& output) {
  WriteHeading(project, "\n\nNODAL DISPLACEMENTS (x y theta)\n",
               "\n\nNODAL DISPLACEMENTS (x y z thetax thetay thetaz)\n", output);
  const int dofs = project.dofsPerNode;
  const double* const displacements = results.displacements.begin();
  ForEachNode(project, [&](int number, const Node& node) {
    WriteNodeLine(number, displacements + FirstEquation(node.number, dofs) - 1, dofs, output);
  });
}

void WriteReactions(const Project& project, const Results& results, OutputText& output) {
  WriteHeading(project, "\n\nREACTIONS (Px Py M)\n", "\n\nREACTIONS (Px Py Pz Mx My Mz)\n", output);
  ForEachNode(project, [&](int number, const Node& node) {
    if (const Reaction* const reaction = FindReaction(results, node.number))
      WriteNodeLine(number, reaction->values.data(), project.dofsPerNode, output);
  });
}

/// Forces on one end of a beam. Deliberate: a blank stands behind each value, the last one too,
/// while the lines of nodes have it before each value.
void WriteEnd(const std::array<double, 6>& forces, int dofs, OutputText& output) {
  for (int d = 0; d < dofs; ++d) output << forces[d] << ' ';
  output << '\n';
}

void WriteStrengths(const Project& project, const Results& results, int m, OutputText& output) {
  output << (project.problemType == Plane
                 ? "\n\nELEMENT STRENGTH (Px,local  Py,local  Mlocal)\n"
                 : "\n\nELEMENT STRENGTH (Px,local  Py,local  Pz,local  Mx,local  My,local  "
                   "Mz,local)\n");
  const Mesh& mesh = *project.meshes[m];
  const int dofs = project.dofsPerNode;
  const double* stored = results.meshes[m].local.begin();
  BeamElement beam(project);
  for (const auto [number, elem] : mesh.elems) {
    output << "Element " << number
           << " local strength. nodes: " << mesh.ExternalNumber(elem->nodes[0]) << ' '
           << mesh.ExternalNumber(elem->nodes[1]) << '\n';
    beam.loads.clear();
    if (beam.HasLoads(*elem)) {
      beam.SetAxes(*elem);
      beam.SetLoads();
    }
    const BeamEndForces ends = EndForcesOf(beam, stored);
    WriteEnd(ends.f1, dofs, output);
    WriteEnd(ends.f2, dofs, output);
    stored += 2 * dofs;
  }
}

/// Shells and solids have no place in this report.
void WriteStrengthsOfMeshes(const Project& project, const Results& results, OutputText& output) {
  for (int m = 0; m < static_cast<int>(project.meshes.size()); ++m) {
    switch (project.meshes[m]->elemType) {
      case Linear:
        WriteStrengths(project, results, m, output);
        break;
      case Triangle:
      case Tetrahedra:
        break;
      default:
        output.HandOverLines();
        Fatal("error: elemtype unknown\n");
    }
  }
}

}  // namespace

void Project::WriteResults(const Results& results, OutputText& output) const {
  WriteDisplacements(*this, results, output);
  WriteStrengthsOfMeshes(*this, results, output);
  WriteReactions(*this, results, output);
}

}  // namespace kestol
