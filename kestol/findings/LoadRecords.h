#pragma once

#include <algorithm>
#include <cstdint>
#include <vector>

#include "kestol/findings/Inspection.h"

namespace kestol {

/// The load records of the elements that were read, with the load of each.
template <class Look>
void ForEachElementLoad(const Inspection& deck, Look look) {
  for (const auto [number, load] : deck.project.loads) {
    std::vector<std::uint64_t> records = deck.RecordsOf(RecordKind::ElementLoad, number);
    records.erase(std::remove_if(records.begin(), records.end(),
                                 [&](std::uint64_t offset) { return deck.IsRefusedAt(offset); }),
                  records.end());
    std::size_t i = 0;
    for (const PreassureLT* l = load; l != nullptr && i < records.size(); l = l->next.get(), ++i)
      look(number, *l, records[i]);
  }
}

}  // namespace kestol
