#include "input/Project.h"
#include "output/ListedNodes.h"
#include "output/OutputText.h"
#include "output/VemoBlocks.h"

namespace kestol {

namespace {

// One line per node with the reactions first..last (from 0, `last` excluded). The lines are
// numbered by a running count, not by the node. Deliberate: nodes without a record write three
// zeros whatever the number of components, and in the plane two forces stand under three names.
void WriteLines(const Project& project, int first, int last, OutputText& results) {
  int line = 0;
  ForEachListedNode(project, [&](int, const Node& node) {
    results << ++line;
    if (node.constraint == nullptr) {
      results << " 0 0 0\n";
      return;
    }
    results << ' ';
    for (int d = first; d < last; ++d) results << node.constraint->reactions[d] << ' ';
    results << '\n';
  });
}

}  // namespace

void WriteVemoReactions(const Project& project, OutputText& results) {
  const int dofs = project.dofsPerNode;
  const bool plane = project.problemType == Plane;
  const int forces = plane ? 2 : 3;

  results << "Reactions       4 1.0 Estatic 2 1 1\nPx\nPy\nPz\n";
  WriteLines(project, 0, forces, results);

  if (plane) {
    results << "M Reactions     4 1.0 Estatic 1 1 1\nM\n";
  } else if (dofs == 6) {
    results << "M Reactions     4 1.0 Estatic 2 1 1\nMx\nMy\nMz\n";
  } else {
    return;
  }
  WriteLines(project, forces, dofs, results);
}

}  // namespace kestol
