#include "analysis/Results.h"
#include "input/Project.h"
#include "output/OutputText.h"
#include "output/VemoBlocks.h"
#include "results/NodeResults.h"

namespace kestol {

namespace {

/// One line per node with the reactions first..last (from 0, `last` excluded). The lines are
/// numbered by a running count, not by the node. Deliberate: nodes without a record write three
/// zeros whatever the number of components, and in the plane two forces stand under three names.
void WriteLines(const Project& project, const Results& results, int first, int last,
                OutputText& file) {
  int line = 0;
  ForEachNode(project, [&](int, const Node& node) {
    file << ++line;
    const Reaction* const reaction = FindReaction(results, node.number);
    if (reaction == nullptr) {
      file << " 0 0 0\n";
      return;
    }
    file << ' ';
    for (int d = first; d < last; ++d) file << reaction->values[d] << ' ';
    file << '\n';
  });
}

}  // namespace

void WriteVemoReactions(const Project& project, const Results& results, OutputText& file) {
  const int dofs = project.dofsPerNode;
  const bool plane = project.problemType == Plane;
  const int forces = plane ? 2 : 3;

  file << "Reactions       4 1.0 Estatic 2 1 1\nPx\nPy\nPz\n";
  WriteLines(project, results, 0, forces, file);

  if (plane)
    file << "M Reactions     4 1.0 Estatic 1 1 1\nM\n";
  else if (dofs == 6)
    file << "M Reactions     4 1.0 Estatic 2 1 1\nMx\nMy\nMz\n";
  else
    return;
  WriteLines(project, results, forces, dofs, file);
}

}  // namespace kestol
