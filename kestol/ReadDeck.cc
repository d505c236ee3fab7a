#include "kestol/ReadDeck.h"

#include <cstdint>
#include <cstdio>
#include <utility>

#include "input/ProjectReader.h"
#include "input/TextInput.h"
#include "input/Words.h"
#include "main/ErrorChannel.h"

namespace kestol {

namespace {

/// Numbers per block of the project's containers.
constexpr int kCapacity = 100;

std::FILE* Open(const std::string& path) {
  std::FILE* const file = std::fopen(path.c_str(), "r");
  if (file == nullptr) Fatal("can't open file ", path, "\n");
  return file;
}

/// The line, from 1, of the character at `offset`; 0 for no place. Takes the text up to there.
long LineAt(TextInput& text, std::uint64_t offset) {
  if (offset == TextInput::kNowhere) return 0;
  long line = 1;
  while (SkipRestOfLine(text) && text.Offset() <= offset) ++line;
  return line;
}

/// Reads, and gives a refusal its place. `again` opens the text anew: lines are only counted when
/// one is asked for.
template <class Again>
Project ReadOnce(TextInput& input, const std::string& name, SourceMap* map, Again again) {
  error.Clear();
  Project project(kCapacity);
  try {
    ReadProject(project, input, map);
  } catch (const FatalError&) {
    TextInput text(again());
    error.SetPlace(name, LineAt(text, input.RecordOffset()));
    throw;
  }
  return project;
}

/// A record whose first line was refused is there, with nothing in it.
bool HoldsAny(const Constraint* support) {
  if (support == nullptr) return false;
  for (int d = 0; d < support->dofs; ++d)
    if (support->codes[d] != Free) return true;
  return false;
}

/// Whether a deck that was read with a map is written for the other type of problem: the mesh has
/// that dimension, and of all supports none fits.
bool IsOfOtherType(const Project& project, const SourceMap& map) {
  const int dimension = project.problemType == Plane ? 2 : 3;
  if (project.meshes.empty() || map.dimension != dimension ||
      project.meshes[0]->dimension == dimension)
    return false;
  bool anyRefused = false;
  for (const SourceMap::Refusal& refusal : map.Refusals())
    anyRefused = anyRefused || refusal.message.starts_with("Not reading correctly the constraints");
  if (!anyRefused) return false;
  for (const auto [number, node] : *project.meshes[0]->nodes)
    if (HoldsAny(node->constraint.get())) return false;
  return true;
}

template <class Again>
Project ReadFrom(TextInput& input, const std::string& name, SourceMap* map, Again again) {
  Project project = ReadOnce(input, name, map, again);
  if (map == nullptr || !IsOfOtherType(project, *map)) return project;
  SourceMap other;
  other.file = map->file;
  other.text = map->text;
  other.insteadOfType = project.problemType == Plane ? 3 : 2;
  *map = std::move(other);
  TextInput text(again());
  return ReadOnce(text, name, map, again);
}

}  // namespace

Project ReadDeck(const std::string& path, SourceMap* map) {
  error.Clear();
  TextInput input(Open(path));
  if (map != nullptr) map->file = path;
  return ReadFrom(input, path, map, [&] { return Open(path); });
}

Project ReadDeckText(std::string text, const std::string& name, SourceMap* map) {
  TextInput input(text);
  if (map != nullptr) {
    map->file = name;
    map->text = text;
  }
  return ReadFrom(input, name, map, [&] { return text; });
}

}  // namespace kestol
