// Runs every example with the real program and holds its results against the "expect" lines of its
// own text:
//
//     # expect BLOCK | KEY | COLUMN | VALUE | TOLERANCE
//
// BLOCK is the beginning of a heading, in the report or in the result file. KEY is the first word
// of the line (a node or element number), or "Element N end 1|2" in the strengths of the report.
// COLUMN counts the numbers behind the key from 1. TOLERANCE is relative; absolute for a VALUE of
// 0.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "tests/support/OwnFolder.h"

namespace kestol {

namespace {

namespace fs = std::filesystem;

struct Expectation {
  std::string block, key;
  int column;
  double value, tolerance;
};

std::string Trimmed(const std::string& text) {
  const auto first = text.find_first_not_of(" \t\r");
  return first == std::string::npos
             ? ""
             : text.substr(first, text.find_last_not_of(" \t\r") + 1 - first);
}

std::vector<Expectation> ExpectationsOf(const fs::path& deck) {
  std::vector<Expectation> all;
  std::istringstream text(ContentsOf(deck));
  for (std::string line; std::getline(text, line);) {
    if (line.rfind("# expect ", 0) != 0) continue;
    std::istringstream fields(line.substr(9));
    std::vector<std::string> field(5);
    for (std::string& one : field) {
      std::getline(fields, one, '|');
      one = Trimmed(one);
    }
    all.push_back(
        {field[0], field[1], std::stoi(field[2]), std::stod(field[3]), std::stod(field[4])});
  }
  return all;
}

/// Number `column` of the line that `key` names in the block that `heading` begins; NaN without it.
double Find(const std::string& text, const Expectation& wanted) {
  std::istringstream lines(text);
  std::string line;
  while (std::getline(lines, line) && line.rfind(wanted.block, 0) != 0) {
  }
  std::string key = wanted.key;
  int skip = 0;
  if (const auto end = key.find(" end "); end != std::string::npos) {
    skip = std::stoi(key.substr(end + 5));
    key = key.substr(0, end);
  }
  while (std::getline(lines, line)) {
    if (line.rfind(key + " ", 0) != 0) continue;
    if (skip == 0) line = line.substr(key.size());
    for (int i = 0; i < skip; ++i) std::getline(lines, line);
    std::istringstream numbers(line);
    double value = std::nan("");
    for (int c = 0; c < wanted.column; ++c)
      if (!(numbers >> value)) return std::nan("");
    return value;
  }
  return std::nan("");
}

class Example : public testing::TestWithParam<fs::path> {};

TEST_P(Example, GivesTheNumbersThatItsTextPromises) {
  const fs::path deck = GetParam();
  const OwnFolder folder;
  const fs::path& work = folder.Path();
  fs::copy_file(deck, work / "model.dat");
  const std::string command = "cd '" + work.string() +
                              "' && '" KESTOL_PROGRAM
                              "' -p -e errors.txt model.dat report.txt >stdout.txt";
  ASSERT_EQ(std::system(command.c_str()), 0) << ContentsOf(work / "errors.txt");
  EXPECT_EQ(ContentsOf(work / "stdout.txt"), "");

  const std::string results =
      ContentsOf(work / "report.txt") + "\n" + ContentsOf(work / "model.kestol.res");
  const std::vector<Expectation> all = ExpectationsOf(deck);
  EXPECT_FALSE(all.empty()) << "an example without an expectation";
  for (const Expectation& wanted : all) {
    const double scale = wanted.value == 0.0 ? 1.0 : std::abs(wanted.value);
    EXPECT_NEAR(Find(results, wanted), wanted.value, wanted.tolerance * scale)
        << wanted.block << " | " << wanted.key << " | " << wanted.column;
  }
}

std::vector<fs::path> AllExamples() {
  std::vector<fs::path> decks;
  for (const auto& entry : fs::directory_iterator(KESTOL_EXAMPLES))
    if (entry.path().extension() == ".dat") decks.push_back(entry.path());
  std::sort(decks.begin(), decks.end());
  return decks;
}

INSTANTIATE_TEST_SUITE_P(All, Example, testing::ValuesIn(AllExamples()),
                         [](const testing::TestParamInfo<fs::path>& example) {
                           std::string name = example.param.stem().string();
                           for (char& c : name)
                             if (c == '-') c = '_';
                           return name;
                         });

}  // namespace

}  // namespace kestol
