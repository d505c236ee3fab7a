// Compares two text files: compare_text EXPECTED ACTUAL. Gives 0 when they agree, else 1 and the
// first line that differs.
//
// Words must be equal, or be numbers that differ by at most one unit of the sixth digit; beside
// numbers a million times larger on the same line, or at the rounding error of the largest number
// of the file, one rounding error is as good as another: the order of sums follows the processor.
// Blanks must be equal except around numbers. The expected word "*" stands for any one word.
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

namespace {

constexpr double kNoise = 1e-9;       // of the largest number of a line
constexpr double kFileNoise = 1e-14;  // of the largest number of the file

struct Word {
  std::string blanks;  // in front of it
  std::string text;
  std::optional<double> number;
};

std::vector<Word> WordsOf(const std::string& line) {
  std::vector<Word> words;
  for (std::size_t at = 0; at < line.size();) {
    const std::size_t begin = std::min(line.find_first_not_of(" \t", at), line.size());
    const std::size_t end = std::min(line.find_first_of(" \t", begin), line.size());
    Word word{line.substr(at, begin - at), line.substr(begin, end - begin), std::nullopt};
    char* rest = nullptr;
    const double value = std::strtod(word.text.c_str(), &rest);
    if (!word.text.empty() && *rest == '\0') word.number = value;
    words.push_back(word);
    at = end;
  }
  return words;
}

double LargestOf(const std::vector<Word>& words) {
  double largest = 0.0;
  for (const Word& word : words) largest = std::max(largest, std::abs(word.number.value_or(0.0)));
  return largest;
}

bool AreClose(double a, double b, double noise) {
  const double size = std::max(std::abs(a), std::abs(b));
  const double sixthDigit = size > 0.0 ? std::pow(10.0, std::floor(std::log10(size)) - 5.0) : 0.0;
  return std::abs(a - b) <= std::max(1.000001 * sixthDigit, noise);
}

bool Agree(const std::string& expectedLine, const std::string& actualLine, double fileNoise) {
  if (expectedLine == actualLine) return true;
  const std::vector<Word> expected = WordsOf(expectedLine), actual = WordsOf(actualLine);
  if (expected.size() != actual.size()) return false;
  const double noise = std::max(kNoise * LargestOf(expected), fileNoise);
  for (std::size_t i = 0; i < expected.size(); ++i) {
    const Word &e = expected[i], &a = actual[i];
    if (e.number && a.number) {
      if (e.text != a.text && !AreClose(*e.number, *a.number, noise)) return false;
    } else if (e.blanks != a.blanks || (e.text != a.text && (e.text != "*" || a.text.empty()))) {
      return false;
    }
  }
  return true;
}

// All of a file; none when it cannot be read.
std::optional<std::string> ContentOf(const char* name) {
  std::ifstream file(name, std::ios::binary);
  std::ostringstream text;
  if (!file) return std::nullopt;
  text << file.rdbuf();
  return text.str();
}

// The lines of a text; the part behind the last line end counts as one, so that a missing line end
// is a difference.
std::vector<std::string> LinesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::size_t at = 0;
  for (std::size_t end; (end = text.find('\n', at)) != std::string::npos; at = end + 1)
    lines.push_back(text.substr(at, end - at));
  lines.push_back(text.substr(at));
  return lines;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) return 2;
  const auto expected = ContentOf(argv[1]), actual = ContentOf(argv[2]);
  if (!expected || !actual) {
    std::cout << "cannot read " << argv[expected ? 2 : 1] << "\n";
    return 1;
  }
  std::vector<std::string> wanted = LinesOf(*expected), found = LinesOf(*actual);
  double largest = 0.0;
  for (const std::string& line : wanted) largest = std::max(largest, LargestOf(WordsOf(line)));
  for (std::size_t i = 0; i < std::max(wanted.size(), found.size()); ++i) {
    if (i < wanted.size() && i < found.size() && Agree(wanted[i], found[i], kFileNoise * largest))
      continue;
    std::cout << "line " << i + 1 << "\n"
              << "  expected: " << (i < wanted.size() ? wanted[i] : "(nothing)") << "\n"
              << "  found:    " << (i < found.size() ? found[i] : "(nothing)") << "\n";
    return 1;
  }
  return 0;
}
