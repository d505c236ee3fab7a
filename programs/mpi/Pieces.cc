#include "programs/mpi/Pieces.h"

#include <algorithm>
#include <filesystem>
#include <sstream>
#include <string_view>

#include "input/Project.h"
#include "programs/common/OutputFile.h"
#include "programs/common/ResultGrid.h"

namespace kestol {

namespace {

constexpr std::string_view kIndexEnding = ".pvtu";

/// What another process must know of an array to make one of zeros: one line each.
std::string Described(const VtuArray& array) {
  std::string line = std::to_string(static_cast<int>(array.type)) + '\t' +
                     std::to_string(array.components) + '\t' + array.name;
  for (const std::string& component : array.componentNames) line += '\t' + component;
  return line;
}

template <class T>
VtuArray::Producer Zeros(std::int64_t count) {
  return [count](VtuValues& out) { out.AddZeros<T>(count); };
}

VtuArray ZeroArray(const std::string& description, std::int64_t tuples) {
  std::istringstream words(description);
  VtuArray array;
  std::string word;
  std::getline(words, word, '\t');
  array.type = static_cast<VtuType>(std::stoi(word));
  std::getline(words, word, '\t');
  array.components = std::stoi(word);
  std::getline(words, array.name, '\t');
  while (std::getline(words, word, '\t')) array.componentNames.push_back(word);
  array.tuples = tuples;
  const std::int64_t count = tuples * array.components;
  if (array.type == VtuType::Float64) array.produce = Zeros<double>(count);
  if (array.type == VtuType::Int32) array.produce = Zeros<std::int32_t>(count);
  if (array.type == VtuType::UInt8) array.produce = Zeros<std::uint8_t>(count);
  return array;
}

/// The lines of all processes, each once, in the order of their first appearance.
std::vector<std::string> Union(const std::string& mine, const Team& team) {
  const std::vector<int> characters(mine.begin(), mine.end());
  std::string text;
  for (const int c : team.GatherAll(std::span<const int>(characters))) text += static_cast<char>(c);
  std::istringstream lines(text);
  std::vector<std::string> all;
  for (std::string line; std::getline(lines, line);)
    if (std::find(all.begin(), all.end(), line) == all.end()) all.push_back(line);
  return all;
}

/// The arrays of all processes, in one order on all of them.
std::vector<VtuArray> Completed(const std::vector<VtuArray>& own, std::int64_t tuples,
                                const Team& team) {
  std::string mine;
  for (const VtuArray& array : own) mine += Described(array) + '\n';
  std::vector<VtuArray> all;
  for (const std::string& line : Union(mine, team)) {
    const auto found = std::find_if(
        own.begin(), own.end(), [&](const VtuArray& array) { return Described(array) == line; });
    all.push_back(found != own.end() ? *found : ZeroArray(line, tuples));
  }
  return all;
}

}  // namespace

std::string PieceName(const std::string& index, int rank) {
  return index.substr(0, index.size() - kIndexEnding.size()) + '_' + std::to_string(rank) + ".vtu";
}

void WritePieces(const Project& project, const Results& results, Team& team,
                 const std::string& index, OutputFiles& files) {
  const ResultData data(project, results);
  const ResultGrid source(data);
  VtuGrid grid = source.Grid();
  grid.pointData = Completed(grid.pointData, grid.points.tuples, team);
  grid.cellData = Completed(grid.cellData, grid.types.tuples, team);

  const bool hasCells = grid.types.tuples > 0;
  const std::vector<int> withCells =
      team.GatherAll(std::span<const int>(std::vector<int>{hasCells ? 1 : 0}));
  team.Together([&] {
    if (!hasCells) return;
    OutputFile& piece = files.Open(PieceName(index, team.Rank()));
    WriteVtu(piece, grid, VtuEncoding::Raw);
    piece.Close();
  });
  team.FirstAlone([&] {
    std::vector<std::string> pieces;
    for (int rank = 0; rank < team.Size(); ++rank)
      if (withCells[static_cast<std::size_t>(rank)] != 0)
        pieces.push_back(std::filesystem::path(PieceName(index, rank)).filename().string());
    OutputFile& file = files.Open(index);
    WritePvtu(file, grid, pieces);
    file.Close();
  });
}

}  // namespace kestol
