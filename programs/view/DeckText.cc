#include "programs/view/DeckText.h"

#include <algorithm>
#include <string_view>
#include <utility>
#include <vector>

#include "programs/common/WholeFile.h"

namespace kestol {

namespace {

constexpr std::string_view kBlank = " \t\r";
constexpr std::size_t kLongestTitle = 500;

bool BeginsWithNumber(std::string_view line) {
  const std::size_t first = line.find_first_not_of(kBlank);
  return first != std::string_view::npos && line[first] >= '0' && line[first] <= '9';
}

std::string Lowered(std::string_view text) {
  std::string lower(text);
  std::transform(lower.begin(), lower.end(), lower.begin(), [](char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  });
  return lower;
}

/// What stands on the line of the word that holds "problem", behind that word.
std::string TitleOf(std::string_view text) {
  const std::size_t word = Lowered(text.substr(0, 4000)).find("problem");
  if (word == std::string::npos) return {};
  const std::size_t end = std::min(text.find('\n', word), text.size());
  std::size_t from = std::min(text.find_first_of(" \t\r\n:=", word), end);
  from = std::min(text.find_first_not_of(" \t\r:=", from), end);
  std::string title(text.substr(from, end - from));
  title.erase(std::min(title.find_last_not_of(kBlank) + 1, kLongestTitle));
  return title;
}

/// Lines of a list, of which only the ends are kept.
class ListShortener {
public:
  explicit ListShortener(DeckText& deck) : deck_(deck) {}
  ~ListShortener() { Close(); }

  void Add(std::string_view line) {
    if (!BeginsWithNumber(line)) {
      Close();
      Keep(line);
      return;
    }
    if (static_cast<int>(++count_) <= kEnds) {
      Keep(line);
    } else {
      last_.emplace_back(line);
    }
  }

private:
  static constexpr int kEnds = 5;

  void Keep(std::string_view line) { deck_.text.append(line).push_back('\n'); }

  void Close() {
    if (last_.size() > kEnds) {
      const std::size_t omitted = last_.size() - kEnds;
      deck_.text +=
          "  ... " + std::to_string(omitted) + (omitted == 1 ? " line ...\n" : " lines ...\n");
      deck_.omittedLines += static_cast<int>(omitted);
      last_.erase(last_.begin(), last_.end() - kEnds);
    }
    for (const std::string_view line : last_) Keep(line);
    last_.clear();
    count_ = 0;
  }

  DeckText& deck_;
  int count_ = 0;
  std::vector<std::string_view> last_;
};

}  // namespace

DeckText TextOfDeck(const std::string& file, std::size_t largest) {
  std::string text = WholeFile(file);
  DeckText deck;
  deck.title = TitleOf(text);
  if (text.size() <= largest) {
    deck.text = std::move(text);
    return deck;
  }
  {
    ListShortener shortener(deck);
    std::string_view rest = text;
    while (!rest.empty()) {
      const std::size_t end = std::min(rest.find('\n'), rest.size());
      shortener.Add(rest.substr(0, end));
      rest.remove_prefix(std::min(end + 1, rest.size()));
    }
  }
  // A text of long lines that are no lists is cut: the page has a size to keep.
  if (deck.text.size() > largest) {
    deck.omittedLines += static_cast<int>(std::count(
        deck.text.begin() + static_cast<std::ptrdiff_t>(largest), deck.text.end(), '\n'));
    deck.text.resize(largest);
  }
  return deck;
}

}  // namespace kestol
