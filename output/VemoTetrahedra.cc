#include "analysis/PointLayout.h"
#include "analysis/Results.h"
#include "input/Project.h"
#include "output/OutputText.h"
#include "output/VemoBlocks.h"
#include "results/NodeResults.h"
#include "results/StressTensor.h"

namespace kestol {

namespace {

const double* StressesOf(const Results& results, const Node& node) {
  return results.nodalStresses.begin() + 6 * (node.number - 1);
}

void WriteStresses(const Project& project, const Results& results, OutputText& file) {
  // Deliberate: the values stand in the order of the array, xy, xz, yz, whatever the names say.
  file << "Strengths      4 1.0 Estatic 3 1 1\nSx\nSy\nSz\nTxy\nTyz\nTxz\n";
  ForEachNode(project, [&](int number, const Node& node) {
    const double* const stresses = StressesOf(results, node);
    file << number << ' ';
    for (int i = 0; i < 6; ++i) file << ' ' << stresses[i];
    file << '\n';
  });
}

void WriteVonMisses(const Project& project, const Results& results, OutputText& file) {
  file << "Von Misses     4 1.0 Estatic 1 1 1\nVon_Misses\n";
  ForEachNode(project, [&](int number, const Node& node) {
    file << number << "  " << VonMises(FromSolverOrder(StressesOf(results, node))) << '\n';
  });
}

}  // namespace

void WriteTetrahedraResults(const Project& project, const Results& results, int m,
                            OutputText& file) {
  if (!project.DoSmoothing) {
    const int points = PointLayoutOf(project, *project.meshes[m]).points;
    file << "gausspoints     0  " << points << "  1  0  0\n";
  }
  WriteVemoDisplacements(project, results, file);
  if (!project.DoSmoothing) return;
  WriteStresses(project, results, file);
  WriteVonMisses(project, results, file);
}

}  // namespace kestol
