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
Project ReadFrom(TextInput& input, const std::string& name, SourceMap* map, Again again) {
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

}  // namespace

Project ReadDeck(const std::string& path, SourceMap* map) {
  error.Clear();
  TextInput input(Open(path));
  return ReadFrom(input, path, map, [&] { return Open(path); });
}

Project ReadDeckText(std::string text, const std::string& name, SourceMap* map) {
  TextInput input(text);
  return ReadFrom(input, name, map, [&] { return std::move(text); });
}

}  // namespace kestol
