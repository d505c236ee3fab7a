#include "input/RecordList.h"

namespace kestol {

bool ReadMappedRecord(const RecordList& list, const std::function<void(int)>& read) {
  TextInput& input = list.input;
  SourceMap::Record record{list.kind, 0, input.Offset()};
  bool stops = false;
  input.Mark();
  const bool accepted = RefuseInto(*list.map, record, [&] {
    const std::optional<int> number = ReadInteger(input);
    stops = !number;
    record.number = number.value_or(0);
    list.map->Add(stops ? RecordKind::ListStop : list.kind, record.number, record.offset);
    if (number) read(*number);
  });
  if (!accepted) {
    input.Rewind();
    SkipRestOfLine(input);
  }
  input.Unmark();
  return !stops;
}

}  // namespace kestol
