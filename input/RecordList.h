#pragma once

#include <cstdint>
#include <functional>
#include <optional>

#include "input/SourceMap.h"
#include "input/Words.h"

namespace kestol {

/// A list of records that begin with a number, up to a word that contains "end"; in a mesh block up
/// to the word "end" itself.
struct RecordList {
  TextInput& input;
  SourceMap* map;  ///< null: the first mistake ends the reading
  RecordKind kind;
  std::uint64_t begin;  ///< offset of the keyword of the list: where a missing end is refused
  int numbers = 1;      ///< that every record has, its own included
  bool IsInMesh() const { return kind == RecordKind::Node || kind == RecordKind::Element; }
};

/// One step of ReadRecords with a map: false where the list ends.
bool ReadMappedRecord(const RecordList& list, const std::function<void(int)>& read);

/// Calls `read` behind the number of each record, up to the first word that is none. Between
/// records there may be white space, ':', '=' and comments.
template <class Read>
void ReadRecords(const RecordList& list, Read read) {
  if (list.map != nullptr) list.map->Add(RecordKind::List, list.numbers, list.begin);
  for (;;) {
    SkipToRecord(list.input);
    list.input.BeginRecord();
    if (list.map != nullptr) {
      if (!ReadMappedRecord(list, read)) return;
      continue;
    }
    const std::optional<int> number = ReadInteger(list.input);
    if (!number) return;
    read(*number);
  }
}

/// Takes the word that closes the list. With a map ReadRecords has already noted one that is
/// missing, and nothing is searched for.
void TakeEnd(const RecordList& list);

}  // namespace kestol
