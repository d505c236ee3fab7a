#include "programs/common/NearestWord.h"

#include <algorithm>
#include <cstddef>
#include <vector>

namespace kestol {

namespace {

char Lower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

/// Letters to add, drop, change, or exchange with the next one.
std::size_t Distance(std::string_view a, std::string_view b) {
  const std::size_t width = b.size() + 1;
  std::vector<std::size_t> d((a.size() + 1) * width);
  const auto at = [&](std::size_t i, std::size_t j) -> std::size_t& { return d[i * width + j]; };
  for (std::size_t i = 0; i <= a.size(); ++i) at(i, 0) = i;
  for (std::size_t j = 0; j <= b.size(); ++j) at(0, j) = j;
  for (std::size_t i = 1; i <= a.size(); ++i)
    for (std::size_t j = 1; j <= b.size(); ++j) {
      const bool same = Lower(a[i - 1]) == Lower(b[j - 1]);
      at(i, j) = std::min({at(i - 1, j) + 1, at(i, j - 1) + 1, at(i - 1, j - 1) + (same ? 0 : 1)});
      const bool exchanged = i > 1 && j > 1 && Lower(a[i - 1]) == Lower(b[j - 2]) &&
                             Lower(a[i - 2]) == Lower(b[j - 1]);
      if (exchanged) at(i, j) = std::min(at(i, j), at(i - 2, j - 2) + 1);
    }
  return at(a.size(), b.size());
}

}  // namespace

std::string_view NearestWord(std::string_view word, std::span<const std::string_view> known) {
  std::string_view nearest;
  std::size_t least = std::max<std::size_t>(1, word.size() / 3) + 1;
  for (const std::string_view candidate : known) {
    const std::size_t distance = Distance(word, candidate);
    const bool nothingInCommon = distance >= std::max(word.size(), candidate.size());
    if (distance >= least || nothingInCommon) continue;
    least = distance;
    nearest = candidate;
  }
  return nearest;
}

}  // namespace kestol
