#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "input/Project.h"
#include "input/SourceMap.h"

namespace kestol {

/// What a word of a record is to the reader.
enum class Role {
  Number,      ///< the number that the record begins with
  NodeNumber,  ///< a node of an element
  Reference,   ///< the number of a material, or of a face: octal behind a 0
  Real,        ///< a number with a fraction
  Whole,       ///< a number without one
  Codes,       ///< of a support
  Key,         ///< of a pair
  Value,       ///< of a pair; `key` is its key
  Name,        ///< of a unit system, solver, unit
  Sign,        ///< '=' or ':' between blanks, which the reader takes for the value of `key`
  Surplus,     ///< nothing reads it
  Comment,     ///< from '#' on
};

struct Field {
  Role role;
  std::string_view text;
  std::string_view key;
  std::uint64_t offset;
};

/// A record of the deck and its words, in order.
struct RecordFields {
  SourceMap::Record record;
  int section = -1;  ///< row of the keyword table
  std::vector<Field> fields;
};

/// What the records of a section look like.
struct RecordShape {
  const Project* project;
  int section = -1;  ///< row of the keyword table
  int numbers = 1;   ///< of the records of the list, at least
};

/// Whether all of the word is a number as the reader takes it.
bool IsNumber(std::string_view word);
bool IsEuler(std::string_view key);

/// Whether the pairs of the record are those of a material.
bool HasMaterialKeys(RecordKind kind);
/// Whether pairs may stand behind the values of the record.
bool HasPairs(RecordKind kind);

/// Splits `text`, which begins with the record, as the readers do.
void SplitRecord(const RecordShape& shape, const SourceMap::Record& record, std::string_view text,
                 RecordFields& fields);

/// Whether the text is a record of plain numbers only: `numbers` of them, the first `whole` of
/// which have no fraction, then perhaps one more whole one when `mayHaveOne`.
bool IsPlainRecord(std::string_view text, int numbers, int whole, bool mayHaveOne);

}  // namespace kestol
