#include "input/MappedMesh.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "input/NearestWord.h"
#include "input/ProjectReader.h"
#include "input/WordWalk.h"
#include "model/Mesh.h"

namespace kestol {

namespace {

using Cause = SourceMap::Cause;

bool IsList(MeshWordNumber which) {
  return which == CoordinatesWord || which == ElementsWord;
}

bool BeginsNumber(std::string_view word) {
  return !word.empty() && std::isdigit(static_cast<unsigned char>(word[0])) != 0;
}

bool BeginsWord(std::string_view word) {
  return !word.empty() && std::isalpha(static_cast<unsigned char>(word[0])) != 0;
}

bool IsLaterWord(std::string_view word, MeshWordNumber which) {
  const auto* const found = std::find(std::begin(kMeshWords), std::end(kMeshWords), word);
  return found != std::end(kMeshWords) && found - kMeshWords > which;
}

std::string NotFound(std::string_view name) {
  return "can't find word ***" + std::string(name) + "*** in input file\n";
}

/// What was passed on the way to a word that is not there.
struct PassedWords {
  std::optional<FoundWord> word;    ///< the first one that may stand for it
  std::optional<FoundWord> number;  ///< the first number that begins a line

  void Pass(const FoundWord& passed, MeshWordNumber which) {
    const bool mayStand = BeginsWord(passed.text) && (passed.startsLine || !IsList(which));
    if (mayStand && !word && !number) word = passed;
    if (passed.startsLine && BeginsNumber(passed.text) && !number) number = passed;
  }
};

/// How a word of the text stands for a word of the block.
enum class Spelling { Right, Glued, Near, Other };

Spelling SpellingOf(const FoundWord& word, std::string_view name) {
  constexpr int kApart = 3;
  if (word.text == name) return Spelling::Right;
  if (GluedTo(name, word.text)) return Spelling::Glued;
  return NearestWord(word.text, {&name, 1}, kApart).empty() ? Spelling::Other : Spelling::Near;
}

/// Whether the word is the value of elemtype, whose keyword was left out.
bool IsElemType(std::string_view word) {
  constexpr std::string_view kTypes[] = {"linear", "triangle", "tetrahedra", "quadrilateral",
                                         "hexahedra"};
  return std::any_of(std::begin(kTypes), std::end(kTypes),
                     [word](std::string_view type) { return word.starts_with(type); });
}

/// Goes on where a word is missing or is called otherwise; false when that cannot be told.
bool GoOnWithout(const PassedWords& passed, MeshWordNumber which, TextInput& input, SourceMap& map,
                 WordWalk& walk) {
  const std::string_view name = kMeshWords[which];
  if (IsList(which) && !passed.number) return false;
  if (!IsList(which) && (!passed.word || IsElemType(passed.word->text))) return false;
  const FoundWord& place = passed.word ? *passed.word : *passed.number;
  const SourceMap::Record record{RecordKind::MeshWord, which, place.offset};
  if (passed.word)
    map.Refuse(record, Cause::UnknownWord, name, place.written);
  else
    map.Refuse(record, Cause::Reader, NotFound(name));
  map.Add(RecordKind::MeshWord, which, place.offset);
  if (IsList(which))
    walk.GoTo(passed.number->offset);
  else
    walk.GoBehind(place);
  input.BeginRecord(place.offset);
  return true;
}

}  // namespace

void FindMappedMeshWord(TextInput& input, SourceMap& map, MeshWordNumber which) {
  const std::string_view name = kMeshWords[which];
  WordWalk walk(input);
  std::optional<FoundWord> inComment;
  PassedWords passed;
  while (const std::optional<FoundWord> word = walk.Next()) {
    const SourceMap::Record record{RecordKind::MeshWord, which, word->offset};
    if (word->isComment) {
      if (word->text == name && !inComment) inComment = word;
      continue;
    }
    if ((word->startsLine && IsKeyword(word->text)) || IsLaterWord(word->text, which)) break;
    if (IsList(which) && word->startsLine && word->text == "end") break;
    const Spelling spelling = SpellingOf(*word, name);
    if (spelling == Spelling::Other) {
      passed.Pass(*word, which);
      continue;
    }
    const bool glued = spelling == Spelling::Glued;
    if (glued)
      map.Refuse(record, Cause::Reader, NotFound(name));
    else if (spelling == Spelling::Near)
      map.Refuse(record, Cause::UnknownWord, name, word->written);
    else if (inComment)
      map.Refuse({RecordKind::MeshWord, which, inComment->offset}, Cause::TextAsKeyword, name,
                 name);
    map.Add(RecordKind::MeshWord, which, word->offset);
    walk.GoTo(word->offset + (glued ? name.size() : word->text.size()));
    input.BeginRecord(word->offset);
    return input.Unmark();
  }
  const bool goesOn = GoOnWithout(passed, which, input, map, walk);
  if (!goesOn) input.Rewind();
  input.Unmark();
  if (!goesOn) throw GivenUp{Cause::Reader, NotFound(name)};
}

// --- a heading that its lists do not fit ------------------------------------------------------

namespace {

/// The numbers that a line of a list begins with.
using Numbers = std::vector<double>;

/// The lines in sight that begin with a number; the last one may be cut off and is left out.
std::vector<Numbers> LinesInSight(TextInput& input) {
  constexpr std::size_t kInSight = 4096;
  std::string_view text = input.PeekAhead(kInSight);
  std::vector<Numbers> lines;
  for (std::size_t end = text.find('\n'); end != std::string_view::npos; end = text.find('\n')) {
    std::string_view line = text.substr(0, end);
    text.remove_prefix(end + 1);
    std::string_view look = line;
    const std::string_view first = TakeValue(look);
    if (first.empty() || first[0] == '#') continue;
    if (!BeginsNumber(first)) break;
    Numbers numbers;
    while (const std::optional<double> value = TakeReal(line)) numbers.push_back(*value);
    lines.push_back(std::move(numbers));
  }
  return lines;
}

/// How many numbers more than half of the first lines have; 0 when that cannot be told.
std::size_t CommonCount(const std::vector<Numbers>& lines, std::size_t fewest) {
  constexpr std::size_t kLooked = 5;
  const std::size_t looked = std::min(kLooked, lines.size());
  if (looked < fewest) return 0;
  for (std::size_t i = 0; i < looked; ++i) {
    const auto isSame = [&](const Numbers& line) { return line.size() == lines[i].size(); };
    const auto same =
        std::count_if(lines.begin(), lines.begin() + static_cast<std::ptrdiff_t>(looked), isSame);
    if (2 * static_cast<std::size_t>(same) > looked) return lines[i].size();
  }
  return 0;
}

/// Where the last word of that kind stands.
std::uint64_t OffsetOfLast(const SourceMap& map, MeshWordNumber which) {
  std::uint64_t offset = TextInput::kNowhere;
  for (const SourceMap::Record& heading : map.Headings())
    if (heading.kind == RecordKind::MeshWord && heading.number == which) offset = heading.offset;
  return offset;
}

bool IsRefused(const SourceMap& map, MeshWordNumber which) {
  const std::uint64_t offset = OffsetOfLast(map, which);
  const std::vector<SourceMap::Refusal>& all = map.Refusals();
  return std::any_of(all.begin(), all.end(), [&](const SourceMap::Refusal& other) {
    return other.record.kind == RecordKind::MeshWord && other.record.offset == offset;
  });
}

/// Notes that the last word of that kind does not fit its list, unless it was refused itself.
void RefuseHeading(SourceMap& map, MeshWordNumber which, const std::string& text) {
  if (!IsRefused(map, which))
    map.Refuse({RecordKind::MeshWord, which, OffsetOfLast(map, which)}, Cause::OtherHeading, text);
}

/// Whether the numbers that the lines begin with are those of records, one after the other.
bool AreNumbered(const std::vector<Numbers>& lines) {
  for (std::size_t i = 1; i < std::min(std::size_t{3}, lines.size()); ++i)
    if (lines[i][0] != lines[i - 1][0] + 1.0) return false;
  return true;
}

}  // namespace

int FewestNodes(int elemType) {
  switch (elemType) {
    case Linear:
      return 2;
    case Triangle:
      return 3;
    case Hexahedra:
      return 8;
    default:
      return 4;
  }
}

int UsualElemType(int nnode) {
  if (nnode == 2) return Linear;
  return nnode == 3 || nnode == 6 ? Triangle : Tetrahedra;
}

// Coordinates in space in a mesh of the plane are only dropped: harmless where they are 0.
void CorrectDimension(Mesh& mesh, TextInput& input, SourceMap& map) {
  const std::vector<Numbers> lines = LinesInSight(input);
  const std::size_t written = CommonCount(lines, 2);
  const bool isPlane = mesh.dimension == 3 && written == 3;
  const bool isSpatial = mesh.dimension == 2 && written == 4 && map.dimension != 2 &&
                         std::any_of(lines.begin(), lines.end(), [](const Numbers& line) {
                           return line.size() == 4 && line[3] != 0.0;
                         });
  if (!isPlane && !isSpatial) return;
  RefuseHeading(map, DimensionWord,
                "the dimension is " + std::to_string(mesh.dimension) + ", but the nodes have " +
                    std::to_string(written - 1) + " coordinates");
  mesh.dimension = isPlane ? 2 : 3;
}

// An element of many nodes may stand on two lines, the second of which begins with a node. Where
// the number of nodes was refused, one line must tell.
void CorrectNodesPerElement(Mesh& mesh, TextInput& input, SourceMap& map) {
  constexpr std::array<int, 5> kCounts{2, 3, 4, 6, 10};
  const std::vector<Numbers> lines = LinesInSight(input);
  const bool isKnown = !IsRefused(map, NnodeWord);
  const auto written = static_cast<int>(CommonCount(lines, isKnown ? 2 : 1));
  const int meant = written - 2;  // without the element's number and that of its material
  const bool fits = written == 1 + mesh.nnode || meant == mesh.nnode;
  const bool mayRunOn = isKnown && written < 1 + mesh.nnode && lines.size() < 3;
  if (written == 0 || fits || mayRunOn || !AreNumbered(lines) ||
      std::find(kCounts.begin(), kCounts.end(), meant) == kCounts.end())
    return;
  RefuseHeading(map, NnodeWord,
                "nnode is " + std::to_string(mesh.nnode) + ", but the elements have " +
                    std::to_string(meant) + " nodes and a material");
  mesh.nnode = meant;
  mesh.elemType = UsualElemType(meant);
  mesh.SetFemviewType();
}

}  // namespace kestol
