#include "input/NearestWord.h"

#include <algorithm>
#include <string>
#include <vector>

#include "input/Words.h"

namespace kestol {

namespace {

// Words longer than any keyword are not compared letter by letter.
constexpr std::size_t kLongest = 64;

}  // namespace

// The distance of all beginnings, row by row of the first word; an exchange looks two rows back.
int LettersApart(std::string_view a, std::string_view b) {
  if (a.size() > kLongest || b.size() > kLongest) return static_cast<int>(kLongest);
  const std::string x = LowerCase(a), y = LowerCase(b);
  const std::size_t n = y.size();
  std::vector<int> before(n + 1), last(n + 1), row(n + 1);
  for (std::size_t j = 0; j <= n; ++j) last[j] = static_cast<int>(j);
  for (std::size_t i = 1; i <= x.size(); ++i) {
    row[0] = static_cast<int>(i);
    for (std::size_t j = 1; j <= n; ++j) {
      const int change = x[i - 1] == y[j - 1] ? 0 : 1;
      row[j] = std::min({last[j] + 1, row[j - 1] + 1, last[j - 1] + change});
      if (i > 1 && j > 1 && x[i - 1] == y[j - 2] && x[i - 2] == y[j - 1])
        row[j] = std::min(row[j], before[j - 2] + 1);
    }
    std::swap(before, last);
    std::swap(last, row);
  }
  return last[n];
}

std::string_view NearestWord(std::string_view written, std::span<const std::string_view> words,
                             int apart) {
  std::string_view nearest;
  int distance = apart + 1;
  for (const std::string_view word : words) {
    const int d = LettersApart(written, word);
    // One letter off is near enough for words of two.
    const int longest = static_cast<int>(std::max(word.size(), written.size()));
    const bool isAlike = d == 1 ? longest > 1 : 2 * d < longest;
    if (isAlike && d < distance) {
      nearest = word;
      distance = d;
    }
  }
  return nearest;
}

}  // namespace kestol
