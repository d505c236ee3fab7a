#include "kestol/findings/ElementGroups.h"

#include <algorithm>
#include <unordered_map>

#include "kestol/findings/Geometry.h"

namespace kestol {

std::vector<Group> GroupsOf(const Group& elements) {
  DisjointSets sets(elements.size());
  std::unordered_map<const Node*, std::size_t> first;
  for (std::size_t e = 0; e < elements.size(); ++e)
    for (int i = 0; i < elements[e]->nnode; ++i) {
      const auto [found, isNew] = first.emplace(elements[e]->nodes[i], e);
      if (!isNew) sets.Join(e, found->second);
    }
  std::vector<Group> groups;
  std::unordered_map<std::size_t, std::size_t> places;
  for (std::size_t e = 0; e < elements.size(); ++e) {
    const auto [place, isNew] = places.emplace(sets.Find(e), groups.size());
    if (isNew) groups.emplace_back();
    groups[place->second].push_back(elements[e]);
  }
  return groups;
}

std::vector<int> NumbersOf(const Group& elements) {
  std::vector<int> numbers;
  for (const Elem* elem : elements) numbers.push_back(elem->number);
  std::sort(numbers.begin(), numbers.end());
  return numbers;
}

}  // namespace kestol
