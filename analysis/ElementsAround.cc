#include "analysis/ElementsAround.h"

#include "input/Project.h"
#include "main/ErrorChannel.h"
#include "model/Mesh.h"

namespace kestol {

ElementsAround::ElementsAround(const Project& project, const Mesh& mesh)
    : start_(project.numNodes + 1, 0) {
  // First pass: how many around each node; start_[i] counts the node with index i.
  for (auto [number, elem] : mesh.elems) {
    elements_.push_back(elem);
    for (int k = 0; k < elem->nnode; ++k) {
      const Node* node = elem->nodes[k];
      if (node != nullptr && ++start_[node->number] > kMaxAround)
        Fatal("error: Node ", mesh.ExternalNumber(node),
              " has too many elements around (more than ", kMaxAround, ")\n");
    }
  }
  for (int i = 1; i <= project.numNodes; ++i) start_[i] += start_[i - 1];
  positions_.resize(start_.back());
  std::vector<int> next(start_.begin(), start_.end() - 1);
  for (int position = 0; position < static_cast<int>(elements_.size()); ++position)
    for (int k = 0; k < elements_[position]->nnode; ++k)
      if (const Node* node = elements_[position]->nodes[k])
        positions_[next[node->number - 1]++] = position;
}

}  // namespace kestol
