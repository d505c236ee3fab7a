#include "input/RecordList.h"

#include <algorithm>
#include <string>

#include "input/NearestWord.h"
#include "input/ProjectReader.h"
#include "input/WordWalk.h"

namespace kestol {

namespace {

using Cause = SourceMap::Cause;

/// Words before a comment.
int WordCount(std::string_view line) {
  int count = 0;
  for (std::string_view word = TakeValue(line); !word.empty() && word[0] != '#';
       word = TakeValue(line))
    ++count;
  return count;
}

bool BeginsNumber(int c) {
  return c >= '0' && c <= '9';
}

std::string NextWord(TextInput& input) {
  return LowerCase(input.PeekWord());
}

/// Whether the record behind the one at the current line begins with a number. Goes back to the
/// mark.
bool RecordFollows(TextInput& input) {
  SkipRestOfLine(input);
  SkipToRecord(input);
  const bool follows = BeginsNumber(input.Peek());
  input.Rewind();
  return follows;
}

/// Whether a record that was read took the next line, a record of its own, for its rest.
bool TookNextLine(const RecordList& list) {
  std::string_view taken = list.input.TakenSinceMark();
  const std::size_t lineEnd = taken.find('\n');
  if (lineEnd == std::string_view::npos || lineEnd + 1 == taken.size()) return false;
  const std::string_view next = taken.substr(lineEnd + 1);
  const int here = WordCount(taken.substr(0, lineEnd)),
            there = WordCount(next.substr(0, next.find('\n')));
  // Elements may have more behind their nodes, nodes have nothing.
  const bool isMore = list.kind == RecordKind::Node && here + there > list.numbers;
  return here < list.numbers && (isMore || there >= list.numbers);
}

/// Whether a record that was refused had been looking for its values on the next lines, where the
/// reader's words would be about something else.
bool RunsOn(const RecordList& list) {
  const std::string_view taken = list.input.TakenSinceMark();
  const std::size_t lineEnd = taken.find('\n');
  if (lineEnd == std::string_view::npos) return false;
  const std::string_view next = BehindSigns(taken.substr(lineEnd));
  return !next.empty() && BeginsNumber(next[0]) &&
         WordCount(taken.substr(0, lineEnd)) < list.numbers;
}

/// Gives up the lines of the record at the mark: its first one, and those that only hold its rest.
void SkipRecord(const RecordList& list) {
  TextInput& input = list.input;
  input.Rewind();
  int words = WordCount(input.PeekLine());
  SkipRestOfLine(input);
  while (words < list.numbers) {
    const std::string_view line = input.PeekLine();
    const int more = WordCount(line);
    const bool fits = list.kind != RecordKind::Node || words + more <= list.numbers;
    const bool isRest =
        fits && more > 0 && more < list.numbers && BeginsNumber(BehindSigns(line)[0]);
    if (!isRest) return;
    words += more;
    SkipRestOfLine(input);
  }
}

/// Whether the elements of the mesh begin behind the list of nodes at the mark. Goes back to it.
bool ElementsFollow(TextInput& input) {
  WordWalk walk(input);
  bool follow = false;
  while (const std::optional<FoundWord> word = walk.Next()) {
    if (!word->startsLine || word->isComment) continue;
    follow = word->text == kMeshWords[ElementsWord];
    if (follow || IsKeyword(word->text)) break;
  }
  input.Rewind();
  return follow;
}

/// Whether a word that the reader takes for the end stands among records, so that it is none.
/// Behind "end" itself a keyword may be missing instead, unless that of the elements is still to
/// come.
bool StandsAmongRecords(const RecordList& list, const std::string& word) {
  if (word.find("end") == std::string::npos || !RecordFollows(list.input)) return false;
  return word != "end" || (list.kind == RecordKind::Node && ElementsFollow(list.input));
}

/// Whether the list ends at the word in sight; if not, or if it should not, says why.
bool EndsHere(const RecordList& list, const SourceMap::Record& record) {
  TextInput& input = list.input;
  SourceMap& map = *list.map;
  const std::string written(input.PeekWord()), word = LowerCase(written);
  const bool nextList = list.kind == RecordKind::Node && word == kMeshWords[ElementsWord];
  if (word.empty() || nextList || IsKeyword(word)) {
    map.Refuse({list.kind, 0, list.begin}, Cause::MissingEnd, word);
    return true;
  }
  if (StandsAmongRecords(list, word)) {
    map.Refuse(record, Cause::TextAsKeyword, "end", written);
    return false;
  }
  if (word == "end" || (word.find("end") != std::string::npos && !list.IsInMesh())) return true;
  if (word.starts_with("end") || LettersApart(word, "end") == 1) {
    map.Refuse(record, Cause::UnknownWord, "end", written);
    return true;
  }
  map.Refuse(record, Cause::NoNumber, {}, written);
  return false;
}

}  // namespace

bool ReadMappedRecord(const RecordList& list, const std::function<void(int)>& read) {
  TextInput& input = list.input;
  SourceMap::Record record{list.kind, 0, input.Offset()};
  bool goesOn = true;
  input.Mark();
  const bool accepted = RefuseInto(*list.map, record, [&] {
    const std::optional<int> number = ReadInteger(input);
    record.number = number.value_or(0);
    list.map->Add(number ? list.kind : RecordKind::ListStop, record.number, record.offset);
    if (number) {
      read(*number);
      if (TookNextLine(list)) throw GivenUp{Cause::TooFewValues, {}};
    } else {
      goesOn = !EndsHere(list, record);
      if (goesOn) SkipRestOfLine(input);
    }
  });
  if (!accepted) {
    if (RunsOn(list)) list.map->SetLastCause(Cause::TooFewValues);
    SkipRecord(list);
  }
  input.Unmark();
  return goesOn;
}

void TakeEnd(const RecordList& list) {
  TextInput& input = list.input;
  input.BeginRecord(list.begin);
  if (list.map != nullptr) {
    const std::string word = NextWord(input);
    const bool isEnd = word.find("end") != std::string::npos || LettersApart(word, "end") == 1;
    if (!isEnd || IsKeyword(word)) return;
    ReadWord(input);
  } else if (list.IsInMesh()) {
    FindWordExactly(input, "end");
  } else {
    FindWord(input, "end");
  }
  if (list.kind != RecordKind::Node) SkipRestOfLine(input);
}

}  // namespace kestol
