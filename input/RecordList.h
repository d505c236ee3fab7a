#pragma once

#include <functional>
#include <optional>

#include "input/SourceMap.h"
#include "input/Words.h"

namespace kestol {

/// A list of records that begin with a number.
struct RecordList {
  TextInput& input;
  SourceMap* map;  ///< null: the first mistake ends the reading
  RecordKind kind;
};

/// One step of ReadRecords with a map: false where the list stops.
bool ReadMappedRecord(const RecordList& list, const std::function<void(int)>& read);

/// Calls `read` behind the number of each record, up to the first word that is none. Between
/// records there may be white space, ':', '=' and comments.
template <class Read>
void ReadRecords(const RecordList& list, Read read) {
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

}  // namespace kestol
