#include <cmath>

#include "input/Project.h"
#include "output/ListedNodes.h"
#include "output/OutputText.h"
#include "output/VemoBlocks.h"

namespace kestol {

namespace {

const double* StressesOf(const Project& project, const Node& node) {
  return project.nodalStresses.begin() + 6 * (node.number - 1);
}

// Square root of the second invariant of the deviator, times the root of 3.
double VonMisses(const double* s) {
  const double xy = s[0] - s[1], yz = s[1] - s[2], zx = s[2] - s[0];
  const double shears = s[3] * s[3] + s[4] * s[4] + s[5] * s[5];
  return std::sqrt(0.5 * (xy * xy + yz * yz + zx * zx + 6.0 * shears));
}

void WriteStresses(const Project& project, OutputText& results) {
  // Deliberate: the values stand in the order of the array, xy, xz, yz, whatever the names say.
  results << "Strengths      4 1.0 Estatic 3 1 1\nSx\nSy\nSz\nTxy\nTyz\nTxz\n";
  ForEachListedNode(project, [&](int number, const Node& node) {
    const double* const stresses = StressesOf(project, node);
    results << number << ' ';
    for (int i = 0; i < 6; ++i) results << ' ' << stresses[i];
    results << '\n';
  });
}

void WriteVonMisses(const Project& project, OutputText& results) {
  results << "Von Misses     4 1.0 Estatic 1 1 1\nVon_Misses\n";
  ForEachListedNode(project, [&](int number, const Node& node) {
    results << number << "  " << VonMisses(StressesOf(project, node)) << '\n';
  });
}

}  // namespace

void WriteTetrahedraResults(const Project& project, int m, OutputText& results) {
  if (project.DoSmoothing == 0) {
    const int points = project.meshes[m]->nnode == 4 ? 1 : 4;
    results << "gausspoints     0  " << points << "  1  0  0\n";
  }
  WriteVemoDisplacements(project, results);
  if (project.DoSmoothing == 0) return;
  WriteStresses(project, results);
  WriteVonMisses(project, results);
}

}  // namespace kestol
