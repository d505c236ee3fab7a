#include "input/MappedWords.h"

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "input/Project.h"
#include "input/ProjectReader.h"
#include "input/WordWalk.h"
#include "input/Words.h"

namespace kestol {

namespace {

using Cause = SourceMap::Cause;

/// Whether a word that contains `keyword` was written as that keyword.
bool IsWritten(const FoundWord& word, std::string_view keyword) {
  return !word.isComment && (word.text == keyword || GluedTo(keyword, word.text));
}

// --- problem ----------------------------------------------------------------------------------

/// Goes behind the word that was meant as "problem"; to the beginning of the text when there is
/// none.
void FindProblem(TextInput& input, SourceMap& map) {
  WordWalk walk(input);
  std::optional<FoundWord> first, meant;
  while (const std::optional<FoundWord> word = walk.Next()) {
    if (word->startsLine && IsKeyword(word->text)) break;
    if (word->text.find("problem") == std::string::npos) continue;
    if (!first) first = word;
    if (!IsWritten(*word, "problem")) continue;
    meant = word;
    break;
  }
  if (!first) {
    map.Refuse({RecordKind::Problem, 0, 0}, Cause::Reader,
               "can't find word ***problem*** in input file\n");
    return walk.GoTo(0);
  }
  map.Add(RecordKind::Problem, 0, first->offset);
  if (!meant || meant->offset != first->offset)
    map.Refuse({RecordKind::Problem, 0, first->offset}, Cause::WordInText, "problem",
               first->written);
  walk.GoBehind(meant ? *meant : *first);
}

// --- type -------------------------------------------------------------------------------------

/// A word that contains "type", and what would be read behind it.
struct TypeWord {
  FoundWord word;
  std::string value;  ///< "2d" or "3d" in any case, or what stands there instead
  std::uint64_t end;  ///< offset behind the value
  bool isGlued = false;

  bool IsKnown() const { return value == "2d" || value == "3d"; }
};

TypeWord ReadTypeWord(const FoundWord& word, TextInput& input) {
  TypeWord type{word, {}, 0};
  if (const auto glued = GluedTo("type", word.text); glued && !glued->empty()) {
    type.isGlued = true;
    type.value = *glued;
  } else {
    type.value = LowerCase(TypeValue(input));
  }
  type.end = input.Offset();
  return type;
}

/// The words that contain "type" before the first keyword that begins a line.
std::vector<TypeWord> TypeWords(TextInput& input, WordWalk& walk) {
  std::vector<TypeWord> types;
  while (const std::optional<FoundWord> word = walk.Next()) {
    if (word->startsLine && IsKeyword(word->text)) break;
    if (word->text.find("type") == std::string::npos) continue;
    types.push_back(ReadTypeWord(*word, input));
    walk.GoBehind(*word);
    const TypeWord& last = types.back();
    if (last.word.startsLine && IsWritten(last.word, "type") && last.IsKnown()) break;
  }
  return types;
}

/// The one that was meant: that which is written on a line of its own, else the first with a type.
const TypeWord* MeantType(const std::vector<TypeWord>& types) {
  const TypeWord& last = types.back();
  if (last.word.startsLine && IsWritten(last.word, "type")) return &last;
  const auto known =
      std::find_if(types.begin(), types.end(), [](const TypeWord& type) { return type.IsKnown(); });
  return known != types.end() ? &*known : &types.front();
}

/// A word that begins a line, with a type behind it, where no word contains "type".
std::optional<TypeWord> MisspeltType(TextInput& input, WordWalk& walk) {
  while (const std::optional<FoundWord> word = walk.Next()) {
    if (word->startsLine && IsKeyword(word->text)) break;
    if (!word->startsLine || word->isComment) continue;
    TypeWord type = ReadTypeWord(*word, input);
    if (type.IsKnown()) return type;
    walk.GoBehind(*word);
  }
  return std::nullopt;
}

void ReadType(Project& project, TextInput& input, SourceMap& map) {
  const std::uint64_t begin = input.Offset();
  WordWalk walk(input);
  std::vector<TypeWord> types = TypeWords(input, walk);
  bool isMisspelt = false;
  if (types.empty()) {
    walk.GoTo(begin);
    if (const std::optional<TypeWord> type = MisspeltType(input, walk)) types.push_back(*type);
    isMisspelt = !types.empty();
  }
  if (types.empty()) {
    map.Refuse({RecordKind::Type, 0, input.RecordOffset()}, Cause::Reader,
               "can't find word ***type*** in input file\n");
    walk.GoTo(begin);
    SkipRestOfLine(input);  // the title
    return;
  }
  const TypeWord& first = types.front();
  const TypeWord& meant = *MeantType(types);
  const SourceMap::Record record{RecordKind::Type, 0, first.word.offset};
  map.Add(RecordKind::Type, 0, meant.word.offset);
  if (isMisspelt)
    map.Refuse(record, Cause::UnknownWord, "type", first.word.written);
  else if (&meant != &first)
    map.Refuse(record, Cause::TextAsKeyword, "type", first.word.written);
  else if (!meant.IsKnown() || meant.isGlued)
    map.Refuse(record, Cause::Reader, "Type of problem unknown. Only 2d and 3d\n");
  else if (!IsWritten(meant.word, "type"))
    map.Refuse(record, Cause::WordInText, "type", first.word.written);
  if (meant.IsKnown()) {
    if (map.insteadOfType != 0) map.Refuse(record, Cause::OtherType, meant.value);
    SetProblemType(project, map.insteadOfType == 0   ? meant.value
                            : map.insteadOfType == 2 ? "2d"
                                                     : "3d");
    map.dimension = project.problemType == Plane ? 2 : 3;
  }
  walk.GoTo(meant.end);
  if (!meant.IsKnown()) SkipRestOfLine(input);  // of what was refused
}

}  // namespace

void ReadMappedHeading(Project& project, TextInput& input, SourceMap& map) {
  FindProblem(input, map);
  ReadType(project, input, map);
  input.Unmark();
}

}  // namespace kestol
