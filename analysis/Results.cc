#include "analysis/Results.h"

#include <algorithm>

namespace kestol {

const Reaction* FindReaction(const Results& results, int nodeIndex) {
  const auto found = std::lower_bound(
      results.reactions.begin(), results.reactions.end(), nodeIndex,
      [](const Reaction& reaction, int index) { return reaction.nodeIndex < index; });
  return found != results.reactions.end() && found->nodeIndex == nodeIndex ? &*found : nullptr;
}

}  // namespace kestol
